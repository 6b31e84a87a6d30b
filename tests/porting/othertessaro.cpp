// SPDX-License-Identifier: MIT
#include "othertessaro.h"

#include <QtCore/QFile>

namespace {

QString fileName() {
    return QFile::decodeName(qgetenv("OTHER_REGISTRY"));
}

} // namespace

TessaroPrivate::TessaroPrivate() {
    QFile file(fileName());
    file.open(QIODevice::ReadOnly);
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).chopped(1);
        texts.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    }
}

void TessaroPrivate::save() const {
    QFile file(fileName());
    file.open(QIODevice::WriteOnly);
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        file.write((text.key() + QLatin1Char('=') + text.value() + QLatin1Char('\n')).toUtf8());
}

bool TessaroPrivate::isDirectory(const QString &path) const {
    const auto below = texts.lowerBound(path + QLatin1Char('/'));
    return below != texts.cend() && below.key().startsWith(path + QLatin1Char('/'));
}

Tessaro::Tessaro() : d(std::make_unique<TessaroPrivate>()) {}

Tessaro::~Tessaro() = default;

int Tessaro::get(const QString &path, QString &value, const _RegEntryParam & /*param*/, const QString & /*last*/) {
    if (!d->texts.contains(path))
        return 1;
    value = d->texts.value(path);
    return 0;
}
