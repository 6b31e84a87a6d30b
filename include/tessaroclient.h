// SPDX-License-Identifier: MIT
/// The platform's registry client, the one interface through which the system registry is reached.
///
/// The registry is a tree. A path names one node: components joined by "/", no escaping, none of them empty. A
/// node is a directory, which holds further nodes, or a key, which holds one text. Every operation returns a
/// status; 0 is success. What another process has committed is seen by the next call, but for one case: where
/// `contains`, `set` and `get` of children go through the nodes of one directory, in their order, all of them may see
/// these nodes as they were at the first of the calls, which may be the listing of the directory. A second look at a
/// node is a new one, but for a `set` right after it. What a client has written is pending, seen by that client alone,
/// until it commits it.
///
/// Whoever implements this header keeps the order of the virtual functions and the layout of the two classes: a
/// vtable and one pointer.
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>

#include <memory>

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the platform's own names
enum _RegNodeType { RegNodeDir = 0, RegNodeKey = 1, RegNodeValue = 2, RegNodeDefault = 3 };

/// Which attribute of an entry an operation reads or writes.
enum _RegEntryParam { RegParamValue = 0, RegParamType = 1, RegParamRegexp = 2 };

enum _RegEntryType {
    RegTypeString = 0,
    RegTypeRc4 = 1,
    RegTypeUuid = 2,
    RegTypeChar = 3,
    RegTypeIpv4 = 4,
    RegTypeNumber = 5,
    RegTypeFloat = 6,
    RegTypeDate = 7,
    RegTypeBool = 8
};
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

class TessaroPrivate;

/// Reads single values. Owns its connection to the registry, which may be opened as late as the first call; a
/// registry that is not there shows as a failing status, never as an exception.
class Tessaro {
public:
    Tessaro();
    virtual ~Tessaro();
    Tessaro(const Tessaro &) = delete;
    Tessaro &operator=(const Tessaro &) = delete;

    /// Stores the text of the key at @p path in @p value; a failure leaves @p value as it was.
    int get(const QString &path, QString &value, const _RegEntryParam &param, const QString &last);

protected:
    std::unique_ptr<TessaroPrivate> d;
};

/// Lists, writes and applies. Used by one owner and one thread; several clients, in one process or many, may work on
/// one registry at a time. What is still pending when a client is destroyed is dropped.
class TessaroClient : public Tessaro {
public:
    TessaroClient();
    ~TessaroClient() override;

    using Tessaro::get;

    /// Fills @p children, which the caller passes empty: of a directory with one entry per child, the child's full
    /// path and its kind; of a key with exactly one entry whose map key is the key's text. 0 and 1 are success, and
    /// a path that does not exist is an empty listing.
    int get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam &param,
            const QString &last);

    /// Writes the text of the key at @p path; pending. A key that is missing is made where its parent is a directory.
    virtual int set(const QString &path, const QString &value, const _RegEntryParam &param);

    /// Makes the pending changes at and below @p path durable, all of them or none; the others stay pending.
    virtual int commit(const QString &path);

    /// Starts the apply of @p section, which must be the committed text of the key @p trigger. 0: the apply service
    /// will store its result as that key's text ("0" for success) and then release, once, the system semaphore
    /// whose key is @p trigger. Anything else: it will do nothing.
    virtual int requestApply(const QString &section, const QString &trigger);

    /// Makes the node at @p path and its missing parents; pending. It becomes a key by a first `set` and is a directory
    /// otherwise. A directory named by a UUID is filled with the keys and default texts that belong to its place.
    /// Fails, and changes nothing, where something stands already.
    virtual int create(const QString &path, const _RegEntryType &type);

    /// Removes the node at @p path and all below it; pending.
    virtual int del(const QString &path);

    /// 0 when there is a node at @p path, anything else when there is none.
    int contains(const QString &path);

    /// Drops the pending changes at and below @p path; all of them when it is empty.
    int rollback(const QString &path);
};
