// SPDX-License-Identifier: MIT
/// Where the settings lie in the registry.
#pragma once

#include "registry/vocabulary.h"

namespace quendar {

/// The subtree that holds the settings.
inline QString viewRoot() {
    return rootNodeName + QStringLiteral("/lumo-config-view");
}

/// The directory of the device's printers.
inline QString printersPath() {
    return viewRoot() + QStringLiteral("/network_printer/printers");
}

} // namespace quendar
