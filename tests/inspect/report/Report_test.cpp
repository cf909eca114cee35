// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/Report.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/event/AssertedEvents.h>

#include "support/FruImages.h"
#include "support/SdrRecords.h"
#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int MONDAY = 1730764800; // 2024-11-05 00:00:00 UTC

const Bytes FAN_WARNING = {4, 0x10, 0x01, 0x50, 4, 5};
const Bytes FAN_CRITICAL = {4, 0x10, 0x01, 0x52, 4, 5};
const Bytes FAN_NORMAL = {4, 0x10, 0x81, 0x50, 6, 5};
const Bytes THERMAL_TRIP = {7, 0x60, 0x6F, 0x01, 0xFF, 0xFF};
const Bytes PRESENCE = {0x25, 0x20, 0x6F, 0x00, 0xFF, 0xFF};

struct Filled {
    explicit Filled(std::vector<Event> events = {}, std::size_t logs = 1)
    {
        report.events = std::move(events);
        report.logs.resize(logs);
        for (std::size_t i = 0; i < logs; ++i) {
            report.logs[i].name = "board " + std::to_string(i);
        }
        markAsserted(report.events);
        report.summary = summarise(report.events, report.events);
        countLogs(report);
    }
    ReportVerdict verdict() const { return judge(report, MONDAY); }

    Report report;
};

std::string boardImage()
{
    const Bytes image = fruImage(boardArea({"EX", "Board", "SN0001", "PN0001"}));
    return std::string(image.begin(), image.end());
}

std::string textOf(const ReportReason& reason)
{
    return std::string(reasonName(reason.kind)) + ": " +
           (reason.kind == ReportReason::ASSERTED ? std::to_string(reason.state)
                                                  : reason.where + ": " + reason.text);
}

std::vector<std::string> textsOf(const ReportVerdict& verdict)
{
    std::vector<std::string> texts;
    for (const ReportReason& reason : verdict.reasons) {
        texts.push_back(textOf(reason));
    }
    return texts;
}

using Texts = std::vector<std::string>;

}

TEST(ReportVerdict, IsGoodIfNothingIsWrong)
{
    const ReportVerdict verdict =
        Filled({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY, FAN_NORMAL),
                systemEvent(MONDAY, PRESENCE)})
            .verdict();
    EXPECT_EQ(verdict.level, "good");
    EXPECT_EQ(textsOf(verdict), Texts());
    EXPECT_EQ(verdict.text, "Nothing of severity warning or worse is still asserted, nothing is "
                            "damaged or odd, nothing was left out");
}

TEST(ReportVerdict, HasTheLevelOfTheWorstStateThatIsAsserted)
{
    EXPECT_EQ(Filled({systemEvent(MONDAY, FAN_WARNING)}).verdict().level, "warning");
    EXPECT_EQ(Filled({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY, FAN_CRITICAL)})
                  .verdict()
                  .level,
              "critical");
    const ReportVerdict verdict =
        Filled({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY, THERMAL_TRIP),
                systemEvent(MONDAY, PRESENCE)})
            .verdict();
    EXPECT_EQ(verdict.level, "non-recoverable");
    EXPECT_EQ(verdict.text, "2 states still asserted");
    EXPECT_EQ(textsOf(verdict), Texts({"asserted: 0", "asserted: 1"}));
}

TEST(ReportVerdict, IsAWarningForDamagedLogs)
{
    Filled filled;
    filled.report.logs[0].findings = {
        {TAVLib::RecordKit::SELStoreCheck::FILE_DAMAGED, true, "a file is damaged"},
        {TAVLib::RecordKit::SELStoreCheck::SHIFT_REQUEST_LEFT, false, "worth knowing"}};
    const ReportVerdict verdict = filled.verdict();
    EXPECT_EQ(verdict.level, "warning");
    EXPECT_EQ(verdict.text, "1 problem");
    EXPECT_EQ(textsOf(verdict), Texts({"damaged: board 0: a file is damaged"}));
    EXPECT_FALSE(filled.report.logs[0].isSound());
    filled.report.logs[0].findings.erase(filled.report.logs[0].findings.begin());
    EXPECT_TRUE(filled.report.logs[0].isSound());
    EXPECT_EQ(filled.verdict().level, "good");
}

TEST(ReportVerdict, IsAWarningForDamagedInputsAndThoseLeftOut)
{
    Filled filled;
    filled.report.inputs = {{{"a.bin", ""}, "FRU image", false, {"one", "two"}},
                            {{"b.bin", ""}, "not readable", true, {"b.bin is a folder", "more"}},
                            {{"c.bin", ""}, "not recognised", true, {}},
                            {{"d.txt", ""}, "text", false, {}}};
    filled.report.leftOut = 2;
    const ReportVerdict verdict = filled.verdict();
    EXPECT_EQ(verdict.level, "warning");
    EXPECT_EQ(
        textsOf(verdict),
        Texts({"damaged: a.bin: one", "damaged: a.bin: two", "left out: b.bin: b.bin is a folder",
               "left out: c.bin: not recognised", "left out: events: 2 events not chosen"}));
    EXPECT_EQ(verdict.text, "2 problems, 3 omissions");
}

TEST(ReportVerdict, ComparesTheImagesOfAFolder)
{
    Filled filled;
    const std::string image = boardImage();
    const auto add = [&](const std::string& path) {
        filled.report.fru.push_back({{path, ""}, image, parseFruImage(image)});
    };
    add("sb0/fru.bin");
    add("sb1/fru.bin");
    const std::size_t others = filled.verdict().reasons.size();
    add("sb1/again.bin");
    const ReportVerdict verdict = filled.verdict();
    EXPECT_GT(verdict.reasons.size(), others);
    const std::vector<std::string> texts = textsOf(verdict);
    EXPECT_NE(std::find_if(texts.begin(), texts.end(),
                           [](const std::string& text) {
                               return text.find("odd: sb1/again.bin: board.serial: ") == 0;
                           }),
              texts.end())
        << testing::PrintToString(texts);
    for (const std::string& text : texts) {
        EXPECT_EQ(text.find("sb0"), std::string::npos) << text;
    }
}

TEST(ReportVerdict, DoesNotCallDamageOddAsWell)
{
    Filled filled;
    std::string image = boardImage();
    image[7] = static_cast<char>(image[7] ^ 1); // the checksum of its header
    const FruImage parsed = parseFruImage(image);
    ASSERT_EQ(parsed.allProblems().size(), 1U);
    filled.report.fru.push_back({{"a.bin", ""}, image, parsed});
    filled.report.inputs.push_back({{"a.bin", ""}, "FRU image", false, parsed.allProblems()});
    for (const std::string& text : textsOf(filled.verdict())) {
        EXPECT_TRUE(text.find("odd") != 0 ||
                    text.find(parsed.allProblems()[0]) == std::string::npos)
            << text;
    }
    EXPECT_EQ(filled.verdict().reasons[0].kind, ReportReason::DAMAGED);
}

TEST(ReportVerdict, HasTheOdditiesOfRepositories)
{
    Filled filled;
    Bytes record = compactSdr(1, "PS1");
    record[8] = 10; // its entity
    const Bytes twice = record + record;
    ReportRepository repository;
    repository.place.path = "sdr.bin";
    repository.file = parseSdrFile(twice);
    filled.report.repositories.push_back(repository);
    const std::vector<std::string> texts = textsOf(filled.verdict());
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts[0].find("odd: sdr.bin: record 0001h (PS1): "), 0U) << texts[0];
}

TEST(ReportLogs, AreCountedApart)
{
    std::vector<Event> events = {systemEvent(MONDAY, FAN_WARNING),
                                 systemEvent(MONDAY, FAN_CRITICAL),
                                 systemEvent(MONDAY, FAN_CRITICAL), eventOf({0xE0, 1})};
    events[1].log = 1;
    events[2].log = 1;
    events[3].log = 1;
    const Filled filled(events, 3);
    const auto& logs = filled.report.logs;
    EXPECT_EQ(logs[0].count.events, 1U);
    EXPECT_EQ(logs[0].count.stillAsserted, 1U);
    EXPECT_EQ(logs[1].count.events, 3U);
    EXPECT_EQ(logs[1].count.stillAsserted, 1U);
    EXPECT_EQ(logs[2].count.events, 0U);
    ASSERT_EQ(logs[1].severities.size(), 6U);
    EXPECT_EQ(logs[1].severities[1].first, SeverityMap::SEV_CRITICAL);
    EXPECT_EQ(logs[1].severities[1].second.events, 2U);
    EXPECT_EQ(logs[1].severities[1].second.stillAsserted, 1U);
    EXPECT_EQ(logs[1].severities[2].second.events, 0U);
    EXPECT_EQ(logs[0].severities[2].second.events, 1U);
}
