// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "sweeps/madeupregistry.h"

#include <QtTest/QtTest>

/// Settings made up at random come back from their document.
class RoundTripSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anExportImportedIsExportedAgain() {
        const Device device;
        const QString file = device.path(QStringLiteral("home/f"));
        Sweep sweep;
        qint64 bytes = 0;
        const int cases = Sweep::cases(10, 200);
        for (int i = 0; i < cases; ++i) {
            MadeUpRegistry registry(sweep, MadeUpRegistry::ComingBack);
            device.load(registry.json());
            QCOMPARE(device.run("quendarsettings -settings f -get all").err, QByteArray());
            const QByteArray document = contentsOf(file);
            device.load(registry.emptiedJson());
            QCOMPARE(device.run("quendarsettings -settings f -set all").err, QByteArray());
            QCOMPARE(device.run("quendarsettings -settings f -get all").err, QByteArray());
            QCOMPARE(contentsOf(file), registry.comingBack(document));
            QCOMPARE(device.leftovers(), QStringList());
            bytes += document.size();
        }
        qInfo("%d registries, %lld bytes of documents", cases, static_cast<long long>(bytes));
    }
};

QTEST_GUILESS_MAIN(RoundTripSweep)
#include "roundtripsweep.moc"
