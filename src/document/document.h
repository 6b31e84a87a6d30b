// SPDX-License-Identifier: MIT
/// Configuration documents, read and checked.
#pragma once

#include "document/documentscan.h"

#include <QtCore/QIODevice>

namespace quendar {

/// A configuration document that the engine can load and the reader can read. Whether it is well-formed only they can
/// tell.
struct Document {
    QByteArray bytes; ///< as they were read, for the engine
    QString text;     ///< decoded, for the reader: without carriage returns and what the reader would misread
    Contents contents;
};

/// All that @p device, which is open for reading, still holds. Throws Error when that is more than a document may be.
QByteArray readDocument(QIODevice &device);

/// The document in @p bytes. Throws Error, with the line where it is known, for one that is nested too deep, has too
/// many different names, refers to characters in a way that cannot be told, or declares more than a document needs.
Document checkedDocument(const QByteArray &bytes);

/// @p text with line feeds in the place of all line ends, as every reader of XML has them.
QString withLineFeeds(QString text);

/// The text of a document, decoded as the engine decodes it. Line ends are line feeds, as every reader of XML has them;
/// the one in use would hand on carriage returns.
QString decodedDocument(const QByteArray &bytes);

} // namespace quendar
