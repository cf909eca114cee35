// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/Report.h>

#include <algorithm>
#include <functional>
#include <map>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruAudit.h>
#include <recordkit/inspect/memory/SpdAudit.h>
#include <recordkit/inspect/sensor/SdrCheck.h>

namespace recordkit::inspect {

namespace {

constexpr const char* REASONS[] = {"asserted", "damaged", "odd", "left out"};
constexpr Severity LEAST = SeverityMap::SEV_NONCRITICAL;

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

/// "record 0020h (Fan 3)".
std::string recordText(const SdrOddity& oddity)
{
    return fmt::format("record {:04X}h{}", oddity.id,
                       oddity.name.empty() ? "" : " (" + oddity.name + ")");
}

class Judge {
public:
    Judge(const Report& judged, unsigned int time) : report(judged), now(time) {}

    ReportVerdict judge()
    {
        addAsserted();
        addDamaged();
        addOdd();
        addLeftOut();
        verdict.level = counts[ReportReason::ASSERTED] != 0
                            ? severityName(report.summary.asserted.front().since->severity)
                        : verdict.reasons.empty() ? "good"
                                                  : severityName(LEAST);
        verdict.text = text();
        return verdict;
    }

private:
    void add(ReportReason reason)
    {
        ++counts[reason.kind];
        verdict.reasons.push_back(std::move(reason));
    }

    void addAsserted()
    {
        for (std::size_t i = 0; i < report.summary.asserted.size(); ++i) {
            if (isAtLeast(report.summary.asserted[i].since->severity, LEAST)) {
                add({ReportReason::ASSERTED, i, {}, {}});
            }
        }
    }

    void addDamaged()
    {
        for (const ReportLog& log : report.logs) {
            for (const auto& finding : log.findings) {
                if (finding.isDamage) {
                    add({ReportReason::DAMAGED, 0, log.name, finding.text});
                }
            }
        }
        for (const ReportInput& input : report.inputs) {
            for (const std::string& problem : input.problems) {
                if (!input.isLeftOut) {
                    add({ReportReason::DAMAGED, 0, input.place.path, problem});
                }
            }
        }
    }

    /// Images of other folders are of other boards, or of parts that are not comparable.
    template <typename Item>
    std::map<std::string, std::vector<const Item*>> byFolder(const std::vector<Item>& items) const
    {
        std::map<std::string, std::vector<const Item*>> folders;
        for (const Item& item : items) {
            folders[folderOf(item.place.path)].push_back(&item);
        }
        return folders;
    }

    void addOdd()
    {
        for (const auto& folder : byFolder(report.fru)) {
            std::vector<FruImage> images;
            for (const ReportFru* const each : folder.second) {
                images.push_back(each->image);
            }
            for (const FruFinding& finding : auditFruImages(images, now)) {
                addOdd(folder.second[finding.image]->place.path, finding.field, finding.text);
            }
        }
        for (const auto& folder : byFolder(report.memory)) {
            std::vector<Spd> modules;
            for (const ReportModule* const each : folder.second) {
                modules.push_back(each->spd);
            }
            for (const SpdFinding& finding : auditSpdModules(modules, now)) {
                addOdd(folder.second[finding.module]->place.path, finding.field, finding.text);
            }
        }
        for (const ReportRepository& repository : report.repositories) {
            for (const SdrOddity& oddity : checkRepository(repository.file.records)) {
                addOdd(repository.place.path, recordText(oddity), oddity.text);
            }
        }
    }

    /// Damage was reported as such.
    void addOdd(const std::string& path, const std::string& what, const std::string& text)
    {
        for (const ReportInput& input : report.inputs) {
            const auto& known = input.problems;
            if (input.place.path == path &&
                std::find(known.begin(), known.end(), text) != known.end()) {
                return;
            }
        }
        add({ReportReason::ODD, 0, path, what.empty() ? text : what + ": " + text});
    }

    void addLeftOut()
    {
        for (const ReportInput& input : report.inputs) {
            if (input.isLeftOut) {
                add({ReportReason::LEFT_OUT, 0, input.place.path,
                     input.problems.empty() ? input.kind : input.problems.front()});
            }
        }
        if (report.leftOut != 0) {
            add({ReportReason::LEFT_OUT, 0, "events",
                 counted(report.leftOut, "event") + " not chosen"});
        }
    }

    std::string text() const
    {
        const auto part = [this](ReportReason::Kind kind, const char* one, const char* more) {
            const std::size_t count = counts[kind];
            return count == 0 ? "" : fmt::format(", {} {}", count, count == 1 ? one : more);
        };
        const std::string all =
            part(ReportReason::ASSERTED, "state still asserted", "states still asserted") +
            part(ReportReason::DAMAGED, "problem", "problems") +
            part(ReportReason::ODD, "oddity", "oddities") +
            part(ReportReason::LEFT_OUT, "omission", "omissions");
        return all.empty() ? "Nothing of severity warning or worse is still asserted, nothing is "
                             "damaged or odd, nothing was left out"
                           : all.substr(2);
    }

    const Report& report;
    unsigned int now;
    ReportVerdict verdict;
    std::size_t counts[std::size(REASONS)] = {};
};

}

bool ReportLog::isSound() const
{
    return std::none_of(findings.begin(), findings.end(),
                        [](const auto& finding) { return finding.isDamage; });
}

void countLogs(Report& report)
{
    for (ReportLog& log : report.logs) {
        log.count = {};
        log.severities.clear();
        for (const Severity each : worstFirst()) {
            log.severities.emplace_back(each, EventCount());
        }
    }
    const auto countOf = [&report](const Event& event) -> EventCount& {
        auto& all = report.logs[event.log].severities;
        return std::find_if(all.begin(), all.end(),
                            [&event](const auto& each) { return each.first == event.severity; })
            ->second;
    };
    for (const Event& event : report.events) {
        ++report.logs[event.log].count.events;
        if (event.kind == EventKind::SYSTEM_EVENT) {
            ++countOf(event).events;
        }
    }
    for (const AssertedState& state : report.summary.asserted) {
        ++report.logs[state.since->log].count.stillAsserted;
        ++countOf(*state.since).stillAsserted;
    }
}

const char* reasonName(ReportReason::Kind kind)
{
    return REASONS[kind];
}

ReportVerdict judge(const Report& report, unsigned int now)
{
    return Judge(report, now).judge();
}

}
