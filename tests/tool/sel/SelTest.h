// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_TOOL_SEL_SELTEST_H
#define RECORDKIT_TESTS_TOOL_SEL_SELTEST_H

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"

namespace testing_support {

using Json = nlohmann::json;

constexpr std::size_t SLOT = 138;
constexpr std::size_t FULL_FILE = 110400;
inline const std::string EVENTS = RECORDKIT_EXAMPLE_DATA "/sel/events.raw";

/// A hex line of 16 record bytes.
inline std::string hexRecord(unsigned int id, const std::string& rest)
{
    char text[16];
    std::snprintf(text, sizeof text, "%02x%02x", id & 0xFF, id >> 8);
    return text + rest + "\n";
}

/// A system event at a time (little-endian hex digits).
inline std::string eventAt(unsigned int id, const std::string& time,
                           const std::string& sensorAndEvent)
{
    return hexRecord(id, "02" + time + "200004" + sensorAndEvent);
}

inline const std::string TIME_1 = "ccb52967"; // 2024-11-05 06:06:04
inline const std::string TIME_2 = "0cb62967"; // 2024-11-05 06:07:08
inline const std::string THERMAL_TRIP = "07706f01ffff";
inline const std::string FAN_WARNING = "041001500102";
inline const std::string FAN_INSERTED = "0410080103ff";

/// The command on the event logs of a scratch root.
class SelTest : public testing::Test {
protected:
    Outcome sel(const Arguments& arguments, const std::string& input = "") const
    {
        Arguments words = {"--root", root.path(), "sel"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }
    void initialise() const { ASSERT_EQ(sel({"init"}).status, 0); }
    void fill(unsigned int count, unsigned int firstId = 1) const
    {
        std::string lines;
        for (unsigned int id = firstId; id < firstId + count; ++id) {
            lines += eventAt(id, TIME_1, THERMAL_TRIP);
        }
        const Outcome outcome = sel({"add", "-", "--board", "1"}, lines);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
    std::string working(int board) const
    {
        return root.at("/tmp/sb" + std::to_string(board) + "_bmc_sel0");
    }
    std::string kept(int board, int index) const
    {
        return root.at("/var/tav/fmem/ipmi/sb" + std::to_string(board) + "_bmc_sel" +
                       std::to_string(index));
    }
    /// The objects of an ndjson listing.
    std::vector<Json> listed(const Arguments& options) const
    {
        Arguments words = {"list", "--ndjson"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = sel(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        std::vector<Json> objects;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            objects.push_back(Json::parse(line));
        }
        return objects;
    }
    std::vector<int> listedIds(const Arguments& options) const
    {
        std::vector<int> ids;
        for (const Json& object : listed(options)) {
            ids.push_back(object["id"].get<int>());
        }
        return ids;
    }
    /// Every file below the root with its content.
    std::map<std::string, Bytes> snapshot() const
    {
        std::map<std::string, Bytes> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root.path())) {
            files[entry.path().string()] =
                entry.is_regular_file() ? readFile(entry.path().string()) : Bytes();
        }
        return files;
    }
    /// A run that must be refused, and change nothing.
    void expectRefused(int status, const Arguments& arguments, const std::string& message,
                       const std::string& input = "") const
    {
        const auto before = snapshot();
        const Outcome outcome = sel(arguments, input);
        EXPECT_EQ(outcome.status, status) << outcome.out << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
        EXPECT_EQ(snapshot(), before);
    }

    ScratchRoot root;
};

using Ids = std::vector<int>;

}

#endif
