// SPDX-License-Identifier: MIT
/// Registries and plans as lines that can be compared.
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

QJsonObject parsed(QByteArray json);
QStringList texts(const QJsonValue &array);
QString word(const QJsonObject &object, const char *name);

/// By path, which begins with a slash: a key's text, or an empty object for a directory.
using Nodes = QMap<QString, QJsonValue>;

Nodes nodesOf(const QByteArray &dump);
QStringList linesOf(const Nodes &nodes);

/// Compares what was said of an import with what has come of it, and collects where they differ. An id that the import
/// has made up is another each time: one that stands neither in the registry nor in the document.
class Comparison {
public:
    explicit Comparison(const QByteArray &knownTexts) : known(QString::fromUtf8(knownTexts).toLower()) {}

    void demand(bool holds, const QString &otherwise);
    void compareOrdered(const char *what, const QStringList &said, const QStringList &found);

    /// In any order.
    void compare(const char *what, QStringList said, QStringList found);

    bool isMadeUp(const QString &id) const;

    QStringList wrong;

private:
    QStringList comparable(QStringList lines) const;

    const QRegularExpression uuid{QStringLiteral("[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}")};
    const QString known;
};
