// SPDX-License-Identifier: MIT
/// Listings of the registry, each read once.
#pragma once

#include <tessaroclient.h>

#include <QtCore/QStringList>
#include <QtCore/QStringView>

namespace quendar {

/// The listing of a path, in the order in which the tool shows children everywhere.
using Children = QMap<QString, _RegNodeType>;

/// Listings by path. None is changed or removed while its owner lives, so a reference to one stays good.
using ChildrenCache = QMap<QString, Children>;

/// The listing of @p path, from @p cache or else read through @p client and kept there. The listing of a key is its
/// text, which may look like a path: `isEntryOf` tells. Throws TessaroError when the registry fails, and then
/// keeps nothing.
const Children &readChildren(TessaroClient &client, ChildrenCache &cache, const QString &path);

/// Whether @p listed is the path of an entry of @p directory, rather than the text of a key.
bool isEntryOf(QStringView directory, const QString &listed);

/// The paths of those listed for @p directory that are entries of it.
QStringList entriesOf(const QString &directory, const Children &listing);

} // namespace quendar
