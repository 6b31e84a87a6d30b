#include "engine/names.h"

#include "commands/error.h"
#include "engine/limits.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

Names united(const Names &first, const Names &second) {
    return {first.local | second.local, first.prefixes | second.prefixes, first.namespaceUris | second.namespaceUris};
}

std::optional<QXmlName> makeName(QXmlNamePool pool, const QString &local, const QString &namespaceUri,
                                 const QString &prefix) {
    const QXmlName name(pool, local, namespaceUri, prefix);
    if (name.localName(pool) != local || name.namespaceUri(pool) != namespaceUri || name.prefix(pool) != prefix)
        return {};
    return name;
}

void reserveNames(const QXmlNamePool &pool, const Names &names) {
    const auto isRefused = [&pool](const QString &local, const QString &uri, const QString &prefix) {
        return !makeName(pool, local, uri, prefix);
    };
    const auto anyRefused = [](const QSet<QString> &set, const auto &refused) {
        return std::any_of(set.cbegin(), set.cend(), refused);
    };
    if (names.local.size() > maximumNames ||
        anyRefused(names.local, [&](const QString &name) { return isRefused(name, {}, {}); }) ||
        anyRefused(names.prefixes, [&](const QString &prefix) { return isRefused({}, {}, prefix); }) ||
        anyRefused(names.namespaceUris, [&](const QString &uri) { return isRefused({}, uri, {}); }))
        throw Error(tooManyNames());
}

Names namesOfSettings(const QByteArray &document) {
    const std::string_view text(document.constData(), static_cast<std::size_t>(document.size()));
    std::unordered_set<std::string_view> found;
    for (auto at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
        const std::string_view rest = text.substr(at + 1);
        if (!rest.empty() && rest.front() != '/' && rest.front() != '?' && rest.front() != '!')
            found.insert(rest.substr(0, rest.find_first_of(" />\n")));
    }

    Names names;
    for (const std::string_view name : found)
        names.local.insert(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
    return names;
}
