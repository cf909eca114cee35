// SPDX-License-Identifier: Apache-2.0
// 1,000 JSON texts mutated from what fru export prints, with fixed seeds, through fru create: each
// becomes an image that parses without a problem, or nothing is written and the text is named.
#include <gtest/gtest.h>
#include <random>

#include <recordkit/inspect/fru/FruImage.h>

#include "support/Process.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using recordkit::inspect::parseFruImage;

namespace {

constexpr unsigned int BATCHES = 10;
constexpr unsigned int TEXTS = 100; // in a batch

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t limit)
{
    return random() % limit;
}

/// Texts that a place in JSON can have.
const std::vector<std::string> TOKENS = {
    "null",
    "true",
    "-1",
    "0.5",
    "1e400",
    "99999999999999999999",
    "\"\"",
    "\"x\"",
    "{}",
    "[]",
    "{",
    "]",
    ",",
    ":",
    "\"",
    "\\",
    "\"record\"",
    "\"custom\":",
    "\"size\": 16,",
    "\"order\": [\"board\"],",
    "\"coding\": \"6-bit\"",
    "\"\\u0000\"",
    "\"\\ud800\"",
    "\"\xC3\xA9\"",
    "\"4100\"",
    std::string(1, '\0'),
    "\xFF",
    "\xED\xA0\x80",
    "/* */",
    std::string(200, '['),
    std::string(70, '{'),
};

std::string mutated(Random& random, std::string json)
{
    const std::size_t changes = 1 + below(random, 3);
    for (std::size_t i = 0; i < changes && !json.empty(); ++i) {
        const std::size_t at = below(random, json.size());
        const std::string& token = TOKENS[below(random, TOKENS.size())];
        switch (below(random, 6)) {
        case 0:
            json[at] = static_cast<char>(random());
            break;
        case 1:
            json.resize(at);
            break;
        case 2:
            json.insert(at, token);
            break;
        case 3: { // in place of a value
            const std::size_t value = json.find(": ", at);
            const std::size_t end = json.find_first_of(",\n", value);
            if (value != std::string::npos && end != std::string::npos) {
                json.replace(value + 2, end - value - 2, token);
            }
            break;
        }
        case 4: { // another digit
            const std::size_t digit = json.find_first_of("0123456789", at);
            if (digit != std::string::npos) {
                json[digit] = static_cast<char>('0' + below(random, 10));
            }
            break;
        }
        default: { // a line there twice, or not at all
            const std::size_t begin = json.find('\n', at);
            const std::size_t end = json.find('\n', begin + 1);
            if (begin != std::string::npos && end != std::string::npos) {
                const std::string line = json.substr(begin, end - begin);
                random() % 2 == 0 ? json.insert(begin, line) : json.erase(begin, end - begin);
            }
        }
        }
    }
    return json;
}

class FruJsonMutation : public testing::TestWithParam<unsigned int> {};

}

INSTANTIATE_TEST_SUITE_P(Batches, FruJsonMutation, testing::Range(0U, BATCHES));

TEST_P(FruJsonMutation, CreatesAnImageOrNothing)
{
    const ScratchRoot root;
    Random random(GetParam());
    std::vector<std::string> texts;
    for (const std::string& path : sampleImages()) {
        const Outcome outcome = run(ourCommand({"fru", "export", path}));
        if (!outcome.out.empty()) {
            texts.push_back(outcome.out);
        }
    }
    ASSERT_GE(texts.size(), 5U);
    const std::string input = root.at("/input.json");
    const std::string image = root.at("/image");
    unsigned int done = 0;
    for (unsigned int i = 0; i < TEXTS; ++i) {
        writeFile(input, mutated(random, texts[below(random, texts.size())]));
        const std::size_t files = listFolder(root.path()).size();
        const Outcome outcome = run(ourCommand({"fru", "create", "--from", input, "-o", image}));
        if (outcome.status == 0) {
            ++done;
            const auto bytes = readFile(image);
            const auto parsed = parseFruImage(bytes);
            ASSERT_TRUE(parsed.isFru);
            // Records may still end before their fields: they have that data in the JSON.
            ASSERT_EQ(parsed.allProblems().size(), parsed.contentProblems.size())
                << parsed.allProblems().front();
            std::remove(image.c_str());
        } else {
            ASSERT_EQ(outcome.status, 1) << outcome.err;
            ASSERT_EQ(outcome.err.find("recordkit: " + input + ": "), 0U) << outcome.err;
            ASSERT_EQ(outcome.out, "");
            ASSERT_FALSE(fileExists(image));
        }
        ASSERT_EQ(listFolder(root.path()).size(), files);
    }
    EXPECT_GT(done, 0U);
    EXPECT_LT(done, TEXTS);
}
