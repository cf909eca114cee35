// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TEMPORARYFILE_H
#define RECORDKIT_TOOL_TEMPORARYFILE_H

#include <string>

#include <sys/stat.h>

namespace recordkit::tool {

/// A temporary file in an open folder, with an unpredictable name. It is removed when the
/// object's life ends, and when SIGHUP, SIGINT or SIGTERM ends the command; one at a time.
class TemporaryFile {
public:
    /// `path` is that of the file that it will replace, for messages.
    TemporaryFile(int inFolder, const std::string& like, const std::string& path);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Its name in the folder.
    const char* getName() const { return name.c_str(); }

    void write(const std::string& content) const;
    void copyOwner(const struct stat& of) const;
    void setMode(mode_t mode) const;
    /// Makes the content durable, compares it with what was to be written, and closes the file.
    void finish(const std::string& content);
    /// The name is not the temporary file's any longer: nothing is removed.
    void release();

private:
    [[noreturn]] void fail(const char* what, int error) const;

    int folder;
    std::string path;
    std::string name;
    int fd = -1;
};

/// Keeps the signals that end the command waiting.
class SignalsBlocked {
public:
    SignalsBlocked();
    ~SignalsBlocked();
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
};

}

#endif
