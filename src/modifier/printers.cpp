// SPDX-License-Identifier: MIT
#include "modifier/lumoconfigviewmodifier.h"
#include "registry/viewpaths.h"
#include "report/warning.h"

void LumoConfigViewModifier::loadPrinters() {
    const Children &printers = children(viewRoot() + QStringLiteral("/network_printer/printers"));
    for (auto printer = printers.cbegin(); printer != printers.cend(); ++printer) {
        const Children &name = children(printer.key() + QStringLiteral("/name"));
        if (!name.isEmpty()) // trimmed, as the names in a document are
            printersByName.insert(name.firstKey().trimmed(), printer.key());
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
        warn({QLatin1String("an error occured while creating printer"), printer, name});
    return false;
}

/// Deletes the printers that the section did not name.
void LumoConfigViewModifier::removePrinters() {
    for (const QString &path : std::as_const(printersByName)) {
        client.del(path);
        const int status = client.commit(path);
        if (status != 0)
            warn({QLatin1String("an error occured while deleting printer:"), path, status});
    }
    printersByName.clear();
}
