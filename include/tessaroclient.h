// SPDX-License-Identifier: MIT
/// The platform's registry client, the one interface through which the system registry is reached.
#pragma once

// The registry is a tree. A path names one node: components joined by "/", none of them empty, no escaping. A node is
// a directory, which holds further nodes, or a key, which holds one text: any Unicode, or nothing.
//
// A call returns a status. 0 is success; any other is a failure that has changed nothing, and its number is the
// implementation's own. A registry that is missing, locked for too long or damaged is a failure, never an exception
// and never an empty tree.
//
// What a client changes is pending: its own calls see it at once, nobody else does, and what is still pending when the
// client is destroyed is dropped. `commit` makes it durable. Every call sees all that other clients, in this process or
// another, have committed before it, but where it meets the client's own pending changes: these are seen in its place,
// and replace it when they are committed. No call leaves anything locked.
//
// Whoever implements this header keeps the order of the virtual functions and the layout of the two classes, a vtable
// and one pointer, and defines `TessaroPrivate` as it likes. `Tessaro` is defined in libtessaro.so.0, `TessaroClient`
// in libtessaroclient.so.0.

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

/// Reads single values. It owns its connection to the registry, which may be opened as late as the first call: to make
/// a client succeeds even where there is no registry.
class Q_DECL_EXPORT Tessaro {
public:
    Tessaro();
    virtual ~Tessaro();
    Tessaro(const Tessaro &) = delete;
    Tessaro &operator=(const Tessaro &) = delete;

    /// Stores the text of the key at @p path in @p value; a failure leaves @p value as it was. The tool passes
    /// `RegParamValue` and an empty @p last, here and everywhere.
    int get(const QString &path, QString &value, const _RegEntryParam &param, const QString &last);

protected:
    std::unique_ptr<TessaroPrivate> d;
};

/// Lists, writes and applies. A client has one owner and one thread; several of them, in one process or many, may work
/// on one registry at a time.
class Q_DECL_EXPORT TessaroClient : public Tessaro {
public:
    TessaroClient();
    ~TessaroClient() override;

    using Tessaro::get;

    /// Fills @p children, which the caller owns and passes empty. For a directory: one entry for each child, from its
    /// full path to its kind. For a key: the one entry from the key's text to `RegNodeValue`. A path at which nothing
    /// stands leaves it empty and is no failure: the status is 0 or 1.
    int get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam &param,
            const QString &last);

    /// Makes @p value the text of the key at @p path; pending. A key that is not there is made where its directory is.
    /// Fails on a directory, and where the directory is missing.
    virtual int set(const QString &path, const QString &value, const _RegEntryParam &param);

    /// Stores what is pending at @p path and below it, with the directories above that are missing: all of it, so that
    /// it survives a power cut, or none. What is pending elsewhere, and after a failure all of it, is still pending.
    /// Succeeds where nothing is pending.
    virtual int commit(const QString &path);

    /// Has the section at the path @p section applied. @p trigger is the path of a key whose committed text is
    /// @p section, and the key of a system semaphore that exists. Returns at once. 0: the apply service will commit its
    /// result as the key's text, "0" for success, and then release the semaphore once, whatever comes of the apply.
    /// The client's owner removes both. Anything else: none of this will happen.
    virtual int requestApply(const QString &section, const QString &trigger);

    /// Makes the node at @p path, and the directories above it that are missing; pending. The new node is a directory,
    /// or a key if the first thing that happens to it is a `set`. A new directory named by a UUID comes with the keys
    /// and default texts that belong to its place. Fails where something stands already, and below a key.
    virtual int create(const QString &path, const _RegEntryType &type);

    /// Removes the node at @p path and all below it; pending. Fails where nothing stands.
    virtual int del(const QString &path);

    /// 0 when something stands at @p path.
    int contains(const QString &path);

    /// Drops what is pending at @p path and below it; all that is pending when @p path is empty.
    int rollback(const QString &path);
};
