// SPDX-License-Identifier: MIT
#include "modifier/documentreader.h"

#include "modifier/lumoconfigviewmodifier.h"
#include "modifier/readerguard.h"

#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

namespace quendar {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader whose messages and line numbers an administrator knows

void applyDocument(const QString &text, LumoConfigViewModifier &applier) {
    QXmlInputSource source;
    source.setData(text);
    ReaderGuard guard(applier);
    QXmlSimpleReader reader;
    reader.setContentHandler(&guard);
    reader.setErrorHandler(&guard);
    reader.parse(source);
    guard.rethrow();
}

QT_WARNING_POP

} // namespace quendar
