// SPDX-License-Identifier: MIT
/// The settings in the registry as a configuration document.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSet>
#include <QtCore/QString>

class TessaroClient;

namespace quendar {

struct ExportedSettings {
    QByteArray document;
    QSet<QString> viewNames; ///< of the elements of the view, of which the document shows some in another form
    QSet<QString> entries;   ///< the paths of its sessions and printers
    QByteArray view;         ///< as `readView` gives it; empty where no client was given
};

/// The settings that @p client sees. Throws TessaroError when the registry fails, Error when it holds what no document
/// can: a name that no element can bear, a character that XML does not have, too many names or levels.
ExportedSettings exportSettings(TessaroClient &client);

/// The settings as they are now, seen by a client of its own, as XML that nothing but a comparison is good for. Throws
/// likewise.
QByteArray readView();

/// What a client of its own sees, which is gone, with all that it remembers, before the engine takes the most memory.
ExportedSettings exportSettings();

} // namespace quendar
