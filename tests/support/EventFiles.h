// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_EVENTFILES_H
#define RECORDKIT_TESTS_SUPPORT_EVENTFILES_H

#include "Bytes.h"

namespace testing_support {

constexpr unsigned int FIRST_TIME = 0x67290000; // 2024-11-04 17:10:24 UTC

/// A slot with a fan event at FIRST_TIME plus `id` seconds.
inline Bytes eventSlot(unsigned int id, unsigned int start = FIRST_TIME)
{
    Bytes slot(138, 0);
    const Bytes record = {0xFF, 0xFF, 0,    0,    0x02, 0,    0,    0,    0,   0x20,
                          0x00, 0x04, 0x04, 0x10, 0x01, 0x50, 0x01, 0x02, 0x0D};
    std::copy(record.begin(), record.end(), slot.begin());
    const unsigned int time = start + id;
    slot[2] = static_cast<unsigned char>(id & 0xFF);
    slot[3] = static_cast<unsigned char>(id >> 8);
    for (unsigned int i = 0; i < 4; ++i) {
        slot[5 + i] = static_cast<unsigned char>(time >> 8 * i & 0xFF);
    }
    return slot;
}

/// An event file with events from an id on.
inline Bytes eventFile(unsigned int count, unsigned int firstId, unsigned int start = FIRST_TIME)
{
    Bytes file(110400, 0xFF);
    for (unsigned int i = 0; i < count; ++i) {
        const Bytes slot = eventSlot(firstId + i, start);
        std::copy(slot.begin(), slot.end(), file.begin() + static_cast<long>(i * slot.size()));
    }
    return file;
}

}

#endif
