// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SELFILE_STOREFIXTURE_H
#define RECORDKIT_TESTS_SELFILE_STOREFIXTURE_H

#include <algorithm>
#include <gtest/gtest.h>

#include <recordkit/selfile/BMCSELDataFile.h>

#include "support/Bytes.h"
#include "support/Failures.h"
#include "support/ScratchRoot.h"

namespace testing_support {

constexpr std::size_t SLOT = 138;
constexpr std::size_t FULL_FILE = 110400;

using Message = TAVLib::RecordKit::BMCSELEntryMessage;

/// A slot with a record with this id; its other bytes depend on id and filler.
inline Bytes slotOf(unsigned int id, unsigned char filler = 0x40)
{
    Bytes slot = sequence(SLOT, filler + id);
    slot[2] = static_cast<unsigned char>(id & 0xFF);
    slot[3] = static_cast<unsigned char>(id >> 8);
    return slot;
}

/// A file whose slots contain `count` records with ids from `firstId` on; the other slots are
/// empty.
inline Bytes fileOf(std::size_t count, unsigned int firstId = 1)
{
    Bytes file(FULL_FILE, 0xFF);
    for (std::size_t i = 0; i < count; ++i) {
        const Bytes slot = slotOf((firstId + static_cast<unsigned int>(i)) % 0xFFFF);
        std::copy(slot.begin(), slot.end(), file.begin() + static_cast<long>(i * SLOT));
    }
    return file;
}

/// An event log of board 1 in a scratch root, with all trace lines captured.
class StoreTest : public testing::Test {
protected:
    static constexpr unsigned char SB = 1;

    std::string working() const { return root.at("/tmp/sb1_bmc_sel0"); }
    std::string kept(int index) const
    {
        return root.at("/var/tav/fmem/ipmi/sb1_bmc_sel" + std::to_string(index));
    }
    std::string shiftRequest() const { return root.at("/var/tmp/shift_sel_sync"); }
    std::string lockFile() const { return root.at("/var/tav/fmem/ipmi/sb1_bmc_sel.lock"); }
    /// Without the lock's file, which stays once it was made.
    Lines keptNames() const
    {
        Lines names = listFolder(root.at("/var/tav/fmem/ipmi"));
        names.erase(std::remove(names.begin(), names.end(), "sb1_bmc_sel.lock"), names.end());
        return names;
    }

    /// A trace line of the store itself.
    static std::string line(const std::string& text) { return "1:83:0x1000 level 0: " + text; }
    /// As much of a trace line as fits the message buffer.
    static std::string cut(const std::string& text) { return line(text.substr(0, 119)); }
    std::string openFailed(const std::string& path, int error) const
    {
        return cut("open filename:[" + path + "] failed: errno " + std::to_string(error));
    }

    ScratchRoot root;
    TraceCapture trace;
    BMCSELDataFile store;
};

}

#endif
