// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_EEPROM_MEMORYEEPROMS_H
#define RECORDKIT_TESTS_EEPROM_MEMORYEEPROMS_H

#include <algorithm>
#include <map>
#include <string>

#include <recordkit/platform/EEPROMRWif.h>
#include <recordkit/platform/PException.h>

#include "support/Bytes.h"
#include "support/Failures.h"

namespace testing_support {

/// EEPROMs of 64 KiB in memory that note each access as "r4@512+16" or "w10@0+1", and can fail at
/// one access or from one on. An access beyond the end fails, too.
class MemoryEEPROMs : public TAVLib::EEPROMRWif {
public:
    static constexpr std::size_t SIZE = 65536;

    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override
    {
        note("r", select, offset, length);
        const Bytes& bytes = at(select);
        std::copy_n(bytes.begin() + static_cast<long>(offset), length, buffer);
        return static_cast<int>(length);
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        note("w", select, offset, length);
        std::copy_n(buffer, length, at(select).begin() + static_cast<long>(offset));
        return static_cast<int>(length);
    }

    /// The n-th access from now, from 1, throws; with `goesOn`, all later ones too.
    void failAt(std::size_t n, bool goesOn = false)
    {
        failing = count + n;
        keepsFailing = goesOn;
    }
    /// The n-th access from now throws an OtherFailure.
    void failOtherwiseAt(std::size_t n)
    {
        failAt(n);
        failsOtherwise = true;
    }
    void failNoMore()
    {
        failing = 0;
        failsOtherwise = false;
    }
    Lines takeAccesses() { return std::exchange(accesses, {}); }

    Bytes& at(int select)
    {
        Bytes& bytes = eeproms[select];
        bytes.resize(SIZE, 0);
        return bytes;
    }
    void put(int select, std::size_t offset, const Bytes& bytes)
    {
        std::copy(bytes.begin(), bytes.end(), at(select).begin() + static_cast<long>(offset));
    }
    Bytes get(int select, std::size_t offset, std::size_t length)
    {
        return part(at(select), offset, length);
    }

private:
    void note(const char* what, int select, unsigned long offset, unsigned int length)
    {
        accesses.push_back(what + std::to_string(select) + "@" + std::to_string(offset) + "+" +
                           std::to_string(length));
        ++count;
        if (failing != 0 && (count == failing || (keepsFailing && count > failing))) {
            if (failsOtherwise) {
                throw OtherFailure();
            }
            fail();
        }
        if (offset > SIZE || length > SIZE - offset) {
            fail();
        }
    }
    [[noreturn]] static void fail()
    {
        throw TAVLib::PException(1, 9, 9, 0x12, 0x345, 20031, reinterpret_cast<long>("device"), 0,
                                 0, 0, 0, 0, 0, 0);
    }

    std::map<int, Bytes> eeproms;
    Lines accesses;
    std::size_t count = 0;
    std::size_t failing = 0;
    bool keepsFailing = false;
    bool failsOtherwise = false;
};

/// A failure of the EEPROM stores, described.
inline std::string eepromError(int action, int detail, int message, const std::string& text)
{
    return "1:128:0x000E act " + std::to_string(action) + " det 0x000" + std::to_string(detail) +
           " msg " + std::to_string(message) + " (" + text + ")";
}

/// The bytes with this byte changed so that they add up to 0.
inline Bytes withSum(Bytes bytes, std::size_t place)
{
    unsigned int sum = 0;
    for (const unsigned char byte : bytes) {
        sum += byte;
    }
    bytes[place] = static_cast<unsigned char>(bytes[place] - sum);
    return bytes;
}

}

#endif
