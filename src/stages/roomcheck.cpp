// SPDX-License-Identifier: MIT
#include "stages/roomcheck.h"

#include "engine/limits.h"

namespace quendar {

namespace {

/// Names kept free for the settings that the registry fills new sessions and printers with, which it alone knows.
constexpr int roomForDefaults = 256;

} // namespace

void requireRoom(const Document &document, const QSet<QString> &viewNames) {
    const Contents &contents = document.contents;
    if (contents.unnamedEntries == 0 && viewNames.contains(contents.entries))
        return; // nothing is made
    const QSet<QString> names = viewNames + contents.names.local + contents.entries;
    if (names.size() + contents.unnamedEntries + roomForDefaults > maximumNames)
        throw tooManyNames();
}

} // namespace quendar
