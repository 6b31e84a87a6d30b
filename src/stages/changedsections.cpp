// SPDX-License-Identifier: MIT
#include "stages/changedsections.h"

#include "engine/query.h"
#include "report/error.h"

namespace quendar {

namespace {

Error cannotDetect() {
    return Error(QStringLiteral("Impossible to detect sections to apply"));
}

Error failedDetection() {
    return Error(QStringLiteral("An error occured while detecting sections to apply"));
}

/// The document as the engine reads and writes it.
QByteArray loaded(const Document &document) {
    Query query;
    query.bind(QStringLiteral("config"), document.bytes);
    require(query.compile(QStringLiteral("wholeDoc.xq")), cannotDetect());
    query.reserve(document.contents.names);
    QByteArray result;
    // one that cannot be loaded is none, and fails the comparison
    return query.appendTo(result) ? result : QByteArray();
}

} // namespace

QStringList changedSections(const Document &wanted, const QByteArray &current) {
    const Names names = united(wanted.contents.names, scanNames(current));
    Query query;
    query.bind(QStringLiteral("initialConfig"), current);
    query.bind(QStringLiteral("newConfig"), loaded(wanted));
    require(query.compile(QStringLiteral("diff.xq")), cannotDetect());
    query.reserve(names);
    QStringList sections;
    require(query.appendTo(sections), failedDetection());
    return sections;
}

void requireLoadable(const Document &document) {
    require(!loaded(document).isEmpty(), failedDetection());
}

} // namespace quendar
