// SPDX-License-Identifier: MIT
#include "commands/getcommand.h"
#include "document/charreferences.h"
#include "document/documentscan.h"
#include "document/plaindocument.h"
#include "fuzz/fuzzeddevice.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "report/error.h"
#include "stages/changedsections.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>

namespace {

/// One export for all imports: each would leak inside the engine.
NamedDocument currentSettings() {
    static int argumentCount = 0;
    static const QCoreApplication application(argumentCount, nullptr);
    QCoreApplication::setLibraryPaths({});
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    GetCommand::exportConfig(&buffer);
    return {buffer.data(), namesOfPlainDocument(buffer.data()).value()};
}

/// The quick look at a plain document lets nothing pass that a reader would refuse, and misses none of its names.
void checkQuickLook(const QByteArray &document) {
    const auto quick = namesOfPlainDocument(document);
    if (!quick)
        return;
    const Names names = checkDocument(document + "<!-- so it is not plain -->");
    if (!quick->local.contains(names.local) || !names.prefixes.isEmpty() || !names.namespaceUris.isEmpty())
        qFatal("the quick look missed a name");
}

/// An import without its applies.
void import(const QByteArray &document, const NamedDocument &current) {
    LumoConfigViewModifier applier;
    try {
        const QString text = decodedDocument(document);
        const Names names = checkDocument(document);
        if (lineOfUnsupportedReference(text) != 0)
            return;
        changedSections({document, names}, current);
        applyDocument(text, applier);
    } catch (const Error &) {
        applier.rollback();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uchar *data, std::size_t size) {
    static FuzzedDevice device;
    static const NamedDocument current = currentSettings();

    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<int>(size));
    checkQuickLook(document);
    device.reset();
    import(document, current);
    device.requireOnlySettingsChanged();
    return 0;
}
