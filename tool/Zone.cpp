// SPDX-License-Identifier: Apache-2.0
#include "Zone.h"

#include <cstdlib>
#include <ctime>
#include <fstream>

#include <recordkit/inspect/bytes/Text.h>

#include "Errors.h"

namespace recordkit::tool {

namespace {

static_assert(sizeof(std::time_t) == 8, "IPMI timestamps go on until 2106");

inspect::Zone zone = nullptr;

long localOffset(unsigned int seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm local = {};
    return ::localtime_r(&time, &local) == nullptr ? 0 : local.tm_gmtoff;
}

bool isOffset(const std::string& name)
{
    std::tm time = {};
    const char* const end = name.empty() || (name[0] != '+' && name[0] != '-')
                                ? nullptr
                                : ::strptime(name.c_str() + 1, "%H:%M", &time);
    return end != nullptr && *end == '\0';
}

/// Whether the system has a file for a zone of this name; the C library takes any other as UTC.
bool isKnown(const std::string& name)
{
    const char* const folder = std::getenv("TZDIR");
    const bool isName = !name.empty() && name[0] != '/' && name.find("..") == std::string::npos;
    std::ifstream file(std::string(folder == nullptr ? "/usr/share/zoneinfo" : folder) + "/" +
                       name);
    char magic[4] = {};
    return isName && file.read(magic, sizeof magic) && std::string(magic, sizeof magic) == "TZif";
}

}

inspect::Zone chosenZone()
{
    return zone;
}

void chooseUtc()
{
    zone = nullptr;
}

void chooseLocalZone()
{
    ::tzset();
    zone = localOffset;
}

void chooseZone(const std::string& name)
{
    if (name == "UTC") {
        return;
    }
    std::string variable = name;
    if (isOffset(name)) {
        // POSIX counts the hours that must be added to get UTC.
        variable = std::string("<zone>") + (name[0] == '+' ? '-' : '+') + name.substr(1);
    } else if (!isKnown(name)) {
        throw usageError("--tz: unknown time zone \"" + printable(name) +
                         "\" (expected a name such as Europe/Berlin, or an offset such as +01:00)");
    }
    ::setenv("TZ", variable.c_str(), 1);
    chooseLocalZone();
}

}
