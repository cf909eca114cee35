// SPDX-License-Identifier: Apache-2.0
// A FRU image taken apart, edited, repaired and resized. An edit that is not refused leaves an
// image with the new value and no more problems than before; a repair leaves nothing to repair.
#include <algorithm>

#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruParts.h>
#include <recordkit/inspect/fru/FruRepair.h>

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

void expectNoWorse(const std::string& bytes, const FruImage& before)
{
    const FruImage after = parseFruImage(bytes);
    fuzz::expect(after.isFru && after.header.isRight());
    fuzz::expect(after.allProblems().size() <= before.allProblems().size());
}

/// Sets every field of the records to what it is, and takes each record away.
void editRecords(const std::string& bytes, const FruImage& before)
{
    for (const FruMultiRecord& record : before.records) {
        const std::string& name = record.content.name;
        for (const MultiRecordField& field : record.content.fields) {
            fuzz::attempt([&] {
                const std::string same =
                    editFruImage(bytes, {{name + "." + field.name, field.text}}, {}).bytes;
                expectNoWorse(same, before);
            });
        }
        fuzz::attempt([&] {
            const std::string without = removeFromFruImage(bytes, {name}, {}).bytes;
            expectNoWorse(without, before);
            fuzz::expect(parseFruImage(without).records.size() + 1 == before.records.size());
        });
    }
}

/// Adds parts, and takes areas and custom fields away.
void changeParts(const std::string& bytes, const FruImage& before, const FruEditOptions& options)
{
    for (const char* const part : {"chassis", "board.custom", "dc-load", "module-current"}) {
        fuzz::attempt([&] {
            expectNoWorse(addToFruImage(bytes, {{part, ""}}, options).bytes, before);
        });
    }
    for (const char* const part : {"product", "chassis.custom1", "internal"}) {
        fuzz::attempt(
            [&] { expectNoWorse(removeFromFruImage(bytes, {part}, options).bytes, before); });
    }
}

void repair(const std::string& bytes)
{
    fuzz::attempt([&] {
        const FruRepair repaired = repairFruImage(bytes);
        fuzz::expect(repaired.bytes.size() == bytes.size());
        fuzz::expect(repaired.repairs.empty() == (repaired.bytes == bytes));
        fuzz::expect(repairFruImage(repaired.bytes).repairs.empty());
    });
}

void resize(const std::string& bytes, const FruImage& before, std::size_t size)
{
    fuzz::attempt([&] {
        const std::string resized = resizeFruImage(bytes, size);
        fuzz::expect(resized.size() == size);
        fuzz::expect(resized.substr(0, std::min(size, bytes.size())) ==
                     bytes.substr(0, std::min(size, bytes.size())));
        if (before.allProblems().empty()) {
            fuzz::expect(parseFruImage(resized).allProblems().empty());
        }
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
    FruEditOptions options;
    options.repairsChecksums = (choice & 0x80) != 0;
    editRecords(bytes, plain);
    changeParts(bytes, plain, options);
    repair(bytes);
    resize(bytes, plain, choice * 16UL);
    return 0;
}
