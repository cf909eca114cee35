// SPDX-License-Identifier: Apache-2.0
#include "Output.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Text.h>

#include "Json.h"

namespace recordkit::tool {

namespace {

Colour wantedColour = Colour::AUTO;
std::string hiddenText;
std::string shownText;

}

void showInsteadOf(const std::string& text, const std::string& shown)
{
    hiddenText = text;
    shownText = shown;
}

std::string asShown(std::string text)
{
    return inspect::withReplaced(std::move(text), hiddenText, shownText);
}

void print(const std::string& text)
{
    printBytes(asShown(text));
}

void printBytes(const std::string& bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::string terminalText(const std::string& text)
{
    if (inspect::isUtf8(text)) {
        return inspect::printable(text);
    }
    std::string escaped;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        escaped += value < 0x80 ? std::string(1, byte) : fmt::format("\\x{:02X}", value);
    }
    return inspect::printable(escaped);
}

void complain(const std::string& text)
{
    std::fflush(stdout);
    std::fprintf(stderr, "recordkit: %s\n", terminalText(asShown(text)).c_str());
}

void setColour(Colour colour)
{
    wantedColour = colour;
}

bool wantsColour()
{
    if (wantedColour != Colour::AUTO) {
        return wantedColour == Colour::ALWAYS;
    }
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0') &&
           (terminal == nullptr || std::strcmp(terminal, "dumb") != 0);
}

std::optional<std::size_t> terminalWidth()
{
    winsize size = {};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0
               ? std::optional<std::size_t>(size.ws_col)
               : std::nullopt;
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
