// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SPD_SPDFILE_H
#define RECORDKIT_TOOL_SPD_SPDFILE_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::tool {

/// The bytes of an SPD image, or of a hex dump of one. Throws for a file that is too long.
inspect::Bytes readSpdFile(const std::string& path);

}

#endif
