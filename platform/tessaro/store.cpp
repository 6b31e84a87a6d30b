// SPDX-License-Identifier: MIT
#include "tessaro/store.h"

#include "tessaro/path.h"
#include "tessaro/utf8.h"

#include <QtCore/QScopeGuard>
#include <QtCore/QtEndian>

#include <chrono>
#include <cstring>
#include <sqlite3.h>

namespace tessaro {

namespace {

// far longer than any commit takes, so that a busy device does not fail an import
constexpr std::chrono::milliseconds lockLimit = std::chrono::seconds(30);

/// The part of the file's header that tells whether somebody has committed, at its place in SQLite's file format.
struct HeaderPart {
    static constexpr sqlite3_int64 offset = 18;
    static constexpr std::uint8_t versionOfLog = 2;

    std::uint8_t writeVersion;
    std::uint8_t between[5];
    std::uint8_t changeCounter[4]; ///< big-endian
};

SQLite::Database openDatabase(const std::string &file) {
    // a client serves one thread
    SQLite::Database database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, static_cast<int>(lockLimit.count()));
    database.exec("PRAGMA synchronous = FULL");
    return database;
}

/// SQLite's own handle: closing a second one on the same file would drop the locks of the first.
sqlite3_file *fileOf(const SQLite::Database &database) {
    sqlite3_file *file = nullptr;
    sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    return file;
}

QString pathOf(const QString &prefix, const SQLite::Column &name) {
    const char *const text = name.getText();
    const auto size = static_cast<std::size_t>(name.getBytes());
    if (size == 0 || std::memchr(text, '/', size))
        throw SQLite::Exception("a row is no node", SQLITE_CORRUPT);
    return appendUtf8(prefix, text, static_cast<int>(size));
}

Node nodeOf(const SQLite::Column &value) {
    const char *const text = value.getText(nullptr);
    return text ? keyNode(decodeUtf8(text, value.getBytes())) : directoryNode();
}

} // namespace

Store::Store(const std::string &path)
    : database(openDatabase(path)), file(fileOf(database)),
      lister(database, "SELECT name, value FROM node WHERE directory = ?1") {}

SQLite::Statement &Store::prepared(LazyStatement &statement, const char *sql) {
    return statement ? *statement : statement.emplace(database, sql);
}

void Store::format(const std::string &file) {
    openDatabase(file).exec("CREATE TABLE node (directory TEXT NOT NULL, name TEXT NOT NULL, value TEXT,"
                            " PRIMARY KEY (directory, name)) WITHOUT ROWID");
}

/// With a rollback journal, each commit that changes the file increments the header's counter, by which SQLite itself
/// finds out that its cache is outdated. One read of it is a tenth of the system calls that `PRAGMA data_version`
/// takes. With a write-ahead log the counter stands still, and only the pragma knows.
Store::Stamp Store::stamp() {
    HeaderPart header{};
    const int result = file->pMethods->xRead(file, &header, sizeof header, HeaderPart::offset);
    if (result != SQLITE_OK)
        throw SQLite::Exception(sqlite3_errstr(result), result);
    if (header.writeVersion != HeaderPart::versionOfLog)
        return {false, qFromBigEndian<std::uint32_t>(header.changeCounter)};
    SQLite::Statement &statement = prepared(versionReader, "PRAGMA data_version");
    const auto done = qScopeGuard([&statement] { statement.tryReset(); });
    statement.executeStep();
    return {true, statement.getColumn(0).getUInt()};
}

SQLite::Transaction Store::write() {
    int isMoved = 0;
    sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &isMoved);
    if (isMoved != 0)
        throw SQLite::Exception("the file has been removed or replaced", SQLITE_READONLY_DBMOVED);
    return SQLite::Transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
}

std::vector<Entry> Store::list(const QString &directory) {
    const auto done = qScopeGuard([this] { lister.tryReset(); });
    lister.bind(1, directory.toStdString());
    const QString prefix = childOf(directory, QString());
    std::vector<Entry> entries;
    while (lister.executeStep())
        entries.emplace_back(pathOf(prefix, lister.getColumn(0)), nodeOf(lister.getColumn(1)));
    return entries;
}

void Store::put(const QString &path, const Node &node) {
    SQLite::Statement &statement =
        prepared(putter, "INSERT INTO node VALUES (?1, ?2, ?3)"
                         " ON CONFLICT (directory, name) DO UPDATE SET value = excluded.value");
    const auto done = qScopeGuard([&statement] { statement.tryReset(); });
    statement.bind(1, parentOf(path).toStdString());
    statement.bind(2, nameOf(path).toStdString());
    if (node.isKey())
        statement.bind(3, node.value.toStdString());
    else
        statement.bind(3);
    statement.exec();
}

bool Store::remove(const QString &path) {
    SQLite::Statement &statement = prepared(remover, "DELETE FROM node WHERE (directory = ?1 AND name = ?2)"
                                                     " OR directory = ?3 OR (directory > ?4 AND directory < ?5)");
    const auto done = qScopeGuard([&statement] { statement.tryReset(); });
    const std::string text = path.toStdString();
    statement.bind(1, parentOf(path).toStdString());
    statement.bind(2, nameOf(path).toStdString());
    statement.bind(3, text);
    statement.bind(4, text + '/');
    statement.bind(5, text + '0');
    return statement.exec() > 0;
}

void Store::clear() {
    database.exec("DELETE FROM node");
}

} // namespace tessaro
