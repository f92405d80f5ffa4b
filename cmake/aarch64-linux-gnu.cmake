# Cross build for 64-bit ARM Linux with Debian's multiarch cross compiler and the
# :arm64 development packages. Test programs run through qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config CACHE FILEPATH "pkg-config for arm64")

find_program(DPC_QEMU_AARCH64 NAMES qemu-aarch64-static qemu-aarch64)
if(DPC_QEMU_AARCH64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${DPC_QEMU_AARCH64})
endif()

# Libraries and headers of the target, tools (moc, rcc, lrelease) of the host.
set(CMAKE_FIND_ROOT_PATH /usr/lib/aarch64-linux-gnu /usr)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
