// SPDX-License-Identifier: MIT
/// A way for exceptions around the reader.
#pragma once

#include <QtXml/QXmlDefaultHandler>

#include <exception>

namespace quendar {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader that this serves is deprecated as a whole

/// Stands between the reader and a handler that throws: no exception may cross the reader, which on some platforms
/// is built without unwind tables, so that the process would end. Keeps the first exception, stops the reader, and
/// ignores what the reader reports of that.
class ReaderGuard : public QXmlDefaultHandler {
public:
    /// @p guarded must outlive this object.
    explicit ReaderGuard(QXmlDefaultHandler &guarded) : handler(guarded) {}

    /// Throws what the handler threw, if anything; to be called when the reader has returned.
    void rethrow() const;

    bool startElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName,
                      const QXmlAttributes &attributes) override;
    bool endElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName) override;
    bool characters(const QString &text) override;
    bool fatalError(const QXmlParseException &exception) override;

private:
    template <typename Callback>
    bool guarded(const Callback &callback);

    QXmlDefaultHandler &handler;
    std::exception_ptr caught;
};

QT_WARNING_POP

} // namespace quendar
