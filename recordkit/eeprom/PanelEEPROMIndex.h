// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_PANELEEPROMINDEX_H
#define RECORDKIT_EEPROM_PANELEEPROMINDEX_H

#include <recordkit/eeprom/EEPROMIndex.h>
#include <recordkit/serial/ByteOrder.h>

namespace TAVLib::RecordKit {

/// One entry of the index of setting areas: 27 entries on EEPROM 4 from byte 512 on, and in the
/// index file from its first byte on.
///
/// | byte | width | meaning                                                        |
/// |------|-------|----------------------------------------------------------------|
/// | 0    | 1     | 1: the area contains data                                      |
/// | 1    | 1     | carried unchanged                                              |
/// | 2    | 1     | 0: the area is on EEPROM 4; any other value: on EEPROM 5       |
/// | 3    | 1     | area number                                                    |
/// | 4    | 2     | area offset, high byte first                                   |
/// | 6    | 2     | area size in bytes, high byte first                            |
/// | 8    | 7     | carried unchanged                                              |
/// | 15   | 1     | checksum: all bytes add up to 0 modulo 256                     |
///
/// A new entry is all zero. Nothing is traced or thrown.
class RECORDKIT_API PanelEEPROMIndex : public EEPROMIndex {
public:
    enum Eeprom { FIRST_EEPROM = 4, SECOND_EEPROM = 5 };
    enum Offset {
        VALID = 0,
        SELECTOR = 2,
        NUMBER = 3,
        OFFSET = 4,
        AREA_SIZE = 6,
        CHECKSUM = 15,
        SIZE = 16,
    };

    ~PanelEEPROMIndex() override;

    const char* getIndexDataFileName() const override
    {
        return "/etc/default/config/panelindex.dat";
    }
    unsigned int getIndexOffset() const override { return 512; }
    unsigned int getIndexSize() const override { return SIZE; }
    int getIndexEEPROMID() const override { return FIRST_EEPROM; }
    int getIndexHeadNumber() const override { return 0; }
    int getIndexLastNumber() const override { return 26; }
    unsigned char* getIndexData() override { return image; }

    bool isIndex() const override { return image[VALID] == 1; }
    /// Does not change the checksum.
    void setIndexValidFlag(bool valid) override { image[VALID] = valid ? 1 : 0; }
    int getAreaEEPROMID() const override
    {
        return image[SELECTOR] == 0 ? FIRST_EEPROM : SECOND_EEPROM;
    }
    unsigned char getAreaNumber() const override { return image[NUMBER]; }
    unsigned short getAreaOffset() const override { return readBE16(image + OFFSET); }
    unsigned short getAreaSize() const override { return readBE16(image + AREA_SIZE); }
    void setChecksum() override;
    bool isChecksum() const override;

private:
    unsigned char image[SIZE] = {};
};

}

#endif
