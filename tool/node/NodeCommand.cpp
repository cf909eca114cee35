// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <fmt/format.h>
#include <memory>
#include <strings.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/platform/CommonUtil.h>
#include <recordkit/util/Util.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Json.h"
#include "../print/Table.h"

namespace recordkit::tool {

using TAVLib::ipmiclient::IPMIClientCommand;
using TAVLib::RecordKit::Util;

namespace {

constexpr int UNITS = 8;
constexpr int LOGICAL_UNITS = 16;
constexpr int NO_SIDE = -1;

struct Options {
    std::string value;
    bool isJson = false;
};

struct BoardName {
    Util::BoardType type;
    const char* name;
    bool hasSides;
};

struct LogicalName {
    Util::NodeType type;
    const char* name;
};

constexpr BoardName BOARDS[] = {
    {IPMIClientCommand::BOARD_SB, "SB", false},
    {IPMIClientCommand::BOARD_IOU, "IOU", true},
    {IPMIClientCommand::BOARD_GSPB, "GSPB", true},
    {IPMIClientCommand::BOARD_MMB, "MMB", false},
};

constexpr LogicalName LOGICAL_KINDS[] = {
    {IPMIClientCommand::NODE_LSB, "LSB"},
    {IPMIClientCommand::NODE_LIOU, "LIOU"},
};

/// A unit, the logical unit under which it was requested, and its ids.
struct Node {
    std::string logical; ///< "LIOU6", or empty
    Util::BoardType type = IPMIClientCommand::BOARD_SB;
    int unit = 0;
    int side = NO_SIDE;
    unsigned char nodeId = 0;
    bool hasBmm = false; ///< a logical I/O unit belongs to a management board
    unsigned char bmm = 0;
    unsigned char index = 0;
};

const BoardName& boardOf(Util::BoardType type)
{
    return *std::find_if(std::begin(BOARDS), std::end(BOARDS),
                         [type](const BoardName& board) { return board.type == type; });
}

std::string unitName(const Node& node)
{
    const std::string name = fmt::format("{}{}", boardOf(node.type).name, node.unit);
    return node.side == NO_SIDE ? name : fmt::format("{}-{}", name, node.side);
}

Node fromNodeId(unsigned char nodeId)
{
    Node node;
    node.nodeId = nodeId;
    Util::nodeId2Unit(nodeId, node.type, node.unit, node.side);
    node.side = boardOf(node.type).hasSides ? node.side : NO_SIDE;
    return node;
}

Node fromUnit(const BoardName& board, int unit, int side)
{
    Node node;
    node.type = board.type;
    node.unit = unit;
    node.side = side;
    node.nodeId = Util::unit2NodeId(board.type, unit, std::max(side, 0));
    return node;
}

Node fromLogical(const LogicalName& kind, int lunit)
{
    Node node;
    int side = 0;
    Util::LUnit2Unit(kind.type, lunit, node.type, node.unit, side);
    const bool hasSides = boardOf(node.type).hasSides;
    node.side = hasSides ? side : NO_SIDE;
    node.nodeId = Util::unit2NodeId(node.type, node.unit, hasSides ? side : 0);
    node.logical = fmt::format("{}{}", kind.name, lunit);
    if (kind.type == IPMIClientCommand::NODE_LIOU) {
        node.hasBmm = true;
        Util::liou2BmmId(static_cast<unsigned char>(lunit), node.bmm, node.index);
    }
    return node;
}

std::vector<Node> allNodes()
{
    std::vector<Node> nodes;
    for (const BoardName& board : BOARDS) {
        for (int unit = 0; unit < UNITS; ++unit) {
            if (!board.hasSides) {
                nodes.push_back(fromUnit(board, unit, NO_SIDE));
                continue;
            }
            for (int side = 0; side < 2; ++side) {
                nodes.push_back(fromUnit(board, unit, side));
            }
        }
    }
    for (const LogicalName& kind : LOGICAL_KINDS) {
        for (int lunit = 0; lunit < LOGICAL_UNITS; ++lunit) {
            nodes.push_back(fromLogical(kind, lunit));
        }
    }
    return nodes;
}

/// Reads the number after a name, up to `limit`.
bool parseUnit(const std::string& text, const char* name, int limit, std::string& rest, int& unit)
{
    const std::string prefix = name;
    if (::strncasecmp(text.c_str(), name, prefix.size()) != 0) {
        return false;
    }
    const std::size_t end = std::min(text.find('-'), text.size());
    if (end < prefix.size()) {
        return false;
    }
    const auto number = parseNumber(text.substr(prefix.size(), end - prefix.size()),
                                    static_cast<unsigned long>(limit));
    if (!number) {
        return false;
    }
    unit = static_cast<int>(*number);
    rest = text.substr(end);
    return true;
}

Node parseNode(const std::string& text)
{
    if (const auto nodeId = parseNumber(text, 0xFF)) {
        return fromNodeId(static_cast<unsigned char>(*nodeId));
    }
    std::string rest;
    int unit = 0;
    for (const LogicalName& kind : LOGICAL_KINDS) {
        if (parseUnit(text, kind.name, LOGICAL_UNITS - 1, rest, unit) && rest.empty()) {
            return fromLogical(kind, unit);
        }
    }
    for (const BoardName& board : BOARDS) {
        if (!parseUnit(text, board.name, UNITS - 1, rest, unit)) {
            continue;
        }
        if (board.hasSides && (rest == "-0" || rest == "-1")) {
            return fromUnit(board, unit, rest == "-1" ? 1 : 0);
        }
        if (!board.hasSides && rest.empty()) {
            return fromUnit(board, unit, NO_SIDE);
        }
    }
    throw usageError(fmt::format("\"{}\": expected a node id (0 to 0xFF), a unit (SB3, IOU0-1, "
                                 "GSPB7-0, MMB1; units 0 to 7, sides 0 and 1) or a logical unit "
                                 "(LSB4, LIOU6; 0 to 15)",
                                 text));
}

Json toJson(const Node& node)
{
    Json json;
    json["node_id"] = node.nodeId;
    json["unit_name"] = unitName(node);
    json["board_type"] = static_cast<int>(node.type);
    json["board_type_name"] = boardOf(node.type).name;
    json["unit"] = node.unit;
    json["side"] = node.side == NO_SIDE ? Json(nullptr) : Json(node.side);
    json["logical_unit"] = node.logical.empty() ? Json(nullptr) : Json(node.logical);
    json["management_board"] = node.hasBmm ? Json(node.bmm) : Json(nullptr);
    json["index"] = node.hasBmm ? Json(node.index) : Json(nullptr);
    return json;
}

void print(const std::vector<Node>& nodes, bool hasColour)
{
    const Table table({{"NODE ID", 7},
                       {"UNIT", 8},
                       {"BOARD TYPE", 10},
                       {"NUMBER", 6},
                       {"SIDE", 4},
                       {"LOGICAL", 7},
                       {"MANAGEMENT BOARD", 0}},
                      hasColour);
    std::string text = table.header();
    for (const Node& node : nodes) {
        table.append({{fmt::format("{:02X}h", node.nodeId)},
                      {unitName(node)},
                      {fmt::format("{} {}", static_cast<int>(node.type), boardOf(node.type).name)},
                      {std::to_string(node.unit)},
                      {node.side == NO_SIDE ? "-" : std::to_string(node.side)},
                      {node.logical.empty() ? "-" : node.logical},
                      {node.hasBmm ? fmt::format("{}, index {}", node.bmm, node.index) : "-"}},
                     text);
    }
    fmt::print("{}", text);
}

void show(const Options& options, bool hasColour)
{
    const bool isOne = !options.value.empty();
    const std::vector<Node> nodes =
        isOne ? std::vector<Node>{parseNode(options.value)} : allNodes();
    if (!options.isJson) {
        print(nodes, hasColour);
        return;
    }
    Json json = Json::array();
    for (const Node& node : nodes) {
        json.push_back(toJson(node));
    }
    fmt::print("{}", indented(isOne ? json[0] : json));
}

}

void addNodeCommand(CLI::App& app, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        app, "node", "Convert node ids, units and logical units, or print all that exist",
        "recordkit node 0x87; recordkit node IOU3-1; recordkit node LIOU6; recordkit node");
    command->add_option("VALUE", options->value,
                        "Node id (0x87), unit (SB3, IOU3-1, GSPB0-1, MMB1) or logical unit (LSB4, "
                        "LIOU6)");
    command->add_flag("--json", options->isJson, "JSON instead of a table");
    command->callback([options, &globals] { show(*options, globals.wantsColour()); });
}

}
