// SPDX-License-Identifier: MIT
#include "change/readable.h"

#include <QtCore/QVector>

namespace quendar {

namespace {

constexpr int maximumLength = 40;

QString escaped(uint character) {
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(character, 4, 16, QLatin1Char('0'));
    }
}

} // namespace

QString readable(const QString &text) {
    QString result;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        // isPrint takes the separators of lines and paragraphs for printable
        const QChar::Category category = QChar::category(character);
        const bool isShown =
            QChar::isPrint(character) && category != QChar::Separator_Line && category != QChar::Separator_Paragraph;
        result += isShown ? QString::fromUcs4(&character, 1) : escaped(character);
    }
    return result;
}

QString quoted(const QString &text) {
    if (text.size() <= maximumLength)
        return QLatin1Char('"') + readable(text) + QLatin1Char('"');
    QString beginning = text.left(maximumLength - 1);
    if (beginning.at(beginning.size() - 1).isHighSurrogate())
        beginning.chop(1);
    return QLatin1Char('"') + readable(beginning) + QStringLiteral("…\"");
}

} // namespace quendar
