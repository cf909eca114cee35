// SPDX-License-Identifier: Apache-2.0
// Processor ROMs: every block and item, and everything that the cpu command derives from them.
#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/util/Util.h>

#include "Fuzz.h"

using namespace recordkit::inspect;
using TAVLib::RecordKit::Util;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    ImageDevice device(std::string(data, data + size));
    fuzz::attempt([&] {
        FRUData fru(device, FRU_CPU_ROM);
        for (int id = FRU_AREA_CPU_HEADER; id <= FRU_AREA_CPU_OTHER; ++id) {
            const auto area = static_cast<FRU_AREA>(id);
            fru.getAreaOffset(area);
            fuzz::attempt([&] {
                for (const FRUMember* member :
                     fru.getAreaObject(area, FRUArea::CSUM_IGNORE)->getMembers()) {
                    std::string bytes;
                    fru.getItem(area, member->getItem(), bytes, FRUArea::CSUM_IGNORE);
                }
            });
        }
        for (const FRU_ITEM derived : {FRU_ITEM_CPU_MODEL, FRU_ITEM_CPU_CORE_FLAG,
                                       FRU_ITEM_CPU_CORE_HIGH, FRU_ITEM_CPU_CORE_LOW2}) {
            fuzz::attempt([&] {
                std::string bytes;
                fru.getItem(FRU_AREA_CPU_CORE, derived, bytes, FRUArea::CSUM_IGNORE);
                fuzz::expect(Util::getBCDtoHexValue(bytes) <= 165'000'000);
            });
        }
        fuzz::attempt([&] { Util::getCPUCache(fru); });
        fuzz::attempt([&] { Util::getCPUModelType(fru); });
        fuzz::attempt([&] { Util::getCPUStepping(fru); });
        fuzz::attempt([&] { Util::getCPUPartNumber(fru, 0); });
        fuzz::attempt([&] { Util::getCPUModelName(fru, Util::DISPLAY_MODE_MARKUP); });
        fuzz::attempt([&] { Util::getCPUModelName(fru, Util::DISPLAY_MODE_PLAIN); });
    });
    return 0;
}
