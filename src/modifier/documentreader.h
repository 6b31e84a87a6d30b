// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class LumoConfigViewModifier;

/// The text of a document, decoded as its first bytes and its declaration say. Line ends are line feeds, as every
/// reader of XML has them; the reader in use would hand on carriage returns.
QString decodedDocument(const QByteArray &document);

/// Has @p applier apply the whole text of a document. What the applier throws is thrown from here.
void applyDocument(const QString &document, LumoConfigViewModifier &applier);
