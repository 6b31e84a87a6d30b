// SPDX-License-Identifier: MIT
/// The names of the elements that a document treats specially.
#pragma once

#include <QtCore/QLatin1String>
#include <QtCore/QStringList>

namespace quendar::element {

inline const QLatin1String root("lumo_config"); // the view itself, wherever it stands
inline const QLatin1String session("session");  // one entry of the directory `sessions`
inline const QLatin1String printer("printer");  // one entry of the directory `printers`
inline const QLatin1String printerSection("network_printer");
inline const QLatin1String name("name"); // by which a printer is known

/// Whether the element of that tag is an entry of a directory, known by its attribute `id`.
inline bool isEntry(const QString &tag) {
    return tag == session || tag == printer;
}

/// The sections of sessions.
inline QStringList sessionTypes() {
    return QStringLiteral("rdp,ica,korvterm,browser,leostream,zovra,kelmo,vmware,vworkspace,xenapp,ssh,xdmcp,telnet")
        .split(QLatin1Char(','));
}

} // namespace quendar::element
