// SPDX-License-Identifier: MIT
#include "document/plaindocument.h"

#include "engine/limits.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

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

/// Takes one part after the other off a text.
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

    /// Up to the quote at its end, and past that.
    bool takeValue() {
        const auto end = rest.find_first_of("\"<");
        return end != std::string_view::npos && rest[end] == '"' && skip(end);
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

} // namespace

std::optional<Names> namesOfPlainDocument(const QByteArray &document) {
    Scanner scanner({document.constData(), static_cast<std::size_t>(document.size())});
    std::unordered_set<std::string_view> found;
    const auto takeName = [&] {
        const std::string_view name = scanner.takeName();
        found.insert(name);
        return !name.empty() && name != "xmlns";
    };

    scanner.take(declaration);
    for (int depth = 0; scanner.skipPast('<');) {
        if (scanner.take("/")) {
            --depth;
            continue;
        }
        if (!takeName() || depth >= maximumDepth || found.size() > maximumNames)
            return {};
        while (scanner.take(" "))
            if (!takeName() || !scanner.take("=\"") || !scanner.takeValue())
                return {};
        if (!scanner.take("/"))
            ++depth;
        if (!scanner.take(">"))
            return {};
    }

    Names names;
    for (const std::string_view name : found)
        names.local.insert(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
    return names;
}
