// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace testing_support {

namespace {

/// An unnamed file for a stream of the program.
class StreamFile {
public:
    explicit StreamFile(const std::string& content = "")
    {
        char pattern[] = "/tmp/recordkit-stream-XXXXXX";
        fd = ::mkstemp(pattern);
        if (fd == -1) {
            throw std::runtime_error("no stream file could be made");
        }
        ::unlink(pattern);
        if (::write(fd, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
            throw std::runtime_error("a stream file could not be written");
        }
        ::lseek(fd, 0, SEEK_SET);
    }
    ~StreamFile() { ::close(fd); }
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;

    int descriptor() const { return fd; }
    std::string content() const
    {
        std::string text;
        std::array<char, 65536> piece = {};
        ::lseek(fd, 0, SEEK_SET);
        ssize_t count = 0;
        while ((count = ::read(fd, piece.data(), piece.size())) > 0) {
            text.append(piece.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

private:
    int fd = -1;
};

}

void execute(const Arguments& arguments, const Arguments& extraEnvironment)
{
    for (const std::string& entry : extraEnvironment) {
        const std::size_t equals = entry.find('=');
        ::setenv(entry.substr(0, equals).c_str(), entry.substr(equals + 1).c_str(), 1);
    }
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    ::execvp(words[0], words.data());
    ::_exit(127);
}

Outcome run(const Arguments& arguments, const std::string& input, const Arguments& extraEnvironment)
{
    const StreamFile in(input);
    const StreamFile out;
    const StreamFile err;
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(in.descriptor(), STDIN_FILENO);
        ::dup2(out.descriptor(), STDOUT_FILENO);
        ::dup2(err.descriptor(), STDERR_FILENO);
        execute(arguments, extraEnvironment);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) == -1 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), out.content(),
            err.content()};
}

Arguments programOfThisBuild(const std::string& path)
{
    Arguments words;
    std::istringstream emulator(RECORDKIT_EMULATOR);
    for (std::string word; emulator >> word;) {
        words.push_back(word);
    }
    words.push_back(path);
    return words;
}

Arguments ourCommand(const Arguments& arguments)
{
    Arguments words = programOfThisBuild(RECORDKIT_COMMAND);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

}
