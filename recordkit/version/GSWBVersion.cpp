// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/GSWBVersion.h>

#include <cstdio>

#include "VersionText.h"

namespace TAVLib::RecordKit {

void GSWBVersion::getRunningBank(unsigned char& first, unsigned char& second) const
{
    first = image[BANKS];
    second = image[BANKS + 1];
}

void GSWBVersion::getOnlineVersion(std::string& first, std::string& second)
{
    first = onlineText(ONLINE_1);
    second = onlineText(ONLINE_2);
}

void GSWBVersion::getOfflineVersion(std::string& first, std::string& second)
{
    first = offlineText(OFFLINE_1);
    second = offlineText(OFFLINE_2);
}

std::string GSWBVersion::onlineText(Offset at) const
{
    const unsigned char* const version = image + at;
    if (version[0] == 0 && version[1] == 0 && version[2] == 0) {
        return NO_VERSION;
    }
    char text[32];
    std::snprintf(text, sizeof text, "V%02dL%02d-A%02d", version[0], version[1], version[2]);
    return text;
}

std::string GSWBVersion::offlineText(Offset at) const
{
    const unsigned char* const version = image + at;
    if (version[0] == 0 && version[1] == 0) {
        return NO_VERSION;
    }
    char text[32];
    std::snprintf(text, sizeof text, "V%03dL%03d", version[0], version[1]);
    return text;
}

}
