// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELChainReader.h>

#include <algorithm>
#include <utility>

#include "SELFileScan.h"

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

SELChainReader::SELChainReader(unsigned char sb, Order walkOrder) : order(walkOrder)
{
    addRotatedFiles(sb);
    std::reverse(files.begin(), files.end());
    addFile(sb, 0);
    for (File& each : files) {
        if (each.scan->isCounted()) {
            each.firstLogNumber = total + 1;
            total += each.count;
        }
    }
    if (order == NEWEST_FIRST) {
        std::reverse(files.begin(), files.end());
    }
    goToFile(0);
}

SELChainReader::~SELChainReader() = default;

bool SELChainReader::next(Record& record)
{
    while (file < files.size() && position == files[file].count) {
        goToFile(file + 1);
    }
    if (file == files.size()) {
        return false;
    }
    const File& current = files[file];
    record.slot = order == OLDEST_FIRST ? position : current.count - 1 - position;
    record.fileIndex = current.index;
    record.logNumber = current.firstLogNumber == 0 ? 0 : current.firstLogNumber + record.slot;
    record.image = current.scan->slot(record.slot);
    ++position;
    return true;
}

void SELChainReader::goToFile(std::size_t number)
{
    file = number;
    position = 0;
    if (file < files.size() && files[file].count != 0) {
        File& current = files[file];
        current.scan->read();
        if (!current.scan->isReadable()) {
            damage.push_back({current.index, current.path, current.scan->describeDamage()});
        }
        // Emptied since it was counted, by a rotation or by clearing: its records are not here any
        // more.
        current.count = std::min(current.count, current.scan->getCount());
    }
}

void SELChainReader::addRotatedFiles(unsigned char sb)
{
    for (int index = 1; index <= OLDEST_FILE; ++index) {
        addFile(sb, index);
        // A missing file, or one of another size, is not added, and ends the chain.
        if (files.empty() || files.back().index != index) {
            return;
        }
    }
}

void SELChainReader::addFile(unsigned char sb, int index)
{
    const std::string path = BMCSELDataFile().getFileName(sb, index, TEMPORARY);
    auto scan = std::make_unique<SELFileScan>(path, buffer);
    const std::string text = scan->describeDamage();
    const bool isWorkingFile = index == 0;
    if (!text.empty() && (isWorkingFile || !scan->isMissing())) {
        damage.push_back({index, path, text});
    }
    if (!isWorkingFile && (scan->isMissing() || (scan->getError() == 0 && !scan->isRightSize()))) {
        return;
    }
    const unsigned int count = scan->getCount();
    files.push_back({index, path, 0, count, std::move(scan)});
}

}
