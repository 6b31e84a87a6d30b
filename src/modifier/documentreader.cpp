// SPDX-License-Identifier: MIT
#include "modifier/documentreader.h"

#include "modifier/lumoconfigviewmodifier.h"
#include "modifier/readerguard.h"

#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader whose messages and line numbers an administrator knows

QString decodedDocument(const QByteArray &document) {
    QXmlInputSource source;
    source.setData(document);
    QString text = source.data();
    if (text.contains(QLatin1Char('\r'))) {
        text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    }
    return text;
}

void applyDocument(const QString &document, LumoConfigViewModifier &applier) {
    QXmlInputSource source;
    source.setData(document);
    ReaderGuard guard(applier);
    QXmlSimpleReader reader;
    reader.setContentHandler(&guard);
    reader.setErrorHandler(&guard);
    reader.parse(source);
    guard.rethrow();
}

QT_WARNING_POP
