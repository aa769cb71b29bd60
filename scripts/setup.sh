#!/usr/bin/env bash
# Installs what vok-lite needs to build, test and run on Debian: compilers,
# CMake, yajl, GoogleTest, Google Benchmark, libpng, libjpeg-turbo, the
# 32-bit ARM cross toolchain with qemu, and clang with libFuzzer. Safe to
# rerun; when everything is present it does not touch apt at all.
set -euo pipefail

host_packages=(
  build-essential cmake pkg-config
  libyajl-dev libgtest-dev libgmock-dev libbenchmark-dev libpng-dev libjpeg62-turbo-dev
  g++-arm-linux-gnueabihf qemu-user clang libclang-rt-14-dev
)
# The cross toolchain's *-cross packages provide the ARM C and C++ runtime;
# only these libraries come from Debian's armhf archive.
armhf_packages=(libyajl-dev:armhf libgtest-dev:armhf)

native_arch=$(dpkg --print-architecture)

is_installed() {
  local name=$1 status
  # A host library may be installed for several architectures: ask for the
  # native one, then for the bare name (architecture-independent packages).
  if [[ $name != *:* ]] &&
     status=$(dpkg-query -W -f='${db:Status-Status}' "$name:$native_arch" 2>/dev/null); then
    [[ $status == installed ]] && return 0
  fi
  status=$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null) || return 1
  [[ $status == installed ]]
}

missing=()
for package in "${host_packages[@]}" "${armhf_packages[@]}"; do
  is_installed "$package" || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
  echo "setup: all build, test and cross-build packages are installed"
  exit 0
fi
echo "setup: installing ${missing[*]}"

as_root=()
if ((EUID != 0)); then
  if command -v sudo >/dev/null; then
    as_root=(sudo)
  else
    echo "setup: need root (or sudo) to install packages" >&2
    exit 1
  fi
fi

if ! dpkg --print-foreign-architectures | grep -qx armhf; then
  "${as_root[@]}" dpkg --add-architecture armhf
fi
# With armhf enabled, a mirror's security index can be mid-sync ("File has
# unexpected size") and make update exit non-zero although every index this
# needs is fine: carry on and let apt-get install decide.
if ! "${as_root[@]}" apt-get update; then
  echo "setup: apt-get update reported errors; trying the install anyway" >&2
fi
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y --no-install-recommends "${missing[@]}"
