// SPDX-License-Identifier: Apache-2.0
// The siblings stay inside the objects that the library and programs have room for: one that was
// built with another header of its own writes beyond them.
#include <algorithm>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <new>

#include <recordkit/platform/BMCMessageFile.h>
#include <recordkit/platform/CsvInfoAccess.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/TavTrace.h>

#include "Files.h"

using namespace platform_tests;

namespace {

/// Constructs an object, gives it to `use` and destroys it, and looks at what follows it in memory.
template <typename Object, typename... Arguments>
bool staysInside(const std::function<void(Object&)>& use, Arguments... arguments)
{
    constexpr std::size_t AFTER = 256;
    constexpr unsigned char UNTOUCHED = 0xA5;
    alignas(Object) unsigned char memory[sizeof(Object) + AFTER];
    std::memset(memory, UNTOUCHED, sizeof memory);
    Object* const object = new (memory) Object(arguments...);
    use(*object);
    object->~Object();
    return std::all_of(memory + sizeof(Object), memory + sizeof memory,
                       [](unsigned char byte) { return byte == UNTOUCHED; });
}

}

TEST(Layout, IsOnePointer)
{
    EXPECT_EQ(sizeof(TAVLib::BMCMessageFile), sizeof(void*));
    EXPECT_EQ(sizeof(TAVLib::CsvInfoAccess), sizeof(void*));
    EXPECT_EQ(sizeof(TAVLib::LockedFile), sizeof(void*));
    EXPECT_EQ(sizeof(TAVLib::PException), sizeof(void*));
    EXPECT_EQ(sizeof(TAVLib::trace::TavTrace), 2 * sizeof(void*));
}

TEST(Layout, SiblingsWriteOnlyThere)
{
    using namespace TAVLib;
    const ScratchFolder scratch;
    EXPECT_TRUE(staysInside<LockedFile>([](LockedFile& file) { file.write("text", 4); },
                                        scratch.at("file")));
    EXPECT_TRUE(staysInside<CsvInfoAccess>(
        [](CsvInfoAccess& table) {
            std::string record;
            table.searchRecord(0, "text", record);
        },
        scratch.path(), "file"));
    EXPECT_TRUE(staysInside<BMCMessageFile>(
        [](BMCMessageFile& messages) { messages.clearMessageFile(BOARD); }));
    EXPECT_TRUE(staysInside<trace::TavTrace>(
        [](trace::TavTrace& trace) { trace.putLog(200, "layout"); }, 1, 83, 0x0900));
    const PException e(1, 83, 0, 1, 0, 20003, reinterpret_cast<long>("text"), 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(staysInside<PException>([&e](PException& copy) { copy = e; }, e));
}
