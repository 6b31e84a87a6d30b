// SPDX-License-Identifier: MIT
#pragma once

#include "engine/names.h"

#include <QtCore/QByteArray>

#include <optional>

/// The names of elements and attributes in a document of the plain form in which an export writes it: UTF-8, tags with
/// attributes in double quotes, nothing else that begins with "<", no namespaces. Nothing for a document of another
/// form, nor for one beyond a limit, which only a reader can tell the line of. That the tags match is not looked at.
std::optional<Names> namesOfPlainDocument(const QByteArray &document);
