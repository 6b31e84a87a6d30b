// SPDX-License-Identifier: MIT
/// The names of the elements that a document treats specially.
#pragma once

#include <QtCore/QLatin1String>

namespace quendar::element {

inline const QLatin1String root("lumo_config"); // the view itself, wherever it stands
inline const QLatin1String session("session");  // one entry of the directory `sessions`
inline const QLatin1String printer("printer");  // one entry of the directory `printers`
inline const QLatin1String printerSection("network_printer");
inline const QLatin1String name("name"); // by which a printer is known

} // namespace quendar::element
