// SPDX-License-Identifier: Apache-2.0
// Where the members of the classes lie that callers on the 32-bit board compiled in. Compiled for
// the board without access control, and never run: every assertion is the compiler's.
#include <cstddef>

#include <recordkit/fru/FRUData.h>
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>

using namespace TAVLib::RecordKit;

static_assert(sizeof(void*) == 4 && sizeof(std::string) == 24, "a 32-bit target");

static_assert(offsetof(SELEntry, image) == 4 && sizeof(SELEntry::image) == 18, "");
static_assert(offsetof(SELEntry, recordLength) == 24, "");
static_assert(sizeof(SELEntry) == 28, "");

static_assert(offsetof(OEMSELEntry, extended) == 28 && sizeof(OEMSELEntry::extended) == 56, "");
static_assert(offsetof(OEMSELEntry, extendedLength) == 84, "");
static_assert(sizeof(OEMSELEntry) == 88, "");

static_assert(offsetof(BMCSELEntry, block) == 88 && sizeof(BMCSELEntry::block) == 112, "");
static_assert(offsetof(BMCSELEntry, blockLength) == 200, "");
static_assert(sizeof(BMCSELEntry) == 204, "");

static_assert(offsetof(BMCSELEntryMessage, trailer) == 204, "");
static_assert(sizeof(BMCSELEntryMessage::trailer) == 8, "");
static_assert(offsetof(BMCSELEntryMessage, trailerLength) == 212, "");
static_assert(sizeof(BMCSELEntryMessage) == 216, "");

static_assert(offsetof(SELEntryLongText, buffer) == 4 && sizeof(SELEntryLongText::buffer) == 80,
              "");
static_assert(offsetof(SELEntryLongText, validLength) == 84, "");
static_assert(offsetof(SELEntryLongText, text) == 88, "");
static_assert(sizeof(SELEntryLongText) == 112, "");

static_assert(offsetof(BMCLog, buffer) == 4 && sizeof(BMCLog::buffer) == 136, "");
static_assert(offsetof(BMCLog, validLength) == 140 && sizeof(BMCLog) == 144, "");

static_assert(offsetof(BMCMemoryImage, buffer) == 4 && sizeof(BMCMemoryImage::buffer) == 132, "");
static_assert(offsetof(BMCMemoryImage, validLength) == 136 && sizeof(BMCMemoryImage) == 140, "");

static_assert(offsetof(FRUMember, typelength) == 4 && offsetof(FRUMember, data) == 8, "");
static_assert(offsetof(FRUMember, item) == 32 && offsetof(FRUMember, hasTypeLength) == 36, "");
static_assert(offsetof(FRUMember, length) == 38 && sizeof(FRUMember) == 40, "");

// A reference has no offset to ask for: the device's is what lies between its neighbours.
static_assert(offsetof(FRUArea, offset) == 8 && offsetof(FRUArea, members) == 12, "");
static_assert(offsetof(FRUArea, size) == 24 && offsetof(FRUArea, areaId) == 28, "");
static_assert(offsetof(FRUArea, dirty) == 32 && sizeof(FRUArea) == 36, "");

static_assert(offsetof(FRUData, areas) == 4 && sizeof(FRUData::areas) == 24, "");
static_assert(offsetof(FRUData, cpu) == 32 && sizeof(FRUData) == 36, "");
