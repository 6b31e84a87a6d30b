// SPDX-License-Identifier: MIT
/// Where the registry lies.
#pragma once

#include <string>

namespace tessaro {

/// The registry's file as the system names it: what `TESSARO_REGISTRY` says, otherwise a place of root's or the user's.
std::string registryFile();

} // namespace tessaro
