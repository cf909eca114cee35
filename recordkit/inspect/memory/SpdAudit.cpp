// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdAudit.h>

#include <algorithm>
#include <map>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Time.h>

namespace recordkit::inspect {

namespace {

/// What modules of one board should have in common. The text is empty where it is unknown.
struct Common {
    const char* field;
    bool isError;
    std::string (*text)(const Spd& spd);
};

std::string quoted(const Value& value)
{
    const std::string* const text = std::get_if<std::string>(&value);
    return text == nullptr ? "" : fmt::format("\"{}\"", *text);
}

std::string withUnit(unsigned int number, const char* unit)
{
    return number == 0 ? "" : fmt::format("{}{}", number, unit);
}

std::string memoryType(const Spd& spd)
{
    return quoted(spd.get(SpdFact::MEMORY_TYPE));
}

std::string speed(const Spd& spd)
{
    const long long* const number = std::get_if<long long>(&spd.get(SpdFact::SPEED));
    return number == nullptr ? "" : fmt::format("{} MT/s", *number);
}

constexpr Common MEMORY_TYPE = {"memory_type", true, memoryType};

constexpr Common OF_A_TYPE[] = {
    {"module_type", true, [](const Spd& spd) { return quoted(spd.moduleType); }},
    {"speed_mts", false, speed},
    {"voltages", false, [](const Spd& spd) { return quoted(spd.get(SpdFact::VOLTAGES)); }},
    {"capacity_mb", false, [](const Spd& spd) { return withUnit(spd.megabytes, " MB"); }},
    {"ranks", false, [](const Spd& spd) { return withUnit(spd.ranks, ""); }},
    {"device_width", false, [](const Spd& spd) { return withUnit(spd.deviceWidth, " bits"); }},
    {"bus_width", false, [](const Spd& spd) { return withUnit(spd.busWidth, " bits"); }},
    {"ecc_width", false, [](const Spd& spd) { return fmt::format("{} bits", spd.eccWidth); }},
};

constexpr unsigned int BLANK[] = {0, 0xFFFFFFFF};

bool isBlank(const Spd& spd)
{
    return std::find(std::begin(BLANK), std::end(BLANK), spd.serialNumber) != std::end(BLANK);
}

/// The first second of a date "2016-W38", at the earliest: the first week of a year begins up to
/// three days before it (ISO 8601). None for what is not a date.
std::optional<long long> beginOf(const std::string& made)
{
    constexpr std::size_t YEAR = 4;
    constexpr std::size_t WEEK = 6; // where its digits begin
    constexpr long long DAY = 86400;
    constexpr unsigned long LAST_WEEK = 53;
    const std::optional<unsigned int> year = parseTime(made.substr(0, YEAR) + "-01-01");
    const std::optional<unsigned long> week =
        made.size() > WEEK ? parseNumber(made.substr(WEEK), LAST_WEEK) : std::nullopt;
    if (!year || !week) {
        return {};
    }
    return *year + (static_cast<long long>(*week) - 1) * 7 * DAY - 3 * DAY;
}

class Audit {
public:
    Audit(const std::vector<Spd>& board, unsigned int present) : modules(board), now(present) {}

    std::vector<SpdFinding> take()
    {
        std::vector<std::size_t> all;
        std::map<std::string, std::vector<std::size_t>> types;
        for (std::size_t i = 0; i < modules.size(); ++i) {
            for (const std::string& problem : spdProblems(modules[i])) {
                findings.push_back({i, true, "", problem});
            }
            all.push_back(i);
            types[memoryType(modules[i])].push_back(i);
        }
        compare(all, MEMORY_TYPE);
        for (const auto& [type, members] : types) {
            for (const Common& common : OF_A_TYPE) {
                compare(members, common);
            }
        }
        addSerials();
        for (std::size_t i = 0; i < modules.size(); ++i) {
            addDate(i);
        }
        std::stable_sort(findings.begin(), findings.end(),
                         [](const SpdFinding& left, const SpdFinding& right) {
                             return left.module < right.module;
                         });
        return std::move(findings);
    }

private:
    void compare(const std::vector<std::size_t>& members, const Common& common)
    {
        // In the order in which the values are found.
        std::vector<std::pair<std::string, std::size_t>> counts;
        std::size_t known = 0;
        for (const std::size_t number : members) {
            const std::string text = common.text(modules[number]);
            if (text.empty()) {
                continue;
            }
            ++known;
            const auto found =
                std::find_if(counts.begin(), counts.end(),
                             [&text](const auto& each) { return each.first == text; });
            if (found == counts.end()) {
                counts.emplace_back(text, 1);
            } else {
                ++found->second;
            }
        }
        if (counts.size() < 2) {
            return;
        }
        const auto most =
            std::max_element(counts.begin(), counts.end(), [](const auto& left, const auto& right) {
                return left.second < right.second;
            });
        for (const std::size_t number : members) {
            const std::string text = common.text(modules[number]);
            if (!text.empty() && text != most->first) {
                findings.push_back({number, common.isError, common.field,
                                    fmt::format("is {}, {} in {} of {}", text, most->first,
                                                most->second, counted(known, "module"))});
            }
        }
    }

    void addSerials()
    {
        std::map<std::pair<std::string, unsigned int>, std::vector<std::size_t>> owners;
        for (std::size_t i = 0; i < modules.size(); ++i) {
            if (!modules[i].hasManufacturerData) {
                continue;
            }
            if (isBlank(modules[i])) {
                findings.push_back({i, false, "serial_number", "is blank"});
                continue;
            }
            owners[{quoted(modules[i].get(SpdFact::MODULE_MAKER)), modules[i].serialNumber}]
                .push_back(i);
        }
        for (const auto& [key, same] : owners) {
            for (const std::size_t number : same) {
                if (same.size() > 1) {
                    findings.push_back({number, false, "serial_number",
                                        fmt::format("{:08X} is in {}", key.second,
                                                    counted(same.size(), "module"))});
                }
            }
        }
    }

    void addDate(std::size_t number)
    {
        const std::string* const made =
            std::get_if<std::string>(&modules[number].get(SpdFact::MADE));
        if (made == nullptr) {
            return;
        }
        const std::optional<long long> begin = beginOf(*made);
        if (!begin) {
            findings.push_back({number, false, "made", *made + " is not a date"});
        } else if (*begin > static_cast<long long>(now)) {
            findings.push_back({number, false, "made", *made + " is in the future"});
        }
    }

    const std::vector<Spd>& modules;
    unsigned int now;
    std::vector<SpdFinding> findings;
};

}

std::vector<SpdFinding> auditSpdModules(const std::vector<Spd>& modules, unsigned int now)
{
    return Audit(modules, now).take();
}

}
