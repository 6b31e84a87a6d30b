// SPDX-License-Identifier: MIT
/// What the XML engine and the reader cannot take; a document or a registry beyond a limit is refused before it is
/// handed over.
#pragma once

#include "report/error.h"

namespace quendar {

/// Nested elements, the root being level 1. The engine's work grows steeply with the depth, and at some thousands
/// its recursion overflows the stack. No real configuration comes near.
constexpr int maximumDepth = 256;

/// Bytes of a document. The engine takes some fifty times the size of a document of small elements.
constexpr qint64 maximumDocumentSize = qint64(16) * 1024 * 1024;

/// Characters of a document type declaration. Both readers take a time that is quadratic in the number of declarations,
/// and recurse for each parenthesis in them.
constexpr int maximumTypeSize = 16 * 1024;

/// References to entities that a document declares. The readers take each for as much as 4,096 characters.
constexpr int maximumEntityReferences = 4096;

/// Different names of elements, attributes and processing instructions. An engine's name pool numbers them with twelve
/// bits, and a query takes up to two hundred for itself.
constexpr int maximumNames = 3840;

inline Error tooDeep() {
    return Error(QStringLiteral("nested deeper than %1 elements").arg(maximumDepth));
}
inline Error tooLarge() {
    return Error(QStringLiteral("document larger than 16 MiB"));
}
inline Error typeTooLarge() {
    return Error(QStringLiteral("document type declaration larger than 16 KiB"));
}
inline Error tooManyEntities() {
    return Error(QStringLiteral("more than %1 references to entities").arg(maximumEntityReferences));
}
inline Error notExportable() {
    return Error(QStringLiteral("impossible to export the settings"));
}
inline Error tooManyNames() {
    return Error(QStringLiteral("too many different names"));
}

} // namespace quendar
