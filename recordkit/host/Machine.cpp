// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/Machine.h>

#include <recordkit/platform/CommonUtil.h>

namespace {

TAVLib::host::Machine currentMachine;

}

void TAVLib::host::setMachine(const Machine& machine)
{
    currentMachine = machine;
}

const TAVLib::host::Machine& TAVLib::host::machine()
{
    return currentMachine;
}

int CommonUtil::getMaxUnitNum(int kind)
{
    switch (kind) {
    case SYSTEM_BOARDS:
        return currentMachine.systemBoards;
    case LOGICAL_IO_UNITS:
        return currentMachine.logicalIOUnitsPerBoard;
    default:
        return 0;
    }
}

int CommonUtil::getMaxPartitionNum()
{
    return currentMachine.partitions;
}

/// A host has one type for each board, whatever kind of type is asked for.
int CommonUtil::getSBBoardType(unsigned char sbNo, unsigned char /*kind*/)
{
    const auto& types = currentMachine.systemBoardTypes;
    return sbNo < types.size() ? types[sbNo] : 0;
}
