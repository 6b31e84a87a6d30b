// SPDX-License-Identifier: MIT
// How the walk of the settings grows: serialises the view of a registry in memory for 10,000 and for 50,000 settings.

#include "registry/viewpaths.h"
#include "support/scriptedregistry.h"
#include "view/lumoconfigview.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtXmlPatterns/QXmlFormatter>
#include <QtXmlPatterns/QXmlQuery>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace quendar;

namespace {

constexpr int sectionSize = 200;
constexpr int runs = 7;

void fill(ScriptedRegistry &registry, int settings) {
    for (int i = 0; i < settings; ++i)
        registry.addKey(QStringLiteral("%1/section%2/name%3")
                            .arg(viewRoot(), QString::number(i / sectionSize), QString::number(i % sectionSize)),
                        QStringLiteral("value %1").arg(i));
}

double millisecondsOfAWalk() {
    QElapsedTimer timer;
    timer.start();
    QXmlNamePool namePool;
    LumoConfigView view(namePool);
    QXmlQuery query(namePool);
    query.bindVariable(QStringLiteral("lumoConfig"), QXmlItem(view.indexForKey(viewRoot())));
    query.setQuery(QStringLiteral("$lumoConfig"));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QXmlFormatter formatter(query, &buffer);
    if (!query.evaluateTo(&formatter))
        qFatal("the walk failed");
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(int settings) {
    ScriptedRegistry registry;
    fill(registry, settings);
    std::vector<double> times(runs);
    std::generate(times.begin(), times.end(), millisecondsOfAWalk);
    std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
    std::printf("walk of %d settings: %.1f ms\n", settings, times[runs / 2]);
    return times[runs / 2];
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    const double small = median(10000);
    const double large = median(50000);
    std::printf("5 times the settings, %.1f times the time (at most 10 wanted)\n", large / small);
}
