// SPDX-License-Identifier: MIT
#include "document/charreferences.h"

#include "engine/limits.h"

#include <algorithm>
#include <array>
#include <optional>

namespace quendar {

namespace {

struct Markup {
    QLatin1String begin;
    QLatin1String end;
};

/// Markup in which "&#" is text.
const std::array<Markup, 3> opaque = {{{QLatin1String("<!--"), QLatin1String("-->")},
                                       {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                                       {QLatin1String("<?"), QLatin1String("?>")}}};
const QLatin1String documentType("<!DOCTYPE");

constexpr uint lastOfReader = 0xffff; // the reader keeps no more
constexpr uint lastOfAll = 0x10ffff;

/// How far a reference made of references is looked at; one with more zeros in front is refused.
constexpr int longestReference = 32;

/// The entities that every document has.
const std::array<QLatin1String, 5> predefined = {QLatin1String("amp;"), QLatin1String("lt;"), QLatin1String("gt;"),
                                                 QLatin1String("quot;"), QLatin1String("apos;")};

/// A reference to a character, such as `&#128512;` or `&#x1F600;`.
struct CharReference {
    uint code; ///< not exact beyond `lastOfAll`
    int end;   ///< behind the ";"
};

/// The value of a digit; 16 for what is none.
uint digitValue(QChar character) {
    const ushort code = character.unicode();
    if (code >= '0' && code <= '9')
        return code - '0';
    const uint lower = code | 0x20U;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

/// The reference of which the "&" stands at @p at.
std::optional<CharReference> charReferenceAt(const QString &text, int at) {
    if (!text.midRef(at).startsWith(QLatin1String("&#")))
        return {};
    int next = at + 2;
    const bool isHexadecimal = next < text.size() && text.at(next) == QLatin1Char('x');
    if (isHexadecimal)
        ++next;
    const uint base = isHexadecimal ? 16 : 10;

    const int first = next;
    uint code = 0;
    for (; next < text.size() && digitValue(text.at(next)) < base; ++next)
        if (code <= lastOfAll)
            code = code * base + digitValue(text.at(next));
    if (next == first || next == text.size() || text.at(next) != QLatin1Char(';'))
        return {};
    return CharReference{code, next + 1};
}

/// Goes through a document once, and replaces the references that it meets.
class Replacement {
public:
    explicit Replacement(const QString &document) : text(document) {}

    QString run() {
        while (at < text.size()) {
            const QChar character = text.at(at);
            if (character == QLatin1Char('&'))
                takeReference();
            else if (character == QLatin1Char('<') && text.midRef(at).startsWith(documentType))
                takeDocumentType();
            else if (character != QLatin1Char('<') || !skipOpaque())
                ++at;
        }
        return result + text.midRef(copied);
    }

private:
    /// Up to the end of the declaration. In it, a reference stands in quotes only.
    void takeDocumentType() {
        const int begin = at;
        bool isInSubset = false;
        for (at += documentType.size(); at < text.size();) {
            if (at - begin > maximumTypeSize)
                throw atLine(typeTooLarge(), lineAt(begin));
            const QChar character = text.at(at);
            if (character == QLatin1Char('"') || character == QLatin1Char('\'')) {
                takeDeclaredValue(character);
                continue;
            }
            if (character == QLatin1Char('<') && skipOpaque())
                continue;
            ++at;
            if (character == QLatin1Char('['))
                isInSubset = true;
            else if (character == QLatin1Char(']'))
                isInSubset = false;
            else if (character == QLatin1Char('>') && !isInSubset)
                return;
        }
    }

    void takeDeclaredValue(QChar quote) {
        for (++at; at < text.size() && text.at(at) != quote;) {
            if (text.at(at) != QLatin1Char('&')) {
                ++at;
                continue;
            }
            const auto reference = charReferenceAt(text, at);
            if (reference && reference->code == '&' && !isKnownWithAmpersand(reference->end))
                refuse();
            takeReference();
        }
        ++at;
    }

    /// Whether what an entity's value makes of a reference to "&" and what follows at @p rest is a reference that the
    /// reader takes rightly. It is read when the entity is used: `&#38;#60;` is `&#60;` by then, and `&#38;#38;` an
    /// "&".
    bool isKnownWithAmpersand(int rest) const {
        const auto made = charReferenceAt(QLatin1Char('&') + text.mid(rest, longestReference), 0);
        const bool isAmpersand = made && made->code == '&';
        return made && made->code <= lastOfReader &&
               !(isAmpersand && text.midRef(rest + made->end - 1).startsWith(QLatin1Char('#')));
    }

    /// Past the "&" at least.
    void takeReference() {
        const auto reference = charReferenceAt(text, at);
        if (!reference) {
            ++at;
            countEntity();
            return;
        }
        if (reference->code > lastOfAll)
            refuse();
        if (reference->code > lastOfReader) {
            result += text.midRef(copied, at - copied);
            result += QString::fromUcs4(&reference->code, 1);
            copied = reference->end;
        }
        at = reference->end;
    }

    /// Past the comment or the like that begins here, if one does.
    bool skipOpaque() {
        for (const Markup &markup : opaque) {
            if (text.midRef(at).startsWith(markup.begin)) {
                const int end = text.indexOf(markup.end, at + markup.begin.size());
                at = end < 0 ? text.size() : end + markup.end.size();
                return true;
            }
        }
        return false;
    }

    /// Of an entity whose name stands here.
    void countEntity() {
        const QStringRef rest = text.midRef(at);
        const auto isHere = [&rest](QLatin1String name) { return rest.startsWith(name); };
        if (std::none_of(predefined.begin(), predefined.end(), isHere) && ++entities > maximumEntityReferences)
            throw atLine(tooManyEntities(), lineAt(at));
    }

    [[noreturn]] void refuse() const {
        throw atLine(Error(QStringLiteral("unsupported character reference")), lineAt(at));
    }

    int lineAt(int position) const { return text.leftRef(position).count(QLatin1Char('\n')) + 1; }

    const QString &text;
    QString result;
    int at = 0;
    int copied = 0; // up to here, `result` holds it
    int entities = 0;
};

} // namespace

QString withoutCharReferences(const QString &document) {
    const bool isAffected = document.contains(QLatin1String("&#")) || document.contains(documentType);
    return isAffected ? Replacement(document).run() : document;
}

} // namespace quendar
