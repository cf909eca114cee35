// SPDX-License-Identifier: Apache-2.0
// 10,000 images mutated from modules of every generation, with fixed seeds, through show, diff and
// audit: no crash, no hang, and answers that agree with each other.
#include <algorithm>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/memory/SpdAudit.h>
#include <recordkit/inspect/memory/SpdDifference.h>

#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;
using testing_support::Bytes;

namespace {

constexpr unsigned int BATCHES = 20;
constexpr unsigned int IMAGES = 500; // in a batch

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t limit)
{
    return random() % limit;
}

Bytes lpddr3AsDdr3()
{
    Bytes image = ddr3Module();
    image[2] = 0xF1;
    return image;
}

Bytes lpddr5AsLpddr4()
{
    Bytes image = lpddr4Module();
    image[2] = 0x13;
    image[3] = 0x0E;
    return image;
}

Bytes mutated(Random& random)
{
    const std::vector<Bytes> modules = {spdModule(),    ddr3Module(),    lpddr3AsDdr3(),
                                        ddr4Module(),   ddr5Module(),    lpddr4Module(),
                                        lpddr5Module(), lpddr5AsLpddr4()};
    Bytes bytes = modules[below(random, modules.size())];
    const std::size_t changes = 1 + below(random, 12);
    for (std::size_t i = 0; i < changes && !bytes.empty(); ++i) {
        // Mostly where most facts are.
        const std::size_t reach = std::min<std::size_t>(
            bytes.size(), std::vector<std::size_t>{16, 128, 4096}[below(random, 3)]);
        const std::size_t at = below(random, reach);
        switch (below(random, 5)) {
        case 0:
            bytes[at] ^= static_cast<unsigned char>(1U << below(random, 8));
            break;
        case 1: {
            constexpr unsigned char EDGES[] = {0x00, 0x01, 0x0B, 0x0C, 0x0F, 0x10, 0x11,
                                               0x12, 0x13, 0x15, 0x7F, 0x80, 0xF1, 0xFF};
            bytes[at] = EDGES[below(random, sizeof EDGES)];
            break;
        }
        case 2:
            bytes[at] = static_cast<unsigned char>(random());
            break;
        case 3:
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         static_cast<unsigned char>(random()));
            break;
        default:
            bytes.resize(below(random, 8) == 0 ? below(random, bytes.size()) : bytes.size());
            break;
        }
    }
    return bytes;
}

class SpdMutation : public testing::TestWithParam<unsigned int> {
protected:
    void SetUp() override
    {
        for (unsigned int i = 0; i < IMAGES; ++i) {
            images.push_back(mutated(random));
            files.push_back(root.at("/" + std::to_string(i) + ".bin"));
            writeFile(files.back(), images.back());
        }
    }
    Outcome runOnAll(const char* subcommand) const
    {
        Arguments words = {"spd", subcommand, "--ndjson"};
        words.insert(words.end(), files.begin(), files.end());
        return run(ourCommand(words));
    }
    /// Every line is a JSON object; returns how many there are.
    static std::size_t objectsIn(const std::string& ndjson)
    {
        std::istringstream lines(ndjson);
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            EXPECT_TRUE(nlohmann::json::accept(line)) << line;
        }
        return count;
    }

    ScratchRoot root;
    Random random{GetParam()};
    std::vector<Bytes> images;
    std::vector<std::string> files;
};

}

TEST_P(SpdMutation, ShowDiffAndAuditHoldOut)
{
    std::vector<Spd> modules;
    std::vector<const Bytes*> decoded;
    for (const Bytes& image : images) {
        try {
            modules.push_back(parseSpd(image));
            decoded.push_back(&image);
        } catch (const Error&) {
            EXPECT_THROW(compareSpdImages(image, ddr4Module()), Error);
        }
    }
    // Many are decoded, and some are not.
    EXPECT_GT(modules.size(), IMAGES / 2);
    EXPECT_LT(modules.size(), IMAGES);

    const Outcome shown = runOnAll("show");
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(objectsIn(shown.out), modules.size());
    const Outcome audited = runOnAll("audit");
    EXPECT_EQ(audited.status, 1);
    const std::vector<SpdFinding> findings = auditSpdModules(modules, 0xFFFFFFFF);
    for (const SpdFinding& finding : findings) {
        EXPECT_LT(finding.module, modules.size());
        EXPECT_FALSE(finding.text.empty());
    }
    EXPECT_GT(objectsIn(audited.out), modules.size() / 2);

    for (std::size_t i = 0; i < decoded.size(); ++i) {
        const Bytes& image = *decoded[i];
        const Bytes& next = *decoded[(i + 1) % decoded.size()];
        EXPECT_TRUE(compareSpdImages(image, image).empty());
        const std::vector<SpdDifference> there = compareSpdImages(image, next);
        const std::vector<SpdDifference> back = compareSpdImages(next, image);
        EXPECT_EQ(there.empty(), image == next);
        ASSERT_EQ(there.size(), back.size());
        for (std::size_t k = 0; k < there.size(); ++k) {
            EXPECT_EQ(there[k].what, back[k].what);
            EXPECT_EQ(there[k].first, back[k].second);
            EXPECT_EQ(there[k].second, back[k].first);
        }
    }
    for (std::size_t i = 0; i < 2; ++i) {
        const Outcome diff = run(ourCommand({"spd", "diff", files[i], files[i + 2], "--ndjson"}));
        EXPECT_EQ(diff.status, 1);
        objectsIn(diff.out);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SpdMutation, testing::Range(1U, BATCHES + 1));
