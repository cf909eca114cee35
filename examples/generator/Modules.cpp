// SPDX-License-Identifier: Apache-2.0
#include "Modules.h"

#include <string>

#include <recordkit/inspect/memory/Spd.h>

#include "Units.h"

namespace generator {

namespace {

/// The CRC of bytes, after them.
void writeCrc(Bytes& image, std::size_t first, std::size_t offset)
{
    namespace inspect = recordkit::inspect;
    const unsigned short crc =
        inspect::spdCrc(inspect::ByteView(image).part(first, offset - first));
    put(image, offset, lowFirst(crc, 2));
}

/// A registered DDR4-2666 module of 16 GB: two ranks of 8 bits, with ECC.
Bytes module(unsigned int serialNumber)
{
    constexpr std::size_t SIZE = 512;
    constexpr std::size_t CRC = 126;
    constexpr std::size_t MODULE_BLOCK = 128;
    constexpr std::size_t MODULE_CRC = 254;
    // Nobody's number (JEDEC JEP106): bank 128.
    const Bytes maker = {0x7F, 0x01};

    Bytes image(SIZE, 0);
    put(image, 0, {0x23, 0x11, 0x0C, 0x01});
    put(image, 4, {0x85, 0x21});              // 8 Gbit, 4 x 4 banks; 16 rows, 10 columns
    put(image, 6, {0x00, 0x08, 0x00, 0x60});  // monolithic; unlimited activates; repair
    put(image, 11, {0x03, 0x09, 0x0B, 0x80}); // 1.2 V; ranks and width; bus and ECC; sensor
    put(image, 18, {0x06, 0x0D});             // cycles of 0.75 to 1.6 ns
    put(image, 20, {0xF8, 0x3F, 0x00, 0x00}); // CAS latencies 10 to 20
    // tAA, tRCD, tRP, upper bits, tRAS, tRC
    put(image, 24, {0x6E, 0x6E, 0x6E, 0x11, 0x00, 0x6E});
    // tRFC1, tRFC2, tRFC4
    put(image, 30, {0xF0, 0x0A, 0x20, 0x08, 0x00, 0x05});
    // tFAW, tRRD_S, tRRD_L, tCCD_L
    put(image, 36, {0x00, 0xA8, 0x18, 0x28, 0x28});
    // tWR, upper bits, tWTR_S, tWTR_L
    put(image, 41, {0x00, 0x78, 0x00, 0x14, 0x3C});
    put(image, 118, {0x9C}); // tRRD_L is 0.1 ns shorter
    writeCrc(image, 0, CRC);
    // Height, thickness, raw card, registers, heat spreader, register's maker and revision, mapping
    put(image, MODULE_BLOCK, {0x11, 0x11, 0x04, 0x05, 0x00});
    put(image, 133, join(maker, {0x21, 0x01}));
    writeCrc(image, MODULE_BLOCK, MODULE_CRC);
    put(image, 320, join(maker, {0x01, 0x26, 0x05}));
    for (unsigned int i = 0; i < 4; ++i) { // high byte first
        image[325 + i] = static_cast<unsigned char>(serialNumber >> 8 * (3 - i) & 0xFF);
    }
    std::string part = DIMM_PART_NUMBER;
    part.resize(20, ' ');
    putText(image, 329, part);
    put(image, 349, join({0x01}, maker));
    return image;
}

}

Files memoryModules()
{
    Files files;
    for (unsigned int board = 0; board < BOARDS; ++board) {
        for (unsigned int dimm = 0; dimm < DIMMS; ++dimm) {
            const std::string path =
                "spd/sb" + std::to_string(board) + "/dimm" + std::to_string(dimm) + ".bin";
            files.push_back({path, module(dimmSerial(board, dimm))});
        }
    }
    return files;
}

}
