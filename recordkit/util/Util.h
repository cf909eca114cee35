// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_UTIL_UTIL_H
#define RECORDKIT_UTIL_UTIL_H

#include <string>
#include <vector>

#include <recordkit/fru/FRUData.h>
#include <recordkit/platform/IPMIClientCommand.h>

namespace TAVLib::RecordKit {

/// Conversions between unit numbers, node ids and management-board ids, and processor names.
///
/// | bits of a node id | meaning                                                              |
/// |-------------------|----------------------------------------------------------------------|
/// | 7..5              | 000 system board, 100 board type 128, 101 160, 110 and 111 192       |
/// | 3..0              | unit number for 000 and 110                                          |
/// | 3..1              | unit number for the others                                           |
/// | 0                 | division side                                                        |
///
/// The processor functions accept a FRUData opened on a processor ROM; its exceptions pass through.
/// Their tables are CSV files below /etc/tav/common of the system root: the first column is the
/// processor code (area 51, item 59), the last one the value. A missing table or record is not a
/// failure; a record that is not valid CSV is traced (module 82, location 0x0800) and counts as
/// missing.
class RECORDKIT_API Util {
public:
    using BoardType = ipmiclient::IPMIClientCommand::BoardType;
    using NodeType = ipmiclient::IPMIClientCommand::NodeType;

    /// How a processor's name is shown.
    enum DISPLAY_MODE : int {
        DISPLAY_MODE_MARKUP = 0, ///< with "&reg;", speed and cache
        DISPLAY_MODE_PLAIN = 1,  ///< with "(R)", only the name
    };

    static void boardId2Unit(unsigned char boardId, BoardType& type, int& unit);
    /// Sets `type` to bits 7..5 unchanged, whether or not NodeType names the value.
    static void nodeId2LUnit(unsigned char nodeId, NodeType& type, int& lunit);
    static void nodeId2Unit(unsigned char nodeId, BoardType& type, int& unit, int& divSide);
    /// Throws PException (module 82, location 0x0800, action 1, detail 0x0701, message 20027) with
    /// "unit2NodeId(id)" for a unit above 7, "unit2NodeId(divSide)" for a side that the type does
    /// not have, "unit2NodeId(boardType)" for another type, and the value.
    static unsigned char unit2NodeId(BoardType type, int unit, int divSide);
    static void LUnit2Unit(NodeType ntype, int lunit, BoardType& type, int& unit, int& divSide);

    /// Logical I/O unit to management board and index and back; on board 0 the indexes 0 and 1 are
    /// swapped. A machine without logical I/O units returns (0, 0).
    static void liou2BmmId(unsigned char liou, unsigned char& bmmId, unsigned char& index);
    static unsigned char bmmId2Liou(unsigned char bmmId, unsigned char index);
    /// Never writes its outputs (see Util.cpp for why).
    static void nodeId2BmmId(unsigned char nodeId, unsigned char& bmmId, unsigned char& index);

    /// Decimal value of 1 to 4 bytes of packed BCD, lowest digits first; 0 for other lengths.
    static unsigned int getBCDtoHexValue(std::string bcd);
    /// Swaps the first 0x81 and the first 0x80 if both are present.
    static void sortByBmmId(std::vector<unsigned char>& ids);

    /// Cache size in kilobytes.
    static unsigned int getCPUCache(FRUData& fru);
    static unsigned char getCPUModelType(FRUData& fru);
    /// From cpu_stepping.csv; one blank if it is missing.
    static std::string getCPUStepping(FRUData& fru);
    /// From cpu_ca_number_sb3.csv for system boards of type 2, cpu_ca_number.csv for others: 0 if a
    /// part number was found and stored.
    static int convertCPUPartNumber(std::string code, std::string& partNumber, unsigned char sbNo);
    /// From the tables, or the ROM's own.
    static std::string getCPUPartNumber(FRUData& fru, unsigned char sbNo);
    /// `text` with every "&reg;" replaced by "(R)".
    static std::string replaceRegisteredTrademark(std::string& text);
    /// From cpu_processor_number.csv, or a general name; with DISPLAY_MODE_MARKUP the general name
    /// includes speed and cache.
    static std::string getCPUModelName(FRUData& fru, DISPLAY_MODE mode);
};

}

#endif
