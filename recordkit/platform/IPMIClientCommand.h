// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_IPMICLIENTCOMMAND_H
#define RECORDKIT_PLATFORM_IPMICLIENTCOMMAND_H

namespace TAVLib::ipmiclient {

/// The kinds of boards and nodes on the management controller's bus.
class IPMIClientCommand {
public:
    enum BoardType : int { BOARD_SB = 0, BOARD_IOU = 128, BOARD_GSPB = 160, BOARD_MMB = 192 };
    enum NodeType : int {
        NODE_SB = 0,
        NODE_LIOU = 1,
        NODE_LSB = 2,
        NODE_IOU = 128,
        NODE_GSPB = 160,
    };
};

}

#endif
