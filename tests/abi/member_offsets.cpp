// SPDX-License-Identifier: Apache-2.0
// Offsets of the class members that callers on the 32-bit board compiled in. Compiled for the board
// without access control, and never run: every assertion is the compiler's.
#include <cstddef>

#include <recordkit/fru/FRUData.h>
#include <recordkit/hardware/BMC_BootFlagsClearData.h>
#include <recordkit/hardware/BootFlagsData.h>
#include <recordkit/hardware/DIMMType.h>
#include <recordkit/hardware/DeviceInfo.h>
#include <recordkit/hardware/EventFilterTable.h>
#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/IOUBoardInfo.h>
#include <recordkit/hardware/IOUPortConfiguration.h>
#include <recordkit/hardware/ManufacturingTestOn.h>
#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/hardware/OSBootWatchdogData.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/hardware/PCICardInfo.h>
#include <recordkit/hardware/PCISlotLocation.h>
#include <recordkit/hardware/PSUStatus.h>
#include <recordkit/hardware/SASUBoardInfo.h>
#include <recordkit/hardware/SBBoardInfo.h>
#include <recordkit/hardware/UserAccess.h>
#include <recordkit/platform/BMCMessageFile.h>
#include <recordkit/platform/CsvInfoAccess.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/TavTrace.h>
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>
#include <recordkit/serial/HardwareInfo.h>
#include <recordkit/serial/PartitionInfo.h>
#include <recordkit/version/BMCVersion.h>
#include <recordkit/version/DeviceID.h>
#include <recordkit/version/EFIVersion.h>
#include <recordkit/version/GSWBVersion.h>
#include <recordkit/version/PALSALVersion.h>
#include <recordkit/version/SystemFirmwareVersion.h>
#include <recordkit/version/SystemInfoParameters.h>
#include <recordkit/version/TAVFirmwareVersion.h>

using namespace TAVLib::RecordKit;

static_assert(sizeof(void*) == 4 && sizeof(std::string) == 24, "a 32-bit target");

// The image, or its fixed header, is the first member of every class that has one.
static_assert(offsetof(PartitionInfo, image) == 4, "");
static_assert(offsetof(HardwareInfo, image) == 4, "");
static_assert(offsetof(SBBoardInfo, image) == 4, "");
static_assert(offsetof(DIMMType, image) == 4, "");
static_assert(offsetof(MemorySPDData, image) == 4, "");
static_assert(offsetof(IOUPortConfiguration, image) == 4, "");
static_assert(offsetof(PCISlotLocation, image) == 4, "");
static_assert(offsetof(PCICardInfo, image) == 4, "");
static_assert(offsetof(PSUStatus, image) == 4, "");
static_assert(offsetof(UserAccess, image) == 4, "");
static_assert(offsetof(EventFilterTable, image) == 4, "");
static_assert(offsetof(OSBootWatchdogData, image) == 4, "");
static_assert(offsetof(BootFlagsData, image) == 4, "");
static_assert(offsetof(BMC_BootFlagsClearData, image) == 4, "");
static_assert(offsetof(DeviceInfo, image) == 4, "");
static_assert(offsetof(ManufacturingTestOn, image) == 4, "");
static_assert(offsetof(TAVFirmwareVersion, image) == 4, "");
static_assert(offsetof(PALSALVersion, image) == 4, "");
static_assert(offsetof(EFIVersion, image) == 4, "");
static_assert(offsetof(BMCVersion, image) == 4, "");
static_assert(offsetof(DeviceID, image) == 4, "");
static_assert(offsetof(GSWBVersion, image) == 4, "");
static_assert(offsetof(SystemFirmwareVersion, image) == 4, "");
static_assert(offsetof(SystemInfoParameters, image) == 4, "");
static_assert(offsetof(IOUBoardInfo, header) == 4, "");
static_assert(offsetof(SASUBoardInfo, header) == 4, "");
static_assert(offsetof(GSPBBoardInfo, header) == 4, "");
static_assert(offsetof(PCIBOXInfo, header) == 4, "");

static_assert(offsetof(SELEntry, image) == 4 && sizeof(SELEntry::image) == 18, "");
static_assert(offsetof(SELEntry, recordLength) == 24, "");
static_assert(sizeof(SELEntry) == 28, "");

static_assert(offsetof(OEMSELEntry, extended) == 28 && sizeof(OEMSELEntry::extended) == 56, "");
static_assert(offsetof(OEMSELEntry, extendedLength) == 84, "");
static_assert(sizeof(OEMSELEntry) == 88, "");

static_assert(offsetof(BMCSELEntry, block) == 88 && sizeof(BMCSELEntry::block) == 112, "");
static_assert(offsetof(BMCSELEntry, blockLength) == 200, "");
static_assert(sizeof(BMCSELEntry) == 204, "");

static_assert(offsetof(BMCSELEntryMessage, trailer) == 204, "");
static_assert(sizeof(BMCSELEntryMessage::trailer) == 8, "");
static_assert(offsetof(BMCSELEntryMessage, trailerLength) == 212, "");
static_assert(sizeof(BMCSELEntryMessage) == 216, "");

static_assert(offsetof(SELEntryLongText, buffer) == 4 && sizeof(SELEntryLongText::buffer) == 80,
              "");
static_assert(offsetof(SELEntryLongText, validLength) == 84, "");
static_assert(offsetof(SELEntryLongText, text) == 88, "");
static_assert(sizeof(SELEntryLongText) == 112, "");

static_assert(offsetof(BMCLog, buffer) == 4 && sizeof(BMCLog::buffer) == 136, "");
static_assert(offsetof(BMCLog, validLength) == 140 && sizeof(BMCLog) == 144, "");

static_assert(offsetof(BMCMemoryImage, buffer) == 4 && sizeof(BMCMemoryImage::buffer) == 132, "");
static_assert(offsetof(BMCMemoryImage, validLength) == 136 && sizeof(BMCMemoryImage) == 140, "");

static_assert(offsetof(FRUMember, typelength) == 4 && offsetof(FRUMember, data) == 8, "");
static_assert(offsetof(FRUMember, item) == 32 && offsetof(FRUMember, hasTypeLength) == 36, "");
static_assert(offsetof(FRUMember, length) == 38 && sizeof(FRUMember) == 40, "");

// A reference has no offset to ask for: the device's is the space between its neighbours.
static_assert(offsetof(FRUArea, offset) == 8 && offsetof(FRUArea, members) == 12, "");
static_assert(offsetof(FRUArea, size) == 24 && offsetof(FRUArea, areaId) == 28, "");
static_assert(offsetof(FRUArea, dirty) == 32 && sizeof(FRUArea) == 36, "");

// Not polymorphic: the areas come first.
static_assert(offsetof(FRUData, areas) == 0 && sizeof(FRUData::areas) == 24, "");
static_assert(offsetof(FRUData, cpu) == 28 && sizeof(FRUData) == 32, "");

// The siblings' classes are one pointer each.
static_assert(offsetof(TAVLib::BMCMessageFile, state) == 0, "");
static_assert(sizeof(TAVLib::BMCMessageFile) == 4, "");
static_assert(offsetof(TAVLib::CsvInfoAccess, state) == 0, "");
static_assert(sizeof(TAVLib::CsvInfoAccess) == 4, "");
static_assert(offsetof(TAVLib::LockedFile, state) == 0 && sizeof(TAVLib::LockedFile) == 4, "");
static_assert(offsetof(TAVLib::PException, state) == 0 && sizeof(TAVLib::PException) == 4, "");
static_assert(offsetof(TAVLib::trace::TavTrace, state) == 4, "");
static_assert(sizeof(TAVLib::trace::TavTrace) == 8, "");
