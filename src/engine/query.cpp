// SPDX-License-Identifier: MIT
#include "engine/query.h"

#include <QtCore/QUrl>
#include <QtXmlPatterns/QXmlFormatter>

namespace quendar {

Query::Query(QXmlQuery::QueryLanguage language) : query(language, pool) {}

void Query::bind(const QString &variable, const QXmlItem &item) {
    query.bindVariable(variable, item);
}

void Query::bind(const QString &variable, const QByteArray &document) {
    query.bindVariable(variable, &opened(document));
}

bool Query::setInput(const QByteArray &document) {
    return query.setFocus(&opened(document));
}

bool Query::compile(const QString &name) {
    query.setQuery(QUrl(QStringLiteral("qrc:/queries/") + name), QUrl());
    return query.isValid();
}

bool Query::appendTo(QByteArray &document) const {
    QBuffer output(&document);
    output.open(QIODevice::WriteOnly | QIODevice::Append);
    QXmlFormatter formatter(query, &output);
    return query.evaluateTo(&formatter);
}

bool Query::appendTo(QStringList &texts) const {
    return query.evaluateTo(&texts);
}

QBuffer &Query::opened(const QByteArray &document) {
    QBuffer &input = inputs.emplace_back();
    input.setData(document);
    input.open(QIODevice::ReadOnly);
    return input;
}

} // namespace quendar
