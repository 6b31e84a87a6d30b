#include "support/device.h"

#include <QtTest/QtTest>

/// The built tool, with a registry client library of another make put in the place of the one it was built with.
class PortingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        device.environment.insert("LD_LIBRARY_PATH", OTHER_LIBRARIES);
        device.environment.insert("OTHER_REGISTRY", QFile::encodeName(device.path(QStringLiteral("texts"))));
        device.write(QStringLiteral("texts"), "root/lumo-config-view/audio/mute=false\n"
                                              "root/lumo-config-view/audio/volume=70\n");
    }

    void exportShowsItsSettings() {
        const Outcome outcome = device.exportTo(device.path(QStringLiteral("f.xml")));
        QCOMPARE(outcome.out + outcome.err, QByteArray());
        QCOMPARE(device.read(QStringLiteral("f.xml")),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<lumo_config version=\"1.1\" "
                            "creator_version=\"1.0\" creator=\"quendartc-quendarsettings\">\n    <audio>\n"
                            "        <mute>false</mute>\n        <volume>70</volume>\n    </audio>\n</lumo_config>\n"));
    }

    void importSetsAndAppliesOne() {
        const QString file = device.write(QStringLiteral("f.xml"), "<lumo_config><audio><volume>40</volume>"
                                                                   "<balance>0</balance></audio></lumo_config>");
        const Outcome outcome = device.importFrom(file);
        QCOMPARE(outcome.err,
                 QByteArray("Impossible to set: \"root/lumo-config-view/audio/balance\" , with: \"0\" \n"));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(device.read(QStringLiteral("texts")), QByteArray("applied=root/lumo-config-view/audio\n"
                                                                  "root/lumo-config-view/audio/mute=false\n"
                                                                  "root/lumo-config-view/audio/volume=40\n"));
    }

private:
    Device device;
};

QTEST_GUILESS_MAIN(PortingTest)
#include "portingtest.moc"
