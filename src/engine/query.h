// SPDX-License-Identifier: MIT
/// The tool's own queries in Qt's XML engine.
#pragma once

#include "engine/names.h"

#include <QtCore/QBuffer>
#include <QtCore/QStringList>
#include <QtXmlPatterns/QXmlItem>
#include <QtXmlPatterns/QXmlQuery>

#include <list>

namespace quendar {

/// One of the queries that are compiled into the tool, run once: bind what it reads, compile it, reserve the names of
/// what it reads, evaluate it. What the engine has to say it prints on standard error.
class Query {
public:
    /// An XQuery, or the stylesheet.
    explicit Query(QXmlQuery::QueryLanguage language = QXmlQuery::XQuery10);
    Query(const Query &) = delete;
    Query &operator=(const Query &) = delete;

    /// What a node model must be built on to be walked by this query.
    const QXmlNamePool &namePool() const { return pool; }

    void bind(const QString &variable, const QXmlItem &item);

    /// Binds a document, which is loaded during the evaluation.
    void bind(const QString &variable, const QByteArray &document);

    /// Makes @p document the input of the stylesheet. False when it cannot be loaded.
    [[nodiscard]] bool setInput(const QByteArray &document);

    /// Compiles the resource `queries/NAME`. False when it is damaged.
    [[nodiscard]] bool compile(const QString &name);

    /// Makes @p names in the pool of the compiled query, so that its run finds them there. Throws Error when they are
    /// too many.
    void reserve(const Names &names) const { reserveNames(pool, names); }

    /// Appends the result as XML to @p document. False when the evaluation fails.
    [[nodiscard]] bool appendTo(QByteArray &document) const;

    /// The result as texts. False when the evaluation fails.
    [[nodiscard]] bool appendTo(QStringList &texts) const;

private:
    QBuffer &opened(const QByteArray &document);

    QXmlNamePool pool;
    std::list<QBuffer> inputs; // which the query reads, and so must outlive it
    QXmlQuery query;
};

} // namespace quendar
