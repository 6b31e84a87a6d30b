// SPDX-License-Identifier: MIT
#include "stages/exportsettings.h"

#include "engine/limits.h"
#include "engine/query.h"
#include "registry/viewpaths.h"
#include "view/lumoconfigview.h"

namespace quendar {

namespace {

struct SerialisedView {
    QByteArray xml;
    Names names;
    QSet<QString> entries;
};

/// Every registry read of an export happens here.
SerialisedView serialised(LumoConfigView &view, Query &query) {
    query.bind(QStringLiteral("lumoConfig"), QXmlItem(view.indexForKey(viewRoot())));
    require(query.compile(QStringLiteral("wholeConfig.xq")), notExportable());
    QByteArray xml;
    require(query.appendTo(xml), notExportable());
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
    require(stylesheet.setInput(view.xml), notExportable());
    require(stylesheet.compile(QStringLiteral("toLumoConfigFormat.xsl")), notExportable());
    stylesheet.reserve(view.names);
    QByteArray document("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
    require(stylesheet.appendTo(document), notExportable());
    return document;
}

ExportedSettings exported(const SerialisedView &view) {
    return {configuration(view), view.names.local, view.entries, {}};
}

} // namespace

ExportedSettings exportSettings() {
    return exported(serialisedView());
}

ExportedSettings exportSettings(TessaroClient &client) {
    const SerialisedView view = serialisedView(client);
    ExportedSettings settings = exported(view);
    settings.view = view.xml;
    return settings;
}

QByteArray readView() {
    return serialisedView().xml;
}

} // namespace quendar
