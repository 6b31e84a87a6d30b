// SPDX-License-Identifier: MIT
/// The settings that a document holds.
#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace quendar {

/// A session or a printer of a document.
struct DocumentEntry {
    QString path; ///< with the null UUID where the document gives no id that can be used
    QString name; ///< trimmed
    int parent;   ///< the position of the entry that it lies in; -1 where it lies in none
};

/// An element without others in it.
struct DocumentSetting {
    QString path;      ///< in the registry, as far as the document alone tells
    QString text;      ///< as it stands, white space included
    int pieces;        ///< of text, each of which an import takes for a value
    int entry;         ///< the position of its session or printer; -1 where it is in none
    bool isBeforeName; ///< whether it stands in an entry in front of that one's name
};

struct DocumentSettings {
    QVector<DocumentSetting> settings; ///< in the order of the document
    QVector<DocumentEntry> entries;
    QSet<QString> directories; ///< the paths of the elements with others in them
};

/// Reads them as the applier reads a document, from its decoded text, as far as that is well-formed.
DocumentSettings readSettings(const QString &text);

} // namespace quendar
