// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_REPORT_IMAGEKIND_H
#define RECORDKIT_INSPECT_REPORT_IMAGEKIND_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

/// What a file contains, by its bytes. The first row whose condition is true decides. Text comes
/// first: no binary kind consists of printable characters only. Then come marks that other bytes
/// hardly ever have, then the name, which is all that a record has. What is recognised in spite of
/// damage is last, so that a damaged image neither hides a whole one of another kind nor is hidden
/// itself.
///
/// | kind          | what must be true                                                        |
/// |---------------|--------------------------------------------------------------------------|
/// | EMPTY         | no bytes                                                                 |
/// | RECORD        | only text, but named as below                                            |
/// | EVENT_RECORDS | text: lines of hex digits that are event records, or JSON with their     |
/// |               | images or records; as many of them look like events as of binary ones    |
/// |               | below                                                                    |
/// | SPD           | text: a hex dump of bytes that are SPD data as below                     |
/// | TEXT          | other UTF-8 text without control characters                              |
/// | FRU           | header with format 01h, pad byte 00h and right checksum, and a whole     |
/// |               | area or a multirecord with right checksums                               |
/// | CPU_ROM       | three right checksums of header and blocks, of bytes that are not all 0  |
/// | SPD           | known memory type, and the right CRC of a block                          |
/// | SETTING_INDEX | 432 bytes, all of them or from byte 512 on: of the entries that are not  |
/// |               | all 0, more have a right checksum and their own number than not          |
/// | EFI_INDEX     | printable serial of 5 characters or more, flags of 0 and 1, zeroes up to |
/// |               | byte 255, right checksum                                                 |
/// | EVENT_LOG     | slots with events, at least half of which look like one, a system event  |
/// |               | among them or four slots; or 110400 bytes FFh                            |
/// | SDR           | records of known versions and types: one, or several and then only bytes |
/// |               | 00h and FFh                                                              |
/// | EVENT_RECORDS | records of 16 bytes that all look like events, a system event among them |
/// |               | or four with rising ids                                                  |
/// | RECORD        | the name is that of a class, a dot and more, and the class takes all     |
/// |               | bytes                                                                    |
/// | ERASED        | only bytes 00h, or only bytes FFh                                        |
/// | FRU           | as above with one byte of the header replaced                            |
/// | EFI_INDEX     | as above with one byte of the record replaced                            |
/// | SPD           | known memory type; capacity, cycle and two latencies that modules have   |
/// | SDR           | two records as above or more, which are at least half of the bytes       |
/// | EVENT_RECORDS | two system events or more are at least half of the records of 16 bytes   |
/// | FRU           | header as above: a repository can begin with these bytes, too            |
/// | UNKNOWN       | none of these                                                            |
///
/// FRU images, ROMs and indexes have at most 64 KiB, SPD data 4 KiB, repositories 1 MiB, event logs
/// 65536 slots and lists 65535 records, as many as there are record ids.
enum class ImageKind {
    EVENT_LOG,
    EVENT_RECORDS,
    FRU,
    SPD,
    SDR,
    CPU_ROM,
    SETTING_INDEX,
    EFI_INDEX,
    RECORD,
    TEXT,
    ERASED,
    EMPTY,
    UNKNOWN,
};

/// "event log", "FRU image", "not recognised".
const char* imageKindName(ImageKind kind);

struct Recognised {
    ImageKind kind = ImageKind::UNKNOWN;
    const RecordClass* recordClass = nullptr; ///< of a RECORD
};

/// Recognises a file by its content; its name, with or without folders, decides nothing but the
/// class of a record. Takes time in proportion to the bytes.
Recognised recognise(const std::string& name, ByteView content);

}

#endif
