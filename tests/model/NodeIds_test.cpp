// SPDX-License-Identifier: Apache-2.0
// Node ids, unit numbers and management-board ids, by their rules.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <recordkit/host/Machine.h>
#include <recordkit/util/Util.h>

#include "Model.h"

namespace {

using namespace testing_support;
using TAVLib::RecordKit::Util;

enum Operation {
    SET_UNITS_PER_BOARD,
    BOARD_ID_TO_UNIT,
    NODE_ID_TO_LUNIT,
    NODE_ID_TO_UNIT,
    UNIT_TO_NODE_ID,
    LUNIT_TO_UNIT,
    LIOU_TO_BMM_ID,
    BMM_ID_TO_LIOU,
    NODE_ID_TO_BMM_ID,
    BCD_TO_HEX_VALUE,
    SORT_BY_BMM_ID,
    OPERATIONS
};

/// What results are before a call: those that are not written stay so.
constexpr int UNWRITTEN = -77;
constexpr unsigned char UNWRITTEN_BYTE = 0xB7;

Lines triple(long long type, long long unit, long long side)
{
    return {fmt::format("type {} unit {} side {}", type, unit, side)};
}

Lines pairOf(unsigned int bmmId, unsigned int index)
{
    return {fmt::format("bmmId {} index {}", bmmId, index)};
}

class Library : public Subject {
public:
    Lines perform(const Step& step) override
    {
        const TraceCapture trace;
        Lines seen;
        try {
            seen = call(step);
        } catch (const TAVLib::PException& e) {
            seen = {describe(e)};
        }
        return joined(seen, trace.lines());
    }
    const Medium& medium() override { return none; }
    ~Library() override { TAVLib::host::setMachine({}); }

private:
    static Lines call(const Step& step)
    {
        const auto byte = [&step](std::size_t i) {
            return static_cast<unsigned char>(step.number(i));
        };
        const auto integer = [&step](std::size_t i) { return static_cast<int>(step.number(i)); };
        auto type = static_cast<Util::BoardType>(UNWRITTEN);
        auto nodeType = static_cast<Util::NodeType>(UNWRITTEN);
        int unit = UNWRITTEN;
        int side = UNWRITTEN;
        unsigned char bmmId = UNWRITTEN_BYTE;
        unsigned char index = UNWRITTEN_BYTE;
        switch (step.operation) {
        case SET_UNITS_PER_BOARD: {
            TAVLib::host::Machine machine;
            machine.logicalIOUnitsPerBoard = integer(0);
            TAVLib::host::setMachine(machine);
            return {};
        }
        case BOARD_ID_TO_UNIT:
            Util::boardId2Unit(byte(0), type, unit);
            return triple(type, unit, 0);
        case NODE_ID_TO_LUNIT:
            Util::nodeId2LUnit(byte(0), nodeType, unit);
            return triple(nodeType, unit, 0);
        case NODE_ID_TO_UNIT:
            Util::nodeId2Unit(byte(0), type, unit, side);
            return triple(type, unit, side);
        case UNIT_TO_NODE_ID:
            return {
                fmt::format("node {}", Util::unit2NodeId(static_cast<Util::BoardType>(integer(0)),
                                                         integer(1), integer(2)))};
        case LUNIT_TO_UNIT:
            Util::LUnit2Unit(static_cast<Util::NodeType>(integer(0)), integer(1), type, unit, side);
            return triple(type, unit, side);
        case LIOU_TO_BMM_ID:
            Util::liou2BmmId(byte(0), bmmId, index);
            return pairOf(bmmId, index);
        case BMM_ID_TO_LIOU:
            return {fmt::format("liou {}", Util::bmmId2Liou(byte(0), byte(1)))};
        case NODE_ID_TO_BMM_ID:
            Util::nodeId2BmmId(byte(0), bmmId, index);
            return pairOf(bmmId, index);
        case BCD_TO_HEX_VALUE:
            return {fmt::format("value {}", Util::getBCDtoHexValue(std::string(step.bytes.begin(),
                                                                               step.bytes.end())))};
        default: {
            Bytes ids = step.bytes;
            Util::sortByBmmId(ids);
            return {hex(ids)};
        }
        }
    }

    Medium none;
};

/// The rules of the conversions, one after the other.
class Rules : public Subject {
public:
    Lines perform(const Step& step) override
    {
        try {
            return call(step);
        } catch (const Failure& failed) {
            return {failed.text};
        }
    }
    const Medium& medium() override { return none; }

private:
    struct Place {
        long long type;
        long long unit;
        long long side;
    };

    static Failure refused(const char* text, long long value)
    {
        return failure(82, 0x0800, 1, 0x0701, 20027, {text, std::to_string(value)});
    }

    /// The low bits of a number, a negative one counting in two's complement.
    static long long bits(long long number, long long mask) { return number & mask; }

    static long long boardTypeOf(unsigned int upperThreeBits)
    {
        switch (upperThreeBits) {
        case 0:
            return 0;
        case 4:
            return 128;
        case 5:
            return 160;
        default:
            return 192;
        }
    }

    static Place place(unsigned int nodeId)
    {
        Place result = {};
        result.side = nodeId % 2;
        const unsigned int upper = nodeId >> 5;
        if (upper == 0 || upper == 6) {
            result.unit = nodeId & 0x0F;
        } else {
            result.unit = (nodeId >> 1) & 7;
        }
        if (nodeId < 128) {
            result.type = 0;
        } else if ((nodeId & 0x40) != 0) {
            result.type = 192;
        } else if ((nodeId & 0x20) != 0) {
            result.type = 160;
        } else {
            result.type = 128;
        }
        return result;
    }

    static long long nodeId(long long type, long long unit, long long side)
    {
        if (unit > 7) {
            throw refused("unit2NodeId(id)", unit);
        }
        if (side < 0 || side > 2) {
            throw refused("unit2NodeId(divSide)", side);
        }
        if (type == 0) {
            return bits(unit, 0xFF);
        }
        if (type == 192) {
            return bits(unit, 0x3F) | 0xC0;
        }
        if (type != 128 && type != 160) {
            throw refused("unit2NodeId(boardType)", type);
        }
        if (side == 2) {
            throw refused("unit2NodeId(divSide)", side);
        }
        // The mask of type 160 leaves out a bit that the type sets again.
        return type == 128 ? bits(unit * 2 + side, 0x7F) | 0x80
                           : bits(unit * 2 + side, 0x5F) | 0xA0;
    }

    static unsigned int nodeIdOf(long long nodeType, long long lunit)
    {
        switch (nodeType) {
        case 2:
            return static_cast<unsigned int>(bits(lunit >> 1, 0x0F));
        case 0:
        case 128:
        case 160:
            return static_cast<unsigned int>(nodeType | bits(lunit, 0x0F));
        case 1:
            return static_cast<unsigned int>(bits(lunit, 0x0F) | 0x80);
        default:
            return 0;
        }
    }

    Lines bmmIdOf(unsigned int liou) const
    {
        if (unitsPerBoard == 0) {
            return pairOf(0, 0);
        }
        const unsigned int bmmId = liou / unitsPerBoard;
        const unsigned int index = liou % unitsPerBoard;
        // The first board has its indexes the other way round.
        return pairOf(bmmId, bmmId == 0 ? (index == 0 ? 1 : 0) : index & 0xFF);
    }

    unsigned int liouOf(unsigned int bmmId, unsigned int index) const
    {
        if (bmmId == 0) {
            return index == 0 ? 1 : 0;
        }
        return (index + unitsPerBoard * bmmId) & 0xFF;
    }

    static unsigned int valueOf(const Bytes& bcd)
    {
        if (bcd.empty() || bcd.size() > 4) {
            return 0;
        }
        unsigned int value = 0;
        unsigned int weight = 1;
        for (const unsigned char byte : bcd) {
            value += (byte & 0x0F) * weight;
            value += (byte >> 4) * weight * 10;
            weight *= 100;
        }
        return value;
    }

    static Bytes sorted(Bytes ids)
    {
        std::size_t later = ids.size();
        std::size_t earlier = ids.size();
        for (std::size_t i = ids.size(); i > 0; --i) {
            if (ids[i - 1] == 0x81) {
                later = i - 1;
            }
            if (ids[i - 1] == 0x80) {
                earlier = i - 1;
            }
        }
        if (later < ids.size() && earlier < ids.size()) {
            ids[later] = 0x80;
            ids[earlier] = 0x81;
        }
        return ids;
    }

    Lines call(const Step& step)
    {
        const auto byte = [&step](std::size_t i) {
            return static_cast<unsigned int>(step.number(i) & 0xFF);
        };
        switch (step.operation) {
        case SET_UNITS_PER_BOARD:
            unitsPerBoard = static_cast<unsigned int>(step.number(0));
            return {};
        case BOARD_ID_TO_UNIT:
            return triple(boardTypeOf(byte(0) >> 5), byte(0) & 0x0F, 0);
        case NODE_ID_TO_LUNIT:
            return triple(byte(0) & 0xE0, byte(0) & 0x0F, 0);
        case NODE_ID_TO_UNIT: {
            const Place found = place(byte(0));
            return triple(found.type, found.unit, found.side);
        }
        case UNIT_TO_NODE_ID:
            return {fmt::format("node {}", nodeId(step.number(0), step.number(1), step.number(2)))};
        case LUNIT_TO_UNIT: {
            const Place found = place(nodeIdOf(step.number(0), step.number(1)));
            return triple(found.type, found.unit, found.side);
        }
        case LIOU_TO_BMM_ID:
            return bmmIdOf(byte(0));
        case BMM_ID_TO_LIOU:
            return {fmt::format("liou {}", liouOf(byte(0), byte(1)))};
        case NODE_ID_TO_BMM_ID:
            // The upper three bits are never 1, the only node type that has a board.
            return pairOf(UNWRITTEN_BYTE, UNWRITTEN_BYTE);
        case BCD_TO_HEX_VALUE:
            return {fmt::format("value {}", valueOf(step.bytes))};
        default:
            return {hex(sorted(step.bytes))};
        }
    }

    unsigned int unitsPerBoard = 4;
    Medium none;
};

constexpr long long LOWEST = -2147483647LL - 1;
constexpr long long HIGHEST = 2147483647LL;

long long anyUnit(Random& random)
{
    return random.oneIn(8) ? random.oneOf({LOWEST, LOWEST + 1, -128, -64, 255, 256, HIGHEST})
                           : random.between(-9, 18);
}

Steps generate(Random& random)
{
    Steps steps;
    for (int i = 0; i < 6; ++i) {
        Step step;
        step.operation = random.between(0, OPERATIONS - 1);
        switch (step.operation) {
        case SET_UNITS_PER_BOARD:
            step.numbers = {random.oneIn(6) ? random.oneOf({255, 256, 257, 1000})
                                            : random.between(0, 9)};
            break;
        case UNIT_TO_NODE_ID:
            step.numbers = {random.oneIn(5) ? anyUnit(random) : random.oneOf({0, 128, 160, 192}),
                            anyUnit(random),
                            random.oneIn(8) ? anyUnit(random) : random.between(-1, 3)};
            break;
        case LUNIT_TO_UNIT:
            step.numbers = {random.oneIn(3) ? random.between(-1, 256)
                                            : random.oneOf({0, 1, 2, 128, 160}),
                            random.oneIn(3) ? anyUnit(random) : random.between(0, 40)};
            break;
        case BCD_TO_HEX_VALUE:
            step.bytes = random.bytes(random.below(7));
            break;
        case SORT_BY_BMM_ID:
            step.bytes = random.bytes(random.below(7));
            for (unsigned char& id : step.bytes) {
                id = static_cast<unsigned char>(random.oneIn(4) ? id : random.oneOf({0x80, 0x81}));
            }
            break;
        default:
            step.numbers = {random.byte(), random.byte()};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"machine.logicalIOUnitsPerBoard =",
                                 "Util::boardId2Unit",
                                 "Util::nodeId2LUnit",
                                 "Util::nodeId2Unit",
                                 "Util::unit2NodeId",
                                 "Util::LUnit2Unit",
                                 "Util::liou2BmmId",
                                 "Util::bmmId2Liou",
                                 "Util::nodeId2BmmId",
                                 "Util::getBCDtoHexValue",
                                 "Util::sortByBmmId"};
    return callOf(names[step.operation], step);
}

TEST(NodeIdModel, ConversionsKeepTheirRules)
{
    Comparison comparison;
    comparison.library = [] { return std::make_unique<Library>(); };
    comparison.rules = [] { return std::make_unique<Rules>(); };
    comparison.generate = generate;
    comparison.print = print;
    compare(comparison, 20000, 71000);
}

}
