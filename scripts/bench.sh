#!/usr/bin/env bash
# Builds the release preset and runs every Google Benchmark suite, then the
# peer table (vok-lite against OpenCV, one process, interleaved repetitions).
# Installs what it needs first. Not part of CI: timings want a quiet machine.
#   bash scripts/bench.sh [BENCHMARK_FILTER]
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
missing=()
for package in libopencv-core-dev libopencv-imgproc-dev; do
  [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
    missing+=("$package")
done
if ((${#missing[@]})); then
  as_root=()
  ((EUID == 0)) || as_root=(sudo)
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}"
fi

cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc)" --target vok_bench vok_peer_bench
build/release/bench/vok_bench --benchmark_filter="${1:-.}"
echo
build/release/bench/peers/vok_peer_bench 7
