// SPDX-License-Identifier: MIT
/// A library that is loaded ahead of the registry client's. Appends each call, "operation path", to the file FAULT_LOG.
/// Instead of call number FAULT_AT it returns the status FAULT_STATUS, or ends the process where there is none.
#include <tessaroclient.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

class Plan {
public:
    Plan() { ::unsetenv("LD_PRELOAD"); } // so that the apply service does not load it

    bool isDue(const char *operation, const QString &path) {
        const QByteArray line = operation + (' ' + path.toUtf8()) + '\n';
        if (::write(log, line.constData(), static_cast<std::size_t>(line.size())) != line.size())
            std::abort();
        if (++calls != faultyCall)
            return false;
        if (!faultStatus)
            ::kill(::getpid(), SIGKILL);
        return true;
    }

    int status() const { return std::atoi(faultStatus); }

private:
    const int log = ::open(std::getenv("FAULT_LOG"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int faultyCall = qEnvironmentVariableIntValue("FAULT_AT");
    const char *const faultStatus = std::getenv("FAULT_STATUS");
    int calls = 0;
};

Plan plan;

/// Answers a call by the fault that is planned for it, or else by the library.
template <typename... Arguments>
int answer(const char *operation, const char *symbol, Tessaro *client, const QString &path, Arguments &...more) {
    if (plan.isDue(operation, path))
        return plan.status();
    using Function = int (*)(Tessaro *, const QString &, Arguments &...);
    const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, symbol));
    if (!next)
        qFatal("no %s in the libraries that follow", symbol);
    return next(client, path, more...);
}

} // namespace

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam &param, const QString &last) {
    return answer("value", "_ZN7Tessaro3getERK7QStringRS0_RK14_RegEntryParamS2_", this, path, value, param, last);
}

int TessaroClient::get(const QString &path, QMap<QString, _RegNodeType> &children, const _RegEntryParam &param,
                       const QString &last) {
    return answer("get", "_ZN13TessaroClient3getERK7QStringR4QMapIS0_12_RegNodeTypeERK14_RegEntryParamS2_", this, path,
                  children, param, last);
}

int TessaroClient::set(const QString &path, const QString &value, const _RegEntryParam &param) {
    return answer("set", "_ZN13TessaroClient3setERK7QStringS2_RK14_RegEntryParam", this, path, value, param);
}

int TessaroClient::commit(const QString &path) {
    return answer("commit", "_ZN13TessaroClient6commitERK7QString", this, path);
}

int TessaroClient::requestApply(const QString &section, const QString &trigger) {
    return answer("requestApply", "_ZN13TessaroClient12requestApplyERK7QStringS2_", this, section, trigger);
}

int TessaroClient::create(const QString &path, const _RegEntryType &type) {
    return answer("create", "_ZN13TessaroClient6createERK7QStringRK13_RegEntryType", this, path, type);
}

int TessaroClient::del(const QString &path) {
    return answer("del", "_ZN13TessaroClient3delERK7QString", this, path);
}

int TessaroClient::contains(const QString &path) {
    return answer("contains", "_ZN13TessaroClient8containsERK7QString", this, path);
}

int TessaroClient::rollback(const QString &path) {
    return answer("rollback", "_ZN13TessaroClient8rollbackERK7QString", this, path);
}
