// SPDX-License-Identifier: MIT
#include "planning/changesetjson.h"

#include <QtCore/QJsonObject>

namespace quendar {

namespace {

std::optional<Node> nodeFrom(const QJsonValue &json) {
    if (json.isNull())
        return Node{};
    if (json.isObject() && json.toObject().isEmpty())
        return Node{Node::Directory, {}};
    if (json.isString())
        return Node{Node::Key, json.toString()};
    return std::nullopt;
}

} // namespace

QJsonValue toJson(const Node &node) {
    switch (node.kind) {
    case Node::Absent:
        break;
    case Node::Directory:
        return QJsonObject();
    case Node::Key:
        return node.text;
    }
    return QJsonValue::Null;
}

QJsonArray toJson(const ChangeSet &changes) {
    QJsonArray list;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change)
        list.append(QJsonArray{change.key(), toJson(change->before), toJson(change->after)});
    return list;
}

std::optional<ChangeSet> changeSetFrom(const QJsonArray &json) {
    ChangeSet changes;
    for (const auto &item : json) {
        const QJsonArray change = item.toArray();
        const std::optional<Node> before = nodeFrom(change.at(1));
        const std::optional<Node> after = nodeFrom(change.at(2));
        if (change.size() != 3 || !change.at(0).isString() || !before || !after || *before == *after)
            return std::nullopt;
        changes.record(change.at(0).toString(), *before, *after);
    }
    return changes;
}

} // namespace quendar
