// SPDX-License-Identifier: Apache-2.0
// Event files of one board with anything in them: walked, searched, checked, appended to,
// recovered.
//
// The input is a list of pieces: a file (bits 2..0 of its first byte; bit 3: the backup of file 0;
// bit 4: the file is cut off after the piece), the slot of the piece in units of 4, the number of
// bytes, and the bytes. All other slots of a file are empty.
#include <algorithm>
#include <map>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "Fuzz.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using namespace TAVLib::RecordKit;
namespace Layout = SELFileLayout;

namespace {

constexpr std::size_t PIECE_HEADER = 3;

std::map<std::string, Bytes> filesOf(const unsigned char* data, std::size_t size)
{
    std::map<std::string, Bytes> files;
    BMCSELDataFile store;
    for (std::size_t at = 0; size - at >= PIECE_HEADER;) {
        const std::string path = store.getFileName(0, data[at] & 7, data[at] >> 3 & 1);
        const std::size_t offset = data[at + 1] * 4U * Layout::SLOT_SIZE % Layout::FILE_SIZE;
        const bool isCut = (data[at] & 0x10) != 0;
        at += PIECE_HEADER;
        const std::size_t length = std::min<std::size_t>(data[at - 1], size - at);
        Bytes& file = files.emplace(path, Bytes(Layout::FILE_SIZE, 0xFF)).first->second;
        file.resize(std::max(file.size(), offset + length), 0xFF);
        std::copy_n(data + at, length, file.begin() + static_cast<long>(offset));
        file.resize(isCut ? offset + length : file.size());
        at += length;
    }
    return files;
}

unsigned int walk(SELChainReader::Order order)
{
    SELChainReader reader(0, order);
    SELChainReader::Record record = {};
    unsigned int numbered = 0;
    while (reader.next(record)) {
        numbered += record.logNumber != 0 ? 1 : 0;
        if (order == SELChainReader::NEWEST_FIRST) {
            recordkit::inspect::eventText(recordkit::inspect::decodeEvent(0, record));
        }
    }
    fuzz::expect(numbered == reader.getTotal());
    return numbered;
}

/// Every operation that reads, driven by the contents of the files.
void ask(unsigned short id)
{
    BMCSELDataFile store;
    BMCSELEntryMessage message;
    store.readRecord(0, id, message);
    store.readFirstRecord(0, message);
    store.readLastRecord(0, message);
    store.readStoredRecord(0, id, message);
    unsigned short total = 0;
    unsigned short last = 0;
    store.getEntryNum(0, total, last);
    for (int file = 0; file <= Layout::OLDEST_FILE; ++file) {
        store.readLastRecordEx(0, file, message, Layout::TEMPORARY);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    static const ScratchRoot root;
    BMCSELDataFile store;
    for (int file = 0; file <= Layout::OLDEST_FILE; ++file) {
        for (const Layout::FileKind kind : {Layout::TEMPORARY, Layout::PERSISTENT}) {
            std::remove(store.getFileName(0, file, kind).c_str());
        }
    }
    for (const auto& [path, bytes] : filesOf(data, size)) {
        writeFile(path, bytes);
    }
    const unsigned int before = walk(SELChainReader::OLDEST_FIRST);
    fuzz::expect(walk(SELChainReader::NEWEST_FIRST) == before);
    ask(size > 0 ? data[size - 1] : 0);

    const Bytes image(Layout::SLOT_SIZE, 0x5A);
    BMCSELEntryMessage added;
    added.setSerialized(image.data(), Layout::SLOT_SIZE);
    if (store.writeRecord(0, added) == 1) {
        SELChainReader reader(0, SELChainReader::NEWEST_FIRST);
        SELChainReader::Record record = {};
        fuzz::expect(reader.next(record));
        while (record.fileIndex != 0 || record.logNumber == 0) {
            fuzz::expect(reader.next(record));
        }
        fuzz::expect(std::equal(image.begin(), image.end(), record.image));
    }

    std::vector<std::string> actions;
    const unsigned int found = walk(SELChainReader::OLDEST_FIRST);
    if (SELStoreCheck(0).recover(actions)) {
        // Closing gaps brings events back; it removes none except those of an oldest file.
        fuzz::expect(walk(SELChainReader::OLDEST_FIRST) + Layout::SLOTS >= found);
    }
    return 0;
}
