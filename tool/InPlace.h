// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_INPLACE_H
#define RECORDKIT_TOOL_INPLACE_H

#include <cstddef>
#include <string>

namespace recordkit::tool {

/// A device or a file whose bytes are changed where they are. Every operation throws CommandError
/// (file).
class InPlaceTarget {
public:
    virtual ~InPlaceTarget() = default;
    InPlaceTarget() = default;
    InPlaceTarget(const InPlaceTarget&) = delete;
    InPlaceTarget& operator=(const InPlaceTarget&) = delete;

    /// Writes the bytes, or as many of them as the device takes, at least one; returns how many.
    virtual std::size_t write(std::size_t offset, const char* bytes, std::size_t size) = 0;
    /// Waits until everything is written.
    virtual void synchronise() = 0;
    /// Whether the target has these bytes.
    virtual bool has(std::size_t offset, const std::string& bytes) = 0;
};

/// Writes the bytes in which `after` differs from `before`, which has the same size and is what the
/// target contains, and reads them back.
///
/// With a page size, no write reaches beyond one page, each page takes one write from its first to
/// its last different byte, and a page is read back before the next one is written. Page size 0
/// writes each run of different bytes at once.
///
/// If a write fails or is not read back, what was written becomes again what it was before; the
/// text of the CommandError (file) says whether that succeeded.
void writeInPlace(InPlaceTarget& target, const std::string& before, const std::string& after,
                  std::size_t page);

}

#endif
