// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_BYTES_H
#define RECORDKIT_TOOL_BYTES_H

#include <string>

namespace recordkit::tool {

/// One byte of content that is stored in a string, whose characters may be signed.
inline unsigned char byteAt(const std::string& bytes, std::size_t at)
{
    return static_cast<unsigned char>(bytes[at]);
}

}

#endif
