// SPDX-License-Identifier: MIT
#include "tessaro/utf8.h"

#include <QtCore/QStringBuilder>
#include <QtCore/QTextCodec>

#include <algorithm>

namespace tessaro {

namespace {

constexpr int utf8Mib = 106;

/// Whether the text is the same in Latin-1, which is decoded in half of the time.
bool isAscii(const char *text, int size) {
    return std::all_of(
        text, text + size, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

QString decodeUtf8(const char *text, int size) {
    if (isAscii(text, size))
        return QString::fromLatin1(text, size);
    if (size < 3 || text[0] != '\xEF')
        return QString::fromUtf8(text, size);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString decoded = QTextCodec::codecForMib(utf8Mib)->toUnicode(text, size, &state);
    return state.remainingChars == 0 ? decoded : decoded + QChar(QChar::ReplacementCharacter);
}

QString appendUtf8(const QString &before, const char *text, int size) {
    return isAscii(text, size) ? QString(before % QLatin1String(text, size)) : before % decodeUtf8(text, size);
}

} // namespace tessaro
