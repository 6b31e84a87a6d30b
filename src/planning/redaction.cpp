// SPDX-License-Identifier: MIT
#include "planning/redaction.h"

#include "document/elements.h"
#include "document/saxreader.h"
#include "document/structure.h"
#include "planning/places.h"
#include "registry/viewkey.h"
#include "report/error.h"
#include "stages/changedsections.h"

#include <QtCore/QUuid>

#include <optional>

namespace quendar {

namespace {

/// Text as an export writes it; what a reader would fold into a line feed stays what it is.
QString escaped(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&amp;"))
        .replace(QLatin1Char('<'), QLatin1String("&lt;"))
        .replace(QLatin1Char('>'), QLatin1String("&gt;"))
        .replace(QLatin1Char('\r'), QLatin1String("&#13;"));
}

/// Whether an export writes, or an import looks at, that attribute of @p element. In any other, anything may be
/// written.
bool isOfFormat(const QString &element, const QString &attribute, const QString &value) {
    if (attribute == QLatin1String("xmlns") || attribute.startsWith(QLatin1String("xmlns:")))
        return true;
    if (attribute == QLatin1String("id"))
        return element::isEntry(element) && !QUuid(value).isNull();
    static const QStringList ofRoot = {QStringLiteral("version"), QStringLiteral("creator_version"),
                                       QStringLiteral("creator")};
    return element == element::root && ofRoot.contains(attribute);
}

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the applier's own reader

/// Writes what the reader reports, but for the elements of secrets. Whether an element holds others is known only at
/// the next tag: until then its own tag waits, with the white space in front of it.
class Redactor : public QXmlDefaultHandler {
public:
    explicit Redactor(const Secrets &secret) : secrets(secret) {}

    QByteArray redact(const QString &source) {
        reportDocument(source, *this, Attributes::All);
        if (failure)
            throw Error(*failure);
        return document.toUtf8() + '\n';
    }

    bool startElement(const QString & /*namespaceUri*/, const QString &localName, const QString &qualifiedName,
                      const QXmlAttributes &attributes) override {
        writeWaiting();
        waiting = Tag{localName, qualifiedName, attributes, takeText()};
        names.append(localName);
        if (element::isEntry(localName))
            openEntries.append(entries++);
        return structure.enter(localName, attributes.value(QStringLiteral("id")));
    }

    bool characters(const QString &piece) override {
        text += piece;
        return true;
    }

    bool endElement(const QString & /*namespaceUri*/, const QString & /*localName*/,
                    const QString &qualifiedName) override {
        if (waiting && isSecret())
            dropWaiting();
        else
            writeEnd(qualifiedName, takeText());
        if (element::isEntry(names.takeLast()))
            openEntries.removeLast();
        return structure.leave();
    }

    bool fatalError(const QXmlParseException &exception) override {
        failure = atLine(Error(QStringLiteral("impossible to read the document: ") + exception.message()),
                         exception.lineNumber());
        return false;
    }

    const QStringList &dropped() const { return secretPaths; }

    /// The positions, among all sessions and printers, of those that held a secret.
    const QSet<int> &affectedEntries() const { return affected; }

private:
    struct Tag {
        QString localName;
        QString name;
        QXmlAttributes attributes;
        QString before; // text in front of it
    };

    void noteSecret() {
        secretPaths.append(structure.path());
        if (!openEntries.isEmpty())
            affected.insert(openEntries.last());
    }

    void writeWaiting(const QString &end = QStringLiteral(">")) {
        if (!waiting)
            return;
        document += escaped(waiting->before) + QLatin1Char('<') + waiting->name;
        for (int i = 0; i < waiting->attributes.count(); ++i) {
            const QString attribute = waiting->attributes.qName(i);
            const QString value = waiting->attributes.value(i);
            if (isOfFormat(waiting->localName, attribute, value))
                document += QStringLiteral(" %1=\"%2\"")
                                .arg(attribute, escaped(value).replace(QLatin1Char('"'), QLatin1String("&quot;")));
        }
        document += end;
        waiting.reset();
    }

    void writeEnd(const QString &name, const QString &content) {
        if (waiting && content.isEmpty()) {
            writeWaiting(QStringLiteral("/>"));
        } else {
            writeWaiting();
            document += escaped(content) + QStringLiteral("</") + name + QLatin1Char('>');
        }
    }

    void dropWaiting() {
        noteSecret();
        if (!waiting->before.trimmed().isEmpty())
            document += escaped(waiting->before);
        waiting.reset();
        text.clear();
    }

    /// The text since the last tag. What stands beside other elements is set as well, piece by piece.
    QString takeText() {
        const QString taken = std::exchange(text, {});
        if (taken.trimmed().isEmpty() || !isSecret())
            return taken;
        noteSecret();
        return {};
    }

    /// Whether the innermost open element may be the key of a secret. Without its name a printer would be another one.
    bool isSecret() const {
        const QString &name = names.last();
        if (name == element::root || element::isEntry(name) || !secrets.include(name))
            return false;
        const QString path = structure.path();
        return name != element::name || !isInPrinter(path) || path != nameKeyOf(entryOf(path));
    }

    const Secrets &secrets;
    QString document = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n");
    Structure structure;
    QStringList names; // of the open elements
    std::optional<Tag> waiting;
    QString text; // since the last tag
    QStringList secretPaths;
    QSet<int> affected;
    QVector<int> openEntries; // positions among all
    int entries = 0;          // met so far
    std::optional<Error> failure;
};

QT_WARNING_POP

} // namespace

Redaction redacted(const Document &document, const Secrets &secrets) {
    requireLoadable(document); // the applier's reader takes more
    Redactor redactor(secrets);
    Redaction result;
    result.document = redactor.redact(document.text);
    result.dropped = redactor.dropped();
    // a name may have been a secret, too
    const DocumentSettings held = readSettings(QString::fromUtf8(result.document));
    for (int entry = 0; entry < held.entries.size(); ++entry)
        if (redactor.affectedEntries().contains(entry))
            result.entries.append(held.entries.at(entry));
    return result;
}

} // namespace quendar
