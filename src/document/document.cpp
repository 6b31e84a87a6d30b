// SPDX-License-Identifier: MIT
#include "document/document.h"

#include "document/charreferences.h"
#include "engine/limits.h"

#include <QtCore/QTextCodec>
#include <QtCore/QXmlStreamReader>

namespace quendar {

QByteArray readDocument(QIODevice &device) {
    const qint64 size = device.isSequential() ? 0 : device.size();
    if (size > maximumDocumentSize)
        throw tooLarge();
    QByteArray bytes = device.read(size + 1);
    if (bytes.size() > size) // it grows, or has no size, as a pipe or a file below /proc
        bytes += device.read(maximumDocumentSize + 1 - bytes.size());
    if (bytes.size() > maximumDocumentSize)
        throw tooLarge();
    return bytes;
}

Document checkedDocument(const QByteArray &bytes) {
    const QString text = withoutCharReferences(decodedDocument(bytes));
    return {bytes, text, scanDocument(bytes, text)};
}

QString decodedDocument(const QByteArray &bytes) {
    // the engine's reader finds the encoding, since the other one takes it from anything that begins with "<?xml"
    QXmlStreamReader reader(bytes);
    reader.readNext();
    const QTextCodec *const declared = QTextCodec::codecForName(reader.documentEncoding().toString().toLatin1());
    const QTextCodec *const codec =
        declared ? declared : QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    QString text = codec->toUnicode(bytes);
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return text;
}

} // namespace quendar
