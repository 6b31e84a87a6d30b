// SPDX-License-Identifier: MIT
#include "stages/changedsections.h"

#include "report/error.h"

#include <QtCore/QBuffer>
#include <QtCore/QUrl>
#include <QtXmlPatterns/QXmlFormatter>
#include <QtXmlPatterns/QXmlQuery>

namespace {

/// The document as the engine reads and writes it; when it cannot be loaded, no document.
QByteArray loaded(const NamedDocument &document) {
    QBuffer input;
    input.setData(document.text);
    input.open(QIODevice::ReadOnly);
    QXmlNamePool namePool;
    QXmlQuery query(namePool);
    query.bindVariable(QStringLiteral("config"), &input);
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/wholeDoc.xq")), QUrl());
    reserveNames(namePool, document.names);

    QByteArray result;
    QBuffer output(&result);
    output.open(QIODevice::ReadWrite);
    QXmlFormatter formatter(query, &output);
    query.evaluateTo(&formatter);
    return result;
}

} // namespace

QStringList changedSections(const NamedDocument &wanted, const NamedDocument &current) {
    QByteArray newDocument = loaded(wanted);
    QBuffer newConfig(&newDocument);
    newConfig.open(QIODevice::ReadWrite);
    QBuffer initialConfig;
    initialConfig.setData(current.text);
    initialConfig.open(QIODevice::ReadOnly);

    QXmlNamePool namePool;
    QXmlQuery query(namePool);
    query.bindVariable(QStringLiteral("initialConfig"), &initialConfig);
    query.bindVariable(QStringLiteral("newConfig"), &newConfig);
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/diff.xq")), QUrl());
    if (!query.isValid())
        throw Error(QStringLiteral("Impossible to detect sections to apply"));
    reserveNames(namePool, united(current.names, wanted.names));

    QStringList sections;
    if (!query.evaluateTo(&sections))
        throw Error(QStringLiteral("An error occured while detecting sections to apply"));
    return sections;
}
