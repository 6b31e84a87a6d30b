// SPDX-License-Identifier: MIT
#include "modifier/readerguard.h"

namespace quendar {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

void ReaderGuard::rethrow() const {
    if (caught)
        std::rethrow_exception(caught);
}

template <typename Callback>
bool ReaderGuard::guarded(const Callback &callback) {
    if (caught)
        return false;
    try {
        return callback();
    } catch (...) {
        caught = std::current_exception();
        return false;
    }
}

bool ReaderGuard::startElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName,
                               const QXmlAttributes &attributes) {
    return guarded([&] { return handler.startElement(namespaceUri, localName, qualifiedName, attributes); });
}

bool ReaderGuard::endElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName) {
    return guarded([&] { return handler.endElement(namespaceUri, localName, qualifiedName); });
}

bool ReaderGuard::characters(const QString &text) {
    return guarded([&] { return handler.characters(text); });
}

bool ReaderGuard::fatalError(const QXmlParseException &exception) {
    return guarded([&] { return handler.fatalError(exception); });
}

QT_WARNING_POP

} // namespace quendar
