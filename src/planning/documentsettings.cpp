// SPDX-License-Identifier: MIT
#include "planning/documentsettings.h"

#include "document/elements.h"
#include "document/saxreader.h"
#include "document/structure.h"

#include <vector>

namespace quendar {

namespace {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the applier's own reader

class SettingsReader : public QXmlDefaultHandler {
public:
    DocumentSettings read(const QString &text) {
        reportDocument(text, *this);
        return result;
    }

    bool startElement(const QString & /*namespaceUri*/, const QString &localName, const QString & /*qualifiedName*/,
                      const QXmlAttributes &attributes) override {
        const int parent = open.empty() ? -1 : open.back().setting.entry;
        if (!open.empty())
            open.back().isDirectory = true;
        if (!structure.enter(localName, attributes.value(QStringLiteral("id"))))
            return false;
        const QString path = structure.path();
        const bool isEntry = element::isEntry(localName);
        const int entry = isEntry ? result.entries.size() : parent;
        if (isEntry)
            result.entries.append({path, {}, parent});
        open.push_back({{path, {}, 0, entry, false}, false});
        return true;
    }

    bool characters(const QString &text) override {
        open.back().setting.text += text;
        ++open.back().setting.pieces;
        return true;
    }

    bool endElement(const QString & /*namespaceUri*/, const QString &localName,
                    const QString & /*qualifiedName*/) override {
        Element ended = std::move(open.back());
        open.pop_back();
        structure.leave();
        if (ended.isDirectory)
            result.directories.insert(ended.setting.path);
        else
            append(ended.setting, localName);
        return true;
    }

private:
    struct Element {
        DocumentSetting setting; // what it is unless others are in it
        bool isDirectory;
    };

    /// Takes a setting whose element, of that name, has ended.
    void append(DocumentSetting &setting, const QString &name) {
        if (setting.entry >= 0) {
            DocumentEntry &entry = result.entries[setting.entry];
            if (name == element::name && structure.path() == entry.path) {
                entry.name = setting.text.trimmed();
                named.insert(setting.entry);
            }
            setting.isBeforeName = !named.contains(setting.entry);
        }
        result.settings.append(setting);
    }

    DocumentSettings result;
    Structure structure;
    std::vector<Element> open;
    QSet<int> named; // entries
};

QT_WARNING_POP

} // namespace

DocumentSettings readSettings(const QString &text) {
    return SettingsReader().read(text);
}

} // namespace quendar
