#include "utf8.h"

#include <QtCore/QTextCodec>

namespace {
constexpr int utf8Mib = 106;
}

QString decodeUtf8(const char *text, int size) {
    if (size < 3 || text[0] != '\xEF') {
        return QString::fromUtf8(text, size);
    }
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString decoded = QTextCodec::codecForMib(utf8Mib)->toUnicode(text, size, &state);
    return state.remainingChars == 0 ? decoded : decoded + QChar(QChar::ReplacementCharacter);
}
