// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/NewEvents.h>

#include <algorithm>

#include <recordkit/selfile/BMCSELDataFile.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELChainReader;

std::vector<Event> NewEvents::take(std::vector<std::string>& problems)
{
    SELChainReader reader(board, SELChainReader::NEWEST_FIRST);
    // Back to the last event returned; if that is gone, everything is new.
    std::vector<Event> events;
    bool isFound = false;
    SELChainReader::Record record = {};
    while (!isFound && reader.next(record)) {
        isFound = hasLast && std::equal(last.begin(), last.end(), record.image);
        if (!isFound) {
            events.push_back(decodeEvent(board, record));
        }
    }
    for (const auto& damage : reader.getDamage()) {
        problems.push_back(damage.path + ": " + damage.text);
    }
    if (hasLast && !isFound && isLastInBackup()) {
        return {};
    }
    std::reverse(events.begin(), events.end());
    if (!events.empty()) {
        last = events.back().image;
        hasLast = true;
    }
    return events;
}

/// During a rotation, from emptying the working file to the last rename, only the backup contains
/// the last event.
bool NewEvents::isLastInBackup() const
{
    TAVLib::RecordKit::BMCSELEntryMessage found;
    unsigned long addr = 0;
    std::array<unsigned char, SELFileLayout::SLOT_SIZE> image = {};
    const std::string backup = BMCSELDataFile().getFileName(board, 0, SELFileLayout::PERSISTENT);
    return BMCSELDataFile().searchRecord(backup, SELFileLayout::idOf(last.data()), found, addr) ==
               BMCSELDataFile::SUCCESS &&
           found.getSerialized(image.data(), SELFileLayout::SLOT_SIZE) != 0 && image == last;
}

}
