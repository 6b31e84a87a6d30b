// SPDX-License-Identifier: MIT
/// Paths: components joined by "/", none of them empty. The empty path is the top, which holds `root`.
#pragma once

#include <QtCore/QString>

#include <utility>

namespace tessaro {

/// Whether @p text is the path of a node; the top is none.
bool isPath(const QString &text);

/// The directory that holds @p path; empty for a node at the top.
QString parentOf(const QString &path);

/// Whether @p path has the parent @p directory, which is not the top.
bool isIn(const QString &path, const QString &directory);

/// Whether the two have the same parent.
bool areInOneDirectory(const QString &path, const QString &other);

/// The last component.
QString nameOf(const QString &path);

/// The path of @p name in @p directory, which may be the top.
QString childOf(const QString &directory, const QString &name);

/// First and last of what lies below @p path in an ordered container of paths, @p path itself excluded.
template <typename Paths>
auto below(Paths &paths, const QString &path) {
    // "0" follows "/"
    return std::make_pair(paths.lower_bound(path + QLatin1Char('/')), paths.lower_bound(path + QLatin1Char('0')));
}

/// Erases @p path and what lies below it from an ordered container of paths.
template <typename Paths>
void eraseUnder(Paths &paths, const QString &path) {
    const auto [first, last] = below(paths, path);
    paths.erase(first, last);
    paths.erase(path);
}

} // namespace tessaro
