// SPDX-License-Identifier: Apache-2.0
// Recognition of a file by content: what is recognised can be read as that, and the name decides
// nothing but records. The first byte selects the name of a class, or of none.
#include <recordkit/inspect/log/Rescue.h>
#include <recordkit/inspect/report/ImageKind.h>
#include <recordkit/inspect/sensor/SdrFile.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

namespace {

/// Whether what reads the kind finds something in the content.
bool isReadable(const Recognised& found, ByteView content)
{
    switch (found.kind) {
    case ImageKind::EVENT_LOG:
        return isEventFile(content);
    case ImageKind::SDR:
        return !parseSdrFile(content).records.empty();
    case ImageKind::RECORD:
        return found.recordClass != nullptr &&
               takenSize(*found.recordClass, content) == content.size();
    case ImageKind::EMPTY:
        return content.empty();
    default:
        return !content.empty();
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    if (size == 0) {
        return 0;
    }
    const std::vector<const RecordClass*> classes = recordClasses();
    const ByteView content(data + 1, size - 1);
    const std::string name =
        data[0] < classes.size() ? std::string(classes[data[0]]->name) + ".bin" : "file";
    const Recognised found = recognise(name, content);
    fuzz::expect(isReadable(found, content));
    const Recognised unnamed = recognise("file", content);
    fuzz::expect(unnamed.kind != ImageKind::RECORD && isReadable(unnamed, content));
    fuzz::expect(found.kind == ImageKind::RECORD || found.kind == unnamed.kind);
    return 0;
}
