// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_BYTEORDER_H
#define RECORDKIT_SERIAL_BYTEORDER_H

namespace TAVLib {

/// Two bytes, least significant first.
inline unsigned short readLE16(const unsigned char* bytes)
{
    return static_cast<unsigned short>(bytes[0] | (bytes[1] << 8));
}

/// Four bytes, least significant first.
inline unsigned int readLE32(const unsigned char* bytes)
{
    return readLE16(bytes) | (static_cast<unsigned int>(readLE16(bytes + 2)) << 16);
}

/// Two bytes, most significant first.
inline unsigned short readBE16(const unsigned char* bytes)
{
    return static_cast<unsigned short>((bytes[0] << 8) | bytes[1]);
}

/// Four bytes, most significant first.
inline unsigned int readBE32(const unsigned char* bytes)
{
    return (static_cast<unsigned int>(readBE16(bytes)) << 16) | readBE16(bytes + 2);
}

/// Writes two bytes, least significant first.
inline void writeLE16(unsigned short value, unsigned char* bytes)
{
    bytes[0] = static_cast<unsigned char>(value & 0xFF);
    bytes[1] = static_cast<unsigned char>(value >> 8);
}

/// Writes two bytes, most significant first.
inline void writeBE16(unsigned short value, unsigned char* bytes)
{
    bytes[0] = static_cast<unsigned char>(value >> 8);
    bytes[1] = static_cast<unsigned char>(value & 0xFF);
}

}

#endif
