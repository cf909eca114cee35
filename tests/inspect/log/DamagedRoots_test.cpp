// SPDX-License-Identifier: Apache-2.0
// Two thousand damaged logs: no event that a whole slot still contains gets lost.
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

#include <recordkit/inspect/log/BoardLog.h>
#include <recordkit/inspect/log/LogRepair.h>
#include <recordkit/inspect/log/Rescue.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "support/EventFiles.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using recordkit::inspect::BoardLog;
using recordkit::inspect::LogSlot;
using recordkit::inspect::repairLog;
using recordkit::inspect::rescueRecords;
using TAVLib::RecordKit::SELChainReader;
using TAVLib::RecordKit::SELStoreCheck;

// Thousands of repairs would wait for the disk; what they write is in the page cache anyway.
extern "C" void __wrap_sync()
{
}
extern "C" int __wrap_fsync(int)
{
    return 0;
}

namespace {

/// Of four tests, which run side by side.
#ifdef RECORDKIT_SLOW_PROGRAMS
constexpr unsigned int ROOTS_A_TEST = 60;
#else
constexpr unsigned int ROOTS_A_TEST = 500;
#endif
constexpr unsigned char SB = 1;
constexpr unsigned int SLOT = 138;
constexpr std::size_t WORKING = 0; ///< 1 to 7 are rotated files
constexpr std::size_t BACKUP = 8;
constexpr std::size_t FILES = 9;

using Image = std::string;

Image imageOf(const unsigned char* slot)
{
    return {slot, slot + SLOT};
}

/// A log in memory, file by file; a file without bytes is missing.
class Damaged {
public:
    explicit Damaged(unsigned int seed) : random(seed)
    {
        const unsigned int rotated = below(8);
        unsigned int id = 1;
        for (unsigned int index = rotated; index > 0; --index, id += 800) {
            files[index] = eventFile(800, id);
        }
        files[WORKING] = eventFile(below(801), id);
        switch (below(4)) {
        case 0: // an ordinary backup
            files[BACKUP] = eventFile(below(count(files[WORKING]) + 1), id);
            break;
        case 1: // a rotation that was cut off
            files[BACKUP] = files[WORKING];
            files[WORKING] = eventFile(0, 1);
            break;
        default:
            break;
        }
        for (const Bytes& file : files) {
            for (const Image& image : imagesIn(file)) {
                events.insert(image);
            }
        }
        for (unsigned int i = 1 + below(3); i > 0; --i) {
            damage();
        }
    }

    void write(const std::string (&paths)[FILES]) const
    {
        for (std::size_t i = 0; i < FILES; ++i) {
            // A new file: some file systems write one to the disk that replaces another.
            std::filesystem::remove_all(paths[i]);
            if (!isMissing[i] && (!files[i].empty() || wasCut[i])) {
                writeFile(paths[i], files[i]);
            }
        }
    }

    /// The events that a whole slot of any file still contains.
    std::set<Image> survivors() const
    {
        std::set<Image> left;
        for (const Bytes& file : files) {
            for (const Image& image : imagesIn(file)) {
                if (events.count(image) != 0) {
                    left.insert(image);
                }
            }
        }
        return left;
    }

    /// Whether files are in each other's place, so that a sound one may repeat another.
    bool hasSwappedFiles() const { return wasSwapped; }

private:
    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }
    static std::vector<Image> imagesIn(const Bytes& file)
    {
        std::vector<Image> images;
        for (std::size_t at = 0; at + SLOT <= file.size(); at += SLOT) {
            if (file[at + 2] != 0xFF || file[at + 3] != 0xFF) {
                images.push_back(imageOf(file.data() + at));
            }
        }
        return images;
    }
    static std::size_t count(const Bytes& file) { return imagesIn(file).size(); }

    void damage()
    {
        const std::size_t which = below(FILES);
        Bytes& file = files[which];
        switch (below(4)) {
        case 0:
            isMissing[which] = true;
            file.clear();
            break;
        case 1:
            wasCut[which] = !file.empty();
            file.resize(below(file.size() + 1));
            break;
        case 2:
            overwrite(file);
            break;
        default: {
            const std::size_t other = below(FILES);
            wasSwapped = wasSwapped || other != which;
            std::swap(file, files[other]);
            std::swap(isMissing[which], isMissing[other]);
            std::swap(wasCut[which], wasCut[other]);
            break;
        }
        }
    }
    void overwrite(Bytes& file)
    {
        if (file.empty()) {
            return;
        }
        const unsigned int from = below(file.size());
        const unsigned int size = 1 + below(std::min<std::size_t>(file.size() - from, 3000));
        const unsigned int kind = below(3);
        for (unsigned int at = from; at < from + size; ++at) {
            file[at] = static_cast<unsigned char>(kind == 0 ? 0xFF : kind == 1 ? 0 : below(256));
        }
    }

    std::mt19937 random;
    Bytes files[FILES];
    bool isMissing[FILES] = {};
    bool wasCut[FILES] = {};
    bool wasSwapped = false;
    std::set<Image> events;
};

/// What the store itself counts.
std::vector<Image> countedByStore()
{
    SELChainReader reader(SB);
    SELChainReader::Record record = {};
    std::vector<Image> images;
    while (reader.next(record)) {
        if (record.logNumber != 0) {
            images.push_back(imageOf(record.image));
            EXPECT_EQ(record.logNumber, images.size());
        }
    }
    return images;
}

std::vector<Image> listed(const BoardLog& log, bool isStrict)
{
    std::vector<Image> images;
    for (const LogSlot& slot : log.getSlots()) {
        if (slot.isShown(isStrict)) {
            images.push_back(imageOf(slot.image));
            EXPECT_EQ(slot.logNumber == 0, slot.state != recordkit::inspect::EventState::REGULAR);
        }
    }
    return images;
}

/// What `sel rescue` finds in the files that a repair set aside; takes them away.
std::set<Image> rescued(const std::string& root)
{
    std::set<Image> images;
    for (const std::string folder : {"/tmp", "/var/tav/fmem/ipmi"}) {
        for (const std::string& name : listFolder(root + folder)) {
            if (name.find(".damaged-") != std::string::npos) {
                for (const auto& record : rescueRecords(readFile(root + folder + "/" + name))) {
                    images.insert(imageOf(record.event.image.data()));
                }
                std::filesystem::remove(root + folder + "/" + name);
            }
        }
    }
    return images;
}

}

class DamagedRoots : public testing::TestWithParam<unsigned int> {};

TEST_P(DamagedRoots, LoseNoEventInAListingNorInARepair)
{
    const ScratchRoot root;
    std::string paths[FILES];
    for (std::size_t i = 0; i < FILES; ++i) {
        paths[i] = BMCSELDataFile().getFileName(SB, i == BACKUP ? 0 : static_cast<int>(i),
                                                i == BACKUP ? 1 : 0);
    }
    std::size_t repaired = 0;
    for (unsigned int i = 0; i < ROOTS_A_TEST; ++i) {
        const unsigned int seed = GetParam() * ROOTS_A_TEST + i;
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Damaged damaged(seed);
        damaged.write(paths);
        const std::set<Image> survivors = damaged.survivors();
        {
            const BoardLog log(SB);
            std::map<Image, unsigned int> times;
            for (const Image& image : listed(log, false)) {
                ++times[image];
            }
            // Where nothing looks wrong the listing is the store's: files in each other's place.
            const bool isSound = log.getProblems().empty();
            for (const Image& image : survivors) {
                ASSERT_TRUE(isSound ? times[image] >= 1 : times[image] == 1);
            }
            ASSERT_EQ(listed(log, true), countedByStore());
            ASSERT_EQ(isSound, SELStoreCheck(SB).isSound());
        }
        std::vector<std::string> actions;
        const bool isDone = repairLog(SB, actions);
        ASSERT_TRUE(isDone) << testing::PrintToString(actions);
        repaired += actions.empty() ? 0 : 1;
        std::set<Image> found = rescued(root.path());
        std::set<Image> counted;
        for (const Image& image : countedByStore()) {
            const bool isFirst = counted.insert(image).second;
            ASSERT_TRUE(isFirst || damaged.hasSwappedFiles() || survivors.count(image) == 0);
        }
        found.insert(counted.begin(), counted.end());
        ASSERT_TRUE(std::includes(found.begin(), found.end(), survivors.begin(), survivors.end()))
            << testing::PrintToString(actions);
        const BoardLog log(SB);
        ASSERT_TRUE(survivors.empty() || log.getProblems().empty())
            << log.getProblems()[0].path << log.getProblems()[0].text
            << testing::PrintToString(actions);
    }
    EXPECT_GT(repaired, ROOTS_A_TEST / 2);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamagedRoots, testing::Range(0U, 4U));
