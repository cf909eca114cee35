// SPDX-License-Identifier: Apache-2.0
// The comparison itself: what it finds, and how short it makes it.
#include "Model.h"

#include <cstdlib>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace {

using namespace testing_support;

enum Operation { ADD, NOTE };

/// A sum of numbers, which an adder that loses a carry gets wrong from 100 on.
class Adder : public Subject {
public:
    explicit Adder(bool losesCarry) : wrong(losesCarry) {}

    Lines perform(const Step& step) override
    {
        if (step.operation == NOTE) {
            notes["notes"].insert(notes["notes"].end(), step.bytes.begin(), step.bytes.end());
            if (wrong && notes["notes"].size() > 5) {
                notes["notes"].pop_back();
            }
            return {};
        }
        sum += step.number(0);
        return {std::to_string(wrong && sum >= 100 ? sum - 100 : sum)};
    }
    const Medium& medium() override { return notes; }

private:
    bool wrong;
    long long sum = 0;
    Medium notes;
};

Comparison adders(bool losesCarry)
{
    Comparison comparison;
    comparison.library = [losesCarry] { return std::make_unique<Adder>(losesCarry); };
    comparison.rules = [] { return std::make_unique<Adder>(false); };
    comparison.generate = [](Random& random) {
        Steps steps;
        for (int i = 0; i < 20; ++i) {
            steps.push_back({ADD, {random.between(0, 30)}, {}});
        }
        return steps;
    };
    comparison.print = [](const Step& step) {
        return "add(" + std::to_string(step.number(0)) + ");";
    };
    return comparison;
}

TEST(Model, RandomNumbersAreTheSameEverywhere)
{
    Random random(1);
    EXPECT_EQ(hex(random.bytes(8)), "25 EB 8C 48 FF 89 CB 85");
    EXPECT_EQ(random.between(-3, 3), -3);
}

TEST(Model, EqualSubjectsDoNotDiffer)
{
    compare(adders(false), 10, 1);
}

TEST(Model, DifferenceNamesTheStepAndBothSides)
{
    EXPECT_EQ(difference(adders(true), {{ADD, {60}, {}}, {ADD, {60}, {}}}),
              "step 2:\n  library: 20\n  rules:   120");
    EXPECT_EQ(difference(adders(true), {{NOTE, {}, {1, 2, 3, 4, 5, 6}}}),
              "step 1:\n  notes at 5: library (5 bytes) \n  notes at 5: rules   (6 bytes) 06");
}

TEST(Model, ShortestSequenceKeepsTheDifferenceWithSmallArguments)
{
    Steps steps;
    for (long long i = 0; i < 12; ++i) {
        steps.push_back({ADD, {i}, {}});
    }
    steps.push_back({ADD, {150}, {}});
    steps.push_back({NOTE, {}, {9}});
    const Steps shown = shortest(adders(true), steps);
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].number(0), 100);
}

TEST(Model, ShortestSequenceCutsBytesAndClearsThem)
{
    const Steps shown = shortest(
        adders(true), {{NOTE, {}, sequence(3, 7)}, {NOTE, {}, {1, 2}}, {NOTE, {}, sequence(9, 1)}});
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(hex(shown[0].bytes), "00 00 00 00 00 00");
}

TEST(Model, DifferenceFailsTheTestWithItsSequence)
{
    EXPECT_NONFATAL_FAILURE(compare(adders(true), 10, 1), "");
}

TEST(ModelDeathTest, SequenceThatEndsTheProcessIsShown)
{
    Comparison dying = adders(false);
    dying.library = []() -> std::unique_ptr<Subject> { std::abort(); };
    EXPECT_DEATH(compare(dying, 1, 1), "this sequence ran:\n  add\\([0-9]+\\);\n");
}

TEST(Model, FailureAndTraceLineReadAsTheLibrarysDo)
{
    EXPECT_EQ(failure(128, 13, 1, 1, 20003, {"text", "0"}).text,
              "1:128:0x000D act 1 det 0x0001 msg 20003 (text)");
    EXPECT_EQ(traceLine(83, 0x1000, 0, std::string(130, 'x')),
              "1:83:0x1000 level 0: " + std::string(119, 'x'));
}

}
