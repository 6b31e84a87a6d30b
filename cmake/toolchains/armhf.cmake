# SPDX-License-Identifier: MIT
# 32-bit ARM with hardware floating point
set(CMAKE_SYSTEM_PROCESSOR arm)
set(architecture armhf)
set(triplet arm-linux-gnueabihf)
set(emulator qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/arm.cmake)
