// SPDX-License-Identifier: Apache-2.0
// A FRU image taken apart and edited. An edit that is not refused leaves an image with the new
// value and no more problems than before.
#include <algorithm>

#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

namespace {

void edit(const std::string& bytes, const FruImage& before, const FruEdit& change,
          unsigned char choice)
{
    FruEditOptions options;
    options.mayGrow = (choice & 0x40) != 0;
    options.repairsChecksums = (choice & 0x80) != 0;
    fuzz::attempt([&] {
        const FruEditResult result = editFruImage(bytes, {change}, options);
        const FruImage after = parseFruImage(result.bytes);
        fuzz::expect(result.bytes.size() == bytes.size());
        fuzz::expect(after.findField(change.field) != nullptr);
        fuzz::expect(after.findField(change.field)->value == change.value);
        fuzz::expect(after.allProblems().size() <= before.allProblems().size());
    });
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const unsigned char choice = data[0];
    const std::string bytes(data + 1, data + size);
    const FruImage image = parseFruImage(bytes, static_cast<InternalLayout>(choice % 3));
    if (image.isFru) {
        std::size_t end = 0;
        for (const FruExtent& extent : image.map(bytes)) {
            fuzz::expect(extent.size != 0 && extent.end() <= bytes.size());
            end = std::max<std::size_t>(end, extent.end());
        }
        fuzz::expect(end == bytes.size());
    }
    const FruImage plain = parseFruImage(bytes);
    for (const FruAreaImage& area : plain.areas) {
        for (const FruField& field : area.fields) {
            if (field.isCoded) {
                edit(bytes, plain,
                     {area.extent.name + "." + field.name, std::string(2 + choice % 0x30, 'x')},
                     choice);
            }
        }
    }
    return 0;
}
