// SPDX-License-Identifier: Apache-2.0
// Images that this project's command edited, read by independent decoders: ipmitool over a
// simulated controller, and ipmi-fru from the file.
#include <filesystem>
#include <gtest/gtest.h>

#include "interop/Simulator.h"
#include "support/ScratchRoot.h"

using namespace testing_support;

namespace {

/// A sample with room after its areas, so that they can grow.
std::string roomyCopy(const ScratchRoot& root, const std::string& sample)
{
    Bytes bytes = readFile(RECORDKIT_EXAMPLE_DATA "/fru/" + sample);
    bytes.resize(512, 0);
    const std::string path = root.at("/" + sample);
    writeFile(path, bytes);
    return path;
}

void set(const Arguments& words)
{
    Arguments all = {"fru", "set"};
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = run(ourCommand(all));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
}

bool contains(const std::string& text, const std::string& line)
{
    return text.find(line) != std::string::npos;
}

/// Edits within the unused space, of every coding, and one that moves the areas after it.
std::string editedImage(const ScratchRoot& root)
{
    const std::string path = roomyCopy(root, "example-json.bin");
    set({path, "board.serial=SN-4711", "board.date=2024-11-05 06:07", "chassis.type=23"});
    set({path, "--grow", "chassis.serial=CHASSIS-SERIAL-0815-4711",
         "board.part-number=A-PART-NUMBER-OF-SOME-LENGTH", "product.asset-tag=Rack 7, shelf 12"});
    return path;
}

const char* const SKIPPED = "ipmi_sim, ipmitool and ipmi-fru are not all here";

}

TEST(FruInterop, IpmitoolReadsEditedImages)
{
    if (!hasPrograms({"ipmi_sim", "ipmitool"})) {
        GTEST_SKIP() << SKIPPED;
    }
    const ScratchRoot root;
    const std::string path = editedImage(root);
    const Simulator simulator(root.path(), "mc_add_fru_data 0x20 0 512 file 0 \"" + path + "\"\n");
    const Outcome printed = simulator.ipmitool({"fru", "print", "0"});
    ASSERT_EQ(printed.status, 0) << printed.err;
    for (const char* const line :
         {" Chassis Type          : Rack Mount Chassis\n",
          " Chassis Part Number   : CHAS-C00L-12\n",
          " Chassis Serial        : CHASSIS-SERIAL-0815-4711\n",
          " Chassis Extra         : Auto-typed text custom field\n",
          " Board Mfg Date        : Tue Nov  5 06:07:00 2024 UTC\n",
          " Board Mfg             : Biggest International Corp.\n",
          " Board Serial          : SN-4711\n",
          " Board Part Number     : A-PART-NUMBER-OF-SOME-LENGTH\n",
          " Board Extra           : 0123deadbabe\n", " Product Manufacturer  : Super OEM Company\n",
          " Product Asset Tag     : Rack 7, shelf 12\n", " Product Extra         : c001beef\n"}) {
        EXPECT_TRUE(contains(printed.out, line)) << line << "is not in\n" << printed.out;
    }
    // What it read from the device equals the file.
    const std::string saved = root.at("/saved.bin");
    ASSERT_EQ(simulator.ipmitool({"fru", "read", "0", saved}).status, 0);
    EXPECT_EQ(readFile(saved), readFile(path));
}

TEST(FruInterop, IpmiFruReadsEditedImages)
{
    if (!hasPrograms({"ipmi-fru"})) {
        GTEST_SKIP() << SKIPPED;
    }
    const ScratchRoot root;
    const Outcome printed = run({"ipmi-fru", "--fru-file=" + editedImage(root)});
    ASSERT_EQ(printed.status, 0) << printed.err;
    for (const char* const line :
         {"FRU Chassis Serial Number: CHASSIS-SERIAL-0815-4711\n",
          "FRU Board Manufacturing Date/Time: 11/05/24 - 06:07:00\n",
          "FRU Board Serial Number: SN-4711\n",
          "FRU Board Part Number: A-PART-NUMBER-OF-SOME-LENGTH\n",
          "FRU Product Asset Tag: Rack 7, shelf 12\n", "FRU Product Version: v1.1\n",
          "FRU Product Custom Info: PRDCSTM2\n"}) {
        EXPECT_TRUE(contains(printed.out, line)) << line << "is not in\n" << printed.out;
    }
    EXPECT_FALSE(contains(printed.out, "FRU Error")) << printed.out;
    EXPECT_FALSE(contains(printed.err, "invalid")) << printed.err;
    // The multirecord area moved along: its management record is found.
    EXPECT_TRUE(contains(printed.out, "FRU Management Access")) << printed.out;
}
