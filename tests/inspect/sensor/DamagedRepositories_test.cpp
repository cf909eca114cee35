// SPDX-License-Identifier: Apache-2.0
// Ten thousand damaged repositories: whatever the bytes are, every record is described whole.
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

#include "support/ScratchRoot.h"
#include "support/SdrProperties.h"
#include "support/SdrSamples.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

#ifdef RECORDKIT_SLOW_PROGRAMS
constexpr unsigned int REPOSITORIES = 1000;
#else
constexpr unsigned int REPOSITORIES = 10000;
#endif

/// Our own repository, a record of each type, and the public repositories if they are here.
std::vector<std::vector<Bytes>> repositories()
{
    std::vector<std::string> paths = {RECORDKIT_EXAMPLE_DATA "/sdr/repository.sdr"};
    const std::string shared = RECORDKIT_PUBLIC_DATA "/sdr";
    if (std::filesystem::exists(shared)) {
        for (const auto& entry : std::filesystem::directory_iterator(shared)) {
            if (entry.path().extension() == ".sdr") {
                paths.push_back(entry.path().string());
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<std::vector<Bytes>> all(1);
    for (const Bytes* const sample : sdr_samples::SAMPLES) {
        all[0].push_back(*sample);
    }
    for (const std::string& path : paths) {
        all.emplace_back();
        for (const SdrRecord& record : parseSdrFile(readFile(path)).records) {
            all.back().push_back(record.bytes);
        }
    }
    return all;
}

/// Some records of a repository, damaged in one to eight places.
class Damage {
public:
    explicit Damage(unsigned int seed) : random(seed) {}

    std::string of(const std::vector<Bytes>& records, bool areResponses)
    {
        Bytes content;
        for (std::size_t i = 1 + below(25), at = below(records.size()); i > 0; --i, ++at) {
            if (areResponses) {
                content = content + Bytes({0xFF, 0xFF});
            }
            content = content + records[at % records.size()];
        }
        for (unsigned int i = 1 + below(8); i > 0; --i) {
            damage(content);
        }
        return {content.begin(), content.end()};
    }

private:
    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }
    std::ptrdiff_t place(const Bytes& content)
    {
        return static_cast<std::ptrdiff_t>(below(content.size() + 1));
    }

    void damage(Bytes& content)
    {
        switch (below(5)) {
        case 0: // flip
        case 1:
            if (!content.empty()) {
                unsigned char& byte = content[below(content.size())];
                byte = static_cast<unsigned char>(byte ^ 1U << below(8));
            }
            break;
        case 2: // cut
            content.resize(content.size() - below(content.size() / 4 + 1));
            break;
        case 3: // extend
            for (unsigned int i = below(40); i > 0; --i) {
                content.push_back(static_cast<unsigned char>(below(256)));
            }
            break;
        default: { // insert
            const Bytes more(1 + below(3), static_cast<unsigned char>(below(256)));
            content.insert(content.begin() + place(content), more.begin(), more.end());
            break;
        }
        }
    }

    std::mt19937 random;
};

}

TEST(DamagedRepositories, AreDescribedWhole)
{
    const std::vector<std::vector<Bytes>> all = repositories();
    std::size_t records = 0;
    for (unsigned int seed = 0; seed < REPOSITORIES; ++seed) {
        const SdrFormat format = seed % 4 == 0 ? SdrFormat::RESPONSES : SdrFormat::DUMP;
        const std::string content =
            Damage(seed).of(all[seed % all.size()], format == SdrFormat::RESPONSES);
        records += parseSdrFile(content, format).records.size();
        ASSERT_EQ(brokenSdrProperty(content, format), "") << "seed " << seed;
    }
    EXPECT_GT(records, REPOSITORIES) << "most of them are described";
}

TEST(DamagedRepositories, SoundOnesAreDescribedWhole)
{
    for (const std::vector<Bytes>& records : repositories()) {
        std::string content;
        for (const Bytes& record : records) {
            content.append(record.begin(), record.end());
        }
        EXPECT_EQ(brokenSdrProperty(content, SdrFormat::AUTO), "");
        EXPECT_EQ(parseSdrFile(content).records.size(), records.size());
    }
}
