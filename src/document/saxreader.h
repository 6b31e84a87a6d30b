// SPDX-License-Identifier: MIT
/// The reader whose messages and line numbers administrators know.
#pragma once

#include <QtXml/QXmlDefaultHandler>

namespace quendar {

/// Which attributes a handler is told of.
enum class Attributes { WithoutNamespaces, All };

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // as the reader is as a whole

/// Has the reader report a document, from its decoded text, to @p handler, which must not throw: on 32-bit ARM no
/// exception may pass through the reader. What is not well-formed is reported as a fatal error.
void reportDocument(const QString &text, QXmlDefaultHandler &handler,
                    Attributes attributes = Attributes::WithoutNamespaces);

QT_WARNING_POP

} // namespace quendar
