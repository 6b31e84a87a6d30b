#include "modifier/documentreader.h"

#include "modifier/lumoconfigviewmodifier.h"
#include "modifier/readerguard.h"

#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader whose messages and line numbers an administrator knows

    QString
    decodedDocument(const QByteArray &document) {
    QXmlInputSource source;
    source.setData(document);
    return source.data()
        .replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
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
