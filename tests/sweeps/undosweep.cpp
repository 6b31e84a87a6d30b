// SPDX-License-Identifier: MIT
#include "sweeps/comparison.h"
#include "sweeps/madeupdocument.h"
#include "sweeps/madeupregistry.h"
#include "sweeps/sweep.h"
#include "sweeps/trieddevice.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtTest/QtTest>

namespace {

const QByteArray tryIt = "quendar-change try f --confirm-within 1h";

QByteArray quoted(const QString &text) {
    return '\'' + text.toUtf8().replace('\'', "'\\''") + '\'';
}

QString parentOf(const QString &path) {
    return path.section(QLatin1Char('/'), 0, -2);
}

bool isBelow(const QString &path, const QString &directory) {
    return path.startsWith(directory + QLatin1Char('/'));
}

bool isBelowAny(const QString &path, const QStringList &directories) {
    return std::any_of(
        directories.cbegin(), directories.cend(),
        [&path](const QString &directory) { return isBelow(path, directory); });
}

/// What a plan says, but for what has an id that the import makes up: another each time.
struct Plan {
    explicit Plan(const Outcome &outcome) : status(outcome.status) {
        const QJsonObject plan = parsed(outcome.out);
        sections = texts(plan.value(QLatin1String("sections")));
        QStringList madeUp;
        for (const auto &entry : plan.value(QLatin1String("entries")).toArray())
            if (entry.toObject().value(QLatin1String("id_made_up")).toBool())
                madeUp.append(word(entry.toObject(), "path"));
        for (const auto &item : plan.value(QLatin1String("changes")).toArray()) {
            const QJsonObject change = item.toObject();
            const QString path = word(change, "path");
            const QJsonValue after = change.value(QLatin1String("after"));
            if (madeUp.contains(path) || isBelowAny(path, madeUp))
                continue;
            if (after.isNull())
                gone.append(path);
            else if (after.isString())
                changed.append(path);
            else if (change.value(QLatin1String("before")).isNull())
                made.append(path);
        }
    }

    int status;
    QStringList sections;
    QStringList changed; // keys
    QStringList made;    // directories
    QStringList gone;
};

} // namespace

/// Made-up changes of made-up devices are put back.
class UndoSweep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsSet("TEST_EMULATOR"))
            QSKIP("a library cannot be loaded into the emulated tool alone");
    }

    void whatIsTriedIsPutBack() {
        const int cases = Sweep::cases(6, 300);
        for (int i = 0; i < cases; ++i) {
            MadeUpRegistry registry(sweep, MadeUpRegistry::Anything);
            tried.load(registry.json());
            tried.device.run("quendarsettings -settings f -get all");
            const QByteArray exported = tried.device.read(document);
            tried.device.write(document, editedDocument(exported, sweep));
            before = tried.settings();
            nodesBefore = nodes();
            const Plan plan(tried.device.run("quendar-change plan f --json"));
            QStringList wrong = complaintsAfterTry(plan);
            wrong += plan.status == 2 ? complaintsAfterConfirmation() : QStringList();
            QVERIFY2(wrong.isEmpty(),
                     qUtf8Printable(QStringLiteral("case %1: ").arg(i) + wrong.join(QLatin1Char('\n'))));
        }
        qInfo() << cases << "changes, by how they ended:" << endings << "with" << conflicts << "conflicts";
    }

private:
    /// The registry without `tmp`.
    Nodes nodes() const {
        Nodes all = nodesOf(tried.device.dump());
        for (auto node = all.lowerBound(QStringLiteral("/tmp")); node != all.end();) // it comes last
            node = all.erase(node);
        return all;
    }

    /// A hook that writes into the registry, once, and may fail. What it has written is a line of the file `written`.
    void addHook(const Plan &plan, bool fails) {
        QStringList directories;
        QStringList keys;
        for (auto node = nodesBefore.cbegin(); node != nodesBefore.cend(); ++node)
            if (isBelow(node.key(), QStringLiteral("/root/lumo-config-view")) && !plan.gone.contains(node.key().mid(1)))
                (node->isString() ? keys : directories).append(node.key().mid(1));
        QStringList written;
        const auto write = [&](int percent, const QStringList &paths, const QString &name) {
            if (!paths.isEmpty() && sweep.chance(percent))
                written.append(paths.at(sweep.below(paths.size())) + name);
        };
        write(40, directories, QStringLiteral("/hooked"));
        write(40, keys, QString());
        write(40, plan.changed, QString());
        write(20, plan.made, QStringLiteral("/hooked"));
        QByteArray script = "[ -e ../hooked ] || ! grep -q '\"state\":\"applying\"' ../state/state.json || {\n";
        for (const QString &path : std::as_const(written))
            script += "tessaro set " + quoted(path) + " hooked && echo " + quoted(path) + " >>../written\n";
        script += "touch ../hooked; }\n";
        if (fails && !plan.sections.isEmpty())
            script += "[ \"${1##*/}\" != " + quoted(plan.sections.at(sweep.below(plan.sections.size()))) + " ]\n";
        else
            script += "true\n";
        tried.addHook(script);
        for (const char *const file : {"hooked", "written"})
            QFile::remove(tried.device.path(QLatin1String(file)));
    }

    QStringList complaintsAfterTry(const Plan &plan) {
        enum { Reverted, Forced, Over, CheckFails, HookFails };
        const int ending = sweep.below(5);
        addHook(plan, ending == HookFails);
        const Outcome outcome = tried.device.run(tryIt + (ending == CheckFails ? " --check false --check-for 1s" : ""));
        if (!tried.isClosed() && (ending == Reverted || ending == Forced))
            tried.device.run(QByteArray("quendar-change revert") + (ending == Forced ? " --force" : ""));
        QStringList wrong = tried.finish() ? QStringList() : QStringList(QStringLiteral("it stays open"));
        wrong += tried.complaints();

        // what is there now, and was not written by the hook, must be what was there before
        Nodes expected = nodesBefore;
        QStringList left;
        const QStringList written = QString::fromUtf8(tried.device.read(QStringLiteral("written")))
                                        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        const QJsonObject status = tried.status();
        for (const QString &path : written) {
            if (ending == Forced && (plan.changed.contains(path) || isBelowAny(path, plan.made)))
                continue;
            expected.insert(QLatin1Char('/') + path, QStringLiteral("hooked"));
            for (QString above = parentOf(path); !above.isEmpty(); above = parentOf(above))
                expected.insert(QLatin1Char('/') + above, QJsonObject());
            if (plan.changed.contains(path))
                left.append(path);
        }
        Comparison comparison({});
        QStringList listed = texts(status.value(QLatin1String("conflicts")));
        const auto holdsWritten = [&written](const QString &path) {
            return std::any_of(written.cbegin(), written.cend(),
                               [&path](const QString &one) { return isBelow(one, path); });
        };
        listed.erase(std::remove_if(listed.begin(), listed.end(), holdsWritten), listed.end());
        comparison.compare("conflicts", left, listed);
        comparison.compare("registry", linesOf(expected), linesOf(nodes()));
        comparison.demand(!written.isEmpty() || tried.settings() == before, QStringLiteral("not the same to the byte"));
        comparison.demand((plan.status == 1) == (outcome.status == 1), QStringLiteral("status %1").arg(outcome.status));
        ++endings[word(status, "state") + QLatin1Char(' ') + QString::number(ending)];
        conflicts += left.size();
        return wrong + comparison.wrong;
    }

    /// What is confirmed is what an import would have made of it, and can still be undone.
    QStringList complaintsAfterConfirmation() {
        tried.reset();
        Comparison comparison(before + tried.device.read(document));
        tried.device.run("quendarsettings -settings f -set all");
        const Nodes imported = nodes();
        tried.reset();
        const QByteArray id = word(parsed(tried.device.run(tryIt + " --json").out), "id").toUtf8();
        comparison.demand(tried.device.run("quendar-change confirm " + id).status == 0,
                          QStringLiteral("not confirmed"));
        comparison.compare("kept", linesOf(imported), linesOf(nodes()));
        const Outcome undone = tried.device.run("quendar-change revert");
        comparison.demand(undone.status == 0, QString::fromUtf8(undone.err));
        return comparison.wrong + tried.complaints(before, {});
    }

    const QString document = QStringLiteral("home/f");
    Sweep sweep;
    TriedDevice tried;
    QByteArray before;
    Nodes nodesBefore;
    QMap<QString, int> endings;
    int conflicts = 0;
};

QTEST_GUILESS_MAIN(UndoSweep)
#include "undosweep.moc"
