# Cross build for the device: 32-bit ARM, hard float, glibc.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_STRIP arm-linux-gnueabihf-strip)
set(ZRCAMCTL_SYSROOT /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH ${ZRCAMCTL_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Lets ctest run the ARM test executables on the build machine.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static;-L;${ZRCAMCTL_SYSROOT})
# Executables at a fixed address, as the program is linked: without position
# independence code is smaller and the constant layout tables stay in the
# read-only text segment instead of data relocated at start-up.
set(CMAKE_C_FLAGS_INIT "-fno-pie")
set(CMAKE_CXX_FLAGS_INIT "-fno-pie")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-no-pie")
