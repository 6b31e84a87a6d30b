#include "engine/charreferences.h"

#include <array>

namespace {

struct Markup {
    QLatin1String begin;
    QLatin1String end;
};

/// Markup in which "&#" is text.
const std::array<Markup, 3> opaque = {{{QLatin1String("<!--"), QLatin1String("-->")},
                                       {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                                       {QLatin1String("<?"), QLatin1String("?>")}}};

/// Where the markup that begins at @p at ends, or @p at itself when it is none of the opaque ones.
int skipped(const QString &text, int at) {
    for (const Markup &markup : opaque) {
        if (text.midRef(at).startsWith(markup.begin)) {
            const int end = text.indexOf(markup.end, at + markup.begin.size());
            return end < 0 ? text.size() : end + markup.end.size();
        }
    }
    return at;
}

/// Whether the reference whose "&#" stands at @p at names a character above U+FFFF.
bool isUnsupported(const QString &text, int at) {
    int digit = at + 2;
    const bool isHexadecimal = digit < text.size() && text.at(digit) == QLatin1Char('x');
    const uint base = isHexadecimal ? 16 : 10;
    if (isHexadecimal)
        ++digit;

    uint code = 0;
    for (; digit < text.size() && code <= 0xffff; ++digit) {
        const ushort character = text.at(digit).unicode();
        if (character >= '0' && character <= '9') {
            code = code * base + (character - '0');
        } else if (isHexadecimal && (character | 0x20) >= 'a' && (character | 0x20) <= 'f') {
            code = code * base + ((character | 0x20U) - 'a' + 10U);
        } else {
            break;
        }
    }
    return code > 0xffff;
}

} // namespace

int lineOfUnsupportedReference(const QString &document) {
    const bool mayHideMarkup = document.contains(QLatin1String("<!DOCTYPE"));
    int opaqueEnd = 0;
    int looked = 0;
    for (int at = document.indexOf(QLatin1String("&#")); at >= 0; at = document.indexOf(QLatin1String("&#"), at + 2)) {
        if (!isUnsupported(document, at))
            continue;
        if (!mayHideMarkup) {
            for (; looked < at; ++looked) {
                if (document.at(looked) != QLatin1Char('<'))
                    continue;
                opaqueEnd = skipped(document, looked);
                looked = std::max(looked, opaqueEnd - 1);
            }
            if (at < opaqueEnd)
                continue;
        }
        return document.leftRef(at).count(QLatin1Char('\n')) + 1;
    }
    return 0;
}
