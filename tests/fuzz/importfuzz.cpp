// SPDX-License-Identifier: MIT
#include "document/document.h"
#include "engine/application.h"
#include "fuzz/fuzzeddevice.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "report/error.h"
#include "stages/changedsections.h"
#include "stages/exportsettings.h"
#include "stages/roomcheck.h"

using namespace quendar;

namespace {

/// One export for all imports: each would leak inside the engine.
ExportedSettings currentSettings() {
    static int argumentCount = 0;
    static const Application application(argumentCount, nullptr);
    return exportSettings();
}

/// The quick look at a plain document lets nothing pass that a reader would refuse, and misses nothing in it.
void checkQuickLook(const QByteArray &document) {
    const auto quick = scanPlainDocument(document);
    if (!quick)
        return;
    const QByteArray notPlain = document + "<!-- so it is not plain -->";
    const Contents contents = scanDocument(notPlain, decodedDocument(notPlain));
    const Names &names = contents.names;
    if (!quick->names.local.contains(names.local) || !names.prefixes.isEmpty() || !names.namespaceUris.isEmpty() ||
        !quick->entries.contains(contents.entries) || quick->unnamedEntries < contents.unnamedEntries)
        qFatal("the quick look missed something");
}

/// An import without its applies.
void import(const QByteArray &bytes, const ExportedSettings &current) {
    TessaroClient client;
    LumoConfigViewModifier applier(client, [](const Warning &) {});
    try {
        const Document document = checkedDocument(bytes);
        changedSections(document, current.document);
        requireRoom(document, current);
        applyDocument(document.text, applier);
    } catch (const Error &) {
        applier.rollback();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uchar *data, std::size_t size) {
    static FuzzedDevice device;
    static const ExportedSettings current = currentSettings();

    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<int>(size));
    checkQuickLook(document);
    device.reset();
    import(document, current);
    device.requireOnlySettingsChanged();
    return 0;
}
