// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

/// The line of the first reference to a character above U+FFFF in the text of a document, 0 when there is none. The
/// reader keeps only sixteen bits of such a reference and would hand on another character. In a document with a
/// document type declaration, which may hide where markup ends, every text that looks like a reference counts.
int lineOfUnsupportedReference(const QString &document);
