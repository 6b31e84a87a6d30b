// SPDX-License-Identifier: MIT
#pragma once

#include "registry/vocabulary.h"

/// The subtree that holds the settings.
inline QString viewRoot() {
    return rootNodeName + QStringLiteral("/lumo-config-view");
}
