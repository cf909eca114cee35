// SPDX-License-Identifier: Apache-2.0
// What is true of every class with an image: a new object is all zero and has this size.
#include <gtest/gtest.h>

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
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
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

#include "support/Bytes.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

/// Built in storage full of other bytes, so that an uninitialised byte shows.
template <typename Class> void expectNew(unsigned int size)
{
    alignas(Class) unsigned char storage[sizeof(Class)];
    std::fill_n(storage, sizeof storage, static_cast<unsigned char>(0xA5));
    auto* const object = new (storage) Class;
    EXPECT_EQ(object->getSerializedSize(), size);
    EXPECT_EQ(imageOf(*object), Bytes(size, 0));
    object->~Class();
}

}

TEST(EveryClass, NewObjectIsZeroAndHasItsSize)
{
    expectNew<HardwareInfo>(8);
    expectNew<PartitionInfo>(2);
    expectNew<SBBoardInfo>(96);
    expectNew<DIMMType>(5);
    expectNew<MemorySPDData>(146);
    expectNew<IOUBoardInfo>(9);
    expectNew<SASUBoardInfo>(9);
    expectNew<IOUPortConfiguration>(1);
    expectNew<PCISlotLocation>(2);
    expectNew<PCICardInfo>(9);
    expectNew<GSPBBoardInfo>(11);
    expectNew<PCIBOXInfo>(13);
    expectNew<PSUStatus>(2);
    expectNew<UserAccess>(4);
    expectNew<EventFilterTable>(20);
    expectNew<OSBootWatchdogData>(5);
    expectNew<BootFlagsData>(5);
    expectNew<BMC_BootFlagsClearData>(1);
    expectNew<DeviceInfo>(12);
    expectNew<ManufacturingTestOn>(1);
    expectNew<TAVFirmwareVersion>(6);
    expectNew<PALSALVersion>(10);
    expectNew<EFIVersion>(10);
    expectNew<BMCVersion>(4);
    expectNew<DeviceID>(4);
    expectNew<GSWBVersion>(12);
    expectNew<SystemFirmwareVersion>(4);
    expectNew<SystemInfoParameters>(17);
    expectNew<SELEntry>(2);
    expectNew<OEMSELEntry>(2);
    expectNew<BMCSELEntry>(2);
    expectNew<BMCSELEntryMessage>(2);
    expectNew<SELEntryLongText>(0);
    expectNew<BMCLog>(0);
    expectNew<BMCMemoryImage>(0);
    expectNew<FullSensorRecord>(48);
    expectNew<CompactSensorRecord>(32);
}
