// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <future>

#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/platform/PException.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

/// The EEPROMs to be erased: the one of the arguments, or all.
std::vector<EfiPlace> chosenPlaces(const Arguments& arguments)
{
    if (arguments.has("PARTITION") != arguments.has("BANK")) {
        throw usageError("expected PARTITION and BANK, or neither");
    }
    return arguments.has("PARTITION") ? std::vector<EfiPlace>{efiPlaceOf(arguments)} : efiPlaces();
}

/// The erasure of the marked blocks of one EEPROM, concurrently with others.
struct Erasure {
    EfiPlace place;
    std::size_t blocks;
    std::future<void> done;
};

std::vector<Erasure> startAll(const Arguments& arguments)
{
    const EfiIndex index = openEfiStore(arguments);
    std::vector<Erasure> erasures;
    for (const EfiPlace& place : chosenPlaces(arguments)) {
        const std::size_t blocks = markedBlocks(index, place).size();
        if (blocks != 0) {
            erasures.push_back({place, blocks, std::async(std::launch::async, [place, &arguments] {
                                    auto device = openImages(arguments);
                                    TAVLib::RecordKit::EFIBackupEEPROMData(device).clearExecute(
                                        place.partition, place.bank);
                                })});
        }
    }
    return erasures;
}

void run(const Arguments& arguments)
{
    std::vector<Erasure> erasures = startAll(arguments);
    if (erasures.empty()) {
        print("no block is pending erasure\n");
    }
    Problems problems;
    std::size_t number = 0;
    for (Erasure& erasure : erasures) {
        const std::string what = fmt::format("EEPROM {}", erasure.place.eeprom());
        try {
            erasure.done.get();
            print(fmt::format("[{}/{}] {}: {} erased\n", ++number, erasures.size(), what,
                              counted(erasure.blocks, "block")));
            std::fflush(stdout);
        } catch (const TAVLib::PException& e) {
            ++number;
            problems.add(what, "failed: " + failureText(e), EXIT_FILE);
        }
    }
    problems.finish();
}

}

Command efiClearCommand()
{
    return {"eeprom efi clear",
            "Erase the marked blocks, several EEPROMs concurrently",
            "recordkit eeprom efi clear --images board",
            {efiPartition().optional(), efiBank().optional(), images()},
            Answer::TEXT,
            run};
}

}
