// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/EventSigns.h>

#include <algorithm>
#include <cstddef>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventImport.h>
#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/LogFile.h>
#include <recordkit/inspect/log/Rescue.h>

namespace recordkit::inspect {

namespace {

constexpr std::size_t MOST_RECORDS = 65535;
constexpr std::size_t MOST_SLOTS = 65536;
constexpr std::size_t RECORD_SIZE = TAVLib::RecordKit::SELEntry::RECORD_SIZE;
/// Every fourth record of any bytes has the type of an OEM record, in which nothing else is known:
/// without a system event, as many records are needed.
constexpr std::size_t OEM_RECORDS = 4;
constexpr const char* BLANKS = " \t\r\n\f\v";

/// Records that are taken one after another, and judged together.
class EventSeries {
public:
    /// False for a record of another size, and once others than events prevail: other bytes take
    /// little time.
    bool take(const std::string& content, EventForm form)
    {
        try {
            for (const ImportedEvent& imported : importEvents("", content, form)) {
                add(decodeEvent(imported.message));
            }
        } catch (const DataError&) {
            return false;
        }
        constexpr std::size_t MOST_ODD = 16;
        return count <= MOST_RECORDS && odd <= count - odd + MOST_ODD;
    }

    bool isCertain() const
    {
        return odd == 0 && (systemEvents != 0 || (count >= OEM_RECORDS && isRising));
    }
    bool isDamaged() const { return systemEvents >= 2 && systemEvents * 2 >= count; }

private:
    void add(const Event& event)
    {
        const bool isOdd = !oddityOf(event).empty();
        odd += isOdd ? 1 : 0;
        systemEvents += !isOdd && event.kind == EventKind::SYSTEM_EVENT ? 1 : 0;
        isRising = isRising && (count == 0 || event.recordId > last);
        last = event.recordId;
        ++count;
    }

    std::size_t count = 0;
    std::size_t odd = 0;
    std::size_t systemEvents = 0;
    unsigned int last = 0;
    bool isRising = true;
};

EventSeries seriesOf(ByteView content)
{
    EventSeries series;
    for (std::size_t at = 0; at < content.size(); at += RECORD_SIZE) {
        if (!series.take(content.part(at, RECORD_SIZE).text(), EventForm::WRITERAW)) {
            return {};
        }
    }
    return series;
}

bool areEventLines(const std::string& content)
{
    EventSeries series;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t end = std::min(content.find('\n', at), content.size());
        const std::string line = content.substr(at, end - at);
        const std::size_t first = line.find_first_not_of(BLANKS);
        const bool hasRecord = first != std::string::npos && line[first] != '#';
        if (hasRecord && !series.take(line, EventForm::HEX)) {
            return false;
        }
        at = end + 1;
    }
    return series.isCertain() || series.isDamaged();
}

/// Takes every member of that name, wherever it is in JSON.
bool areEventMembers(const std::string& json, const std::string& member)
{
    EventSeries series;
    for (std::size_t at = json.find(member); at != std::string::npos; at = json.find(member, at)) {
        at = json.find_first_not_of(BLANKS, at + member.size());
        if (at == std::string::npos || json[at] != ':') {
            return false;
        }
        at = json.find_first_not_of(BLANKS, at + 1);
        if (at == std::string::npos || json[at] != '"') {
            return false;
        }
        const std::size_t end = std::min(json.find('"', at + 1), json.size());
        if (!series.take(json.substr(at + 1, end - at - 1), EventForm::HEX)) {
            return false;
        }
        at = end;
    }
    return series.isCertain() || series.isDamaged();
}

}

bool isEventLog(ByteView content)
{
    if (content.size() > MOST_SLOTS * SELFileLayout::SLOT_SIZE || !isEventFile(content)) {
        return false;
    }
    const SlotView view(content);
    if (view.getEvents().empty()) {
        return content.size() == SELFileLayout::FILE_SIZE;
    }
    return view.getEvents().size() >= OEM_RECORDS ||
           std::any_of(view.getEvents().begin(), view.getEvents().end(),
                       [&view](unsigned int slot) {
                           const Event event = decodeEvent(0, {0, 0, slot, view.slot(slot)});
                           return event.kind == EventKind::SYSTEM_EVENT && oddityOf(event).empty();
                       });
}

bool areEventRecords(ByteView content)
{
    return seriesOf(content).isCertain();
}

bool areDamagedEventRecords(ByteView content)
{
    return seriesOf(content).isDamaged();
}

bool isEventText(const std::string& content)
{
    const std::size_t first = content.find_first_not_of(BLANKS);
    if (first == std::string::npos) {
        return false;
    }
    if (content[first] == '{' || content[first] == '[') {
        return areEventMembers(content, "\"image\"") || areEventMembers(content, "\"record\"");
    }
    return areEventLines(content);
}

}
