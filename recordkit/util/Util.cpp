// SPDX-License-Identifier: Apache-2.0
#include <recordkit/util/Util.h>

#include <algorithm>
#include <boost/tokenizer.hpp>

#include <recordkit/platform/CommonUtil.h>
#include <recordkit/platform/CsvInfoAccess.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

using ipmiclient::IPMIClientCommand;

namespace {

constexpr const char* TABLE_FOLDER = "/etc/tav/common/";
constexpr const char* STEPPING_TABLE = "cpu_stepping.csv";
constexpr const char* PART_NUMBER_TABLE = "cpu_ca_number.csv";
constexpr const char* PART_NUMBER_TABLE_SB3 = "cpu_ca_number_sb3.csv";
constexpr const char* MODEL_NAME_TABLE = "cpu_processor_number.csv";

constexpr int HIGHEST_UNIT = 7;
constexpr unsigned int UNDIVIDED = 2;

/// Bits 7..5 of a node id.
constexpr unsigned char TYPE_BITS = 0xE0;
constexpr unsigned char MMB_NODE = 0xC0;
constexpr unsigned char UNIT_BITS = 0x0F;

/// The last field of a processor code's record, which is the code itself in a record of one field;
/// empty when there is no record.
std::string lookUp(const char* fileName, const std::string& code)
{
    CsvInfoAccess table(systemRoot() + TABLE_FOLDER, fileName);
    std::string record;
    if (table.isFault() || !table.searchRecord(0, code, record)) {
        return "";
    }
    try {
        using Separator = boost::escaped_list_separator<char>;
        const boost::tokenizer<Separator> fields(record, Separator('\\', ',', '"'));
        std::string value;
        for (const std::string& field : fields) {
            value = field;
        }
        return value;
    } catch (const boost::escaped_list_error& e) {
        traceUtilError((std::string(fileName) + ": " + e.what()).c_str());
        return "";
    }
}

std::string itemOf(FRUData& fru, FRU_AREA area, FRU_ITEM item)
{
    std::string value;
    fru.getItem(area, item, value, FRUArea::CSUM_CHECK);
    return value;
}

std::string processorCode(FRUData& fru)
{
    return itemOf(fru, FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SIGNATURE);
}

}

void Util::boardId2Unit(unsigned char boardId, BoardType& type, int& unit)
{
    unit = boardId & UNIT_BITS;
    switch (boardId >> 5) {
    case 0:
        type = IPMIClientCommand::BOARD_SB;
        break;
    case 4:
        type = IPMIClientCommand::BOARD_IOU;
        break;
    case 5:
        type = IPMIClientCommand::BOARD_GSPB;
        break;
    default:
        type = IPMIClientCommand::BOARD_MMB;
        break;
    }
}

void Util::nodeId2LUnit(unsigned char nodeId, NodeType& type, int& lunit)
{
    type = static_cast<NodeType>(nodeId & TYPE_BITS);
    lunit = nodeId & UNIT_BITS;
}

void Util::nodeId2Unit(unsigned char nodeId, BoardType& type, int& unit, int& divSide)
{
    divSide = get_bit(nodeId, 0, 1);
    const unsigned char kind = nodeId & TYPE_BITS;
    // 111 has the type of 110, but its unit number is where that of the divided boards is.
    unit = kind == 0 || kind == MMB_NODE ? nodeId & UNIT_BITS : get_bit(nodeId, 1, 3);
    if (get_bit(nodeId, 7, 1) == 0) {
        type = IPMIClientCommand::BOARD_SB;
    } else if (get_bit(nodeId, 6, 1) != 0) {
        type = IPMIClientCommand::BOARD_MMB;
    } else {
        type = get_bit(nodeId, 5, 1) != 0 ? IPMIClientCommand::BOARD_GSPB
                                          : IPMIClientCommand::BOARD_IOU;
    }
}

unsigned char Util::unit2NodeId(BoardType type, int unit, int divSide)
{
    if (unit > HIGHEST_UNIT) {
        throwUtilError("unit2NodeId(id)", unit);
    }
    const auto side = static_cast<unsigned int>(divSide);
    if (side > UNDIVIDED) {
        throwUtilError("unit2NodeId(divSide)", divSide);
    }
    const auto number = static_cast<unsigned int>(unit);
    switch (type) {
    case IPMIClientCommand::BOARD_SB:
        return static_cast<unsigned char>(number);
    case IPMIClientCommand::BOARD_IOU:
    case IPMIClientCommand::BOARD_GSPB:
        if (side == UNDIVIDED) {
            throwUtilError("unit2NodeId(divSide)", divSide);
        }
        // 0x5F clears bit 5 of the sum before the type bits are set, for GSPB boards only.
        return static_cast<unsigned char>(type == IPMIClientCommand::BOARD_IOU
                                              ? ((number * 2 + side) & 0x7F) | 0x80
                                              : ((number * 2 + side) & 0x5F) | 0xA0);
    case IPMIClientCommand::BOARD_MMB:
        return static_cast<unsigned char>((number & 0x3F) | MMB_NODE);
    default:
        throwUtilError("unit2NodeId(boardType)", type);
    }
}

void Util::LUnit2Unit(NodeType ntype, int lunit, BoardType& type, int& unit, int& divSide)
{
    const auto number = static_cast<unsigned int>(lunit);
    unsigned int nodeId = 0;
    switch (ntype) {
    case IPMIClientCommand::NODE_LSB:
        nodeId = number >> 1 & UNIT_BITS;
        break;
    case IPMIClientCommand::NODE_SB:
    case IPMIClientCommand::NODE_IOU:
    case IPMIClientCommand::NODE_GSPB:
        nodeId = static_cast<unsigned int>(ntype) | (number & UNIT_BITS);
        break;
    case IPMIClientCommand::NODE_LIOU:
        nodeId = (number & UNIT_BITS) | 0x80;
        break;
    default:
        break;
    }
    nodeId2Unit(static_cast<unsigned char>(nodeId), type, unit, divSide);
}

void Util::liou2BmmId(unsigned char liou, unsigned char& bmmId, unsigned char& index)
{
    const int units = CommonUtil::getMaxUnitNum(CommonUtil::LOGICAL_IO_UNITS);
    if (units <= 0) {
        bmmId = 0;
        index = 0;
        return;
    }
    bmmId = static_cast<unsigned char>(liou / units);
    index = static_cast<unsigned char>(liou % units);
    if (bmmId == 0) {
        index = index == 0 ? 1 : 0;
    }
}

unsigned char Util::bmmId2Liou(unsigned char bmmId, unsigned char index)
{
    if (bmmId == 0) {
        return index == 0 ? 1 : 0;
    }
    const int units = CommonUtil::getMaxUnitNum(CommonUtil::LOGICAL_IO_UNITS);
    return static_cast<unsigned char>(index + static_cast<unsigned int>(units) * bmmId);
}

void Util::nodeId2BmmId(unsigned char nodeId, unsigned char& bmmId, unsigned char& index)
{
    NodeType type = IPMIClientCommand::NODE_SB;
    int lunit = 0;
    nodeId2LUnit(nodeId, type, lunit);
    // A node id's type is a multiple of 32, so this is never true; callers rely on their ids
    // staying unchanged.
    if (type == IPMIClientCommand::NODE_LIOU) {
        liou2BmmId(static_cast<unsigned char>(lunit), bmmId, index);
    }
}

unsigned int Util::getBCDtoHexValue(std::string bcd)
{
    constexpr std::size_t LONGEST = 4;
    if (bcd.size() > LONGEST) {
        return 0;
    }
    unsigned int value = 0;
    unsigned int weight = 1;
    for (const char character : bcd) {
        const auto byte = static_cast<unsigned char>(character);
        value += (get_bit(byte, 0, 4) + get_bit(byte, 4, 4) * 10U) * weight;
        weight *= 100;
    }
    return value;
}

void Util::sortByBmmId(std::vector<unsigned char>& ids)
{
    const auto master = std::find(ids.begin(), ids.end(), 0x81);
    const auto other = std::find(ids.begin(), ids.end(), 0x80);
    if (master != ids.end() && other != ids.end()) {
        std::iter_swap(master, other);
    }
}

unsigned int Util::getCPUCache(FRUData& fru)
{
    // getItem has already swapped the bytes; they are read lowest byte first again, because the
    // ROMs are filled that way.
    const std::string bytes = itemOf(fru, FRU_AREA_CPU_CACHE, FRU_ITEM_CPU_CACHE_SIZE);
    std::vector<unsigned char> size(bytes.begin(), bytes.end());
    size.resize(4);
    return readLE32(size.data());
}

unsigned char Util::getCPUModelType(FRUData& fru)
{
    return static_cast<unsigned char>(itemOf(fru, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_MODEL).at(0));
}

std::string Util::getCPUStepping(FRUData& fru)
{
    const std::string stepping = lookUp(STEPPING_TABLE, processorCode(fru));
    return stepping.empty() ? " " : stepping;
}

int Util::convertCPUPartNumber(std::string code, std::string& partNumber, unsigned char sbNo)
{
    constexpr unsigned char TYPE_KIND = 3;
    constexpr int SB3 = 2;
    const bool isSB3 = CommonUtil::getSBBoardType(sbNo, TYPE_KIND) == SB3;
    const std::string found = lookUp(isSB3 ? PART_NUMBER_TABLE_SB3 : PART_NUMBER_TABLE, code);
    if (found.empty()) {
        return -1;
    }
    partNumber = found;
    return 0;
}

std::string Util::getCPUPartNumber(FRUData& fru, unsigned char sbNo)
{
    std::string partNumber;
    if (convertCPUPartNumber(processorCode(fru), partNumber, sbNo) == 0) {
        return partNumber;
    }
    return itemOf(fru, FRU_AREA_CPU_PART_NUMBER, FRU_ITEM_CPU_PART_NUMBER);
}

std::string Util::replaceRegisteredTrademark(std::string& text)
{
    const std::string markup = "&reg;";
    std::string plain = text;
    for (std::size_t at = plain.find(markup); at != std::string::npos;
         at = plain.find(markup, at)) {
        plain.replace(at, markup.size(), "(R)");
    }
    return plain;
}

std::string Util::getCPUModelName(FRUData& fru, DISPLAY_MODE mode)
{
    const bool isMarkup = mode == DISPLAY_MODE_MARKUP;
    std::string name = lookUp(MODEL_NAME_TABLE, processorCode(fru));
    if (!name.empty()) {
        return isMarkup ? name : replaceRegisteredTrademark(name);
    }
    name = "Intel&reg; Xeon&reg; Processor ";
    if (!isMarkup) {
        return replaceRegisteredTrademark(name);
    }
    const unsigned int speed =
        getBCDtoHexValue(itemOf(fru, FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SPEED)) / 10 * 10;
    const unsigned int hundredths = speed % 1000 / 10;
    // The name itself ends in a blank: displays are laid out for two of them.
    return name + ' ' + std::to_string(speed / 1000) + (hundredths < 10 ? ".0" : ".") +
           std::to_string(hundredths) + " GHz " + std::to_string(getCPUCache(fru) >> 10) + "MB";
}

}
