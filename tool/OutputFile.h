// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_OUTPUTFILE_H
#define RECORDKIT_TOOL_OUTPUTFILE_H

#include <cstddef>
#include <optional>
#include <string>

#include <sys/stat.h>

#include "Descriptor.h"

namespace recordkit::tool {

/// Who may read a new file, as far as the umask lets them.
enum class Readers { ALL, OWNER };

/// A file to write. Its folder is opened once, so that whatever other users do to names afterwards,
/// the file is written there or not at all. A symbolic link leads to its target. In a folder that
/// everybody may write to, links and files that others have in hand are refused: they must belong
/// to the caller or root, have one name, and not be writable by others.
///
/// The file is locked (flock(2)) while it is compared and written, so that of two runs of the
/// command that edit it one is refused.
///
/// Every operation throws CommandError (file), which names the path and the reason.
class OutputFile {
public:
    explicit OutputFile(const std::string& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Whether the file cannot be replaced: it is not a regular file, or a kernel node.
    bool isDevice() const;

    /// Replaces the file by a temporary file, which is synchronised and renamed; the file is the
    /// old or the new one at every moment. It keeps its owner and permissions. Refused if it does
    /// not contain `expected` any more.
    void replace(const std::string& content, const std::string* expected = nullptr,
                 Readers readers = Readers::ALL);

    /// Writes the bytes that differ from `before` in place, by pages if there is a page size (see
    /// writeInPlace). Refused if the file does not contain `before` any more; a device is not read
    /// again.
    void patch(const std::string& before, const std::string& after, std::size_t page = 0);

private:
    void find();
    void requireOwn() const;
    void lock(const Descriptor& file) const;
    void put(class TemporaryFile& temporary, const std::string* expected);
    bool isUnchanged(const char* name, const std::string* expected) const;

    std::string path; ///< as it was given
    Descriptor folder;
    std::string name;                  ///< in the folder
    std::optional<struct stat> status; ///< of an existing file
};

/// Writes a file as OutputFile::replace does.
void writeOutput(const std::string& path, const std::string& content,
                 Readers readers = Readers::ALL);

}

#endif
