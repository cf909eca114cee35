// SPDX-License-Identifier: Apache-2.0
#include "FileResults.h"

#include <cstdio>

#include <fmt/format.h>

#include "Files.h"

namespace recordkit::tool {

void FileResults::add(const std::string& file,
                      const std::function<std::vector<std::string>()>& work)
{
    ++files;
    try {
        if (!work().empty()) {
            ++damaged;
            last = inputName(file);
        }
    } catch (const Error& e) {
        ++(statusOf(e) == EXIT_FILE ? unread : damaged);
        last = inputName(file);
        std::fflush(stdout);
        fmt::print(stderr, "recordkit: {}\n", e.what());
    }
}

void FileResults::finish() const
{
    if (damaged + unread == 0) {
        return;
    }
    const ExitStatus status = unread != 0 ? EXIT_FILE : EXIT_DATA;
    const char* const words = unread == 0    ? "damaged"
                              : damaged == 0 ? "not read"
                                             : "not read or damaged";
    throw CommandError(
        status, files == 1 ? fmt::format("{}: {}", last, words)
                           : fmt::format("{} of {} files are {}", damaged + unread, files, words));
}

}
