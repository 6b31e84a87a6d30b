// SPDX-License-Identifier: MIT
#include "sweeps/madeupdocument.h"

#include "sweeps/madeupregistry.h"

#include <QtCore/QUuid>
#include <QtXml/QDomDocument>

namespace {

const QString idAttribute = QStringLiteral("id");

bool isSection(const QDomElement &element) {
    return element.parentNode() == element.ownerDocument().documentElement();
}

bool isValue(const QDomElement &element) {
    return element.firstChildElement().isNull();
}

bool isDirectory(const QDomElement &element) {
    return !isValue(element);
}

bool isEntry(const QDomElement &element) {
    return element.tagName() == QLatin1String("session") || element.tagName() == QLatin1String("printer");
}

bool hasEntries(const QDomElement &element) {
    return isEntry(element.firstChildElement()) || isEntry(element.lastChildElement());
}

/// One document and what can be done to it. What finds no element to be done to does nothing.
class Edits {
public:
    Edits(const QByteArray &document, Sweep &source) : sweep(source) { dom.setContent(document); }

    QByteArray text() const { return dom.toByteArray(sweep.below(3) - 1); }

    void makeOne() {
        using E = Edits;
        static void (E::*const often[])() = {
            &E::changeValue, &E::changeValue, &E::addUnknown, &E::dropAny,       &E::dropSection, &E::moveSection,
            &E::copyEntry,   &E::copyEntry,   &E::dropEntry,  &E::repeatSection, &E::renameEntry, &E::emptyValue,
            &E::splitValue,  &E::addBlanks,   &E::renameId,   &E::emptySection,  &E::moveEntries};
        static void (E::*const seldom[])() = {&E::renameElement, &E::nestRoot,    &E::renameRoot,
                                              &E::addNamespace,  &E::putTextInto, &E::nestEntries};
        (this->*(sweep.chance(93) ? often[sweep.below(17)] : seldom[sweep.below(6)]))();
    }

private:
    /// One of the elements below the root; null when none is so.
    template <typename Condition>
    QDomElement any(Condition condition) const {
        QVector<QDomElement> found;
        QVector<QDomElement> open = {root()};
        while (!open.isEmpty()) {
            const QDomElement element = open.takeLast();
            for (auto child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
                open.append(child);
            if (element != root() && condition(element))
                found.append(element);
        }
        return found.isEmpty() ? QDomElement() : found.at(sweep.below(found.size()));
    }

    QDomElement root() const { return dom.documentElement(); }

    static void append(QDomElement element, const QDomNode &child) {
        if (!element.isNull())
            element.appendChild(child);
    }

    void setText(QDomElement element, const QString &text) {
        while (element.hasChildNodes())
            element.removeChild(element.firstChild());
        append(element, dom.createTextNode(text));
    }

    void changeValue() { setText(any(isValue), madeUpText(sweep)); }
    void emptyValue() { setText(any(isValue), QString()); }
    void addUnknown() {
        QDomElement added = dom.createElement(madeUpName(sweep));
        setText(added, madeUpText(sweep));
        append(any(sweep.chance(50) ? isEntry : isDirectory), added);
    }
    void dropAny() {
        drop(any([](const QDomElement &) { return true; }));
    }
    void dropSection() { drop(any(isSection)); }
    void repeatSection() { root().appendChild(any(isSection).cloneNode()); }
    void moveSection() { root().insertBefore(any(isSection), root().firstChild()); }
    void emptySection() { setText(any(isSection), QString()); }
    void dropEntry() { drop(any(isEntry)); }
    void drop(const QDomElement &element) { element.parentNode().removeChild(element); }

    void copyEntry() {
        const QDomElement entry = any(isEntry);
        QDomElement copy = entry.cloneNode().toElement();
        entry.parentNode().insertAfter(copy, sweep.chance(50) ? QDomNode(entry) : QDomNode());
        giveId(copy);
        if (sweep.chance(70))
            setText(copy.firstChildElement(QStringLiteral("name")), madeUpText(sweep));
    }
    void renameEntry() { setText(any(isEntry).firstChildElement(QStringLiteral("name")), madeUpText(sweep)); }
    void renameId() {
        QDomElement entry = any(isEntry);
        const QString id = entry.attribute(idAttribute);
        entry.setAttribute(idAttribute, sweep.chance(50) ? id.toUpper() : id.mid(1, id.size() - 2));
        if (sweep.chance(30))
            giveId(entry);
    }
    /// To a section that the device does not have.
    void moveEntries() { any(hasEntries).setTagName(QStringLiteral("vmware")); }
    void giveId(QDomElement entry) {
        entry.removeAttribute(idAttribute);
        if (sweep.chance(60))
            entry.setAttribute(idAttribute,
                               QUuid::createUuidV5(QUuid(), QByteArray::number(sweep.below(1000))).toString());
        else if (sweep.chance(20))
            entry.setAttribute(idAttribute, QStringLiteral("1"));
    }

    void splitValue() {
        const QDomElement value = any(isValue);
        if (sweep.chance(50))
            append(value, dom.createComment(QStringLiteral("c")));
        else
            append(value, dom.createCDATASection(QStringLiteral("d <")));
        if (sweep.chance(50))
            append(value, dom.createTextNode(madeUpText(sweep)));
    }
    void addBlanks() {
        const QDomElement value = any(isValue);
        setText(value, QStringLiteral(" \n\t") + value.text() + QStringLiteral("\n  "));
    }

    void renameElement() {
        static const char *const odd[] = {"name",     "session",         "sessions", "printer",
                                          "printers", "network_printer", "ssh"};
        any(sweep.chance(70) ? isValue : isDirectory).setTagName(QLatin1String(odd[sweep.below(7)]));
    }
    void nestRoot() {
        QDomElement nested = dom.createElement(root().tagName());
        nested.appendChild(any(sweep.chance(50) ? isSection : isValue).cloneNode());
        const QDomElement place = any(isDirectory);
        place.parentNode().insertAfter(nested, place);
    }
    /// To that of a section, whose contents take its place: what they set is in no root element, and is dropped.
    void renameRoot() {
        const QDomElement section = any(isSection);
        if (sweep.chance(30) || section.isNull())
            root().setTagName(QStringLiteral("config"));
        else
            dom.replaceChild(section.cloneNode(), root());
        changeValue();
        copyEntry();
    }
    void addNamespace() { root().setAttribute(QStringLiteral("xmlns"), QStringLiteral("urn:x")); }
    void putTextInto() { append(any(isDirectory), dom.createTextNode(madeUpText(sweep))); }
    /// As the registry's paths have it.
    void nestEntries() {
        QDomElement section = any(hasEntries);
        const bool hasPrinters = section.lastChildElement().tagName() == QLatin1String("printer");
        QDomElement nested = dom.createElement(hasPrinters ? QStringLiteral("printers") : QStringLiteral("sessions"));
        while (section.hasChildNodes())
            nested.appendChild(section.firstChild());
        append(section, nested);
    }

    Sweep &sweep;
    QDomDocument dom;
};

} // namespace

QByteArray editedDocument(const QByteArray &document, Sweep &sweep) {
    Edits edits(document, sweep);
    for (int i = sweep.below(8); i > 0; --i)
        edits.makeOne();
    QByteArray text = edits.text();
    if (sweep.chance(10))
        text.replace('\n', "\r\n");
    if (sweep.chance(2))
        text.chop(1 + sweep.below(text.size()));
    return text;
}
