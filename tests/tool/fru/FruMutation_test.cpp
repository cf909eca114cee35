// SPDX-License-Identifier: Apache-2.0
// 10,000 images mutated from the samples, with fixed seeds, through show, verify and every
// sub-command that changes an image: no crash, no hang, and no file that comes out worse than it
// went in.
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruParts.h>
#include <recordkit/inspect/fru/FruRepair.h>

#include "support/Process.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"
#include "tool/Run.h"

using namespace testing_support;
using namespace recordkit::inspect;

namespace {

constexpr unsigned int BATCHES = 20;
constexpr unsigned int IMAGES = 500; // in a batch

using Random = std::mt19937;

unsigned int below(Random& random, std::size_t limit)
{
    return static_cast<unsigned int>(random() % limit);
}

unsigned char sumTo(const Bytes& bytes, std::size_t from, std::size_t size)
{
    unsigned char sum = 0;
    for (std::size_t i = from; i < from + size && i < bytes.size(); ++i) {
        sum = static_cast<unsigned char>(sum + bytes[i]);
    }
    return sum;
}

/// Repairs checksums, so that the code after their check is reached.
void repair(Bytes& bytes)
{
    if (bytes.size() < 8) {
        return;
    }
    bytes[7] = static_cast<unsigned char>(bytes[7] - sumTo(bytes, 0, 8));
    for (std::size_t i = 1; i <= 4; ++i) {
        const std::size_t at = bytes[i] * 8U;
        const std::size_t size = at != 0 && at + 1 < bytes.size() ? bytes[at + 1] * 8U : 0;
        if (size != 0 && at + size <= bytes.size()) {
            unsigned char& last = bytes[at + size - 1];
            last = static_cast<unsigned char>(last - sumTo(bytes, at, size));
        }
    }
}

Bytes mutated(Random& random, Bytes bytes)
{
    const unsigned int changes = 1 + below(random, 6);
    for (unsigned int i = 0; i < changes && !bytes.empty(); ++i) {
        // Mostly where the structure is: headers, lengths, type/length bytes.
        const std::size_t reach =
            below(random, 2) == 0 ? std::min<std::size_t>(bytes.size(), 64) : bytes.size();
        const std::size_t at = below(random, reach);
        switch (below(random, 6)) {
        case 0:
            bytes[at] ^= static_cast<unsigned char>(1U << below(random, 8));
            break;
        case 1: {
            constexpr unsigned char EDGES[] = {0x00, 0x01, 0x1F, 0x20, 0x7F, 0x80,
                                               0xC0, 0xC1, 0xC2, 0xFE, 0xFF};
            bytes[at] = EDGES[below(random, sizeof EDGES)];
            break;
        }
        case 2:
            bytes[at] = static_cast<unsigned char>(random());
            break;
        case 3:
            bytes.erase(bytes.begin() + static_cast<long>(at));
            break;
        case 4:
            bytes.insert(bytes.begin() + static_cast<long>(at),
                         static_cast<unsigned char>(random()));
            break;
        default:
            bytes.resize(below(random, 16) == 0 ? at : bytes.size());
            break;
        }
    }
    if (below(random, 3) != 0) {
        repair(bytes);
    }
    return bytes;
}

/// Discards standard output and standard error for its lifetime.
class Silence {
public:
    Silence()
    {
        std::fflush(stdout);
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        out = ::dup(STDOUT_FILENO);
        err = ::dup(STDERR_FILENO);
        ::dup2(nowhere, STDOUT_FILENO);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~Silence()
    {
        std::fflush(stdout);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        ::close(out);
        ::close(err);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int out;
    int err;
};

int runSilently(const Arguments& arguments)
{
    const Silence silence;
    return recordkit::tool::run(arguments);
}

FruImage parse(const Bytes& bytes)
{
    return parseFruImage(std::string(bytes.begin(), bytes.end()));
}

class FruMutation : public testing::TestWithParam<unsigned int> {
protected:
    std::vector<std::string> writeImages()
    {
        const std::vector<std::string> samples = sampleImages();
        std::vector<std::string> files;
        for (unsigned int i = 0; i < IMAGES; ++i) {
            // The large ones are few bytes and much nothing.
            const Bytes sample = readFile(samples[below(random, samples.size())]);
            files.push_back(root.at("/" + std::to_string(i) + ".bin"));
            writeFile(files.back(),
                      mutated(random, part(sample, 0, std::min<std::size_t>(sample.size(), 1024))));
        }
        return files;
    }

    /// Runs a sub-command on a file. Unless it is refused, and leaves the file as it was, nothing
    /// is worse than it was.
    bool change(const std::string& file, Arguments words)
    {
        const Bytes before = readFile(file);
        if (below(random, 4) == 0 && words[1] != "repair" && words[1] != "resize") {
            words.push_back("--ignore-checksum");
        }
        const int status = runSilently(words);
        const Bytes after = readFile(file);
        if (status != 0) {
            EXPECT_EQ(status, 1) << file;
            EXPECT_EQ(after, before) << file << ": refused, and changed";
            return false;
        }
        expectNoWorse(after, before);
        return true;
    }

    static void expectNoWorse(const Bytes& after, const Bytes& before)
    {
        EXPECT_LE(parse(after).allProblems().size(), parse(before).allProblems().size());
    }

    /// As a sub-command, without a file.
    template <typename Work> static void changeInMemory(const Bytes& before, const Work& work)
    {
        try {
            const std::string after = work(std::string(before.begin(), before.end()));
            expectNoWorse(Bytes(after.begin(), after.end()), before);
        } catch (const Error&) {
            return;
        }
    }

    /// Whether a text could be set.
    bool setText(const std::string& file)
    {
        const char* const FIELDS[] = {"board.serial", "product.serial", "chassis.serial",
                                      "board.custom1", "product.asset-tag"};
        const std::string field = FIELDS[below(random, std::size(FIELDS))];
        const std::string value(2 + below(random, 20), 'v');
        Arguments set = {"fru", "set", file, field + "=" + value};
        if (below(random, 2) == 0) {
            set.push_back("--grow");
        }
        const std::size_t size = readFile(file).size();
        if (!change(file, set)) {
            return false;
        }
        const FruImage image = parse(readFile(file));
        EXPECT_EQ(image.size, size);
        EXPECT_EQ(image.findField(field) == nullptr ? "" : image.findField(field)->value, value);
        EXPECT_TRUE(image.header.isRight());
        return true;
    }

    static void changePartsInMemory(const Bytes& image)
    {
        FruEditOptions options;
        options.repairsChecksums = true;
        for (const char* const part : {"board.custom", "dc-load", "product"}) {
            changeInMemory(image, [&](const std::string& bytes) {
                return addToFruImage(bytes, {{part, ""}}, options).bytes;
            });
        }
        for (const char* const part : {"board", "board.custom1", "dc-output1", "internal"}) {
            changeInMemory(image, [&](const std::string& bytes) {
                return removeFromFruImage(bytes, {part}, options).bytes;
            });
        }
        for (const char* const field : {"dc-output1.max-current", "fmc1.tck-max", "oem1.data"}) {
            changeInMemory(image, [&](const std::string& bytes) {
                return editFruImage(bytes, {{field, "10"}}, options).bytes;
            });
        }
        changeInMemory(image, [](const std::string& bytes) { return repairFruImage(bytes).bytes; });
    }

    void changeParts(const std::string& file)
    {
        change(file, {"fru", "add", file, "board.custom=4711"});
        change(file, {"fru", "add", file, "dc-load", "dc-load.output=1"});
        change(file, {"fru", "set", file, "dc-load1.max-current=100"});
        change(file, {"fru", "set", file, "dc-output1.max-current=100", "--page", "16"});
        change(file, {"fru", "remove", file, below(random, 2) == 0 ? "product" : "board.custom1"});
        change(file, {"fru", "remove", file, "dc-output1"});
        repaired += change(file, {"fru", "repair", file}) ? 1 : 0;
        // A larger image can show more of what is wrong.
        if (parse(readFile(file)).allProblems().empty()) {
            change(file,
                   {"fru", "resize", file, "--size", std::to_string(8 + below(random, 2048))});
        }
    }

    ScratchRoot root;
    Random random{GetParam()};
    unsigned int repaired = 0;
};

}

TEST_P(FruMutation, EverySubCommandHoldsOut)
{
    const std::vector<std::string> files = writeImages();
    Arguments show = {"fru", "show"};
    Arguments verify = {"fru", "verify"};
    show.insert(show.end(), files.begin(), files.end());
    verify.insert(verify.end(), files.begin(), files.end());
    EXPECT_EQ(run(ourCommand(show)).status, 1);
    const Outcome verified = run(ourCommand(verify));
    EXPECT_EQ(verified.status, 1);
    const std::string listed = verified.out.substr(0, verified.out.find("note: "));
    EXPECT_EQ(std::count(listed.begin(), listed.end(), '\n'), IMAGES + 1);

    unsigned int edited = 0;
    for (const std::string& file : files) {
        changePartsInMemory(readFile(file));
        edited += setText(file) ? 1 : 0;
        if (below(random, 16) == 0) {
            changeParts(file);
        }
    }
    // Many are sound enough to be edited, so that the edit is tried as well as the refusal.
    EXPECT_GE(edited, IMAGES / 50);
    // Some were repaired by chance, and some of those that are left can be.
    EXPECT_GE(repaired, 1U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, FruMutation, testing::Range(1U, BATCHES + 1));
