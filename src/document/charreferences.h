// SPDX-License-Identifier: MIT
/// References to characters above U+FFFF, of which the reader keeps only sixteen bits.
#pragma once

#include <QtCore/QString>

namespace quendar {

/// The text of a document with each reference to such a character replaced by the character: in content, in attributes
/// and in the values of entities that it declares; not in CDATA sections, comments and processing instructions, where
/// "&#" is text. Throws Error, line included, where a declared value makes references out of references, so that it
/// cannot be told what the reader will meet, for a reference beyond U+10FFFF, for a document type declaration that is
/// too large, and where there are too many references to what it declares.
QString withoutCharReferences(const QString &document);

} // namespace quendar
