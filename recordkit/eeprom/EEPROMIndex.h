// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EEPROMINDEX_H
#define RECORDKIT_EEPROM_EEPROMINDEX_H

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

/// One entry of an index of EEPROM areas. The order of the virtual operations is part of the binary
/// interface.
class RECORDKIT_API EEPROMIndex {
public:
    virtual ~EEPROMIndex();

    /// The file with the master copy of the index.
    virtual const char* getIndexDataFileName() const = 0;
    /// Offset of entry 0 on the index's EEPROM, and the number of bytes of an entry.
    virtual unsigned int getIndexOffset() const = 0;
    virtual unsigned int getIndexSize() const = 0;
    virtual int getIndexEEPROMID() const = 0;
    /// Numbers of the first and the last entry.
    virtual int getIndexHeadNumber() const = 0;
    virtual int getIndexLastNumber() const = 0;
    /// The bytes of the entry, for reading and writing.
    virtual unsigned char* getIndexData() = 0;

    /// Whether the entry is in use.
    virtual bool isIndex() const = 0;
    virtual void setIndexValidFlag(bool valid) = 0;
    /// The place of the area.
    virtual int getAreaEEPROMID() const = 0;
    virtual unsigned char getAreaNumber() const = 0;
    virtual unsigned short getAreaOffset() const = 0;
    virtual unsigned short getAreaSize() const = 0;
    virtual void setChecksum() = 0;
    virtual bool isChecksum() const = 0;
};

}

#endif
