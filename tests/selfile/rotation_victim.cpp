// SPDX-License-Identifier: Apache-2.0
// Runs one rotation and kills itself in front of a chosen step of it, as a power cut would.
//
//   rotation_victim ROOT BOARD 0       runs the rotation and prints its steps
//   rotation_victim ROOT BOARD STEP    dies before that step
//   rotation_victim ROOT BOARD recover finishes a rotation that was cut off, and prints the steps
//
// A step is a call that changes a file; a write is two steps, the second with half of it done.
// The calls are caught by the linker (--wrap), so that the library under test is the real one.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

#include <recordkit/host/HostRoot.h>
#include <recordkit/host/Machine.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace {

int fatalStep = 0;
int steps = 0;
std::string names;

/// Counts a step; true for the one to die at.
bool isFatal(const char* name)
{
    ++steps;
    names += std::to_string(steps) + " " + name + "\n";
    return steps == fatalStep;
}

void die()
{
    ::kill(::getpid(), SIGKILL);
    ::pause();
}

void step(const char* name)
{
    if (isFatal(name)) {
        die();
    }
}

}

extern "C" {

int __real_remove(const char* path);
int __real_rename(const char* from, const char* to);
int __real_system(const char* command);
void __real_sync();
int __real_ftruncate(int fd, off_t length);
ssize_t __real_write(int fd, const void* bytes, size_t length);
int __real_unlink(const char* path);
int __real_fsync(int fd);

int __wrap_remove(const char* path)
{
    step("remove");
    return __real_remove(path);
}

int __wrap_rename(const char* from, const char* to)
{
    step("rename");
    return __real_rename(from, to);
}

int __wrap_system(const char* command)
{
    step("copy");
    return __real_system(command);
}

void __wrap_sync()
{
    // Only what is on the way to the medium differs after it; a test need not wait for disks.
    step("sync");
}

int __wrap_ftruncate(int fd, off_t length)
{
    step("truncate");
    return __real_ftruncate(fd, length);
}

ssize_t __wrap_write(int fd, const void* bytes, size_t length)
{
    step("write");
    if (isFatal("half of the write")) {
        if (__real_write(fd, bytes, length / 2) >= 0) {
            die();
        }
    }
    return __real_write(fd, bytes, length);
}

int __wrap_unlink(const char* path)
{
    step("unlink");
    return __real_unlink(path);
}

int __wrap_fsync(int fd)
{
    step("fsync");
    return __real_fsync(fd);
}
}

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fputs("usage: rotation_victim ROOT BOARD STEP\n", stderr);
        return 2;
    }
    TAVLib::host::setSystemRoot(argv[1]);
    const auto sb = static_cast<unsigned char>(std::atoi(argv[2]));
    bool isDone = false;
    if (argv[3] == std::string("recover")) {
        std::vector<std::string> actions;
        isDone = TAVLib::RecordKit::SELStoreCheck(sb).recover(actions);
    } else {
        fatalStep = std::atoi(argv[3]);
        isDone = BMCSELDataFile().shiftSelFile(sb, true) == 0;
    }
    std::fputs(names.c_str(), stdout);
    return isDone ? 0 : 1;
}
