// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/fields/Registry.h>
#include <recordkit/version/BMCVersion.h>
#include <recordkit/version/DeviceID.h>
#include <recordkit/version/EFIVersion.h>
#include <recordkit/version/GSWBVersion.h>
#include <recordkit/version/PALSALVersion.h>
#include <recordkit/version/SystemFirmwareVersion.h>
#include <recordkit/version/SystemInfoParameters.h>
#include <recordkit/version/TAVFirmwareVersion.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using Tav = TAVFirmwareVersion;
using PalSal = PALSALVersion;
using Efi = EFIVersion;
using Device = DeviceIDResponse;
using Gswb = GSWBVersion;
using System = SystemFirmwareVersion;
using Parameters = SystemInfoParameters;

/// A number of PALSALVersion: 256 x major + minor.
std::string asMajorMinor(const Value& value)
{
    return fmt::format("{}.{:02}", numberOf(value) >> 8, numberOf(value) & 0xFF);
}

/// One of the two results of an operation.
template <auto Get, unsigned int I> Value askBoth(const Record& record, const Spot&)
{
    std::remove_reference_t<FirstOf<Get>> values[2] = {};
    std::invoke(Get, objectFor<Get>(record), values[0], values[1]);
    return toValue(values[I]);
}

// clang-format off
constexpr Field TAV_FIRMWARE_VERSION[] = {
    {"firmware_major", bytesAt(Tav::FIRM_MAJOR), ask<&Tav::getFirmMajorVersion>},
    {"firmware_minor", bytesAt(Tav::FIRM_MINOR), ask<&Tav::getFirmMinorVersion>},
    {"boot_major", bytesAt(Tav::BOOT_MAJOR), ask<&Tav::getBootFirmMajorRevision>},
    {"boot_minor", bytesAt(Tav::BOOT_MINOR), ask<&Tav::getBootFirmMinorRevision>},
    {"psa_reference", bytesAt(Tav::PSA_REFERENCE), ask<&Tav::getPSARefVersion>},
    {"sal_reference", bytesAt(Tav::SAL_REFERENCE), ask<&Tav::getSALRefVersion>},
    {"version", bytesAt(Tav::FIRM_MAJOR, 2), ask<&Tav::getVersionString>},
};

constexpr Field PAL_SAL_VERSION[] = {
    {"pal_a_generic", bytesAt(PalSal::PAL_A_GENERIC, 2), ask<&PalSal::getPAL_A_GEN>, asMajorMinor},
    {"pal_a_specific", bytesAt(PalSal::PAL_A_SPECIFIC, 2), ask<&PalSal::getPAL_A_SPEC>, asMajorMinor},
    {"pal_b", bytesAt(PalSal::PAL_B, 2), ask<&PalSal::getPAL_B>, asMajorMinor},
    {"sal_a", bytesAt(PalSal::SAL_A, 2), ask<&PalSal::getSAL_A>, asMajorMinor},
    {"sal_b", bytesAt(PalSal::SAL_B, 2), ask<&PalSal::getSAL_B>, asMajorMinor},
    {"pal_version", bytesAt(PalSal::PAL_A_GENERIC, 6), ask<&PalSal::getPALVersionString>},
    {"sal_version", bytesAt(PalSal::SAL_A, 4), ask<&PalSal::getSALVersionString>},
    Field{"version", bytesAt(PalSal::SAL_B, 2), ask<&PalSal::getVersionString>}.with(bytesAt(PalSal::PAL_B, 2)),
};

constexpr Field EFI_VERSION[] = {
    {"efi_low", bytesAt(Efi::LOW, 4), ask<&Efi::getEFILow>, asHex},
    {"efi_high", bytesAt(Efi::HIGH, 4), ask<&Efi::getEFIHigh>, asHex},
    {"build_number", bytesAt(Efi::BUILD, 2), ask<&Efi::getBuildNumber>},
    {"version", bytesAt(Efi::LOW, 8), ask<&Efi::getVersionString>},
};

template <typename Version> constexpr Field DEVICE_ID_RESPONSE[] = {
    {"firmware_major", bitsAt(Device::MAJOR, 6, 0), ask<&Device::getFirmMajorVersion>},
    {"firmware_minor", bytesAt(Device::MINOR), ask<&Device::getFirmMinorVersion>},
    Field{"version", bitsAt(Device::MAJOR, 6, 0), ask<&Version::getVersionString>}.with(bytesAt(Device::MINOR)),
};

constexpr Field GSWB_VERSION[] = {
    {"running_bank_1", bytesAt(Gswb::BANKS), askBoth<&Gswb::getRunningBank, 0>},
    {"running_bank_2", bytesAt(Gswb::BANKS + 1), askBoth<&Gswb::getRunningBank, 1>},
    {"online_version_1", bytesAt(Gswb::ONLINE_1, 3), askBoth<&Gswb::getOnlineVersion, 0>},
    {"online_version_2", bytesAt(Gswb::ONLINE_2, 3), askBoth<&Gswb::getOnlineVersion, 1>},
    {"offline_version_1", bytesAt(Gswb::OFFLINE_1, 2), askBoth<&Gswb::getOfflineVersion, 0>},
    {"offline_version_2", bytesAt(Gswb::OFFLINE_2, 2), askBoth<&Gswb::getOfflineVersion, 1>},
};

constexpr Field SYSTEM_FIRMWARE_VERSION[] = {
    Field{"letter", bytesAt(System::LETTER), number}.says("letter, 1 for A"),
    Field{"first", bytesAt(System::FIRST), number, asHex}.says("first number, BCD"),
    Field{"second", bytesAt(System::SECOND), number, asHex}.says("second number, BCD"),
    Field{"third", bytesAt(System::THIRD), number}.says("third number"),
    {"version", bytesAt(System::LETTER, 4), ask<&System::getVersionString>},
};

constexpr Field SYSTEM_INFO_PARAMETERS[] = {
    Field{"version", bytesAt(Parameters::TEXT, Parameters::TEXT_LENGTH), ask<&Parameters::getVersionString>}
        .with(bytesAt(Parameters::VALIDITY)),
};

constexpr RecordClass CLASSES[] = {
    describe<Tav>("TAVFirmwareVersion", {6, 6}, "management firmware", TAV_FIRMWARE_VERSION),
    describe<PalSal>("PALSALVersion", {10, 10}, "PAL and SAL", PAL_SAL_VERSION),
    describe<Efi>("EFIVersion", {10, 10}, "EFI firmware", EFI_VERSION),
    describe<BMCVersion>("BMCVersion", {4, 4}, "management controller of a board", DEVICE_ID_RESPONSE<BMCVersion>),
    describe<DeviceID>("DeviceID", {4, 4}, "device that answers Get Device ID", DEVICE_ID_RESPONSE<DeviceID>),
    describe<Gswb>("GSWBVersion", {12, 12}, "GSWB banks and versions", GSWB_VERSION),
    describe<System>("SystemFirmwareVersion", {4, 4}, "system firmware", SYSTEM_FIRMWARE_VERSION),
    describe<Parameters>("SystemInfoParameters", {17, 17}, "version text of the system info parameters", SYSTEM_INFO_PARAMETERS),
};
// clang-format on

}

constexpr RecordClasses VERSION_CLASSES = CLASSES;

}
