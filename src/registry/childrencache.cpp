// SPDX-License-Identifier: MIT
#include "registry/childrencache.h"

#include "report/error.h"

namespace quendar {

const Children &readChildren(TessaroClient &client, ChildrenCache &cache, const QString &path) {
    // most often it is asked for in the order of the paths
    const bool isPastAll = cache.isEmpty() || cache.lastKey() < path;
    const auto place = isPastAll ? cache.end() : cache.lowerBound(path);
    if (place != cache.end() && place.key() == path)
        return *place;

    Children children;
    const int status = client.get(path, children, RegParamValue, QStringLiteral(""));
    if (status != 0 && status != 1)
        throw TessaroError(path, status);
    return *cache.insert(place, path, children);
}

bool isEntryOf(QStringView directory, const QString &listed) {
    return listed.size() > directory.size() + 1 && listed.at(static_cast<int>(directory.size())) == QLatin1Char('/') &&
           QStringView(listed).startsWith(directory);
}

QStringList entriesOf(const QString &directory, const Children &listing) {
    QStringList entries;
    for (auto listed = listing.cbegin(); listed != listing.cend(); ++listed)
        if (isEntryOf(directory, listed.key()))
            entries.append(listed.key());
    return entries;
}

} // namespace quendar
