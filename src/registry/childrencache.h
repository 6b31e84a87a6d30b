// SPDX-License-Identifier: MIT
#pragma once

#include <tessaroclient.h>

/// The listing of a path, in the order in which the tool shows children everywhere.
using Children = QMap<QString, _RegNodeType>;

/// Listings by path. None is changed or removed while its owner lives, so a reference to one stays good.
using ChildrenCache = QMap<QString, Children>;

/// The listing of @p path, from @p cache or else read through @p client and kept there. Throws TessaroError when the
/// registry fails, and then keeps nothing.
const Children &readChildren(TessaroClient &client, ChildrenCache &cache, const QString &path);
