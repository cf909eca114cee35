// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/NewEvents.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "selfile/StoreFixture.h"

using namespace testing_support;
using recordkit::inspect::NewEvents;

namespace {

class NewEventsTest : public StoreTest {
protected:
    std::vector<unsigned int> taken()
    {
        std::vector<recordkit::inspect::LogProblem> problems;
        std::vector<unsigned int> ids;
        for (const auto& event : events.take(problems)) {
            ids.push_back(event.recordId);
        }
        return ids;
    }

    NewEvents events = NewEvents(SB);
};

using Ids = std::vector<unsigned int>;

}

TEST_F(NewEventsTest, AreGivenOnceAndOldestFirst)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(taken(), Ids({10, 11, 12}));
    EXPECT_EQ(taken(), Ids());
    writeFile(working(), fileOf(5, 10));
    EXPECT_EQ(taken(), Ids({13, 14}));
}

TEST_F(NewEventsTest, AreFoundAfterARotation)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(taken(), Ids({10, 11, 12}));
    writeFile(working(), fileOf(5, 10));
    ASSERT_EQ(store.shiftSelFile(SB, true), 0);
    writeFile(working(), fileOf(1, 15));
    EXPECT_EQ(taken(), Ids({13, 14, 15}));
}

TEST_F(NewEventsTest, AreGivenOnceDuringARotation)
{
    writeFile(kept(1), fileOf(800, 100));
    writeFile(working(), fileOf(3, 10));
    ASSERT_EQ(taken().size(), 803U);
    // The working file is copied and emptied; then the chain is renamed, file by file.
    writeFile(working(), fileOf(4, 10));
    ASSERT_EQ(store.makeCopySELFile(SB), 0U);
    EXPECT_EQ(taken(), Ids({13}));
    std::filesystem::rename(kept(1), kept(2));
    EXPECT_EQ(taken(), Ids());
    std::filesystem::rename(kept(0), kept(1));
    EXPECT_EQ(taken(), Ids());
}

TEST_F(NewEventsTest, OfTheStoreAreGivenOnceAlthoughARotationHidesThem)
{
    events = NewEvents(SB, true);
    writeFile(kept(1), fileOf(2, 10));
    writeFile(working(), fileOf(1, 20));
    EXPECT_EQ(taken(), Ids({10, 11, 20}));
    ASSERT_EQ(store.makeCopySELFile(SB), 0U);
    EXPECT_EQ(taken(), Ids());
    std::filesystem::rename(kept(1), kept(2));
    EXPECT_EQ(taken(), Ids());
    std::filesystem::rename(kept(0), kept(1));
    EXPECT_EQ(taken(), Ids());
}

TEST_F(NewEventsTest, AreGivenOnceAndAllWhileTheLogRotates)
{
    constexpr unsigned int ROUNDS = 20;
    constexpr unsigned int ROTATIONS = 6; // The chain of seven files keeps every event of a round.
    unsigned int next = 1;
    writeFile(working(), fileOf(0));
    for (unsigned int round = 0; round < ROUNDS; ++round) {
        const unsigned int first = next;
        next += 2 * ROTATIONS;
        std::atomic<bool> isDone = false;
        std::thread writer([&] {
            for (unsigned int id = first; id < next; id += 2) {
                for (const unsigned int each : {id, id + 1}) {
                    auto event = fromBytes<Message>(slotOf(each));
                    store.writeRecord(SB, event);
                }
                store.shiftSelFile(SB, true);
            }
            isDone = true;
        });
        Ids ids;
        bool isLast = false;
        while (!isLast) {
            isLast = isDone;
            const Ids some = taken();
            ids.insert(ids.end(), some.begin(), some.end());
        }
        writer.join();
        Ids all;
        for (unsigned int id = first; id < next; ++id) {
            all.push_back(id);
        }
        EXPECT_EQ(ids, all);
    }
}

TEST_F(NewEventsTest, AreAllOfThemWhenTheLogWasCleared)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(taken(), Ids({10, 11, 12}));
    ASSERT_EQ(store.clearAllRecord(SB), 0U);
    EXPECT_EQ(taken(), Ids());
    writeFile(working(), fileOf(2, 1));
    EXPECT_EQ(taken(), Ids({1, 2}));
}

TEST_F(NewEventsTest, AreGivenAlsoWhereASlotBeforeOthersIsFilled)
{
    Bytes file = fileOf(3, 10);
    const Bytes stray = slotOf(40);
    std::copy(stray.begin(), stray.end(), file.begin() + 5 * SLOT);
    writeFile(working(), file);
    EXPECT_EQ(taken(), Ids({10, 11, 12, 40}));
    patchFile(working(), 3 * SLOT, slotOf(13));
    EXPECT_EQ(taken(), Ids({13}));
}

TEST_F(NewEventsTest, AreAsManyOfEqualOnesAsThereAreMore)
{
    const Bytes equal = slotOf(10);
    Bytes file = fileOf(1, 10);
    writeFile(working(), file);
    EXPECT_EQ(taken(), Ids({10}));
    std::copy(equal.begin(), equal.end(), file.begin() + 1 * SLOT);
    std::copy(equal.begin(), equal.end(), file.begin() + 2 * SLOT);
    writeFile(working(), file);
    EXPECT_EQ(taken(), Ids({10, 10}));
    EXPECT_EQ(taken(), Ids());
}
