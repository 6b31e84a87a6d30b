// SPDX-License-Identifier: MIT
/// What the XML engine cannot take; a document or a registry beyond a limit is refused before it is handed over.
#pragma once

#include <QtCore/QString>

/// Nested elements, the root being level 1. The engine's work grows steeply with the depth, and at some thousands
/// its recursion overflows the stack. No real configuration comes near.
constexpr int maximumDepth = 256;

/// Bytes of a document. The engine takes some fifty times the size of a document of small elements.
constexpr qint64 maximumDocumentSize = qint64(16) * 1024 * 1024;

/// Different names of elements, attributes and processing instructions. An engine's name pool numbers them with twelve
/// bits, and a query takes up to two hundred for itself.
constexpr int maximumNames = 3840;

inline QString tooDeep() {
    return QStringLiteral("nested deeper than %1 elements").arg(maximumDepth);
}
inline QString tooLarge() {
    return QStringLiteral("document larger than 16 MiB");
}
inline QString tooManyNames() {
    return QStringLiteral("too many different names");
}
inline QString unsupportedReference() {
    return QStringLiteral("unsupported character reference");
}
inline QString atLine(const QString &message, qint64 line) {
    return message + QStringLiteral(" at line ") + QString::number(line);
}
