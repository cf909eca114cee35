// SPDX-License-Identifier: Apache-2.0
// Prints the board serial number of a FRU image; with a second argument, changes it.
#include <cstdio>

#include <recordkit/fru/FRUData.h>
#include <recordkit/fru/FRUTables.h>
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
            // One byte of text would have the type/length byte that ends the fields.
            if (serial.size() == 1 || serial.size() > FRU_LENGTH_BITS) {
                std::fprintf(stderr, "expected 0 or 2 to %u characters\n", FRU_LENGTH_BITS);
                return 2;
            }
            fru.updateItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial);
            fru.syncFRU();
        }
        // As the image now has it, not as this object has.
        FRUData written(device);
        written.getItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial, FRUArea::CSUM_CHECK);
        if (argc > 2 && serial != argv[2]) {
            std::fprintf(stderr, "the image does not contain the new serial number\n");
            return 1;
        }
        std::printf("%s\n", serial.c_str());
        return 0;
    } catch (const TAVLib::PException& e) {
        std::fprintf(stderr, "%s\n", e.getMessage().c_str());
        return 1;
    }
}
