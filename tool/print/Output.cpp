// SPDX-License-Identifier: Apache-2.0
#include "Output.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace recordkit::tool {

void print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void complain(const std::string& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "recordkit: %s\n", text.c_str());
}

bool wantsColour()
{
    const char* const noColour = std::getenv("NO_COLOR");
    return ::isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0');
}

bool wantsProgress()
{
    return ::isatty(STDERR_FILENO) != 0;
}

std::string factLine(const std::string& name, const std::string& value, std::size_t width)
{
    std::string line = name;
    line.resize(std::max(width, name.size() + 1), ' ');
    return line + value + "\n";
}

}
