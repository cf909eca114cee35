// SPDX-License-Identifier: Apache-2.0
// Lists the events of board 0 below a root folder, newest first:  list_events ROOT
#include <cstdio>

#include <recordkit/host/HostRoot.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/selfile/SELChainReader.h>

int main(int argc, char** argv)
{
    TAVLib::host::setSystemRoot(argc > 1 ? argv[1] : "");
    using TAVLib::RecordKit::SELChainReader;
    SELChainReader reader(0, SELChainReader::NEWEST_FIRST);
    SELChainReader::Record record = {};
    while (reader.next(record)) {
        TAVLib::RecordKit::BMCSELEntryMessage entry;
        entry.setSerialized(record.image, 138);
        std::printf("%u %s\n", record.logNumber, entry.printSELData().c_str());
    }
}
