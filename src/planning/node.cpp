// SPDX-License-Identifier: MIT
#include "planning/node.h"

#include "registry/childrencache.h"
#include "registry/viewkey.h"
#include "report/error.h"

namespace quendar {

namespace {

Children listed(TessaroClient &client, const QString &path) {
    ChildrenCache cache;
    return readChildren(client, cache, path);
}

/// The node at @p path, whose listing is @p listing. A key's one entry is its text, whatever that looks like.
Node nodeOf(TessaroClient &client, const QString &path, const Children &listing) {
    if (listing.isEmpty()) {
        QString text;
        if (client.contains(path) != 0)
            return {};
        const bool isKey = client.get(path, text, RegParamValue, QString()) == 0; // that lists no text
        return isKey ? Node{Node::Key, text} : Node{Node::Directory, {}};
    }
    const bool isKey = listing.size() == 1 && listing.first() == RegNodeValue;
    return isKey ? Node{Node::Key, listing.firstKey()} : Node{Node::Directory, {}};
}

} // namespace

Node readNode(TessaroClient &client, const QString &path) {
    return nodeOf(client, path, listed(client, path));
}

bool isStanding(TessaroClient &client, const QString &path) {
    return client.contains(path) == 0 || !readNode(client, path).isAbsent();
}

void writeNode(TessaroClient &client, const QString &path, const Node &node) {
    const auto check = [&path](int status) { require(status == 0, TessaroError(path, status)); };
    const Node now = readNode(client, path);
    if (now == node)
        return;
    if (!now.isAbsent() && now.kind != node.kind)
        check(client.del(path));
    const QString directory = ViewKey(path).parent();
    if (node.isKey() && now.isAbsent() && !isStanding(client, directory))
        check(client.create(directory, RegTypeString));
    if (node.isKey())
        check(client.set(path, node.text, RegParamValue));
    else if (node.isDirectory())
        check(client.create(path, RegTypeString));
}

void visitNodes(TessaroClient &client, const QString &path,
                const std::function<void(const QString &path, const Node &node)> &visit) {
    const Children listing = listed(client, path);
    const Node node = nodeOf(client, path, listing);
    if (node.isAbsent())
        return;
    visit(path, node);
    if (node.isDirectory())
        for (const QString &entry : entriesOf(path, listing))
            visitNodes(client, entry, visit);
}

} // namespace quendar
