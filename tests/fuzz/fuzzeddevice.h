// SPDX-License-Identifier: MIT
/// What the fuzzers import into.
#pragma once

#include "support/scriptedregistry.h"

#include <cstdlib>

/// A registry for the imports of a fuzzer, as new for each of them. Silences Qt's messages.
class FuzzedDevice {
public:
    FuzzedDevice() {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        const QString view = QStringLiteral("root/lumo-config-view/");
        for (const char *const line :
             {"audio/mute = false", "audio/volume = 70", "cda/enable = true", "display/resolution = 1920x1080", "list/",
              "network_printer/printers/{11111111-1111-4111-8111-111111111111}/name = Lobby",
              "network_printer/printers/{11111111-1111-4111-8111-111111111111}/port = 9100", "rdp/sessions/",
              "ssh/compression = false", "ssh/sessions/{22222222-2222-4222-8222-222222222222}/autostart = false",
              "ssh/sessions/{22222222-2222-4222-8222-222222222222}/name = Old", "time_zone/city = Paris"})
            registry.add({view + QLatin1String(line)});
        keys = registry.keys;
        directories = registry.directories;
    }

    void reset() {
        registry.keys = keys;
        registry.directories = directories;
        registry.calls.clear();
    }

    /// Ends the process, as a find, where something was changed outside the settings.
    void requireOnlySettingsChanged() const {
        for (const QString &call : registry.writes())
            if (!call.contains(QLatin1String(" root/lumo-config-view")) && call != QLatin1String("rollback "))
                std::abort();
    }

private:
    ScriptedRegistry registry;
    QHash<QString, QString> keys;
    QHash<QString, QMap<QString, _RegNodeType>> directories;
};
