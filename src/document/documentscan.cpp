// SPDX-License-Identifier: MIT
#include "document/documentscan.h"

#include "document/elements.h"
#include "engine/limits.h"

#include <QtCore/QUuid>
#include <QtCore/QXmlStreamReader>

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quendar {

namespace {

/// Whether an element is an entry of a directory that the document does not name.
template <typename Name>
bool isEntry(const Name &element) {
    return element == element::session || element == element::printer;
}

/// How deep the scan is, in the document and in the registry, where the view's root is level 1 as the document's is: an
/// element is one level, `session` and `printer` are two, with the directory that their entry lies in.
class Nesting {
public:
    /// False where the element is beyond the limit.
    template <typename Name>
    bool enter(const Name &element) {
        const int added = levelsOf(element);
        registryLevel += added;
        levels.push_back(added);
        return registryLevel <= maximumDepth && levels.size() <= std::size_t(maximumDepth);
    }

    /// False where no element is open.
    bool leave() {
        if (levels.empty())
            return false;
        registryLevel -= levels.back();
        levels.pop_back();
        return true;
    }

private:
    template <typename Name>
    static int levelsOf(const Name &name) {
        if (name == element::root)
            return 0;
        return isEntry(name) ? 2 : 1;
    }

    int registryLevel = 1;
    std::vector<int> levels; // that each open element has added
};

void addEntry(Contents &contents, const QString &id) {
    const QUuid uuid(id);
    if (uuid.isNull())
        ++contents.unnamedEntries;
    else
        contents.entries.insert(QStringLiteral("uuid-") + uuid.toString(QUuid::WithoutBraces));
}

/// Collects what the reader passes, as long as a name pool can hold the names.
class Collector {
public:
    explicit Collector(const QXmlStreamReader &source) : reader(source) {}

    void addElement() {
        addName(reader.name(), reader.namespaceUri(), reader.prefix());
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            addName(attribute.name(), attribute.namespaceUri(), attribute.prefix());
        const QXmlStreamNamespaceDeclarations declarations = reader.namespaceDeclarations();
        for (const QXmlStreamNamespaceDeclaration &declaration : declarations)
            addName({}, declaration.namespaceUri(), declaration.prefix());
        if (isEntry(reader.name()))
            addEntry(collected, attributes.value(QLatin1String("id")).toString());
    }

    void addProcessingInstruction() { addName(reader.processingInstructionTarget(), {}, {}); }

    const Contents &contents() const { return collected; }

private:
    void addName(const QStringRef &local, const QStringRef &uri, const QStringRef &prefix) {
        const bool isNewLocal = add(collected.names.local, local);
        const bool isNewUri = add(collected.names.namespaceUris, uri);
        const bool isNewPrefix = add(collected.names.prefixes, prefix);
        if ((isNewLocal || isNewUri || isNewPrefix) &&
            (collected.names.local.size() > maximumNames ||
             !makeName(pool, local.toString(), uri.toString(), prefix.toString())))
            throw atLine(tooManyNames(), reader.lineNumber());
    }

    static bool add(QSet<QString> &names, const QStringRef &name) {
        const int before = names.size();
        if (!name.isEmpty())
            names.insert(name.toString());
        return names.size() != before;
    }

    const QXmlStreamReader &reader;
    QXmlNamePool pool;
    Contents collected;
};

constexpr std::string_view declaration = R"(<?xml version="1.0" encoding="UTF-8" ?>)";

bool isNameByte(char byte) {
    switch (byte) {
    case '!':
    case '"':
    case '&':
    case '\'':
    case '/':
    case ':':
    case '<':
    case '=':
    case '>':
    case '?':
        return false;
    default:
        return static_cast<unsigned char>(byte) > ' ';
    }
}

/// Takes one part after the other off a plain document.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    bool skipPast(char byte) { return skip(rest.find(byte)); }

    bool take(std::string_view text) {
        if (rest.substr(0, text.size()) != text)
            return false;
        rest.remove_prefix(text.size());
        return true;
    }

    /// Empty when there is none.
    std::string_view takeName() {
        const auto end = std::find_if_not(rest.begin(), rest.end(), isNameByte);
        const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        rest.remove_prefix(name.size());
        return name;
    }

    /// Up to the quote at its end, and past that; nothing when there is none.
    std::optional<std::string_view> takeValue() {
        const auto end = rest.find_first_of("\"<");
        if (end == std::string_view::npos || rest[end] != '"')
            return {};
        const std::string_view value = rest.substr(0, end);
        skip(end);
        return value;
    }

private:
    bool skip(std::size_t end) {
        if (end == std::string_view::npos)
            return false;
        rest.remove_prefix(end + 1);
        return true;
    }

    std::string_view rest;
};

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

} // namespace

std::optional<Contents> scanPlainDocument(const QByteArray &document) {
    Scanner scanner({document.constData(), static_cast<std::size_t>(document.size())});
    std::unordered_set<std::string_view> names;
    Contents contents;
    Nesting nesting;

    scanner.take(declaration);
    while (scanner.skipPast('<')) {
        if (scanner.take("/")) {
            if (!nesting.leave())
                return {};
            continue;
        }
        const std::string_view name = scanner.takeName();
        const QLatin1String element(name.data(), static_cast<int>(name.size()));
        if (name.empty() || name == "xmlns" || !nesting.enter(element))
            return {};
        names.insert(name);

        std::string_view id;
        while (scanner.take(" ")) {
            const std::string_view attribute = scanner.takeName();
            if (attribute.empty() || attribute == "xmlns" || !scanner.take("=\""))
                return {};
            const auto value = scanner.takeValue();
            if (!value)
                return {};
            names.insert(attribute);
            if (attribute == "id")
                id = *value;
        }
        if (id.find('&') != std::string_view::npos || names.size() > maximumNames)
            return {};
        if (isEntry(element))
            addEntry(contents, toQString(id));
        if (scanner.take("/"))
            nesting.leave();
        if (!scanner.take(">"))
            return {};
    }

    for (const std::string_view name : names)
        contents.names.local.insert(toQString(name));
    return contents;
}

Contents scanDocument(const QByteArray &document) {
    if (const auto contents = scanPlainDocument(document))
        return *contents;

    QXmlStreamReader reader(document);
    Collector collector(reader);
    Nesting nesting;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (!nesting.enter(reader.name()))
                throw atLine(tooDeep(), reader.lineNumber());
            collector.addElement();
            break;
        case QXmlStreamReader::EndElement:
            nesting.leave();
            break;
        case QXmlStreamReader::ProcessingInstruction:
            collector.addProcessingInstruction();
            break;
        default:
            break;
        }
    }
    return collector.contents();
}

} // namespace quendar
