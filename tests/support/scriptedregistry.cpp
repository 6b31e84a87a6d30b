// SPDX-License-Identifier: MIT
#include "support/scriptedregistry.h"

#include <QtCore/QRegularExpression>

namespace {

ScriptedRegistry *current = nullptr;

/// Records a call and returns the status set for it, or @p usual.
int record(const char *operation, const QString &path, int usual, const QString &value = {}) {
    const QString call = QLatin1String(operation) + QLatin1Char(' ') + path;
    current->calls.append(value.isNull() ? call : call + QStringLiteral(" = ") + value);
    return current->statuses.value(call, usual);
}

/// Null for a path without "/".
QString parentOf(const QString &path) {
    const int end = path.lastIndexOf(QLatin1Char('/'));
    return end < 0 ? QString() : path.left(end);
}

bool exists(const QString &path) {
    return current->keys.contains(path) || current->directories.contains(path);
}

} // namespace

class TessaroPrivate {};

ScriptedRegistry::ScriptedRegistry() {
    current = this;
}

ScriptedRegistry::~ScriptedRegistry() {
    if (current == this)
        current = nullptr;
}

void ScriptedRegistry::addKey(const QString &path, const QString &value) {
    const QString parent = parentOf(path);
    addDirectory(parent);
    directories[parent].insert(path, RegNodeKey);
    keys.insert(path, value);
}

void ScriptedRegistry::addDirectory(const QString &path) {
    if (path.isNull() || directories.contains(path))
        return;
    directories.insert(path, {});
    const QString parent = parentOf(path);
    if (parent.isNull())
        return;
    addDirectory(parent);
    directories[parent].insert(path, RegNodeDir);
}

void ScriptedRegistry::add(const QStringList &lines) {
    for (const QString &line : lines) {
        const int separator = line.indexOf(QLatin1String(" = "));
        if (separator < 0)
            addDirectory(line.chopped(1));
        else
            addKey(line.left(separator), line.mid(separator + 3));
    }
}

void ScriptedRegistry::remove(const QString &path) {
    const QMap<QString, _RegNodeType> children = directories.take(path);
    for (auto child = children.cbegin(); child != children.cend(); ++child)
        remove(child.key());
    keys.remove(path);
    const auto parent = directories.find(parentOf(path));
    if (parent != directories.end())
        parent->remove(path);
}

QStringList ScriptedRegistry::writes() const {
    return calls.filter(QRegularExpression(QStringLiteral("^(?!get |contains |value )")));
}

Tessaro::Tessaro() = default;

Tessaro::~Tessaro() = default;

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam & /*param*/, const QString & /*last*/) {
    const int status = record("value", path, current->keys.contains(path) ? 0 : 1);
    if (status == 0)
        value = current->keys.value(path);
    return status;
}

TessaroClient::TessaroClient() = default;

TessaroClient::~TessaroClient() = default;

int TessaroClient::get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam & /*param*/,
                       const QString & /*last*/) {
    const int status = record("get", path, 0);
    if (current->keys.contains(path))
        children.insert(current->keys.value(path), RegNodeValue);
    else
        children = current->directories.value(path);
    return status;
}

int TessaroClient::set(const QString &path, const QString &value, const _RegEntryParam & /*param*/) {
    const bool isEmpty = current->directories.value(path).isEmpty(); // then it becomes a key
    const int status = record("set", path, isEmpty ? 0 : 2, value.isNull() ? QStringLiteral("") : value);
    if (status == 0) {
        current->directories.remove(path);
        current->addKey(path, value);
    }
    return status;
}

int TessaroClient::commit(const QString &path) {
    return record("commit", path, 0);
}

int TessaroClient::requestApply(const QString &section, const QString & /*trigger*/) {
    return record("requestApply", section, 7);
}

int TessaroClient::create(const QString &path, const _RegEntryType & /*type*/) {
    const int status = record("create", path, exists(path) ? 2 : 0);
    if (status == 0)
        current->addDirectory(path);
    return status;
}

int TessaroClient::del(const QString &path) {
    const int status = record("del", path, exists(path) ? 0 : 1);
    if (status == 0)
        current->remove(path);
    return status;
}

int TessaroClient::contains(const QString &path) {
    return record("contains", path, exists(path) ? 0 : 1);
}

int TessaroClient::rollback(const QString &path) {
    return record("rollback", path, 0);
}
