// SPDX-License-Identifier: MIT
#include "document/saxreader.h"

#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

namespace quendar {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // as a whole, and without a successor that says the same

void reportDocument(const QString &text, QXmlDefaultHandler &handler, Attributes attributes) {
    QXmlInputSource source;
    source.setData(text);
    QXmlSimpleReader reader;
    reader.setFeature(QStringLiteral("http://xml.org/sax/features/namespace-prefixes"), attributes == Attributes::All);
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.parse(source);
}

QT_WARNING_POP

} // namespace quendar
