// SPDX-License-Identifier: MIT
#include "document/document.h"

#include "document/charreferences.h"
#include "engine/limits.h"

#include <QtXml/QXmlInputSource>

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
    const QString text = decodedDocument(bytes);
    const Contents contents = scanDocument(bytes);
    return {bytes, withoutCharReferences(text), contents};
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the decoder of the reader that the text goes to

QString decodedDocument(const QByteArray &bytes) {
    QXmlInputSource source;
    source.setData(bytes);
    QString text = source.data();
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return text;
}

QT_WARNING_POP

} // namespace quendar
