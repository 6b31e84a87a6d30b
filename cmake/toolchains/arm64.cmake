# SPDX-License-Identifier: MIT
# 64-bit ARM
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(architecture arm64)
set(triplet aarch64-linux-gnu)
set(emulator qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/arm.cmake)
