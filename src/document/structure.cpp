// SPDX-License-Identifier: MIT
#include "document/structure.h"

#include "document/elements.h"
#include "engine/limits.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"

#include <QtCore/QUuid>

namespace quendar {

namespace {

/// A name that stands beside its printer instead of in it, as in `<network_printer><printer/><name>`, leads from the
/// second level, or a deeper one, to the fourth.
constexpr int levelsAstray = 2;

} // namespace

Structure::Structure() : places{{viewRoot(), 1, false, false}} {}

bool Structure::enter(const QString &element, const QString &id) {
    const bool isPrinter = element == element::printer;
    const bool isInPrinterSection = places.back().isInPrinterSection;
    if (isInPrinterSection && element == element::name && !places.back().isPrinter)
        isAstray = true;

    Place place = {element, places.back().level + 1, isPrinter,
                   isInPrinterSection || element == element::printerSection};
    if (element::isEntry(element)) {
        place.name = takeEntry(isPrinter ? QStringLiteral("printers") : QStringLiteral("sessions"), id);
        ++place.level;
    } else if (element == element::root) {
        place.name.clear();
        --place.level;
    }
    const int level = place.level + (isAstray ? levelsAstray : 0);
    places.push_back(std::move(place));
    return level <= maximumDepth && places.size() <= maximumDepth + 1U;
}

bool Structure::leave() {
    if (places.size() == 1)
        return false;
    places.pop_back();
    return true;
}

QString Structure::path() const {
    QStringList names;
    for (const Place &place : places)
        if (!place.name.isEmpty())
            names.append(place.name);
    return names.join(QLatin1Char('/'));
}

/// Notes the entry of a directory in the innermost place; returns its path from there.
QString Structure::takeEntry(const QString &directory, const QString &id) {
    const QUuid uuid(id);
    const QString below = childKey(directory, uuid.toString());
    if (uuid.isNull() || isAstray) {
        ++unnamed;
        return below;
    }
    paths.insert(childKey(path(), below));
    return below;
}

} // namespace quendar
