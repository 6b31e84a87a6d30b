// SPDX-License-Identifier: MIT
#include "support/device.h"
#include "sweeps/sweep.h"

#include <QtTest/QtTest>

#include <memory>
#include <vector>

/// Exports and imports that fail, several at once. The XML engine has threads of its own, which may still run when the
/// tool ends.
class FailureSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFailureEndsWithStatusOne() {
        const Device example;
        const Device unfit;
        unfit.load(R"({"root": {"lumo-config-view": {"no XML name": ""}}})");
        const Device missing;
        QVERIFY(QFile::remove(missing.path(QStringLiteral("registry.db"))));
        const QByteArray get = "exec quendarsettings -settings /dev/null -get all";
        const QByteArray set = "exec quendarsettings -settings '" EXAMPLES "/new-configuration.xml' -set all";
        const QByteArray setText = "exec quendarsettings -settings f -set all";
        example.write(QStringLiteral("home/f"), "no XML");

        const int cases = Sweep::cases(200, 20000);
        for (int i = 0; i < cases; i += 8) {
            std::vector<std::unique_ptr<Program>> runs;
            for (int pair = 0; pair < 2; ++pair) {
                runs.emplace_back(new Program(missing.start(get)));
                runs.emplace_back(new Program(missing.start(set)));
                runs.emplace_back(new Program(unfit.start(get)));
                runs.emplace_back(new Program(example.start(setText)));
            }
            for (const auto &run : runs)
                QCOMPARE(run->wait().status, 1);
        }
        qInfo("%d runs ended with status 1", cases);
    }
};

QTEST_GUILESS_MAIN(FailureSweep)
#include "failuresweep.moc"
