// SPDX-License-Identifier: Apache-2.0
#include "SettingStore.h"

#include <filesystem>

#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/platform/SystemRoot.h>

#include "../Files.h"

namespace recordkit::tool {

using TAVLib::RecordKit::PanelEEPROMIndex;

Option settingArea(const char* help)
{
    return number("N", "N", 0, static_cast<unsigned long>(PanelEEPROMIndex().getIndexLastNumber()),
                  help);
}

std::string settingIndexFile()
{
    return TAVLib::systemRoot() + PanelEEPROMIndex().getIndexDataFileName();
}

std::vector<inspect::SettingEntry> readSettingIndexFile()
{
    return std::filesystem::exists(settingIndexFile())
               ? inspect::parseSettingIndex(readInput(settingIndexFile(), EEPROM_LIMIT))
               : std::vector<inspect::SettingEntry>();
}

std::vector<inspect::SettingEntry> readSettingIndex(const Arguments& arguments)
{
    auto device = openImages(arguments);
    const PanelEEPROMIndex index;
    inspect::Bytes bytes(static_cast<std::size_t>(index.getIndexLastNumber() + 1) *
                         index.getIndexSize());
    attempt([&] {
        device.read(index.getIndexEEPROMID(), index.getIndexOffset(), bytes.data(),
                    static_cast<unsigned int>(bytes.size()));
    });
    return inspect::parseSettingIndex(bytes);
}

}
