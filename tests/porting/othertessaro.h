// SPDX-License-Identifier: MIT
/// What the two libraries of another make share.
#pragma once

#include <tessaroclient.h>

#include <QtCore/QFile>
#include <QtCore/QVector>

#include <optional>

enum OtherStatus { Done = 0, Absent = 11, Misplaced = 12, Refused = 13, Unreadable = 14 };

/// By path: a key's text, or nothing for a directory.
using Nodes = QMap<QString, std::optional<QString>>;

/// What is put at a path, or else the removal of all that stands there.
struct Change {
    QString path;
    bool isRemoval;
    std::optional<QString> text;
};

/// A registry in one JSON file, of the form that `tessaro dump` prints, which OTHER_REGISTRY names. A commit replaces
/// the file. What is pending is a log, played over the tree again when the file is another. OTHER_FAULT names a rule
/// that is broken.
class TessaroPrivate {
public:
    /// Reads the file unless it is still the one that was read; false when it cannot be read.
    bool refresh();

    /// Makes these the committed nodes.
    bool save(const Nodes &nodes) const;

    void add(const Change &change);

    /// Gives a new directory what its template holds.
    void fill(const QString &directory);

    /// Takes what is pending at the path and below it from the log; it is still seen.
    void forget(const QString &path);

    void rollback(const QString &path);

    bool isKey(const QString &path) const { return seen.value(path).has_value(); }
    bool has(const char *brokenRule) const { return fault == brokenRule; }

    QVector<Change> log;
    Nodes committed;
    Nodes seen; // the committed nodes as the log changes them

private:
    QFile file; // stays open, so that no other gets its number
    const QByteArray fault = qgetenv("OTHER_FAULT");
};

QString fileName();
QString parentOf(const QString &path);
bool covers(const QString &path, const QString &other);
QMap<QString, _RegNodeType> childrenOf(const QString &path, const Nodes &nodes);
void apply(const Change &change, Nodes &nodes);
