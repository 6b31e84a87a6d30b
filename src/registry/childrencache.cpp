#include "registry/childrencache.h"

#include "commands/error.h"

const Children &readChildren(TessaroClient &client, ChildrenCache &cache, const QString &path) {
    const auto known = cache.constFind(path);
    if (known != cache.constEnd())
        return *known;

    Children children;
    const int status = client.get(path, children, RegParamValue, QStringLiteral(""));
    if (status != 0 && status != 1)
        throw TessaroError(path, status);
    return *cache.insert(path, children);
}
