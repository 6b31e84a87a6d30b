// SPDX-License-Identifier: MIT
/// Replacing the registry.
#pragma once

#include <QtCore/QJsonObject>

#include <string>

namespace tessaro {

/// Makes @p tree the whole content of the registry at @p file, all or nothing and under whoever uses it. A registry
/// that is not there appears complete, readable by its owner only, and so does its folder. Throws what failed.
void replaceRegistry(const std::string &file, const QJsonObject &tree);

} // namespace tessaro
