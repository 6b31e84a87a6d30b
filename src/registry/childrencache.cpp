// SPDX-License-Identifier: MIT
#include "registry/childrencache.h"

#include "report/error.h"

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
