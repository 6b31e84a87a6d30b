// SPDX-License-Identifier: MIT
#include "document/charreferences.h"

#include <algorithm>
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

/// Whether what begins with "&" at @p at is a reference to a character above U+FFFF.
bool isUnsupported(const QString &text, int at) {
    if (!text.midRef(at + 1).startsWith(QLatin1Char('#')))
        return false;
    int digit = at + 2;
    const bool isHexadecimal = digit < text.size() && text.at(digit) == QLatin1Char('x');
    const uint base = isHexadecimal ? 16 : 10;
    if (isHexadecimal)
        ++digit;

    uint code = 0;
    for (; digit < text.size() && code <= 0xffff; ++digit) {
        const ushort character = text.at(digit).unicode();
        if (character >= '0' && character <= '9')
            code = code * base + (character - '0');
        else if (isHexadecimal && (character | 0x20) >= 'a' && (character | 0x20) <= 'f')
            code = code * base + ((character | 0x20U) - 'a' + 10U);
        else
            break;
    }
    return code > 0xffff;
}

/// Where the next reference to such a character stands from @p from on, -1 when there is none.
int nextUnsupported(const QString &text, int from) {
    const QLatin1Char begin('&');
    int at = text.indexOf(begin, from);
    while (at >= 0 && !isUnsupported(text, at))
        at = text.indexOf(begin, at + 1);
    return at;
}

} // namespace

int lineOfUnsupportedReference(const QString &document) {
    int at = nextUnsupported(document, 0);
    if (at >= 0 && !document.contains(QLatin1String("<!DOCTYPE"))) {
        const QLatin1Char markup('<');
        for (int begin = document.indexOf(markup); begin >= 0 && begin < at;) {
            const int end = skipped(document, begin);
            if (at < end)
                at = nextUnsupported(document, end);
            begin = document.indexOf(markup, std::max(end, begin + 1));
        }
    }
    return at < 0 ? 0 : document.leftRef(at).count(QLatin1Char('\n')) + 1;
}
