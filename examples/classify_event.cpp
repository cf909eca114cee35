// SPDX-License-Identifier: Apache-2.0
// How severe is the event that a controller sent?
#include <cstdio>

#include <recordkit/sel/SELEntry.h>
#include <recordkit/sensor/SeverityMap.h>

int main()
{
    const unsigned char response[18] = {0xFF, 0xFF, 0x01, 0, 0x02, 0,    0,    0,    0,
                                        0x20, 0,    0x04, 7, 0x60, 0x6F, 0x01, 0xFF, 0xFF};
    TAVLib::RecordKit::SELEntry entry;
    entry.setSerialized(response, sizeof response);
    using Byte = TAVLib::RecordKit::SELEntry;
    const int severity = SeverityMap::getInstance()->getSeverity(
        entry.getSpecifiedBytePosData(Byte::EVENT_TYPE) & 0x7F,
        entry.getSpecifiedBytePosData(Byte::SENSOR_TYPE),
        static_cast<unsigned short>(1 << (entry.getSpecifiedBytePosData(Byte::EVENT_DATA_1) & 15)));
    std::printf("%s severity %d\n", entry.printSELData().c_str(), severity);
}
