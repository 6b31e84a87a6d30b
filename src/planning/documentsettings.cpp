// SPDX-License-Identifier: MIT
#include "planning/documentsettings.h"

#include "document/elements.h"
#include "document/structure.h"

#include <QtXml/QXmlDefaultHandler>
#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlSimpleReader>

#include <vector>

namespace quendar {

namespace {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the applier's own reader

class SettingsReader : public QXmlDefaultHandler {
public:
    DocumentSettings read(const QString &text) {
        QXmlInputSource source;
        source.setData(text);
        QXmlSimpleReader reader;
        reader.setContentHandler(this);
        reader.setErrorHandler(this);
        reader.parse(source);
        return result;
    }

    bool startElement(const QString & /*namespaceUri*/, const QString &localName, const QString & /*qualifiedName*/,
                      const QXmlAttributes &attributes) override {
        int entry = -1;
        if (!open.empty()) {
            open.back().isDirectory = true;
            entry = open.back().entry;
        }
        if (!structure.enter(localName, attributes.value(QStringLiteral("id"))))
            return false;
        const QString path = structure.path();
        if (localName == element::session || localName == element::printer) {
            entry = result.entries.size();
            result.entries.append({path, {}});
        }
        open.push_back({{path, {}, 0, entry}, entry, false});
        return true;
    }

    bool characters(const QString &text) override {
        open.back().setting.text += text;
        ++open.back().setting.pieces;
        return true;
    }

    bool endElement(const QString & /*namespaceUri*/, const QString &localName,
                    const QString & /*qualifiedName*/) override {
        const Element ended = open.back();
        open.pop_back();
        structure.leave();
        if (ended.isDirectory) {
            result.directories.insert(ended.setting.path);
            return true;
        }
        result.settings.append(ended.setting);
        const bool isName = ended.entry >= 0 && localName == element::name && structure.path() == entryPath(ended);
        if (isName)
            result.entries[ended.entry].name = ended.setting.text.trimmed();
        return true;
    }

private:
    struct Element {
        DocumentSetting setting; // what it is unless others are in it
        int entry;
        bool isDirectory;
    };

    QString entryPath(const Element &element) const { return result.entries.at(element.entry).path; }

    DocumentSettings result;
    Structure structure;
    std::vector<Element> open;
};

QT_WARNING_POP

} // namespace

DocumentSettings readSettings(const QString &text) {
    return SettingsReader().read(text);
}

} // namespace quendar
