// SPDX-License-Identifier: MIT
/// What a test tells the processes that otherworld.cpp is loaded into.
#pragma once

#include <atomic>
#include <cstdint>

/// The file `control` in the folder OTHERWORLD, which all of them map. What lies in the folder above belongs to the
/// device. Writing calls there are counted, and those that commit something in the registry, each as a line
/// "ROLE CALL PATH", where the role is the first argument of its process; the file `calls` lists them.
struct OtherWorld {
    enum Deed { None, Kill, Fail, Run };

    std::atomic<std::int64_t> bootClockAhead; ///< seconds
    std::atomic<std::int64_t> wallClockAhead; ///< seconds

    char counted[128];      ///< which calls are counted, as a pattern of the shell's for their lines
    std::atomic<int> calls; ///< so many were
    std::atomic<Deed> deed; ///< what is done before each from number `first` to number `last`, from 1 on
    std::atomic<int> first;
    std::atomic<int> last;
    int error;          ///< of a call that is to fail
    char command[1024]; ///< what is to be run, by the shell
};
