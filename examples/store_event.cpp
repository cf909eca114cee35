// SPDX-License-Identifier: Apache-2.0
// Stores an event on board 0 below a root folder, rotating a full file:  store_event ROOT
#include <cstdio>

#include <recordkit/host/HostRoot.h>
#include <recordkit/selfile/BMCSELDataFile.h>

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
    if (store.fullEntryCheck(0) == BMCSELDataFile::FILE_FULL) {
        store.shiftSelFile(0, true);
    }
    std::puts(store.writeRecord(0, message) == 1 ? "stored" : "not stored");
}
