# 32-bit big-endian PowerPC under Linux, run by user-mode emulation on the build machine.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR powerpc)
set(CMAKE_CXX_COMPILER powerpc-linux-gnu-g++)
set(CMAKE_C_COMPILER powerpc-linux-gnu-gcc)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc;-L;/usr/powerpc-linux-gnu)

# This processor has no 64-bit atomic instructions.
set(CMAKE_CXX_STANDARD_LIBRARIES "-Wl,--push-state,--as-needed -latomic -Wl,--pop-state")

set(CMAKE_FIND_ROOT_PATH /usr/powerpc-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
