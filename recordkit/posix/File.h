// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_POSIX_FILE_H
#define RECORDKIT_POSIX_FILE_H

#include <cstddef>
#include <string>
#include <vector>

namespace TAVLib::posix {

// Files by system calls. A call that a signal interrupts is made again; any other failure is the
// caller's to report, by the result and errno of the C library.

/// The permissions of a new file, less the process's umask.
constexpr unsigned int NEW_FILE_MODE = 0644;

/// Opens a file that no other program inherits; `mode` is for a new one.
///
/// In a folder of everybody, one that others may write to such as /tmp, who made a file there, or
/// can reach it by another name, decides what it contains. There a link is not followed, no other
/// program is waited for, a file is emptied (O_TRUNC) only after these checks, and refused are:
///
/// | errno     | what                                     |
/// |-----------|------------------------------------------|
/// | `ELOOP`   | a link                                   |
/// | `EISDIR`  | a folder                                 |
/// | `ENOTSUP` | anything else that is not a regular file |
/// | `EPERM`   | a file of another user but root          |
/// | `EMLINK`  | a file with a second name                |
/// | `EACCES`  | a file that others may write             |
int openFile(const std::string& path, int flags, unsigned int mode = NEW_FILE_MODE);

/// Opens a file or device that the caller chose, whatever it is.
int openAny(const std::string& path, int flags, unsigned int mode = NEW_FILE_MODE);

/// Why openFile would refuse a file in a folder of everybody, as errno; 0 for none, and for a
/// missing file.
int refusalOf(const std::string& path);

/// An open file, closed at the end of the scope.
class File {
public:
    File(const std::string& path, int flags) : fd(openFile(path, flags)) {}
    /// Takes over an open file, or -1.
    explicit File(int opened) : fd(opened) {}
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool isOpen() const { return fd != -1; }
    /// The descriptor; -1 if the file could not be opened.
    int get() const { return fd; }
    /// The descriptor, which is the caller's to close from now on.
    int release();

private:
    int fd;
};

/// Waiting without end.
constexpr int FOREVER = -1;

enum class Lock { EXCLUSIVE, SHARED };

/// Takes the flock(2) lock of an open file; waits for it at most so many milliseconds, or FOREVER.
/// EWOULDBLOCK if another open file has it then.
bool lockFile(int fd, int milliseconds, Lock kind = Lock::EXCLUSIVE);

/// Reads from an offset on until the buffer is full or the file ends; `done` is the number of bytes
/// read, also when it fails.
bool readAt(int fd, unsigned long offset, void* buffer, std::size_t size, std::size_t& done);

/// Writes the whole buffer; false with ENOSPC when the file takes nothing more.
bool writeAll(int fd, const void* buffer, std::size_t size);
/// The same from an offset on.
bool writeAllAt(int fd, unsigned long offset, const void* buffer, std::size_t size);

/// The operation on a whole file that failed; none, if all succeeded.
struct Failure {
    const char* operation = nullptr;
    std::string path; ///< on which it failed
    int error = 0;    ///< errno

    bool isFailure() const { return operation != nullptr; }
};

/// Reads a whole file. A link in the last component is not followed.
Failure readFile(const std::string& path, std::vector<unsigned char>& bytes);

/// Replaces a file by renaming a temporary file with an unpredictable name in its folder, so that
/// it is complete at every moment. A link in the last component is replaced, not followed.
Failure replaceFile(const std::string& path, const std::vector<unsigned char>& bytes);

}

#endif
