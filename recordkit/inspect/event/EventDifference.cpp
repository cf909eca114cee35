// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventDifference.h>

#include <algorithm>
#include <string>
#include <unordered_map>

namespace recordkit::inspect {

namespace {

using TAVLib::RecordKit::BMCSELEntry;
using TAVLib::RecordKit::SELEntry;

/// After the record there is the number of OEM bytes, which says nothing of the event.
constexpr unsigned int MORE = BMCSELEntry::IMAGE_SIZE + BMCSELEntry::BLOCK_EVENT_DATA;

using Image = std::array<unsigned char, SELFileLayout::SLOT_SIZE>;

/// The record without its id, and the board if it matters.
std::string keyOf(const Event& event, bool isByBoard)
{
    const Image& image = event.image;
    return std::string(image.begin() + SELFileLayout::RECORD_ID_END,
                       image.begin() + SELEntry::IMAGE_SIZE) +
           (isByBoard ? std::to_string(event.board) : "");
}

bool hasMore(const Event& event)
{
    return std::any_of(event.image.begin() + MORE, event.image.end(),
                       [](unsigned char byte) { return byte != 0; });
}

bool isMoreEqual(const Event& first, const Event& second)
{
    return std::equal(first.image.begin() + MORE, first.image.end(), second.image.begin() + MORE);
}

bool isOneWithoutMore(const Event& first, const Event& second)
{
    return !hasMore(first) || !hasMore(second);
}

}

EventDifference compareEvents(const std::vector<Event>& first, const std::vector<Event>& second,
                              bool isByBoard)
{
    std::unordered_map<std::string, std::vector<std::size_t>> unmatched;
    for (std::size_t i = 0; i < second.size(); ++i) {
        unmatched[keyOf(second[i], isByBoard)].push_back(i);
    }
    EventDifference difference;
    for (std::size_t i = 0; i < first.size(); ++i) {
        difference.onlyInFirst.push_back(i);
    }
    // First those that are the same in every byte, so that none of them is taken for another.
    for (const auto isSame : {isMoreEqual, isOneWithoutMore}) {
        std::vector<std::size_t> left;
        for (const std::size_t i : difference.onlyInFirst) {
            std::vector<std::size_t>& candidates = unmatched[keyOf(first[i], isByBoard)];
            const auto found =
                std::find_if(candidates.begin(), candidates.end(),
                             [&](std::size_t other) { return isSame(first[i], second[other]); });
            if (found == candidates.end()) {
                left.push_back(i);
            } else {
                candidates.erase(found);
            }
        }
        difference.onlyInFirst = left;
    }
    for (const auto& each : unmatched) {
        difference.onlyInSecond.insert(difference.onlyInSecond.end(), each.second.begin(),
                                       each.second.end());
    }
    std::sort(difference.onlyInSecond.begin(), difference.onlyInSecond.end());
    return difference;
}

}
