// SPDX-License-Identifier: MIT
/// Registries made up at random.
#pragma once

#include "sweeps/sweep.h"

#include <QtCore/QJsonObject>
#include <QtCore/QVector>

/// A name that an element may bear.
QString madeUpName(Sweep &sweep);

/// Any text that comes back: of what XML allows, without carriage returns and without white space at the ends.
QString madeUpText(Sweep &sweep);

/// A registry with what a document can carry and what it drops.
class MadeUpRegistry {
public:
    enum Contents {
        ComingBack, ///< what a document carries comes back with it
        Anything    ///< also what is lost, altered or an error on the way
    };

    MadeUpRegistry(Sweep &source, Contents which);

    QByteArray json() const { return json(view); }

    /// With the same keys but empty, and without printers and some of the sessions, which the templates bring back.
    QByteArray emptiedJson();

    /// The document that comes back: ids are lower case.
    QByteArray comingBack(QByteArray document) const;

    /// Whether new entries of some section come without any setting.
    bool lacksDefaults() const { return isWithoutDefaults; }

private:
    QByteArray json(const QJsonObject &settings) const;
    bool sometimes(int percent) { return contents == Anything && sweep.chance(percent); }
    QString value();
    QJsonObject directory(int depth);
    QJsonObject keysNamed(const QStringList &names);
    QString id();
    void addEntries(const QString &section, const QString &kind);
    void addOddities();

    Sweep &sweep;
    const Contents contents;
    QJsonObject view;
    QJsonObject templates;
    QVector<QByteArray> upperCaseIds;
    bool isWithoutDefaults = false;
};
