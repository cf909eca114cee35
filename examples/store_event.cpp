// SPDX-License-Identifier: Apache-2.0
// Stores an event on board 0 below a root folder, rotating a full file:  store_event ROOT
#include <cstdio>

#include <recordkit/host/HostRoot.h>
#include <recordkit/selfile/BMCSELDataFile.h>

namespace {

/// Makes room for a record; says why there is none.
bool hasRoom(BMCSELDataFile& store)
{
    const unsigned int state = store.fullEntryCheck(0);
    if (state == BMCSELDataFile::FILE_FULL) {
        const int result = store.shiftSelFile(0, true);
        if (result != 0) {
            std::fprintf(stderr, "the full file could not be rotated: code %d\n", result);
        }
        return result == 0;
    }
    if (state != BMCSELDataFile::SUCCESS) {
        // A damaged tail stays until somebody repairs the log; a rotation would only move it.
        std::fprintf(stderr, "the log takes no event: code %u; see recordkit sel check\n", state);
    }
    return state == BMCSELDataFile::SUCCESS;
}

}

int main(int argc, char** argv)
{
    TAVLib::host::setSystemRoot(argc > 1 ? argv[1] : "");
    const unsigned char record[18] = {0xFF, 0xFF, 0x01, 0, 0x02, 0x0C, 0xB6, 0x29, 0x67,
                                      0x20, 0,    0x04, 7, 0x60, 0x6F, 0x01, 0xFF, 0xFF};
    TAVLib::RecordKit::OEMSELEntry received;
    received.setSerialized(record, sizeof record);
    TAVLib::RecordKit::BMCSELEntryMessage message;
    message.convert(received);
    BMCSELDataFile store;
    const bool isStored = hasRoom(store) && store.writeRecord(0, message) == 1;
    std::puts(isStored ? "stored" : "not stored");
    return isStored ? 0 : 1;
}
