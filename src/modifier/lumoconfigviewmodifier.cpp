// SPDX-License-Identifier: MIT
#include "modifier/lumoconfigviewmodifier.h"

#include "report/error.h"

#include <QtCore/QObject>
#include <QtCore/QUuid>
#include <QtXml/QXmlAttributes>
#include <QtXml/QXmlParseException>

namespace quendar {

namespace {

/// The entry's id, or a new one where the document gives none that can be used.
QUuid idOf(const QXmlAttributes &attributes) {
    const QUuid id(attributes.value(QStringLiteral("id")));
    return id.isNull() ? QUuid::createUuid() : id;
}

Error unexpectedEnd(const QString &what) {
    return Error(QStringLiteral("parsing error, unexpected end of element") + what);
}

} // namespace

LumoConfigViewModifier::LumoConfigViewModifier()
    : ownClient(std::make_unique<TessaroClient>()), client(*ownClient), warn(printWarning) {}

LumoConfigViewModifier::LumoConfigViewModifier(TessaroClient &registryClient, WarningSink warningSink)
    : client(registryClient), warn(std::move(warningSink)) {}

LumoConfigViewModifier::~LumoConfigViewModifier() = default;

bool LumoConfigViewModifier::startElement(const QString & /*namespaceUri*/, const QString &localName,
                                          const QString & /*qualifiedName*/, const QXmlAttributes &attributes) {
    lastStartedElement = localName;
    if (localName == element::root)
        return true;

    if (sessionTypes.contains(localName))
        startSessionType(localName);
    else if (localName == element::printerSection)
        loadPrinters();

    if (localName == element::session) {
        startSession(attributes);
    } else if (localName == element::printer) {
        startPrinter(attributes);
    } else {
        checkPrinterName(localName);
        currentKey = childKey(currentKey, localName);
    }
    return true;
}

bool LumoConfigViewModifier::endElement(const QString & /*namespaceUri*/, const QString &localName,
                                        const QString & /*qualifiedName*/) {
    if (lastStartedElement == localName)
        characters(QStringLiteral(""));

    if (nameIn(currentKey) == localName) {
        currentKey = currentKey.parent();
        if (sessionTypes.contains(localName))
            endSessionType();
        else if (localName == element::printerSection)
            removePrinters();
    } else if (localName == element::session) {
        leaveEntry(QStringLiteral("sessions"));
    } else if (localName == element::printer) {
        leaveEntry(QStringLiteral("printers"));
    } else if (localName == element::root) {
        commitView();
    } else {
        throw unexpectedEnd(QStringLiteral(": ") + localName);
    }
    return true;
}

bool LumoConfigViewModifier::characters(const QString &text) {
    lastStartedElement.clear();
    const QString value = text.trimmed();
    if (readingPrinterName && !takePrinterName(value))
        return true;
    if (!value.isEmpty() || isListedKey(currentKey))
        setValue(value);
    return true;
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

bool LumoConfigViewModifier::fatalError(const QXmlParseException &exception) {
    throw Error(QObject::tr("Parse error at line %1, column %2:\n%3")
                    .arg(QString::number(exception.lineNumber()), QString::number(exception.columnNumber()),
                         exception.message()));
}

QT_WARNING_POP

void LumoConfigViewModifier::rollback() {
    client.rollback(QString());
}

const Children &LumoConfigViewModifier::children(const ViewKey &key) {
    return readChildren(client, childrenCache, key);
}

void LumoConfigViewModifier::setValue(const QString &value) {
    if (client.contains(currentKey) != 0) {
        warn({Warning::NotSet, currentKey, value});
        return;
    }
    const int status = client.set(currentKey, value, RegParamValue);
    if (status != 0)
        throw TessaroError(currentKey, status);
}

bool LumoConfigViewModifier::isListedKey(const ViewKey &key) {
    if (key == knownAsNoKey) // the blanks between the elements of a section ask again and again
        return false;
    const bool isKey = children(key.parent()).value(key, RegNodeDir) == RegNodeKey;
    if (!isKey)
        knownAsNoKey = key;
    return isKey;
}

/// Goes on below the entry of @p directory that the attributes name.
void LumoConfigViewModifier::enterEntry(const QString &directory, const QXmlAttributes &attributes) {
    currentKey = childKey(childKey(currentKey, directory), idOf(attributes).toString());
}

/// Goes back from an entry of @p directory to the section that holds it.
void LumoConfigViewModifier::leaveEntry(const QString &directory) {
    if (QUuid(currentKey.name()).isNull())
        throw unexpectedEnd(QStringLiteral(", expected a UUID and got: ") + currentKey.name());
    currentKey = currentKey.parent();
    if (currentKey.name() != directory)
        throw unexpectedEnd(QStringLiteral(", expected '%1' and got: ").arg(directory) + currentKey.name());
    currentKey = currentKey.parent();
}

/// A document that was not stored must not be applied.
void LumoConfigViewModifier::commitView() {
    const int status = client.commit(viewRoot());
    if (status != 0)
        throw TessaroError(viewRoot(), status);
}

} // namespace quendar
