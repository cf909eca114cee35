// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILES_H
#define RECORDKIT_TOOL_FILES_H

#include <cstddef>
#include <string>

namespace recordkit::tool {

/// The most bytes that an input of a kind can have.
enum InputLimit : std::size_t {
    FRU_LIMIT = 65536,
    SPD_LIMIT = 4096,
    DUMP_LIMIT = 65536, ///< an SPD image as text
    ROM_LIMIT = 65536,
    RULES_LIMIT = 1UL << 20,
    FRU_JSON_LIMIT = 16UL << 20, ///< a FRU image as JSON
    EEPROM_LIMIT = 65536,
    LARGE_LIMIT = 64UL << 20, ///< repositories, event records, documents
};

/// Lets every input have this many bytes, whatever its kind. 0: the limits of the kinds.
void setLargestInput(std::size_t bytes);

/// The whole content of a file, of standard input for "-". Reads no more than one byte beyond the
/// limit. Throws CommandError: file if it cannot be read, data if it is longer, with a hint at what
/// takes it nevertheless.
std::string readInput(const std::string& path, std::size_t limit,
                      const char* hint = "--max-size raises this limit");

/// The name of an input as used in messages and JSON: "standard input", or the path as
/// terminalText.
std::string inputName(const std::string& path);

/// The bytes of an input's name in hex if the name is not UTF-8; otherwise empty.
std::string inputNameBytes(const std::string& path);

}

#endif
