# SPDX-License-Identifier: MIT
# What the ARM toolchains share: Debian's cross compiler and emulator over the system folder that scripts/make-sysroot makes.
# Set before: CMAKE_SYSTEM_PROCESSOR, architecture (Debian's name), triplet, emulator.

set(CMAKE_SYSTEM_NAME Linux)
cmake_path(SET CMAKE_SYSROOT NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot-${architecture})
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${architecture})
set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} -L ${CMAKE_SYSROOT})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
