// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MULTIRECORDS_H
#define RECORDKIT_INSPECT_FRU_MULTIRECORDS_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/Value.h>
#include <recordkit/inspect/fru/MultiRecordRow.h>

namespace recordkit::inspect {

// The records of the multirecord area, decoded (IPMI FRU Information Storage Definition v1.0
// revision 1.3, sections 16 to 18; VITA 57.1 and 57.4; PICMG 3.0, AMC.0). The tables give the bytes
// of a record's data, which follows its header of five bytes. Numbers have their low byte first. A
// group, such as "feed", repeats: its fields are "feed1.max-external-current" and so on, and their
// bytes count from the group's first one.
//
// Power supply information, type 00h: "power-supply"
//
// | byte  | bits | field                            | unit | none  |
// |-------|------|----------------------------------|------|-------|
// | 0-1   | 11-0 | capacity                         | W    |       |
// | 2-3   |      | peak-va                          | VA   | FFFFh |
// | 4     |      | inrush-current                   | A    | FFh   |
// | 5     |      | inrush-interval                  | ms   |       |
// | 6-7   |      | input1-low, signed               | 10mV |       |
// | 8-9   |      | input1-high, signed              | 10mV |       |
// | 10-11 |      | input2-low, signed               | 10mV |       |
// | 12-13 |      | input2-high, signed              | 10mV |       |
// | 14    |      | frequency-low, 0 for DC          | Hz   |       |
// | 15    |      | frequency-high, 0 for DC         | Hz   |       |
// | 16    |      | dropout-tolerance                | ms   |       |
// | 17    | 0    | predictive-fail                  |      |       |
// |       | 1    | power-factor-correction          |      |       |
// |       | 2    | autoswitch                       |      |       |
// |       | 3    | hot-swap                         |      |       |
// |       | 4    | fail-signal                      |      |       |
// | 18-19 | 11-0 | peak-capacity                    | W    | FFFh  |
// |       |15-12 | hold-up-time                     | s    |       |
// | 20    | 7-4  | combined-voltage1                |      |       |
// |       | 3-0  | combined-voltage2                |      |       |
// | 21-22 |      | combined-capacity                | W    |       |
// | 23    |      | tachometer-threshold, 0 for none | /s   |       |
//
// Where byte 23 is not 0, a tachometer signals a failure, with one pulse per rotation, or two if
// bit 4 of byte 17 is set; otherwise a pin does, which is 1 for a failure, or 0 if that bit is set.
//
// DC output, types 01h and 09h: "dc-output", "extended-dc-output"; DC load, types 02h and 0Ah:
// "dc-load", "extended-dc-load"
//
// | byte  | bits | field of an output         | field of a load     | unit |
// |-------|------|----------------------------|---------------------|------|
// | 0     | 3-0  | output                     | output              |      |
// |       | 4    | current-unit, extended     |                     |      |
// |       | 7    | standby                    | current-unit, ext.  |      |
// | 1-2   |      | nominal-voltage            | nominal-voltage     | 10mV |
// | 3-4   |      | negative-deviation         | min-voltage         | 10mV |
// | 5-6   |      | positive-deviation         | max-voltage         | 10mV |
// | 7-8   |      | ripple                     | ripple              | mV   |
// | 9-10  |      | min-current                | min-current         | mA   |
// | 11-12 |      | max-current                | max-current         | mA   |
//
// Voltages are signed. Currents of the extended records count 10 mA, or 100 mA if their unit is
// set; their value here is in mA. In an image with a record of VITA, outputs have the names of its
// connectors.
//
// Management access, type 03h: "management-access". Byte 0 is "type", and chooses what the others
// are: 1 system-url, 2 system-name, 3 system-ping-address, 4 component-url, 5 component-name,
// 6 component-ping-address, all of them texts in Latin-1 up to a zero byte, or 7 system-guid.
//
// Base compatibility, type 04h, and extended compatibility, type 05h: "base-compatibility",
// "extended-compatibility"
//
// | byte | bits | field                            |
// |------|------|----------------------------------|
// | 0-2  |      | manufacturer                     |
// | 3    |      | entity                           |
// | 4    |      | base                             |
// | 5    | 6-0  | code-start                       |
// | 6-   |      | code-mask                        |
//
// Records of VITA, type FAh, manufacturer 0012A2h. "fmc" describes a mezzanine card: subtype 0,
// version 0 by VITA 57.1, version 1 by VITA 57.4. "fmc-i2c", subtype 1, lists its I2C devices as
// one text of 6-bit characters, shown as they are.
//
// | field             | version 0     | version 1                 |
// |-------------------|---------------|---------------------------|
// | manufacturer      | 0-2           | 0-2                       |
// | subtype           | 3 bits 7-4    | 3 bits 7-4                |
// | version           | 3 bits 3-0    | 3 bits 3-0                |
// | module-size       | 4 bits 7-6    | 4 bits 7-6                |
// | p1-connector      | 4 bits 5-4    | 4 bits 5-4, of P1 and P3  |
// | p2-connector      | 4 bits 3-2    | 4 bits 3-1, of P2 and P4  |
// | clock-direction   | 4 bit 1       | 4 bit 0                   |
// | p1-bank-a-signals | 5             | 5                         |
// | p1-bank-b-signals | 6             | 7-9 bits 5-0              |
// | p2-bank-a-signals | 7             | 6                         |
// | p2-bank-b-signals | 8             | 7-9 bits 11-6             |
// | p1-transceivers   | 9 bits 7-4    | 7-9 bits 17-12            |
// | p2-transceivers   | 9 bits 3-0    | 7-9 bits 23-18            |
// | tck-max           | 10 (MHz)      | 10 (MHz)                  |
//
// Records of PICMG, type C0h, manufacturer 00315Ah: manufacturer (bytes 0-2), record-id (3) and
// format (4), then by record id, in a format listed here:
//
// | id  | formats | record             | fields from byte 5 on                                  |
// |-----|---------|--------------------|--------------------------------------------------------|
// | 04h | 0       | backplane-links    | slot: channel-type 1, address 1, channel count 1, then |
// |     |         |                    | channel: 3 bytes, remote-slot bits 7-0, remote-channel |
// |     |         |                    | bits 12-8, local-channel bits 17-13                    |
// | 10h | 0       | address-table      | shelf-address-type 1, shelf-address 20, entry count 1, |
// |     |         |                    | then entry: address 1, site-number 1, site-type 1      |
// | 11h | 0       | power-distribution | feed count 1, then feed: max-external-current 2,       |
// |     |         |                    | max-internal-current 2 (0.1 A, FFFFh none),            |
// |     |         |                    | min-voltage 1 (0.5 V, without its sign), fru count 1,  |
// |     |         |                    | then fru: address 1, id 1                              |
// | 12h | 0       | shelf-activation   | readiness 1 (s), fru count 1, then fru: address 1,     |
// |     |         |                    | id 1, max-power 2 (W), configuration 1: delay bits 5-0 |
// |     |         |                    | (0.1 s), activation bit 6, deactivation bit 7          |
// | 13h | 0, 1    | shelf-manager-ip   | address 4, of format 1 also gateway 4, mask 4; the     |
// |     |         |                    | high byte first                                        |
// | 14h | 0       | board-links        | guid count 1, guid 16 each, then link: 4 bytes,        |
// |     |         |                    | channel bits 5-0, interface bits 7-6, ports bits 11-8, |
// |     |         |                    | type bits 19-12, extension bits 23-20, group bits 31-24|
// | 15h | 0       | radial-ipmb        | connector-definer 3, connector-version 2, hub count 1, |
// |     |         |                    | then hub: address 1, buses bits 1-0, link count 1,     |
// |     |         |                    | then link: address 1, entry 1                          |
// | 16h | 0       | module-current     | current 1 (0.1 A)                                      |
// | 17h | 0       | carrier-activation | max-internal-current 2 (0.1 A), readiness 1 (s),       |
// |     |         |                    | module count 1, then module: address 1, max-current 1  |
// |     |         |                    | (0.1 A), reserved 1                                    |
// | 18h | 0       | carrier-links      | resource: id bits 3-0, type bit 7, port count 1, then  |
// |     |         |                    | port: 3 bytes, remote-id bits 3-0, remote-type bit 7,  |
// |     |         |                    | remote bits 12-8, local bits 17-13                     |
// | 19h | 0       | amc-links          | guid count 1, guid 16 each, device-id bits 3-0,        |
// |     |         |                    | device-type bit 7, channel count 1, then channel:      |
// |     |         |                    | 3 bytes, lane0-port bits 4-0, lane1-port bits 9-5,     |
// |     |         |                    | lane2-port bits 14-10, lane3-port bits 19-15 (1Fh      |
// |     |         |                    | none), then link: 5 bytes, channel bits 7-0, lanes     |
// |     |         |                    | bits 11-8, type bits 19-12, extension bits 23-20,      |
// |     |         |                    | group bits 31-24, match bits 33-32                     |
// | 1Ah | 0       | carrier            | version-major bits 3-0, version-minor bits 7-4, site   |
// |     |         |                    | count 1, site 1 each                                   |
// | 1Bh | 0       | fan-geography      | fan count 1, then fan: address 1, id 1, site-number 1, |
// |     |         |                    | site-type 1                                            |
// | 2Ch | 0       | carrier-clock-links| resource count 1, then resource: id bits 3-0, type     |
// |     |         |                    | bits 7-6, channel count 1, then channel: local 1,      |
// |     |         |                    | remote 1, remote-id bits 3-0, remote-type bits 7-6     |
// | 2Dh | 0       | clock-configuration| device-id bits 3-0, device-type bits 7-6, clock count  |
// |     |         |                    | 1, then clock: id 1, activation bit 0, indirect count  |
// |     |         |                    | 1, direct count 1, then indirect: source bit 0, pll    |
// |     |         |                    | bit 1, depends-on 1; then direct: source bit 0, pll    |
// |     |         |                    | bit 1, family 1, accuracy 1, frequency 4,              |
// |     |         |                    | min-frequency 4, max-frequency 4 (Hz)                  |
//
// The number of elements of a group has the group's name with "-count". Any other record of
// PICMG is "picmg", any other of VITA "vita", both with what they start with and "data". Any other
// record of a manufacturer, types C0h to FFh, is "oem": manufacturer (bytes 0-2) and "data". Any
// other type is "other", with "data". GUIDs have the byte order of SMBIOS: the first three numbers
// have their low byte first.
//
// "byte17" is what no field covers of the byte at offset 17 of the data: bits that are reserved and
// set, or bytes after the last field.

/// The data of one record, and where it begins in its image.
struct MultiRecordData {
    unsigned char type = 0;
    unsigned int offset = 0;
    ByteView bytes;
};

/// A field of a record.
struct MultiRecordField {
    std::string name;        ///< as "capacity" or "feed1.fru2.address"
    unsigned int offset = 0; ///< in the image
    unsigned int width = 0;  ///< bytes
    unsigned int high = 0;   ///< the highest and the lowest bit of these bytes, taken as one number
    unsigned int low = 0;
    Value value;      ///< none if it is not specified
    std::string text; ///< the value as a person reads it, without its unit
    const char* unit = "";
    std::optional<MultiRecordRow> row = {}; ///< how the value is stored; none for "byte17"

    bool isBits() const { return low != 0 || high + 1 != 8 * width; }
};

/// A decoded record.
struct MultiRecord {
    std::string name; ///< its kind, and its number among those of this kind: "dc-output2"
    std::vector<MultiRecordField> fields;
    std::optional<MultiRecordField> rest = {}; ///< the field up to the end of the record, also an
                                               ///< empty one, which is not among the fields
    unsigned int missing = 0; ///< the size that its data should have; 0 if it is complete

    const MultiRecordField* findField(const std::string& fieldName) const;
};

/// The kind of a record: its name without its number.
std::string kindOf(const MultiRecord& record);

/// All records of an image, in their order.
std::vector<MultiRecord> decodeMultiRecords(const std::vector<MultiRecordData>& records);

/// Where DC loads together take more than the supply states: for each output number that both kinds
/// name, their largest currents; and the largest powers of all loads against the capacity of all
/// power supplies. These are notes, since an image may describe several boards.
std::vector<std::string> compareLoadAndSupply(const std::vector<MultiRecord>& records);

}

#endif
