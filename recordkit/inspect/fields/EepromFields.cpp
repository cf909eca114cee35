// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/fields/Registry.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using Panel = PanelEEPROMIndex;
using Efi = EFIBackupEEPROMIndex;

/// An index record, which has bytes of its own but is not a data object, as one.
template <typename Index, unsigned int SIZE> class IndexImage
    : public TAVLib::FixedSizeSerializableObject {
public:
    Index& getIndex() const { return index; }
    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return index.getIndexData(); }

private:
    mutable Index index;
};
using PanelImage = IndexImage<Panel, Panel::SIZE>;
using EfiImage = IndexImage<Efi, Efi::INDEX_SIZE>;

template <auto Get> Value askPanel(const Record& record, const Spot&)
{
    return toValue(std::invoke(Get, objectOf<PanelImage>(record).getIndex()));
}

// clang-format off
constexpr Field PANEL_INDEX[] = {
    Field{"valid", bytesAt(Panel::VALID), askPanel<&Panel::isIndex>}.says("whether the area contains data"),
    Field{"eeprom", bytesAt(Panel::SELECTOR), askPanel<&Panel::getAreaEEPROMID>}.says("EEPROM of the area"),
    {"area_number", bytesAt(Panel::NUMBER), askPanel<&Panel::getAreaNumber>},
    {"area_offset", bytesAt(Panel::OFFSET, 2), askPanel<&Panel::getAreaOffset>},
    {"area_size", bytesAt(Panel::AREA_SIZE, 2), askPanel<&Panel::getAreaSize>},
    {"checksum", bytesAt(Panel::CHECKSUM), number, asHex},
};

constexpr List EEPROMS = {nullptr, Efi::FLAGS, Efi::GROUP_SIZE, always<Efi::PARTITIONS * Efi::BANKS>, Efi::FIRST_AREA_EEPROM};
constexpr Field EFI_INDEX[] = {
    {"checksum", bytesAt(Efi::CHECKSUM), number, asHex},
    {"serial", bytesAt(Efi::SERIAL, Efi::SERIAL_SIZE), text},
    Field{"eeprom{}_flags", bytesAt(0, Efi::GROUP_SIZE), hexDigits}.in(EEPROMS).says("blocks pending erasure, a hex digit each"),
};

constexpr RecordClass CLASSES[] = {
    describe<PanelImage>("PanelEEPROMIndex", {16, 16}, "index entry of a setting area", PANEL_INDEX),
    describe<EfiImage>("EFIBackupEEPROMIndex", {144, 144}, "index record of the EFI backup", EFI_INDEX),
};
// clang-format on

}

constexpr RecordClasses EEPROM_CLASSES = CLASSES;

}
