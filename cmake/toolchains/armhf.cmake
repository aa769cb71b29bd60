# Cross build for 32-bit ARM (hard float) with Debian's cross toolchain;
# tests run under qemu-user with the armhf sysroot.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm;-L;/usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabihf /usr/lib/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
set(ENV{PKG_CONFIG_LIBDIR} "/usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/share/pkgconfig")
# Android's ARM targets use NEON with hard floats. -Wno-psabi: GCC notes that
# passing some std:: iterators changed in GCC 7.1; everything here is built by
# one compiler, so the notes only bury real warnings.
set(CMAKE_C_FLAGS_INIT "-mfpu=neon -mfloat-abi=hard")
set(CMAKE_CXX_FLAGS_INIT "-mfpu=neon -mfloat-abi=hard -Wno-psabi")
