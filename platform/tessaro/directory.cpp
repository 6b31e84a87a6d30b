// SPDX-License-Identifier: MIT
#include "tessaro/directory.h"

#include <algorithm>

namespace {

bool precedes(const Entry &entry, const QString &path) {
    return entry.first < path;
}

} // namespace

Directory::Directory(std::vector<Entry> read) : entries(std::move(read)) {
    const auto byPath = [](const Entry &a, const Entry &b) { return a.first < b.first; };
    if (!std::is_sorted(entries.cbegin(), entries.cend(), byPath)) // UTF-8 and UTF-16 have orders of their own
        std::sort(entries.begin(), entries.end(), byPath);
}

const Node *Directory::find(const QString &path) {
    if (const Node *const node = findNext(path))
        return node;
    const auto place = std::lower_bound(entries.cbegin(), entries.cend(), path, precedes);
    if (place == entries.cend() || place->first != path)
        return nullptr;
    next = static_cast<std::size_t>(place - entries.cbegin()) + 1;
    return &place->second;
}

const Node *Directory::findNext(const QString &path) {
    return next < entries.size() && entries[next].first == path ? &entries[next++].second : nullptr;
}

const Node *Directory::findAgain(const QString &path) const {
    return next > 0 && next <= entries.size() && entries[next - 1].first == path ? &entries[next - 1].second : nullptr;
}

QStringList Directory::directories() const {
    QStringList paths;
    for (const auto &[path, node] : entries)
        if (!node.isKey())
            paths.append(path);
    return paths;
}

Listing Directory::list() {
    Listing kinds;
    for (const auto &[path, node] : entries)
        kinds.insert(kinds.cend(), path, node.kind);
    next = 0;
    return kinds;
}

void Directory::put(const QString &path, const Node &node) {
    const auto place = std::lower_bound(entries.begin(), entries.end(), path, precedes);
    if (place != entries.end() && place->first == path)
        place->second = node;
    else
        entries.emplace(place, path, node);
}

void Directory::erase(const QString &path) {
    const auto place = std::lower_bound(entries.cbegin(), entries.cend(), path, precedes);
    if (place != entries.cend() && place->first == path)
        entries.erase(place);
}
