// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_FRU_MEMORYDEVICE_H
#define RECORDKIT_TESTS_FRU_MEMORYDEVICE_H

#include <algorithm>
#include <numeric>
#include <string>

#include <recordkit/platform/FRURWif.h>
#include <recordkit/platform/PException.h>

#include "support/Bytes.h"
#include "support/Failures.h"

namespace testing_support {

/// A FRU device in memory that records each access as "r0+8" or "w16+8", and fails from a given
/// access on. Bytes beyond its end read as EEh and cannot be written.
class MemoryDevice : public TAVLib::FRURWif {
public:
    explicit MemoryDevice(Bytes image) : bytes(std::move(image)) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        note("r", offset, length);
        for (unsigned int i = 0; i < length; ++i) {
            buffer[i] = offset + i < bytes.size() ? bytes[offset + i] : 0xEE;
        }
        return static_cast<int>(length);
    }
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
    {
        note("w", offset, length);
        if (offset > bytes.size() || length > bytes.size() - offset) {
            fail();
        }
        std::copy(buffer, buffer + length, bytes.begin() + offset);
        return static_cast<int>(length);
    }

    void failFrom(std::size_t access)
    {
        firstFailure = access;
        failsOtherwise = false;
    }
    /// As failFrom, with an OtherFailure.
    void failOtherwiseFrom(std::size_t access)
    {
        failFrom(access);
        failsOtherwise = true;
    }
    void failNoMore() { failFrom(~std::size_t{0}); }
    std::size_t accessCount() const { return count; }
    Lines takeAccesses() { return std::exchange(accesses, {}); }

    Bytes bytes;

private:
    void note(const char* what, unsigned int offset, unsigned int length)
    {
        accesses.push_back(what + std::to_string(offset) + "+" + std::to_string(length));
        if (++count >= firstFailure) {
            if (failsOtherwise) {
                throw OtherFailure();
            }
            fail();
        }
    }
    [[noreturn]] static void fail()
    {
        throw TAVLib::PException(1, 9, 9, 0x12, 0x345, 20031, reinterpret_cast<long>("device"), 0,
                                 0, 0, 0, 0, 0, 0);
    }

    Lines accesses;
    std::size_t count = 0;
    std::size_t firstFailure = ~std::size_t{0};
    bool failsOtherwise = false;
};

/// The bytes with a last byte that makes them add up to 0.
inline Bytes withChecksum(Bytes area)
{
    area.push_back(static_cast<unsigned char>(0U - std::accumulate(area.begin(), area.end(), 0U)));
    return area;
}

/// An area of this many bytes: format version, length byte, fields, zeroes, checksum.
inline Bytes areaOf(std::size_t size, const Bytes& fields)
{
    Bytes area = Bytes({1, static_cast<unsigned char>(size / 8)}) + fields;
    area.resize(size - 1, 0);
    return withChecksum(area);
}

/// What a device failure is described as.
inline const char* deviceFailure()
{
    return "1:9:0x0009 act 18 det 0x0345 msg 20031 (device)";
}

inline std::string fruError(int message, const std::string& text)
{
    return "1:128:0x000D act 1 det 0x0001 msg " + std::to_string(message) + " (" + text + ")";
}

inline std::string text(const Bytes& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

}

#endif
