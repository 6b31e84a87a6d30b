// SPDX-License-Identifier: MIT
#include "modifier/lumoconfigviewmodifier.h"
#include "registry/viewpaths.h"

namespace quendar {

void LumoConfigViewModifier::loadPrinters() {
    const QString printers = printersPath();
    const QStringList paths = entriesOf(printers, children(printers));
    for (const QString &path : paths) {
        const QString key = childKey(path, QStringLiteral("name"));
        const Children &name = children(key);
        if (!name.isEmpty() && !isEntryOf(key, name.firstKey())) // trimmed, as the names in a document are
            printersByName.insert(name.firstKey().trimmed(), path);
    }
}

void LumoConfigViewModifier::startPrinter(const QXmlAttributes &attributes) {
    enterEntry(QStringLiteral("printers"), attributes);
    expectingPrinterName = true;
}

void LumoConfigViewModifier::checkPrinterName(const QString &localName) {
    if (expectingPrinterName && localName == QLatin1String("name")) {
        expectingPrinterName = false;
        readingPrinterName = true;
    }
}

/// Goes on below the existing printer of that name and returns true: the name is still to be written, as any value.
/// Without one, makes a new printer, its name included, and returns false.
bool LumoConfigViewModifier::takePrinterName(const QString &name) {
    readingPrinterName = false;
    const QString existing = printersByName.take(name);
    if (!existing.isNull()) {
        currentKey = existing + QStringLiteral("/name");
        return true;
    }

    const ViewKey printer = currentKey.parent();
    client.create(printer, RegTypeString);
    if (client.set(currentKey, name, RegParamValue) != 0)
        warn({Warning::PrinterNotCreated, printer, name});
    return false;
}

/// Deletes the printers that the section did not name.
void LumoConfigViewModifier::removePrinters() {
    for (const QString &path : std::as_const(printersByName)) {
        client.del(path);
        const int status = client.commit(path);
        if (status != 0)
            warn({Warning::PrinterNotDeleted, path, {}, status});
    }
    printersByName.clear();
}

} // namespace quendar
