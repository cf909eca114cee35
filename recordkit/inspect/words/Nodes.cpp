// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Nodes.h>

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <strings.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

using TAVLib::ipmiclient::IPMIClientCommand;
using TAVLib::RecordKit::Util;

namespace {

constexpr int UNITS = 8;
constexpr int SIDES = 2;
constexpr int LOGICAL_UNITS = 16;

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

const BoardName& boardOf(Util::BoardType type)
{
    return *std::find_if(std::begin(BOARDS), std::end(BOARDS),
                         [type](const BoardName& board) { return board.type == type; });
}

Node fromNodeId(unsigned char nodeId)
{
    Node node;
    node.nodeId = nodeId;
    int side = 0;
    Util::nodeId2Unit(nodeId, node.type, node.unit, side);
    if (boardOf(node.type).hasSides) {
        node.side = side;
    }
    return node;
}

Node fromUnit(Util::BoardType type, int unit, std::optional<int> side)
{
    Node node;
    node.type = type;
    node.unit = unit;
    node.side = side;
    node.nodeId = Util::unit2NodeId(type, unit, side.value_or(0));
    return node;
}

Node fromLogical(const LogicalName& kind, int lunit)
{
    Util::BoardType type = IPMIClientCommand::BOARD_SB;
    int unit = 0;
    int side = 0;
    Util::LUnit2Unit(kind.type, lunit, type, unit, side);
    Node node = fromUnit(type, unit, boardOf(type).hasSides ? std::optional(side) : std::nullopt);
    node.logical = fmt::format("{}{}", kind.name, lunit);
    if (kind.type == IPMIClientCommand::NODE_LIOU) {
        unsigned char board = 0;
        unsigned char index = 0;
        Util::liou2BmmId(static_cast<unsigned char>(lunit), board, index);
        node.management = Node::Management{board, index};
    }
    return node;
}

/// The number after a name, up to `limit`; what follows it is left in `rest`.
std::optional<int> readUnit(const std::string& text, const std::string& name, int limit,
                            std::string& rest)
{
    if (::strncasecmp(text.c_str(), name.c_str(), name.size()) != 0) {
        return std::nullopt;
    }
    const std::size_t end = std::min(text.find('-'), text.size());
    const auto number =
        parseNumber(text.substr(name.size(), end - name.size()), static_cast<unsigned long>(limit));
    rest = text.substr(end);
    return number ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

}

const char* Node::typeName() const
{
    return boardOf(type).name;
}

std::string Node::name() const
{
    const std::string board = fmt::format("{}{}", typeName(), unit);
    return side ? fmt::format("{}-{}", board, *side) : board;
}

Node parseNode(const std::string& text)
{
    if (const auto nodeId = parseNumber(text, 0xFF)) {
        return fromNodeId(static_cast<unsigned char>(*nodeId));
    }
    std::string rest;
    for (const LogicalName& kind : LOGICAL_KINDS) {
        const auto unit = readUnit(text, kind.name, LOGICAL_UNITS - 1, rest);
        if (unit && rest.empty()) {
            return fromLogical(kind, *unit);
        }
    }
    for (const BoardName& board : BOARDS) {
        const auto unit = readUnit(text, board.name, UNITS - 1, rest);
        if (unit && board.hasSides && (rest == "-0" || rest == "-1")) {
            return fromUnit(board.type, *unit, rest == "-1" ? 1 : 0);
        }
        if (unit && !board.hasSides && rest.empty()) {
            return fromUnit(board.type, *unit, std::nullopt);
        }
    }
    throw RequestError(fmt::format("\"{}\": expected a node id (0 to 0xFF), a unit (SB3, IOU0-1, "
                                   "GSPB7-0, MMB1; units 0 to 7, sides 0 and 1) or a logical unit "
                                   "(LSB4, LIOU6; 0 to 15)",
                                   text));
}

std::vector<Node> allNodes()
{
    std::vector<Node> nodes;
    for (const BoardName& board : BOARDS) {
        for (int unit = 0; unit < UNITS; ++unit) {
            for (int side = 0; side < (board.hasSides ? SIDES : 1); ++side) {
                nodes.push_back(fromUnit(board.type, unit,
                                         board.hasSides ? std::optional(side) : std::nullopt));
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

}
