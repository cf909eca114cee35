// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/BMCVersion.h>
#include <recordkit/version/DeviceID.h>
#include <recordkit/version/EFIVersion.h>
#include <recordkit/version/GSWBVersion.h>
#include <recordkit/version/PALSALVersion.h>
#include <recordkit/version/SystemFirmwareVersion.h>
#include <recordkit/version/SystemInfoParameters.h>
#include <recordkit/version/TAVFirmwareVersion.h>

#include "FieldTable.h"

namespace recordkit::tool {

using namespace TAVLib::RecordKit;

namespace {

/// A number of PALSALVersion: 256 x major + minor.
std::string majorMinorMeaning(const Json& value)
{
    const auto number = value.get<unsigned int>();
    return fmt::format("{}.{:02}", number >> 8, number & 0xFF);
}

// clang-format off
const Rows<TAVFirmwareVersion> TAV_FIRMWARE_VERSION = {
    field<TAVFirmwareVersion>("firmware_major", {0, 1}, &TAVFirmwareVersion::getFirmMajorVersion),
    field<TAVFirmwareVersion>("firmware_minor", {1, 1}, &TAVFirmwareVersion::getFirmMinorVersion),
    field<TAVFirmwareVersion>("boot_major", {2, 1}, &TAVFirmwareVersion::getBootFirmMajorRevision),
    field<TAVFirmwareVersion>("boot_minor", {3, 1}, &TAVFirmwareVersion::getBootFirmMinorRevision),
    field<TAVFirmwareVersion>("psa_reference", {4, 1}, &TAVFirmwareVersion::getPSARefVersion),
    field<TAVFirmwareVersion>("sal_reference", {5, 1}, &TAVFirmwareVersion::getSALRefVersion),
    field<TAVFirmwareVersion>("version", {0, 2}, &TAVFirmwareVersion::getVersionString),
};

const Rows<PALSALVersion> PAL_SAL_VERSION = {
    field<PALSALVersion>("pal_a_generic", {0, 2}, &PALSALVersion::getPAL_A_GEN, majorMinorMeaning),
    field<PALSALVersion>("pal_a_specific", {2, 2}, &PALSALVersion::getPAL_A_SPEC, majorMinorMeaning),
    field<PALSALVersion>("pal_b", {4, 2}, &PALSALVersion::getPAL_B, majorMinorMeaning),
    field<PALSALVersion>("sal_a", {6, 2}, &PALSALVersion::getSAL_A, majorMinorMeaning),
    field<PALSALVersion>("sal_b", {8, 2}, &PALSALVersion::getSAL_B, majorMinorMeaning),
    field<PALSALVersion>("pal_version", {0, 6}, &PALSALVersion::getPALVersionString),
    field<PALSALVersion>("sal_version", {6, 4}, &PALSALVersion::getSALVersionString),
    field<PALSALVersion>("version", {4, 6}, &PALSALVersion::getVersionString),
};

const Rows<EFIVersion> EFI_VERSION = {
    field<EFIVersion>("efi_low", {0, 4}, &EFIVersion::getEFILow, hexMeaning),
    field<EFIVersion>("efi_high", {4, 4}, &EFIVersion::getEFIHigh, hexMeaning),
    field<EFIVersion>("build_number", {8, 2}, &EFIVersion::getBuildNumber),
    field<EFIVersion>("version", {0, 8}, &EFIVersion::getVersionString),
};

template <typename Version> Rows<Version> deviceIdResponse()
{
    return {
        field<Version>("firmware_major", {2, 1, "6..0"}, &Version::getFirmMajorVersion),
        field<Version>("firmware_minor", {3, 1}, &Version::getFirmMinorVersion),
        field<Version>("version", {2, 2}, &Version::getVersionString),
    };
}

const Rows<GSWBVersion> GSWB_VERSION = {
    [](GSWBVersion& version, DecodedFields& fields) {
        unsigned char firstBank = 0;
        unsigned char secondBank = 0;
        version.getRunningBank(firstBank, secondBank);
        fields.push_back({"running_bank_1", {0, 1}, firstBank, ""});
        fields.push_back({"running_bank_2", {1, 1}, secondBank, ""});
        std::string first;
        std::string second;
        version.getOnlineVersion(first, second);
        fields.push_back({"online_version_1", {2, 3}, first, ""});
        fields.push_back({"online_version_2", {5, 3}, second, ""});
        version.getOfflineVersion(first, second);
        fields.push_back({"offline_version_1", {8, 2}, first, ""});
        fields.push_back({"offline_version_2", {10, 2}, second, ""});
    },
};

const Rows<SystemFirmwareVersion> SYSTEM_FIRMWARE_VERSION = {
    field<SystemFirmwareVersion>("version", {0, 4}, &SystemFirmwareVersion::getVersionString),
};

const Rows<SystemInfoParameters> SYSTEM_INFO_PARAMETERS = {
    field<SystemInfoParameters>("version", {4, 13}, &SystemInfoParameters::getVersionString),
};
// clang-format on

}

std::vector<RecordClass> versionClasses()
{
    return {
        describe("TAVFirmwareVersion", "6", "management firmware", TAV_FIRMWARE_VERSION),
        describe("PALSALVersion", "10", "PAL and SAL", PAL_SAL_VERSION),
        describe("EFIVersion", "10", "EFI firmware", EFI_VERSION),
        describe("BMCVersion", "4", "management controller of a board",
                 deviceIdResponse<BMCVersion>()),
        describe("DeviceID", "4", "device that answers Get Device ID",
                 deviceIdResponse<DeviceID>()),
        describe("GSWBVersion", "12", "GSWB banks and versions", GSWB_VERSION),
        describe("SystemFirmwareVersion", "4", "system firmware", SYSTEM_FIRMWARE_VERSION),
        describe("SystemInfoParameters", "17", "version text of the system info parameters",
                 SYSTEM_INFO_PARAMETERS),
    };
}

}
