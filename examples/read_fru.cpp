// SPDX-License-Identifier: Apache-2.0
// Prints the board serial number of a FRU image; with a second argument, changes it.
#include <cstdio>

#include <recordkit/fru/FRUData.h>
#include <recordkit/host/FileFRURWif.h>
#include <recordkit/platform/PException.h>

int main(int argc, char** argv)
{
    if (argc < 2) {
        return 2;
    }
    try {
        TAVLib::host::FileFRURWif device(argv[1], argc > 2);
        FRUData fru(device);
        std::string serial;
        if (argc > 2) {
            serial = argv[2];
            fru.updateItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial);
            fru.syncFRU();
        }
        fru.getItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial, FRUArea::CSUM_CHECK);
        std::printf("%s\n", serial.c_str());
        return 0;
    } catch (const TAVLib::PException& e) {
        std::fprintf(stderr, "%s\n", e.getMessage().c_str());
        return 1;
    }
}
