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
        const QString document = QStringLiteral(EXAMPLES "/new-configuration.xml");
        const QString text = example.write(QStringLiteral("text"), "no XML");
        const QString nowhere = QStringLiteral("/dev/null");
        const QString get = QStringLiteral("-get");
        const QString set = QStringLiteral("-set");

        const int cases = Sweep::cases(200, 20000);
        for (int i = 0; i < cases; i += 8) {
            std::vector<std::unique_ptr<Program>> runs;
            for (int pair = 0; pair < 2; ++pair) {
                runs.emplace_back(new Program(missing.startTool(nowhere, get)));
                runs.emplace_back(new Program(missing.startTool(document, set)));
                runs.emplace_back(new Program(unfit.startTool(nowhere, get)));
                runs.emplace_back(new Program(example.startTool(text, set)));
            }
            for (const auto &run : runs)
                QCOMPARE(run->wait().status, 1);
        }
        qInfo("%d runs ended with status 1", cases);
    }
};

QTEST_GUILESS_MAIN(FailureSweep)
#include "failuresweep.moc"
