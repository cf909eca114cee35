// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_MACHINE_H
#define RECORDKIT_HOST_MACHINE_H

#include <vector>

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// The machine that CommonUtil describes.
struct Machine {
    int systemBoards = 4;
    int partitions = 4;
    int logicalIOUnitsPerBoard = 4;
    std::vector<int> systemBoardTypes; ///< by board number; 0 where it is shorter
};

/// Sets the machine; call it before other threads query it.
RECORDKIT_API void setMachine(const Machine& machine);
RECORDKIT_API const Machine& machine();

}

#endif
