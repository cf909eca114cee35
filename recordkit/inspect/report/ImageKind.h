// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_REPORT_IMAGEKIND_H
#define RECORDKIT_INSPECT_REPORT_IMAGEKIND_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

/// What a file contains, by its bytes. The first row whose condition is true decides. Marks that
/// bytes of another kind have by chance in fewer than one of 100,000 files come first, then the
/// name, and last what is recognised in spite of damage: so a damaged image is never taken for
/// another kind that is undamaged, and never hidden. Text is decided before that, since no binary
/// kind is only printable characters.
///
/// | kind          | what must be true |
/// |---------------|-------------------------------------------------------------------------------|
/// | EMPTY         | no bytes | | RECORD        | only text, of which a record is made as below |
/// | EVENT_RECORDS | text: lines of hex digits that are all event records, or JSON with such | | |
/// images or records                                                             | | SPD | text: a
/// hex dump of bytes that are SPD data as below                          | | TEXT          | other
/// UTF-8 text without control characters                                   | | FRU           |
/// header: format 01h, pad byte 00h, right checksum                              | | CPU_ROM |
/// header and blocks have three right checksums or more, of bytes that are not 0 | | SPD | known
/// memory type, and the right CRC of a block                               | | SETTING_INDEX | 432
/// bytes, or 432 from byte 512 on: of the entries that are not 0, more have  | |               |
/// the right checksum and their own number than not                              | | EFI_INDEX |
/// printable serial of 5 characters or more; flags of 0 and 1; zeroes up to byte | | | 256; right
/// checksum                                                           | | EVENT_LOG     | slots
/// with events, at least half of which look like one; or 110400 bytes FFh  | | SDR           | only
/// records of known versions and types, then only bytes 00h and FFh         | | EVENT_RECORDS |
/// records of 16 bytes that all look like events, one system event among them or | | | four with
/// rising ids                                                          | | RECORD        | the name
/// begins with that of a class and a dot, and the class takes all bytes | | ERASED        | only
/// bytes 00h, or only bytes FFh                                             | | FRU           |
/// with one byte of the header replaced its checksum is right, and it has a      | | | whole area
/// or a multirecord with right checksums                              | | EFI_INDEX     | so with
/// one byte of the index replaced                                        | | SPD           | size,
/// memory type, revision and capacity are those of a module                | | SDR           | two
/// records or more as above are at least half of the bytes                   | | UNKNOWN       |
/// none of these                                                                 |
///
/// FRU images, ROMs and indexes have at most 64 KiB, SPD data 4 KiB, repositories 1 MiB, event
/// logs 65536 slots and lists 65535 records, which is as many as there are record ids.
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
