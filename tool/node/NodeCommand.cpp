// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/words/Nodes.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"

namespace recordkit::tool {

namespace {

constexpr Column<Node> COLUMNS[] = {
    {"node_id", "NODE ID", 7, [](const Node& node) { return Value(node.nodeId); },
     [](const Node& node) { return Cell{fmt::format("{:02X}h", node.nodeId)}; }},
    {"unit_name", "UNIT", 8, [](const Node& node) { return Value(node.name()); }},
    {"board_type", nullptr, 0, [](const Node& node) { return Value(static_cast<int>(node.type)); }},
    {"board_type_name", "BOARD TYPE", 10, [](const Node& node) { return Value(node.typeName()); },
     [](const Node& node) {
         return Cell{fmt::format("{} {}", static_cast<int>(node.type), node.typeName())};
     }},
    {"unit", "NUMBER", 6, [](const Node& node) { return Value(node.unit); }},
    {"side", "SIDE", 4, [](const Node& node) { return node.side ? Value(*node.side) : Value(); }},
    {"logical_unit", "LOGICAL", 7, [](const Node& node) { return textOrNull(node.logical); }},
    {"management_board", "MANAGEMENT BOARD", 16,
     [](const Node& node) { return node.management ? Value(node.management->board) : Value(); }},
    {"index", "INDEX", 0,
     [](const Node& node) { return node.management ? Value(node.management->index) : Value(); }},
};

void run(const Arguments& arguments)
{
    const bool isOne = arguments.has("VALUE");
    printListing(isOne ? std::vector<Node>{parseNode(arguments.text("VALUE"))} : allNodes(),
                 COLUMNS, arguments.layout());
}

}

Command nodeCommand()
{
    return {"node",
            "Convert node ids, units and logical units, or print all that exist",
            "recordkit node 0x87; recordkit node IOU3-1; recordkit node LIOU6; recordkit node",
            {argument("VALUE", "Node id (0x87), unit (SB3, IOU3-1, GSPB0-1, MMB1) or logical unit "
                               "(LSB4, LIOU6)")
                 .optional()},
            Answer::TABLE,
            run};
}

}
