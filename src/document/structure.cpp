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
    const Place parent = places.back();
    Place place = {parent.path, parent.level, false, parent.isInPrinterSection};
    if (element == element::session) {
        place = entry(parent, QStringLiteral("sessions"), id);
    } else if (element == element::printer) {
        place = entry(parent, QStringLiteral("printers"), id);
        place.isPrinter = true;
    } else if (element != element::root) {
        place.path = childKey(parent.path, element);
        ++place.level;
    }
    if (element == element::printerSection)
        place.isInPrinterSection = true;
    if (element == element::name && parent.isInPrinterSection && !parent.isPrinter)
        isAstray = true;
    places.push_back(place);
    return place.level + (isAstray ? levelsAstray : 0) <= maximumDepth && places.size() <= maximumDepth + 1U;
}

bool Structure::leave() {
    if (places.size() == 1)
        return false;
    places.pop_back();
    return true;
}

Structure::Place Structure::entry(const Place &parent, const QString &directory, const QString &id) {
    const QUuid uuid(id);
    const QString path = childKey(childKey(parent.path, directory), uuid.toString());
    if (uuid.isNull() || isAstray)
        ++unnamed;
    else
        paths.insert(path);
    return {path, parent.level + 2, false, parent.isInPrinterSection};
}

} // namespace quendar
