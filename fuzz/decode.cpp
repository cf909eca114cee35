// SPDX-License-Identifier: Apache-2.0
// What `decode --hex` does: the first byte chooses the class, the rest is the text.
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fields/RecordClass.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    if (size == 0) {
        return 0;
    }
    const auto classes = recordClasses();
    const RecordClass& recordClass = *classes[data[0] % classes.size()];
    const std::string text(data + 1, data + size);
    Bytes image;
    const std::size_t bad = parseHexDigits(text, image);
    fuzz::expect(bad == std::string::npos || bad <= text.size());
    fuzz::expect(image.size() <= text.size() / 2);
    fuzz::attempt([&] {
        for (const DecodedField& field : decodeRecord(recordClass, image)) {
            fuzz::expect(field.place.end() <= image.size() || isNone(field.value));
        }
    });
    return 0;
}
