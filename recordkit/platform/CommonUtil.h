// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_COMMONUTIL_H
#define RECORDKIT_PLATFORM_COMMONUTIL_H

#include <recordkit/platform/Export.h>

/// Unit counts and board types of the machine that the firmware runs on.
class RECORDKIT_API CommonUtil {
public:
    /// Kinds that getMaxUnitNum counts.
    enum UnitKind { SYSTEM_BOARDS = 1, LOGICAL_IO_UNITS = 7 };

    /// Number of units of one kind: 1 system boards, 7 logical I/O units per management board.
    static int getMaxUnitNum(int kind);

    /// Number of partitions of the system.
    static int getMaxPartitionNum();

    /// Type of one system board.
    static int getSBBoardType(unsigned char sbNo, unsigned char kind);
};

#endif
