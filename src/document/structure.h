// SPDX-License-Identifier: MIT
/// What an import makes of a document's elements in the registry.
#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

#include <vector>

namespace quendar {

/// Follows the elements of a document as the applier does, without a registry: to which path each belongs, and how deep
/// it lies there. The view's root is level 1, as the document's root is.
class Structure {
public:
    Structure();

    /// The element's start, with its attribute `id`. False where it is nested beyond the limit, in the document or in
    /// the registry.
    bool enter(const QString &element, const QString &id);

    /// Its end. False where no element is open.
    bool leave();

    /// The path of the innermost open element. An entry without an id that can be used has the null UUID in it.
    QString path() const;

    /// The paths of the sessions and printers that were met and have an id that can be used.
    const QSet<QString> &entries() const { return paths; }

    /// The number of the others: the import makes up an id, or finds the place by a printer's name.
    int unnamedEntries() const { return unnamed; }

private:
    struct Place {
        QString name; // below the place before; empty where it is the same place
        int level;
        bool isPrinter;
        bool isInPrinterSection;
    };

    QString takeEntry(const QString &directory, const QString &id);

    std::vector<Place> places; // of the open elements, and the view's in front
    QSet<QString> paths;
    int unnamed = 0;
    bool isAstray = false; // a printer's name may have led below another printer
};

} // namespace quendar
