// SPDX-License-Identifier: MIT
/// The document applier.
#pragma once

#include "document/elements.h"
#include "registry/childrencache.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"
#include "report/warning.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtXml/QXmlDefaultHandler>

#include <memory>

namespace quendar {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // the reader that this serves is deprecated as a whole

/// Writes a configuration document into the registry while a reader reports it: the text of each element into the
/// key that the element's place maps to. Creates the sessions and printers that the document adds and deletes those
/// that it drops. One object serves one document.
///
/// An element maps to the key of its parent and its own name, with these exceptions:
///
///     <lumo_config>         the view itself; its end commits what is pending
///     <session id="…">      <the section>/sessions/{…}, made and committed at once where it is missing
///     <printer id="…">      <the section>/printers/{…}, until its <name> tells which printer it is
///
/// Values are pending until a `lumo_config` ends; created sessions and every deletion are committed at once. Throws
/// out of the callbacks: Error for a document that is not well-formed or does not nest as it must, TessaroError
/// when the registry fails to list, to store a value or to commit the view. Whatever else goes wrong is a warning.
class LumoConfigViewModifier : public QXmlDefaultHandler {
public:
    /// Over a client of its own; warnings are printed.
    LumoConfigViewModifier();

    /// Over @p registryClient, which must outlive this object.
    LumoConfigViewModifier(TessaroClient &registryClient, WarningSink warningSink);
    ~LumoConfigViewModifier() override;

    bool startElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName,
                      const QXmlAttributes &attributes) override;
    bool endElement(const QString &namespaceUri, const QString &localName, const QString &qualifiedName) override;
    bool characters(const QString &text) override;
    bool fatalError(const QXmlParseException &exception) override;

    /// Drops all that is pending in the client, whoever put it there.
    void rollback();

private:
    const Children &children(const ViewKey &key);
    void setValue(const QString &value);
    bool isListedKey(const ViewKey &key);
    void enterEntry(const QString &directory, const QXmlAttributes &attributes);
    void leaveEntry(const QString &directory);
    void commitView();

    void startSessionType(const QString &sessionType);
    void startSession(const QXmlAttributes &attributes);
    void endSessionType();

    void loadPrinters();
    void startPrinter(const QXmlAttributes &attributes);
    void checkPrinterName(const QString &localName);
    bool takePrinterName(const QString &name);
    void removePrinters();

    const std::unique_ptr<TessaroClient> ownClient; // none where it was handed one
    TessaroClient &client;
    const WarningSink warn;
    ChildrenCache childrenCache;
    QString lastStartedElement; // empty once it has content
    ViewKey currentKey = viewRoot();
    const QStringList sessionTypes = element::sessionTypes();
    QStringList preexistingSessions;       // of the section being read, not met in it so far
    QMap<QString, QString> printersByName; // paths of those not met so far
    bool expectingPrinterName = false;     // a printer has started, its name has not
    bool readingPrinterName = false;       // the next text is a printer's name
    ViewKey knownAsNoKey;                  // the path that was last found to be none
};

QT_WARNING_POP

} // namespace quendar
