// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_MEMORY_SPD_H
#define RECORDKIT_INSPECT_MEMORY_SPD_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/Value.h>

namespace recordkit::inspect {

/// What the data of a module can say besides the members of Spd. A fact whose generation does not
/// have it, or that the module does not specify, has no value. A reserved code is a text with its
/// number, "code 7h". Times are numbers of picoseconds, rounded to the nearest; the fact after a
/// time is the same in clocks of the module's shortest cycle.
enum class SpdFact : unsigned char {
    MEMORY_TYPE,     ///< "DDR4 SDRAM"
    REVISION,        ///< of the data's format, "1.1"
    BYTES_USED,      ///< of the device
    BYTES_TOTAL,     ///< of the device
    HYBRID,          ///< other media on the module
    PACKAGE,         ///< of the memory devices
    DIES,            ///< in a package
    CHANNELS,        ///< of the module
    DIE_CHANNELS,    ///< of a die
    BYTE_MODE,       ///< whether two devices of 8 bits form a channel of 16
    DATA_LOADS,      ///< dies of a package on a data signal
    COMMAND_LOADS,   ///< on a command, address or clock signal
    SELECT_LOADS,    ///< on a chip select
    BANK_GROUPS,     ///< 1 without groups
    BANKS,           ///< in all groups
    ROW_BITS,        ///< of an address
    COLUMN_BITS,     ///< of an address
    VOLTAGES,        ///< "1.5 V, 1.35 V"
    SPEED,           ///< transfers per microsecond, as such modules are named: 2133
    CAS_LATENCIES,   ///< a list, the shortest first
    WRITE_LATENCIES, ///< the set of write latencies that they are for: "A" or "B"
    READ_DBI,        ///< whether they are for reading with data bus inversion
    TIMEBASES,       ///< units of the times: "125 ps, 1 ps"
    TCK_MIN,         ///< the shortest cycle
    TCK_MAX,         ///< the longest cycle
    TAA,             ///< CAS latency
    TAA_CLOCKS,
    TRCD, ///< RAS to CAS
    TRCD_CLOCKS,
    TRP, ///< precharge of a row; of LPDDR memory of all banks
    TRP_CLOCKS,
    TRP_PB, ///< precharge of one bank
    TRP_PB_CLOCKS,
    TRAS, ///< active to precharge
    TRAS_CLOCKS,
    TRC, ///< active to active or refresh
    TRC_CLOCKS,
    TRFC1, ///< refresh recovery
    TRFC1_CLOCKS,
    TRFC2, ///< the same at double rate
    TRFC2_CLOCKS,
    TRFC4, ///< the same at fourfold rate
    TRFC4_CLOCKS,
    TRFC_SB, ///< the same of one bank in each group
    TRFC_SB_CLOCKS,
    TRFC_PB, ///< the same of one bank
    TRFC_PB_CLOCKS,
    TFAW, ///< four activates
    TFAW_CLOCKS,
    TRRD, ///< row active to row active; of different bank groups
    TRRD_CLOCKS,
    TRRD_L, ///< of the same bank group
    TRRD_L_CLOCKS,
    TCCD_L, ///< CAS to CAS of the same bank group
    TCCD_L_CLOCKS,
    TCCD_L_WR, ///< write to write of the same bank group
    TCCD_L_WR_CLOCKS,
    TCCD_L_WR2, ///< the same where the second one is not read-modify-write
    TCCD_L_WR2_CLOCKS,
    TCCD_L_WTR, ///< write to read of the same bank group, from command to command
    TCCD_L_WTR_CLOCKS,
    TCCD_S_WTR, ///< of different bank groups
    TCCD_S_WTR_CLOCKS,
    TWR, ///< write recovery
    TWR_CLOCKS,
    TWTR, ///< write to read; of different bank groups
    TWTR_CLOCKS,
    TWTR_L, ///< of the same bank group
    TWTR_L_CLOCKS,
    TRTP, ///< read to precharge
    TRTP_CLOCKS,
    MAX_ACTIVATES,     ///< of a row in the window: "300 K", "unlimited", "untested"
    ACTIVATE_WINDOW,   ///< in average refresh intervals: 8192
    REPAIR,            ///< post package repair
    SOFT_REPAIR,       ///< whether there is soft post package repair
    RZQ6,              ///< whether there is an output driver of RZQ/6
    RZQ7,              ///< whether there is an output driver of RZQ/7
    DLL_OFF,           ///< whether the device works without its DLL
    HOT,               ///< whether the device works up to 95 degrees, not only up to 85
    HOT_REFRESH,       ///< refreshes above 85 degrees: 1 or 2 times the usual
    AUTO_REFRESH,      ///< whether self-refresh follows the temperature
    ON_DIE_SENSOR,     ///< whether the device's own thermal sensor can be read
    PARTIAL_REFRESH,   ///< whether a part of the array can be refreshed
    THERMAL_SENSOR,    ///< whether the module has one
    HEIGHT,            ///< of the module in mm, rounded up
    FRONT,             ///< thickness of the front in mm, rounded up
    BACK,              ///< of the back
    REFERENCE_CARD,    ///< raw card and its revision: "C revision 0", "ZZ" for none
    MAPPING,           ///< of addresses of odd ranks: "standard" or "mirrored"
    REGISTERS,         ///< how many of them
    DEVICE_ROWS,       ///< rows of memory devices
    REGISTER_TYPE,     ///< registering clock driver or buffer
    REGISTER_MAKER,    ///< its maker
    REGISTER_REVISION, ///< "3.1"
    BUFFER_REVISION,   ///< of the data buffers of an LRDIMM
    HEAT_SPREADER,     ///< whether the module has one
    MODULE_MAKER,      ///< as memoryMakerName
    LOCATION,          ///< a number of the maker's
    MADE,              ///< "2016-W38"
    MODULE_REVISION,   ///< in hex digits
    DRAM_MAKER,        ///< as memoryMakerName
    DRAM_STEPPING,     ///< a number
    HUB_TYPE,          ///< the device that contains the data
    HUB_MAKER,         ///< as memoryMakerName
    HUB_REVISION,
    PMIC_TYPE,  ///< the first power management circuit
    PMIC_MAKER, ///< as memoryMakerName
    PMIC_REVISION,
    PROFILES, ///< of speeds beyond the standard: "XMP 3.0, EXPO"
    COUNT
};

/// The key of a fact, as in JSON: "taa_ps".
const char* spdFactKey(SpdFact fact);

/// One CRC of the data: which bytes it covers, as it is and as it should be.
struct SpdCrc {
    unsigned short first = 0;
    unsigned short last = 0;
    unsigned short stored = 0;
    unsigned short expected = 0;

    bool isRight() const { return stored == expected; }
};

/// A memory module, decoded from its serial presence detect data (JEDEC 21-C, annexes K for DDR3,
/// L for DDR4 and M for LPDDR3, LPDDR4 and LPDDR4X; JESD400-5 for DDR5; JESD406-5 for LPDDR5 and
/// LPDDR5X). Firmware of boards with soldered memory makes such data itself: LPDDR5 and LPDDR5X in
/// the layout of annex M (module type 0Eh), and LPDDR3 in that of annex K (device type F1h), are
/// decoded as well. Such data often describe one of the memory's channels, and so does `megabytes`.
struct Spd {
    bool hasManufacturerData = false; ///< the image is long enough for serial and part number
    bool hasCodes = false;            ///< rankField, dimmSize and dramSize; DDR3 only
    bool hasRepeatedPages = false; ///< a dump that read the first 256 bytes again and again; only
                                   ///< these are decoded
    unsigned int megabytes = 0;    ///< 0 if it cannot be determined
    unsigned int ranks = 0;        ///< 0 for a reserved code
    unsigned int deviceWidth = 0;  ///< bits; 0 for a reserved code
    unsigned int busWidth = 0;     ///< of all channels, without eccWidth
    unsigned int eccWidth = 0;
    unsigned int densityMegabits = 0; ///< of one die; 0 for a reserved code
    std::string moduleType;
    unsigned int serialNumber = 0;
    std::string partNumber; ///< UTF-8
    unsigned char rankField = 0;
    unsigned char dimmSize = 0; ///< codes of DIMMType
    unsigned char dramSize = 0;
    unsigned short storedCrc = 0; ///< of the first block
    unsigned short expectedCrc = 0;
    std::optional<SpdCrc> moduleCrc = {}; ///< of the block of the module type, where there is one
    std::array<Value, static_cast<std::size_t>(SpdFact::COUNT)> facts = {};

    /// Whether that of the first block is.
    bool isCrcRight() const { return storedCrc == expectedCrc; }
    bool areCrcsRight() const { return isCrcRight() && (!moduleCrc || moduleCrc->isRight()); }
    const Value& get(SpdFact fact) const { return facts[static_cast<std::size_t>(fact)]; }
};

/// Reads an image: 128 bytes or more, 512 or more by JESD400-5 and JESD406-5, or pages of 256 bytes
/// one after another.
/// Throws DataError for what is not a module; the text says "not supported" for a module of another
/// known kind.
Spd parseSpd(ByteView bytes);

/// What is wrong with the data of a module: CRCs, and pages that were not read.
std::vector<std::string> spdProblems(const Spd& spd);

/// CRC-16 as JEDEC defines it: polynomial 1021h, from 0.
unsigned short spdCrc(ByteView bytes);

}

#endif
