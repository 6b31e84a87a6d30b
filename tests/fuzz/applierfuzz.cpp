// SPDX-License-Identifier: MIT
#include "document/document.h"
#include "fuzz/fuzzeddevice.h"
#include "modifier/documentreader.h"
#include "modifier/lumoconfigviewmodifier.h"
#include "report/error.h"

using namespace quendar;

extern "C" int LLVMFuzzerTestOneInput(const uchar *data, std::size_t size) {
    static FuzzedDevice device;

    device.reset();
    LumoConfigViewModifier applier;
    try {
        applyDocument(decodedDocument(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size))),
                      applier);
    } catch (const Error &) {
        applier.rollback();
    }
    device.requireOnlySettingsChanged();
    return 0;
}
