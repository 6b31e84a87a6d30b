// SPDX-License-Identifier: MIT
/// What the XML engine cannot take; a document or a registry beyond a limit is refused before it is handed over.
#pragma once

#include "report/error.h"

namespace quendar {

/// Nested elements, the root being level 1. The engine's work grows steeply with the depth, and at some thousands
/// its recursion overflows the stack. No real configuration comes near.
constexpr int maximumDepth = 256;

/// Bytes of a document. The engine takes some fifty times the size of a document of small elements.
constexpr qint64 maximumDocumentSize = qint64(16) * 1024 * 1024;

/// Different names of elements, attributes and processing instructions. An engine's name pool numbers them with twelve
/// bits, and a query takes up to two hundred for itself.
constexpr int maximumNames = 3840;

inline Error tooDeep() {
    return Error(QStringLiteral("nested deeper than %1 elements").arg(maximumDepth));
}
inline Error tooLarge() {
    return Error(QStringLiteral("document larger than 16 MiB"));
}
inline Error tooManyNames() {
    return Error(QStringLiteral("too many different names"));
}
inline Error atLine(const Error &error, qint64 line) {
    return Error(error.message() + QStringLiteral(" at line ") + QString::number(line));
}

} // namespace quendar
