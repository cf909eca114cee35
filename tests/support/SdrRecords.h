// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SDRRECORDS_H
#define RECORDKIT_TESTS_SUPPORT_SDRRECORDS_H

#include <string>

#include "support/Bytes.h"

namespace testing_support {

/// A record with this body; the header's length follows.
inline Bytes sdrRecord(unsigned char id, unsigned char type, const Bytes& body)
{
    return Bytes({id, 0, 0x51, type, static_cast<unsigned char>(body.size())}) + body;
}

/// A compact record of a power supply that reports offsets 0, 1 and 3.
inline Bytes compactSdr(unsigned char id, const std::string& name)
{
    Bytes body(27, 0);
    body[2] = id;   // sensor number
    body[7] = 0x08; // power supply
    body[8] = 0x6F;
    body[9] = 0x0B;                                            // offsets 0, 1 and 3
    body[26] = static_cast<unsigned char>(0xC0 | name.size()); // id string
    return sdrRecord(id, 0x02, body + textBytes(name));
}

}

#endif
