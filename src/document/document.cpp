// SPDX-License-Identifier: MIT
#include "document/document.h"

#include "document/charreferences.h"
#include "engine/limits.h"

#include <QtCore/QTextCodec>
#include <QtCore/QXmlStreamReader>

namespace quendar {

namespace {

constexpr qint64 readAtOnce = qint64(1024) * 1024; // bytes
constexpr int usualDeclaration = 1024;             // bytes, with all in front of the root

/// What the engine's reader takes for the encoding; empty where the document declares none. The other reader takes it
/// from anything that begins with "<?xml".
QByteArray declaredEncoding(const QByteArray &bytes) {
    for (const QByteArray &beginning : {bytes.left(usualDeclaration), bytes}) {
        QXmlStreamReader reader(beginning);
        if (reader.readNext() == QXmlStreamReader::StartDocument)
            return reader.documentEncoding().toLatin1();
    }
    return {};
}

} // namespace

QByteArray readDocument(QIODevice &device) {
    const qint64 size = device.isSequential() ? 0 : device.size();
    if (size > maximumDocumentSize)
        throw tooLarge();
    QByteArray bytes = device.read(size + 1);
    bool isAtEnd = bytes.size() <= size; // otherwise it grows, or has no size, as a pipe or a file below /proc
    while (!isAtEnd) {
        const QByteArray more = device.read(readAtOnce); // a pipe gives what it has
        bytes += more;
        if (bytes.size() > maximumDocumentSize)
            throw tooLarge();
        isAtEnd = more.isEmpty();
    }
    return bytes;
}

Document checkedDocument(const QByteArray &bytes) {
    const QString text = withoutCharReferences(decodedDocument(bytes));
    return {bytes, text, scanDocument(bytes, text)};
}

QString withLineFeeds(QString text) {
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return text;
}

QString decodedDocument(const QByteArray &bytes) {
    const QTextCodec *const declared = QTextCodec::codecForName(declaredEncoding(bytes));
    const QTextCodec *const codec =
        declared ? declared : QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    return withLineFeeds(codec->toUnicode(bytes));
}

} // namespace quendar
