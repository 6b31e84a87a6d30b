// SPDX-License-Identifier: MIT
#pragma once

#include "registry/childrencache.h"

#include <vector>

/// What the registry lists in one directory, and the numbers of the nodes that are made of it.
struct Listing {
    int directory; // the number of its node
    const Children &entries;
    std::vector<int> numbers; // in the order of the entries; -1 for one that was not met yet
};

/// Where a node stands among its siblings, so that neither they nor its parent have to be searched for.
struct Place {
    Listing *listing = nullptr; // null: not known yet
    int position = -1;          // -1: the listing does not hold it
    Children::const_iterator entry;
};
Q_DECLARE_TYPEINFO(Place, Q_MOVABLE_TYPE);
