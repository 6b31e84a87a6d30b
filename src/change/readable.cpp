// SPDX-License-Identifier: MIT
#include "change/readable.h"

#include <QtCore/QVector>

#include <algorithm>

namespace quendar {

namespace {

constexpr int maximumLength = 40;

/// What is shown in front of the first difference of two long texts.
constexpr int context = 12;

const QString ellipsis = QStringLiteral("…");

/// Whether a terminal shows the character, and does nothing else.
bool isShown(uint character) {
    // isPrint takes the separators of lines and paragraphs for printable
    const QChar::Category category = QChar::category(character);
    return QChar::isPrint(character) && category != QChar::Separator_Line && category != QChar::Separator_Paragraph;
}

QString codeOf(uint character) {
    return QStringLiteral("\\u%1").arg(character, 4, 16, QLatin1Char('0'));
}

QString escaped(uint character) {
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return codeOf(character);
    }
}

/// The part of @p text from @p start on, or rather from the character there.
QString cut(const QString &text, int start) {
    const auto isWithin = [&text](int position) {
        return position > 0 && position < text.size() && text.at(position).isLowSurrogate();
    };
    const int from = isWithin(start) ? start - 1 : start;
    if (text.size() - from <= maximumLength)
        return text.mid(from);
    const int end = from + maximumLength - 1;
    return text.mid(from, (isWithin(end) ? end - 1 : end) - from) + ellipsis;
}

QString quotedFrom(const QString &text, int start) {
    QString shown = cut(text, start);
    shown.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + (start > 0 ? ellipsis : QString()) + readable(shown) + QLatin1Char('"');
}

} // namespace

QString readable(const QString &text) {
    QString result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters)
        result += isShown(character) ? QString::fromUcs4(&character, 1) : escaped(character);
    return result;
}

QString quoted(const QString &text) {
    return quotedFrom(text, 0);
}

QString quotedChange(const QString &before, const QString &after) {
    const auto differing = std::mismatch(before.cbegin(), before.cend(), after.cbegin(), after.cend());
    const auto common = static_cast<int>(std::distance(before.cbegin(), differing.first));
    const bool isCutAlike = common >= maximumLength - 1 && qMax(before.size(), after.size()) > maximumLength;
    const int start = isCutAlike ? common - context : 0;
    return quotedFrom(before, start) + QStringLiteral(" → ") + quotedFrom(after, start);
}

QByteArray readableJson(const QByteArray &json) {
    QString result;
    const QString text = QString::fromUtf8(json);
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters)
        if (isShown(character))
            result += QString::fromUcs4(&character, 1);
        else if (QChar::requiresSurrogates(character))
            result += codeOf(QChar::highSurrogate(character)) + codeOf(QChar::lowSurrogate(character));
        else
            result += codeOf(character);
    return result.toUtf8();
}

} // namespace quendar
