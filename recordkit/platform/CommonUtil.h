// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_COMMONUTIL_H
#define RECORDKIT_PLATFORM_COMMONUTIL_H

#include <recordkit/platform/Export.h>

/// Unit counts and board types of the machine that the firmware runs on.
class RECORDKIT_API CommonUtil {
public:
    /// Kinds that getMaxUnitNum counts.
    enum UnitKind { SYSTEM_BOARDS = 1, LOGICAL_IO_UNITS = 7 };

    /// Number of units of one kind: 1 system boards, 7 logical I/O units per management board; at
    /// most 256. The event store initialises the files of as many system boards.
    static int getMaxUnitNum(int kind);

    /// Number of partitions of the system, at least 1.
    static int getMaxPartitionNum();

    /// Type of one system board, for any number. The library asks for the type of kind 3, and
    /// compares it only with 2: part numbers of such a board's processors are looked up in
    /// cpu_ca_number_sb3.csv, those of any other in cpu_ca_number.csv. A board that does not exist
    /// or whose type is not known has any other value, such as 0.
    static int getSBBoardType(unsigned char sbNo, unsigned char kind);
};

#endif
