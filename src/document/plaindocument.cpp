// SPDX-License-Identifier: MIT
#include "document/documentscan.h"

#include "document/elements.h"
#include "document/structure.h"
#include "engine/limits.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

namespace quendar {

namespace {

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

std::optional<Contents> scanPlainDocument(const QByteArray &bytes) {
    Scanner scanner({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    std::unordered_map<std::string_view, QString> names; // those noted, each decoded once
    const auto noted = [&names](std::string_view name) -> const QString & {
        QString &text = names[name];
        if (text.isEmpty())
            text = toQString(name);
        return text;
    };
    Structure structure;

    scanner.take(declaration);
    while (scanner.skipPast('<')) {
        if (scanner.take("/")) {
            if (!structure.leave())
                return {};
            continue;
        }
        const std::string_view name = scanner.takeName();
        if (name.empty() || name == "xmlns")
            return {};
        const QString &element = noted(name);

        std::string_view id;
        while (scanner.take(" ")) {
            const std::string_view attribute = scanner.takeName();
            if (attribute.empty() || attribute == "xmlns" || !scanner.take("=\""))
                return {};
            const auto value = scanner.takeValue();
            if (!value)
                return {};
            noted(attribute);
            if (attribute == "id")
                id = *value;
        }
        if (id.find('&') != std::string_view::npos || names.size() > maximumNames ||
            !structure.enter(element, id.empty() ? QString() : toQString(id)))
            return {};
        if (scanner.take("/"))
            structure.leave();
        if (!scanner.take(">"))
            return {};
    }

    Contents contents = {{}, structure.entries(), structure.unnamedEntries()};
    for (const auto &[utf8, name] : names)
        contents.names.local.insert(name);
    return contents;
}

} // namespace quendar
