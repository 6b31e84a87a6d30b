#include "support/device.h"

#include <QtTest/QtTest>

#include <csignal>
#include <memory>
#include <vector>

class KilledImportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
        const Device device(small);
        importUndisturbed(device);
        wanted = device.dump(QStringLiteral("root"));
    }

    void importRunAgainReachesTheUndisturbedState_data() {
        QTest::addColumn<QByteArray>("when");
        QTest::addColumn<QStringList>("mayStay");
        QTest::newRow("before") << QByteArray("before") << QStringList();
        // between the commit of an apply key and the request nobody else knows of the key
        QTest::newRow("after") << QByteArray("after") << QStringList{QStringLiteral("an apply key")};
    }

    void importRunAgainReachesTheUndisturbedState() {
        QFETCH(const QByteArray, when);
        QFETCH(const QStringList, mayStay);
        std::vector<std::unique_ptr<Device>> devices;
        while (auto device = killedAt(int(devices.size()) + 1, when))
            devices.push_back(std::move(device));
        // a session made and one deleted, a printer deleted, the view, and two for each of three sections
        QCOMPARE(devices.size(), std::size_t(10));

        for (const auto &device : devices) {
            QCOMPARE(device->tessaro({QStringLiteral("dump")}).status, 0);
            importUndisturbed(*device);
            QCOMPARE(device->dump(QStringLiteral("root")), wanted);
            QStringList left = device->leftovers();
            for (const QString &thing : mayStay)
                left.removeAll(thing);
            QCOMPARE(left.join(QLatin1Char(' ')), QString());
        }
    }

private:
    void importUndisturbed(const Device &device) const {
        const Outcome outcome = device.importFrom(document);
        QCOMPARE(outcome.err, QByteArray());
        QCOMPARE(outcome.status, 0);
    }

    /// The device after the kill; none when the import has fewer commits.
    std::unique_ptr<Device> killedAt(int commit, const QByteArray &when) const {
        auto device = std::make_unique<Device>(small);
        const Environment undisturbed = device->environment;
        device->environment.insert("TESSARO_APPLY_LINGER", "5");
        device->environment.insert("LD_PRELOAD", KILLING_CLIENT);
        device->environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0");
        device->environment.insert("KILL_AT", QByteArray::number(commit));
        device->environment.insert("KILL_WHEN", when);
        const bool isKilled = device->importFrom(document).status == -SIGKILL;
        device->environment = undisturbed;
        return isKilled ? std::move(device) : nullptr;
    }

    const QString small = QStringLiteral(DATA "/small.json");
    const QString document = QStringLiteral(DATA "/small-changed.xml");
    QByteArray wanted;
};

QTEST_GUILESS_MAIN(KilledImportTest)
#include "killedimporttest.moc"
