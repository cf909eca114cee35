// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SPDIMAGE_H
#define RECORDKIT_TESTS_SUPPORT_SPDIMAGE_H

#include <recordkit/inspect/memory/Spd.h>

#include "support/Bytes.h"

namespace testing_support {

// Facts as a test expects them.
inline recordkit::inspect::Value number(long long value)
{
    return value;
}

inline recordkit::inspect::Value words(const char* value)
{
    return std::string(value);
}

const recordkit::inspect::Value NONE;

/// Puts the CRC of some bytes at an offset, low byte first.
inline void writeSpdCrc(Bytes& image, std::size_t first, std::size_t count, std::size_t offset)
{
    const unsigned short crc =
        recordkit::inspect::spdCrc(recordkit::inspect::ByteView(image).part(first, count));
    image[offset] = static_cast<unsigned char>(crc & 0xFF);
    image[offset + 1] = static_cast<unsigned char>(crc >> 8);
}

inline void put(Bytes& image, std::size_t offset, const Bytes& bytes)
{
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

/// A registered DDR3 module of 8 GB with a right CRC.
inline Bytes spdModule()
{
    Bytes image(256, 0);
    image[0] = 0x92; // the CRC covers 117 bytes
    image[2] = 0x0B;
    image[3] = 0x01;
    image[4] = 0x04; // 4 Gbit
    image[7] = 0x09; // two ranks of 8 bits
    image[8] = 0x0B; // 64 bits and ECC
    writeSpdCrc(image, 0, 117, 126);
    const Bytes serial = {0x12, 0x34, 0x56, 0x78};
    std::copy(serial.begin(), serial.end(), image.begin() + 122);
    const Bytes part = textBytes("RK-PART-4711      ");
    std::copy(part.begin(), part.end(), image.begin() + 128);
    return image;
}

/// A registered DDR3 module of 8 GB with a value in every field, and a right CRC.
inline Bytes ddr3Module()
{
    Bytes image(256, 0);
    put(image, 0, {0x92, 0x13, 0x0B, 0x01});
    put(image, 4, {0x04, 0x21, 0x02, 0x09, 0x0B}); // 8 banks; 16 rows, 10 columns; 1.5 and 1.35 V
    put(image, 9, {0x11, 0x01, 0x08});             // 1 ps, 1/8 ns
    put(image, 12, {0x0A, 0x00, 0xFE, 0x40});      // 1.25 ns; CAS latencies 5 to 11 and 18
    // tAA, tWR, tRCD, tRRD, tRP, upper bits, tRAS, tRC
    put(image, 16, {0x6E, 0x78, 0x6E, 0x30, 0x6E, 0x11, 0x18, 0x86});
    // tRFC, tWTR, tRTP, tFAW
    put(image, 24, {0x20, 0x08, 0x3C, 0x3D, 0x01, 0xF0});
    put(image, 30, {0x83, 0x85, 0x80, 0x00});       // optional features; sensor; monolithic
    put(image, 34, {0x00, 0x01, 0xFF, 0x02, 0xFE}); // fine: tCK, tAA, tRCD, tRP, tRC
    put(image, 41, {0x18});                         // unlimited in 4096 intervals
    put(image, 60, {0x0F, 0x32, 0x24, 0x09, 0x80, 0x80, 0xB3, 0x63, 0x00});
    put(image, 117, {0x80, 0xCE, 0x02, 0x16, 0x38, 0x12, 0x34, 0x56, 0x78});
    writeSpdCrc(image, 0, 117, 126);
    put(image, 128, textBytes("RK-DDR3-PART      "));
    put(image, 146, {0x4E, 0x30, 0x80, 0x2C});
    put(image, 176, {0x0C, 0x4A, 0x01, 0x12}); // profiles
    return image;
}

/// A registered DDR4 module of 16 GB with a value in every field, and right CRCs.
inline Bytes ddr4Module()
{
    Bytes image(512, 0);
    put(image, 0, {0x23, 0x11, 0x0C, 0x01});
    put(image, 4, {0x85, 0x21});              // 8 Gbit, 4 x 4 banks; 16 rows, 10 columns
    put(image, 6, {0x00, 0x08, 0x00, 0x60});  // monolithic; unlimited; repair
    put(image, 11, {0x01, 0x09, 0x0B, 0x80}); // 1.2 V; two ranks of 8 bits; 64 and 8 bits; sensor
    put(image, 18, {0x07, 0x0D});             // cycles
    put(image, 20, {0x38, 0x04, 0x00, 0x00}); // CAS latencies 10, 11, 12, 17
    // tAA, tRCD, tRP, upper bits, tRAS, tRC
    put(image, 24, {0x6E, 0x6E, 0x6E, 0x11, 0x00, 0x6E});
    // tRFC1, tRFC2, tRFC4
    put(image, 30, {0xF0, 0x0A, 0x20, 0x08, 0x00, 0x05});
    // tFAW, tRRD_S, tRRD_L, tCCD_L
    put(image, 36, {0x01, 0xA8, 0x1B, 0x28, 0x28});
    // tWR, upper bits, tWTR_S, tWTR_L
    put(image, 41, {0x01, 0x78, 0x32, 0x14, 0x3C});
    // Fine corrections of tCCD_L, tRRD_L, tRRD_S, tRC, tRP, tRCD, tAA, tCKmax, tCKmin
    put(image, 117, {0x00, 0x9C, 0xB5, 0xFE, 0xFF, 0x01, 0x00, 0xE7, 0xD6});
    writeSpdCrc(image, 0, 126, 126);
    put(image, 128, {0x11, 0x21, 0x23, 0x19, 0x80, 0x86, 0x32, 0xB1, 0x01});
    writeSpdCrc(image, 128, 126, 254);
    put(image, 320, {0x80, 0xCE, 0x02, 0x19, 0x27, 0x12, 0x34, 0x56, 0x78});
    put(image, 329, textBytes("RK-DDR4-PART        "));
    put(image, 349, {0x31, 0x80, 0xAD, 0x41});
    put(image, 384, {0x0C, 0x4A, 0x01, 0x20}); // profiles
    return image;
}

/// A registered DDR5 module of 32 GB with a value in every field, and a right CRC.
inline Bytes ddr5Module()
{
    Bytes image(1024, 0);
    put(image, 0, {0x30, 0x11, 0x12, 0x01});
    put(image, 4, {0x04, 0x20, 0x20, 0x62}); // 16 Gbit; 16 rows, 11 columns; 8 bits; 8 x 4 banks
    put(image, 20, {0xA0, 0x01, 0xF2, 0x03, 0x7A, 0x05, 0x00, 0x00, 0x80}); // cycles, CAS latencies
    // tAA, tRCD, tRP, tRAS, tRC, tWR, tRFC1, tRFC2, tRFCsb
    put(image, 30,
        {0x80, 0x3E, 0x81, 0x3E, 0x82, 0x3E, 0x00, 0x7D, 0x80, 0xBB, 0x30, 0x75, 0x27, 0x01, 0xA0,
         0x00, 0x82, 0x00});
    // tRRD_L, tCCD_L, tCCD_L_WR, tCCD_L_WR2, tFAW, tCCD_L_WTR, tCCD_S_WTR, tRTP: each with clocks
    put(image, 70, {0x88, 0x13, 0x08, 0x89, 0x13, 0x0D, 0x20, 0x4E, 0x31, 0x10, 0x27, 0x10,
                    0x15, 0x34, 0x20, 0x11, 0x27, 0x10, 0xC4, 0x09, 0x04, 0x4C, 0x1D, 0x13});
    put(image, 192, {0x10, 0x00, 0x80, 0xB3, 0x80, 0x21, 0x8A, 0x8C, 0x81, 0x14}); // hub, PMIC
    put(image, 210, {0x80, 0xB3, 0xC0, 0x11});                                     // sensors
    put(image, 230, {0x11, 0x21, 0x23, 0x06, 0x08, 0x32}); // two ranks; 2 channels of 32 and 8 bits
    put(image, 240, {0x86, 0x32, 0x81, 0x31, 0x80, 0xB3, 0x80, 0x22}); // register, buffers
    writeSpdCrc(image, 0, 510, 510);
    put(image, 512, {0x80, 0xAD, 0x03, 0x23, 0x09, 0x12, 0x34, 0x56, 0x78});
    put(image, 521, textBytes("RK-DDR5-PART                  "));
    put(image, 551, {0x32, 0x80, 0xCE, 0x50});
    put(image, 640, {0x0C, 0x4A, 0x30});
    put(image, 832, textBytes("EXPO"));
    return image;
}

/// An LPDDR4 module (LP-DIMM) of 4 GB with a value in every field, and right CRCs.
inline Bytes lpddr4Module()
{
    Bytes image(512, 0);
    put(image, 0, {0x23, 0x11, 0x10, 0x07});
    // 8 banks, 8 Gbit; 15 rows, 10 columns; 2 dies of 2 channels
    put(image, 4, {0x15, 0x19, 0x95, 0x08, 0x00, 0x60});
    put(image, 12, {0x0A, 0x22, 0x80});       // two ranks of 16 bits; 2 channels of 32 bits; sensor
    put(image, 16, {0x8A, 0x00});             // loads 4, 2, 4; 125 ps, 1 ps
    put(image, 18, {0x04, 0x0C});             // cycles
    put(image, 20, {0x92, 0x54, 0x05, 0x00}); // CAS latencies
    // tAA, latency sets, tRCD, tRPab, tRPpb, tRFCab, tRFCpb
    put(image, 24, {0x87, 0x05, 0x90, 0xA8, 0x91, 0xC0, 0x08, 0x60, 0x04});
    // Fine corrections of tRPpb, tRPab, tRCD, tAA, tCKmax, tCKmin
    put(image, 120, {0x01, 0xFF, 0x02, 0xE5, 0xFE, 0xE1});
    writeSpdCrc(image, 0, 126, 126);
    put(image, 128, {0x11, 0x21, 0x23});
    writeSpdCrc(image, 128, 126, 254);
    put(image, 320, {0x80, 0xCE, 0x02, 0x19, 0x27, 0x12, 0x34, 0x56, 0x78});
    put(image, 329, textBytes("RK-LPDDR4-PART      "));
    put(image, 349, {0x31, 0x80, 0xAD, 0x41});
    return image;
}

/// An LPDDR5X module (CAMM2) of 32 GB with a value in every field, and a right CRC.
inline Bytes lpddr5Module()
{
    Bytes image(1024, 0);
    put(image, 0, {0x30, 0x10, 0x15, 0x08});
    // 4 x 4 banks, 16 Gbit; 16 rows, 6 columns; 2 dies; repair
    put(image, 4, {0x86, 0x21, 0x91, 0x00, 0x00, 0x60});
    put(image, 12, {0x0A, 0x01}); // two ranks of 16 bits
    put(image, 16, {0x48, 0x00}); // loads 2, 2, 1; 125 ps, 1 ps
    put(image, 18, {0x08, 0xFF}); // cycles
    // tAA; tRCD, tRPab, tRPpb, tRFCab, tRFCpb
    put(image, 24, {0xAD, 0x00, 0x90, 0xA8, 0x91, 0xC0, 0x08, 0x60, 0x04});
    // Fine corrections of tRPpb, tRPab, tRCD, tAA, tCKmax, tCKmin
    put(image, 120, {0x01, 0xFF, 0x02, 0xB6, 0x00, 0xC1});
    put(image, 192, {0x10, 0x00, 0x80, 0xB3, 0x80, 0x21, 0x8A, 0x8C, 0x85, 0x14}); // hub, PMIC
    put(image, 210, {0x80, 0xB3, 0xC0, 0x11});                                     // sensors
    put(image, 230, {0x11, 0x21, 0x23, 0x06, 0x08, 0x61}); // 8 channels of 16 bits
    writeSpdCrc(image, 0, 510, 510);
    put(image, 512, {0x80, 0xAD, 0x03, 0x23, 0x09, 0x12, 0x34, 0x56, 0x78});
    put(image, 521, textBytes("RK-LPDDR5-PART                "));
    put(image, 551, {0x32, 0x80, 0xCE, 0x50});
    return image;
}

}

#endif
