// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_ANSWERS_H
#define RECORDKIT_TOOL_ANSWERS_H

#include <string>
#include <vector>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>
#include <recordkit/inspect/event/EventSummary.h>
#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/inspect/fru/CpuRom.h>
#include <recordkit/inspect/log/LogStatus.h>
#include <recordkit/inspect/memory/Spd.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "print/Value.h"

namespace recordkit::tool {

struct FruFile;

// What sub-commands answer as JSON, for an answer that contains several of them. Each is in the
// file of its sub-command, beside the columns.

/// sel status.
Object statusObject(const inspect::LogStatus& status);

/// The files and the findings of sel check.
Object logFileObject(const TAVLib::RecordKit::SELStoreCheck::File& file);
Object logFindingObject(const TAVLib::RecordKit::SELStoreCheck::Finding& finding);

/// sel summary, a row of its states that are still asserted, and its rows of severities.
Object summaryObject(const inspect::EventSummary& summary);
Object assertedObject(const inspect::AssertedState& state);
List severityObjects(const inspect::SeverityCounts& severities);

/// sdr list.
Object sensorObject(const inspect::Sensor& sensor);

/// fru show.
Object fruObject(const FruFile& file);

/// spd show.
Object moduleObject(const std::string& path, const inspect::Spd& spd);

/// cpu; `size` is that of the ROM.
Object processorObject(const inspect::CpuRom& rom, std::size_t size);

/// decode.
List fieldObjects(const inspect::DecodedFields& fields);

/// eeprom setting list; `master` has the entries of the index file, if there is one.
List settingObjects(const std::vector<inspect::SettingEntry>& entries,
                    const std::vector<inspect::SettingEntry>& master);

/// eeprom efi status.
List efiObjects(const TAVLib::RecordKit::EFIBackupEEPROMIndex& index);

}

#endif
