// SPDX-License-Identifier: Apache-2.0
// Rotates the log of board 0 below a root folder when somebody asks for it:
//
//   rotate_on_request ROOT ask    the requester makes the request
//   rotate_on_request ROOT poll   the firmware looks for one; a timer may do this
//   rotate_on_request ROOT take   the requester takes the answer away, and prints it
//
// Request and answer are the same file, so an answer that nobody takes away must not count as the
// next request: shiftSelFile would rotate again, and drop the oldest file in the end.
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/host/HostRoot.h>
#include <recordkit/selfile/BMCSELDataFile.h>

namespace {

/// An answer has 16 bytes; a request is empty.
constexpr off_t ANSWER_SIZE = 16;

/// Makes a new file, so that neither a request nor an answer of another requester is lost.
bool ask(const std::string& path)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd == -1) {
        std::perror(path.c_str());
        return false;
    }
    ::close(fd);
    return true;
}

bool poll(const std::string& path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0 || status.st_size == ANSWER_SIZE) {
        std::puts("nobody asked");
        return true;
    }
    const int result = BMCSELDataFile().shiftSelFile(0, false);
    std::printf("rotated: %d\n", result);
    return result == static_cast<int>(BMCSELDataFile::SUCCESS);
}

bool take(const std::string& path)
{
    char answer[ANSWER_SIZE + 1] = {};
    std::FILE* const file = std::fopen(path.c_str(), "r");
    const bool isThere = file != nullptr && std::fread(answer, 1, ANSWER_SIZE, file) == ANSWER_SIZE;
    if (file != nullptr) {
        std::fclose(file);
    }
    if (!isThere) {
        std::puts("no answer yet");
        return false;
    }
    std::printf("answer: %s\n", answer);
    return std::remove(path.c_str()) == 0;
}

}

int main(int argc, char** argv)
{
    const std::string what = argc == 3 ? argv[2] : "";
    TAVLib::host::setSystemRoot(argc > 1 ? argv[1] : "");
    const std::string path = BMCSELDataFile::getShiftRequestFile();
    const bool isDone = what == "ask" ? ask(path) : what == "poll" ? poll(path) : take(path);
    return isDone ? 0 : 1;
}
