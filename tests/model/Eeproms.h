// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_MODEL_EEPROMS_H
#define RECORDKIT_TESTS_MODEL_EEPROMS_H

#include <algorithm>
#include <fmt/format.h>
#include <optional>

#include "Model.h"
#include "eeprom/MemoryEEPROMs.h"

namespace testing_support {

/// The device below the library: records the bytes that are written, and whether an access comes
/// with a buffer, in addition to what MemoryEEPROMs records.
class WatchedEEPROMs : public MemoryEEPROMs {
public:
    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override
    {
        return answered(MemoryEEPROMs::read(select, offset, buffer, length));
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        const int written = MemoryEEPROMs::write(select, offset, buffer, length);
        media[std::to_string(select)] = at(select);
        return answered(written);
    }

    /// Every result from now on; none: the length of the access.
    void answerWith(std::optional<int> result) { answer = result; }

    const Medium& medium() const { return media; }
    void put(int select, std::size_t offset, const Bytes& bytes)
    {
        MemoryEEPROMs::put(select, offset, bytes);
        media[std::to_string(select)] = at(select);
    }

private:
    int answered(int length) const { return answer.value_or(length); }

    std::optional<int> answer;
    Medium media;
};

/// The same device for the rules, which see its failures as their own.
class PlainEEPROMs {
public:
    Bytes read(int select, unsigned long offset, std::size_t length)
    {
        note("r", select, offset, length);
        const Bytes& bytes = at(select);
        return part(bytes, offset, length);
    }
    void write(int select, unsigned long offset, const Bytes& bytes)
    {
        note("w", select, offset, bytes.size());
        Bytes& all = media[std::to_string(select)];
        all.resize(MemoryEEPROMs::SIZE, 0);
        std::copy(bytes.begin(), bytes.end(), all.begin() + static_cast<long>(offset));
    }
    void put(int select, std::size_t offset, const Bytes& bytes)
    {
        Bytes& all = media[std::to_string(select)];
        all.resize(MemoryEEPROMs::SIZE, 0);
        std::copy(bytes.begin(), bytes.end(), all.begin() + static_cast<long>(offset));
    }

    void failAt(std::size_t n, bool goesOn)
    {
        failing = count + n;
        keepsFailing = goesOn;
        kind = FailureKind::DEVICE;
    }
    void failOtherwiseAt(std::size_t n)
    {
        failAt(n, false);
        kind = FailureKind::OTHER;
    }
    void failNoMore() { failing = 0; }

    Lines takeAccesses() { return std::exchange(accesses, {}); }
    const Medium& medium() const { return media; }

private:
    const Bytes& at(int select)
    {
        static const Bytes EMPTY(MemoryEEPROMs::SIZE, 0);
        const auto found = media.find(std::to_string(select));
        return found == media.end() ? EMPTY : found->second;
    }
    void note(const char* what, int select, unsigned long offset, std::size_t length)
    {
        accesses.push_back(fmt::format("{}{}@{}+{}", what, select, offset, length));
        ++count;
        if (failing != 0 && (count == failing || (keepsFailing && count > failing))) {
            throw kind;
        }
        if (offset > MemoryEEPROMs::SIZE || length > MemoryEEPROMs::SIZE - offset) {
            throw FailureKind::DEVICE;
        }
    }

    Lines accesses;
    Medium media;
    std::size_t count = 0;
    std::size_t failing = 0;
    bool keepsFailing = false;
    FailureKind kind = FailureKind::DEVICE;
};

/// The codes of the failure that the device throws.
constexpr int DEVICE_ACTION = 0x12;
constexpr int DEVICE_DETAIL = 0x345;

/// "ActCode=0x12 DetCode=0x0345".
inline std::string codes(int action, int detail)
{
    return fmt::format("ActCode=0x{:02x} DetCode=0x{:04x}", action, detail);
}

}

#endif
