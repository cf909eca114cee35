// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_NODES_H
#define RECORDKIT_INSPECT_WORDS_NODES_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/util/Util.h>

namespace recordkit::inspect {

/// A board or a node of it: its physical unit, the logical unit by which it was named, and its ids.
struct Node {
    /// The management board of a logical I/O unit, and the unit's index there.
    struct Management {
        int board = 0;
        int index = 0;
    };

    TAVLib::RecordKit::Util::BoardType type = TAVLib::ipmiclient::IPMIClientCommand::BOARD_SB;
    int unit = 0;
    std::optional<int> side; ///< of boards with two sides
    unsigned char nodeId = 0;
    std::string logical; ///< "LIOU6"; empty if it was not named so
    std::optional<Management> management;

    /// "SB", "IOU", "GSPB" or "MMB".
    const char* typeName() const;
    /// "SB3", or "IOU3-1" for one with a side.
    std::string name() const;
};

/// Reads a node id (0x87), a unit (SB3, IOU3-1, GSPB0-1, MMB1) or a logical unit (LSB4, LIOU6), in
/// any case. Throws RequestError.
Node parseNode(const std::string& text);

/// Every unit, and every logical unit.
std::vector<Node> allNodes();

}

#endif
