// SPDX-License-Identifier: Apache-2.0
// The fixed-size objects contain all their data: nothing they do allocates memory.
#include <gtest/gtest.h>

#include <recordkit/hardware/BMC_BootFlagsClearData.h>
#include <recordkit/hardware/BootFlagsData.h>
#include <recordkit/hardware/DIMMType.h>
#include <recordkit/hardware/DeviceInfo.h>
#include <recordkit/hardware/EventFilterTable.h>
#include <recordkit/hardware/IOUPortConfiguration.h>
#include <recordkit/hardware/ManufacturingTestOn.h>
#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/hardware/OSBootWatchdogData.h>
#include <recordkit/hardware/PCICardInfo.h>
#include <recordkit/hardware/PCISlotLocation.h>
#include <recordkit/hardware/PSUStatus.h>
#include <recordkit/hardware/SBBoardInfo.h>
#include <recordkit/hardware/UserAccess.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
#include <recordkit/serial/HardwareInfo.h>
#include <recordkit/version/BMCVersion.h>
#include <recordkit/version/DeviceID.h>
#include <recordkit/version/EFIVersion.h>
#include <recordkit/version/GSWBVersion.h>
#include <recordkit/version/PALSALVersion.h>
#include <recordkit/version/SystemFirmwareVersion.h>
#include <recordkit/version/SystemInfoParameters.h>
#include <recordkit/version/TAVFirmwareVersion.h>

#include "AllocationCount.h"

using namespace TAVLib::RecordKit;
using testing_support::allocationCount;

namespace {

template <typename Record> class FixedSize : public testing::Test {
};
using Records =
    testing::Types<HardwareInfo, SBBoardInfo, DIMMType, MemorySPDData, IOUPortConfiguration,
                   PCISlotLocation, PCICardInfo, PSUStatus, UserAccess, EventFilterTable,
                   OSBootWatchdogData, BootFlagsData, BMC_BootFlagsClearData, DeviceInfo,
                   ManufacturingTestOn, TAVFirmwareVersion, PALSALVersion, EFIVersion, BMCVersion,
                   DeviceID, GSWBVersion, SystemFirmwareVersion, SystemInfoParameters,
                   FullSensorRecord, CompactSensorRecord>;
TYPED_TEST_SUITE(FixedSize, Records, );

}

TYPED_TEST(FixedSize, ImagesMoveWithoutTheHeap)
{
    unsigned char image[256] = {};
    for (unsigned int i = 0; i < sizeof image; ++i) {
        image[i] = static_cast<unsigned char>(i);
    }
    const std::size_t before = allocationCount();
    TypeParam record;
    const bool isTaken = record.setSerialized(image, sizeof image);
    const unsigned int written = record.getSerialized(image, sizeof image);
    const std::size_t after = allocationCount();
    EXPECT_TRUE(isTaken);
    EXPECT_EQ(written, record.getSerializedSize());
    EXPECT_EQ(after, before);
}

TEST(FixedSizeCounter, SeesTheHeap)
{
    const std::size_t before = allocationCount();
    void* volatile memory = ::operator new(1);
    ::operator delete(memory);
    EXPECT_GT(allocationCount(), before);
}
