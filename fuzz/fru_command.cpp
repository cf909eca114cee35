// SPDX-License-Identifier: Apache-2.0
// What the fru command does with an image: taken apart, printed, edited. An edit that is not
// refused leaves an image with the new value and no more problems than before.
#include <recordkit/inspect/fru/FruEdit.h>

#include "Fuzz.h"
#include "tool/fru/FruPrinter.h"

using namespace recordkit::inspect;
using namespace recordkit::tool;

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
    describeFru(image, bytes, false);
    indented(toJson(image, bytes));
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
