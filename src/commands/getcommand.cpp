// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"

#include "commands/settingsfile.h"
#include "engine/names.h"
#include "registry/viewpaths.h"
#include "report/error.h"
#include "view/lumoconfigview.h"

#include <QtCore/QBuffer>
#include <QtCore/QUrl>
#include <QtXmlPatterns/QXmlFormatter>
#include <QtXmlPatterns/QXmlQuery>

namespace {

void require(bool succeeded) {
    if (!succeeded)
        throw Error(QStringLiteral("impossible to export the settings"));
}

/// The registry view as XML. Every registry read of an export happens here.
NamedDocument serialisedView() {
    QXmlNamePool namePool;
    LumoConfigView view(namePool);
    QXmlQuery query(namePool);
    query.bindVariable(QStringLiteral("lumoConfig"), QXmlItem(view.indexForKey(viewRoot())));
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/wholeConfig.xq")), QUrl());
    require(query.isValid());

    QByteArray document;
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadWrite);
    QXmlFormatter formatter(query, &buffer);
    require(query.evaluateTo(&formatter));
    return {document, view.names()};
}

/// Appends the configuration document that @p view becomes to what @p output holds.
void appendConfiguration(const NamedDocument &view, QBuffer &output) {
    QXmlNamePool namePool;
    QXmlQuery stylesheet(QXmlQuery::XSLT20, namePool);
    QBuffer input;
    input.setData(view.text);
    input.open(QIODevice::ReadOnly);
    require(stylesheet.setFocus(&input));
    stylesheet.setQuery(QUrl(QStringLiteral("qrc:/queries/toLumoConfigFormat.xsl")), QUrl());
    require(stylesheet.isValid());
    reserveNames(namePool, view.names);

    QXmlFormatter formatter(stylesheet, &output);
    require(stylesheet.evaluateTo(&formatter));
}

} // namespace

GetCommand::GetCommand(const QString &filePath, const QString &wantedCategory)
    : file(filePath), category(wantedCategory) {
    openForExport(file);
    requireSupportedCategory(category);
}

void GetCommand::execute() {
    exportConfig(&file);
    file.close();
}

void GetCommand::exportConfig(QIODevice *output) {
    const NamedDocument view = serialisedView();

    QByteArray document("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
    QBuffer buffer(&document);
    buffer.open(QIODevice::WriteOnly | QIODevice::Append);
    appendConfiguration(view, buffer);
    writeDocument(*output, document);
}
