// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/HardwareInfo.h>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

bool HardwareInfo::isTAVInstalled(int index) const
{
    return isPresent({1, 2, TAV, 0, "Get TAV information(install)"}, index);
}

bool HardwareInfo::isGSPBInstalled(int index) const
{
    return isPresent({3, 2, GSPB_AND_SASU, 0, "Get GSPB information(install)"}, index);
}

bool HardwareInfo::isSASUInstalled(int index) const
{
    return isPresent({4, 4, GSPB_AND_SASU, 2, "Get SASU information(install)"}, index);
}

bool HardwareInfo::isSBInstalled(int index) const
{
    return isPresent({5, 4, SB, 0, "Get SB information(install)"}, index);
}

bool HardwareInfo::isIOBInstalled(int index) const
{
    return isPresent({6, 2, IOB, 0, "Get IOB information(install)"}, index);
}

bool HardwareInfo::isPCIBOXInstalled(int index) const
{
    return isPresent({7, 2, PCI_BOX, 0, "Get PCI_Box information(connect)"}, index);
}

void HardwareInfo::getParamErrorTrace(unsigned char unitKind, char* text, int value) const
{
    traceParameterError(unitKind, text, value);
}

bool HardwareInfo::isPresent(const Unit& unit, int index) const
{
    if (index < 0 || index >= unit.count) {
        getParamErrorTrace(unit.kind, const_cast<char*>(unit.text), index);
        return false;
    }
    return get_bit(image[unit.byte], unit.firstBit + static_cast<unsigned int>(index), 1) != 0;
}

}
