// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/MemoryMakers.h>

#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

struct Maker {
    unsigned char bank; ///< continuation codes and one
    unsigned char code; ///< with its parity bit
    const char* name;
};

// Makers of modules, devices, registers, buffers, hubs and power management circuits, by the
// numbers that JEP106 gives them.
// clang-format off
constexpr Maker MAKERS[] = {
    {1, 0x01, "AMD"},
    {1, 0x07, "Hitachi"},
    {1, 0x10, "NEC"},
    {1, 0x15, "NXP"},
    {1, 0x1C, "Mitsubishi"},
    {1, 0x1F, "Atmel"},
    {1, 0x20, "STMicroelectronics"},
    {1, 0x29, "Microchip Technology"},
    {1, 0x2C, "Micron Technology"},
    {1, 0x34, "Cypress"},
    {1, 0x40, "ProMOS/Mosel Vitelic"},
    {1, 0x54, "Hewlett-Packard"},
    {1, 0x89, "Intel"},
    {1, 0x97, "Texas Instruments"},
    {1, 0x98, "Toshiba"},
    {1, 0xA4, "IBM"},
    {1, 0xAD, "SK Hynix"},
    {1, 0xB0, "Sharp"},
    {1, 0xB3, "IDT"},
    {1, 0xC1, "Infineon"},
    {1, 0xC2, "Macronix"},
    {1, 0xCE, "Samsung"},
    {1, 0xDA, "Winbond Electronics"},
    {2, 0x4F, "Transcend Information"},
    {2, 0x7A, "Apacer Technology"},
    {2, 0x94, "Smart Modular"},
    {2, 0x98, "Kingston"},
    {2, 0xBA, "PNY Technologies"},
    {3, 0x9E, "Corsair"},
    {3, 0xFE, "Elpida"},
    {4, 0x0B, "Nanya Technology"},
    {4, 0x25, "Kingmax Semiconductor"},
    {4, 0xB5, "SpecTek"},
    {5, 0x43, "Ramaxel Technology"},
    {5, 0xB0, "OCZ"},
    {5, 0xB3, "Inphi Corporation"},
    {5, 0xCB, "A-DATA Technology"},
    {5, 0xCD, "G Skill Intl"},
    {5, 0xEF, "Team Group"},
    {6, 0x02, "Patriot Memory"},
    {6, 0x51, "Qimonda"},
    {6, 0x57, "AENEON"},
    {6, 0x9B, "Crucial Technology"},
    {7, 0x32, "Montage Technology Group"},
    {7, 0xF1, "InnoDisk Corporation"},
    {8, 0x92, "HT Micron"},
    {11, 0x8C, "Richtek Power"},
    {11, 0x91, "ChangXin Memory Technologies"},
};
// clang-format on

constexpr bool isOdd(unsigned char byte)
{
    bool odd = false;
    for (unsigned int rest = byte; rest != 0; rest &= rest - 1) {
        odd = !odd;
    }
    return odd;
}

constexpr bool isTableRight()
{
    for (std::size_t i = 0; i < std::size(MAKERS); ++i) {
        if (!isOdd(MAKERS[i].code)) {
            return false;
        }
        if (i > 0 && MAKERS[i - 1].bank * 256 + MAKERS[i - 1].code >=
                         MAKERS[i].bank * 256 + MAKERS[i].code) {
            return false;
        }
    }
    return true;
}
static_assert(isTableRight(), "rows have odd parity and rise");

}

std::string memoryMakerName(unsigned char continuations, unsigned char code)
{
    if (continuations == code && (code == 0 || code == 0xFF)) {
        return {};
    }
    if (!isOdd(continuations) || !isOdd(code)) {
        return fmt::format("bytes {:02X}h {:02X}h, wrong parity", continuations, code);
    }
    const unsigned int bank = (continuations & 0x7FU) + 1;
    for (const Maker& maker : MAKERS) {
        if (maker.bank == bank && maker.code == code) {
            return maker.name;
        }
    }
    return fmt::format("bank {}, code {:02X}h", bank, code);
}

}
