#include "sweeps/faultyruns.h"

#include <QtCore/QFile>

#include <csignal>

namespace {
const QString registry = QStringLiteral("registry.db");
const QString root = QStringLiteral("root");
} // namespace

FaultyRuns::FaultyRuns(const QStringList &toolArguments)
    : arguments(QStringList(QStringLiteral("-settings")) + toolArguments) {
    device.environment.insert("TESSARO_APPLY_LINGER", "5");
    pristine = device.read(registry);
    pristineSettings = device.dump(root);
}

void FaultyRuns::reset() const {
    device.write(registry, pristine);
}

Outcome FaultyRuns::run(int call, int status) const {
    return start({{"FAULT_AT", QByteArray::number(call)}, {"FAULT_STATUS", QByteArray::number(status)}});
}

Outcome FaultyRuns::start(const Environment &fault) const {
    reset();
    Environment environment = device.environment;
    for (auto variable = fault.cbegin(); variable != fault.cend(); ++variable)
        environment.insert(variable.key(), *variable);
    environment.insert("LD_PRELOAD", FAULTY_CLIENT);
    environment.insert("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":verify_asan_link_order=0");
    environment.insert("FAULT_LOG", QFile::encodeName(device.path(QStringLiteral("calls"))));
    QFile::remove(device.path(QStringLiteral("calls")));
    return ::run(QStringLiteral(TOOL_PROGRAM), arguments, environment);
}

QStringList FaultyRuns::calls() const {
    return QString::fromUtf8(device.read(QStringLiteral("calls"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QByteArray FaultyRuns::committedBefore(int call) const {
    if (start({{"FAULT_AT", QByteArray::number(call)}}).status != -SIGKILL)
        qFatal("the run ended before its call number %d", call);
    return settings();
}

QByteArray FaultyRuns::settings() const {
    return device.read(registry) == pristine ? pristineSettings : device.dump(root);
}
