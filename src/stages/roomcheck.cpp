// SPDX-License-Identifier: MIT
#include "stages/roomcheck.h"

#include "engine/limits.h"
#include "registry/viewkey.h"

namespace quendar {

namespace {

/// Names kept free for the settings that the registry fills new sessions and printers with, which it alone knows.
constexpr int roomForDefaults = 256;

} // namespace

void requireRoom(const Document &document, const ExportedSettings &current) {
    const Contents &contents = document.contents;
    if (contents.unnamedEntries == 0 && current.entries.contains(contents.entries))
        return; // nothing is made
    QSet<QString> names = current.viewNames + contents.names.local;
    for (const QString &path : contents.entries)
        names.insert(elementName(nameIn(path).toString()));
    if (names.size() + contents.unnamedEntries + roomForDefaults > maximumNames)
        throw tooManyNames();
}

} // namespace quendar
