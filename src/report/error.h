// SPDX-License-Identifier: MIT
/// The failures that end a command.
#pragma once

#include <QtCore/QString>

namespace quendar {

/// Why a command cannot go on: a finished sentence for the user, without a line feed. Thrown by value, caught by
/// reference at the entry point and where an import rolls back.
class Error {
public:
    explicit Error(const QString &message);
    virtual ~Error();
    Error(const Error &) = default;
    Error &operator=(const Error &) = default;

    virtual QString message() const;

private:
    QString text;
};

/// A registry operation on @p path failed with @p status.
class TessaroError : public Error {
public:
    TessaroError(const QString &path, int status);
};

/// @p error with the line of a document at which it was found.
Error atLine(const Error &error, qint64 line);

/// Throws @p otherwise, unless something has @p succeeded.
void require(bool succeeded, const Error &otherwise);

} // namespace quendar
