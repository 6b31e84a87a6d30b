// SPDX-License-Identifier: MIT
#include "stages/exportsettings.h"

#include "engine/query.h"
#include "registry/viewpaths.h"
#include "report/error.h"
#include "view/lumoconfigview.h"

namespace quendar {

namespace {

struct SerialisedView {
    QByteArray xml;
    Names names;
    QSet<QString> entries;
};

QString impossible() {
    return QStringLiteral("impossible to export the settings");
}

/// Every registry read of an export happens here.
SerialisedView serialised(LumoConfigView &view, Query &query) {
    query.bind(QStringLiteral("lumoConfig"), QXmlItem(view.indexForKey(viewRoot())));
    require(query.compile(QStringLiteral("wholeConfig.xq")), impossible());
    QByteArray xml;
    require(query.appendTo(xml), impossible());
    return {xml, view.names(), view.entries()};
}

SerialisedView serialisedView() {
    Query query;
    LumoConfigView view(query.namePool());
    return serialised(view, query);
}

SerialisedView serialisedView(TessaroClient &client) {
    Query query;
    LumoConfigView view(query.namePool(), client);
    return serialised(view, query);
}

QByteArray configuration(const SerialisedView &view) {
    Query stylesheet(QXmlQuery::XSLT20);
    require(stylesheet.setInput(view.xml), impossible());
    require(stylesheet.compile(QStringLiteral("toLumoConfigFormat.xsl")), impossible());
    stylesheet.reserve(view.names);
    QByteArray document("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
    require(stylesheet.appendTo(document), impossible());
    return document;
}

ExportedSettings exported(const SerialisedView &view) {
    return {configuration(view), view.names.local, view.entries};
}

} // namespace

ExportedSettings exportSettings() {
    return exported(serialisedView());
}

ExportedSettings exportSettings(TessaroClient &client) {
    return exported(serialisedView(client));
}

} // namespace quendar
