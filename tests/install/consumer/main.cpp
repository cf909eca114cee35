// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include <recordkit/host/Machine.h>
#include <recordkit/sel/OEMSELEntry.h>

int main()
{
    const unsigned char image[33] = {0, 0, 1, 0, 2, 0, 0, 0, 0, 0x5F, 0, 4, 1, 3, 1, 9};
    TAVLib::host::setMachine({4, 4, 4, {}});
    TAVLib::RecordKit::OEMSELEntry entry;
    entry.setSerialized(image, sizeof image);
    std::cout << entry.printSELData() << " LUN " << int(entry.getLUN()) << '\n';
    return entry.isPartitionValid(0) ? 1 : 0;
}
