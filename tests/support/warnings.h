// SPDX-License-Identifier: MIT
/// The warnings that a test expects.
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

/// Collects the warnings that pass Qt's message handler while it lives.
class Warnings {
public:
    Warnings() : before(qInstallMessageHandler(&collect)) { collected().clear(); }
    ~Warnings() { qInstallMessageHandler(before); }
    Warnings(const Warnings &) = delete;
    Warnings &operator=(const Warnings &) = delete;

    static QStringList &collected() {
        static QStringList lines;
        return lines;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message) {
        if (type == QtWarningMsg)
            collected().append(message);
    }

    const QtMessageHandler before;
};
