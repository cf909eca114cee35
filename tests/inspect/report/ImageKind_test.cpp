// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/ImageKind.h>

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "support/Answers.h"
#include "support/Bytes.h"
#include "support/EventFiles.h"
#include "support/Failures.h"
#include "support/FruImages.h"
#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;
namespace fs = std::filesystem;

namespace recordkit::inspect {

void PrintTo(ImageKind kind, std::ostream* out)
{
    *out << imageKindName(kind);
}

}

namespace {

const std::string EXAMPLES = RECORDKIT_SOURCE "/examples";

ImageKind kindOf(const Bytes& bytes, const std::string& name = "file.bin")
{
    return recognise(name, bytes).kind;
}

ImageKind kindOfText(const std::string& text, const std::string& name = "file.txt")
{
    return recognise(name, text).kind;
}

Bytes contentOfFile(const fs::path& path)
{
    return textBytes(contentOf(path.string()));
}

/// The files of a folder and its subfolders, by their paths in it.
std::map<std::string, Bytes> filesOf(const std::string& folder)
{
    std::map<std::string, Bytes> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files[fs::relative(entry.path(), folder).string()] = contentOfFile(entry.path());
        }
    }
    return files;
}

/// What a file of the examples is, by its path.
ImageKind expectedOf(const std::string& path)
{
    const auto isIn = [&path](const char* text) { return path.find(text) != std::string::npos; };
    const std::string extension = fs::path(path).extension().string();
    if (isIn("repository.ipmitool.txt")) {
        return ImageKind::UNKNOWN; // ipmitool printed bytes as they are
    }
    if (extension == ".txt" || extension == ".md" || extension == ".csv" || extension == ".rules" ||
        extension == ".cpp" || extension == ".h") {
        return ImageKind::TEXT;
    }
    const std::pair<const char*, ImageKind> kinds[] = {
        {"bmc_sel", ImageKind::EVENT_LOG},
        {"sel/", ImageKind::EVENT_RECORDS},
        {"fru/", ImageKind::FRU},
        {"spd/", ImageKind::SPD},
        {"sdr", ImageKind::SDR},
        {"panelindex.dat", ImageKind::SETTING_INDEX},
        {"eeprom4.bin", ImageKind::SETTING_INDEX},
        {"eeprom10.bin", ImageKind::EFI_INDEX},
        {"eeprom/", ImageKind::UNKNOWN},
        {"rom/", ImageKind::CPU_ROM},
        {"cpu/", ImageKind::CPU_ROM},
        {"boards/", ImageKind::RECORD},
        {"firmware/", ImageKind::RECORD},
    };
    for (const auto& [text, kind] : kinds) {
        if (isIn(text)) {
            return kind;
        }
    }
    return ImageKind::UNKNOWN;
}

/// Every image with each of its first bytes changed in several ways: still of its kind, or of none.
/// Returns how often it was of none.
unsigned int damageEach(const Bytes& image, std::size_t count, ImageKind kind)
{
    unsigned int unknown = 0;
    for (std::size_t at = 0; at < count; ++at) {
        for (const unsigned int change : {0x01U, 0x80U, 0xFFU, 0x10U, 0x5AU}) {
            Bytes damaged = image;
            damaged[at] = static_cast<unsigned char>(damaged[at] ^ change);
            const ImageKind found = kindOf(damaged);
            unknown += found == ImageKind::UNKNOWN ? 1 : 0;
            if (found != ImageKind::UNKNOWN) {
                EXPECT_EQ(found, kind) << "byte " << at << " ^ " << change;
            }
        }
    }
    return unknown;
}

/// An image of EEPROM 10 of some system, with two blocks that are pending.
Bytes efiIndex(std::size_t size = 65536)
{
    Bytes index(143, 0);
    put(index, 1, textBytes("CH26A0001700"));
    put(index, 20, {0x10, 0x01});
    Bytes summedIndex = summed(index);
    std::rotate(summedIndex.begin(), summedIndex.end() - 1, summedIndex.end());
    summedIndex.resize(size, 0);
    return summedIndex;
}

/// One entry of the index of setting areas, not in use.
Bytes settingEntry(unsigned char number)
{
    return summed({0, 0, 0, number, 4, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
}

/// A compact sensor record.
Bytes compactRecord(unsigned char id)
{
    Bytes record(32, 0);
    put(record, 0, {id, 0, 0x51, 0x02, 27});
    put(record, 5, {0x20, 0x00, id, 0x07, 0x01});
    record[31] = 0xC0;
    return record;
}

/// A processor ROM with a header and as many blocks as are given, of those with fixed places.
Bytes cpuRom(unsigned int blocks)
{
    Bytes rom = {2, 0x80, 0, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    if (blocks > 1) {
        rom[4] = 27;
    }
    rom = summed(rom);
    rom = rom + summed({'f', 'l', 'w', 0, 0, 'B', 'S', 0, 0, 0x16, 0, 0});
    if (blocks > 1) {
        rom = rom + summed({0, 0, 0, 0x12, 0x10, 0x27, 0x34, 0x12, 1, 2, 3, 4, 5, 6});
    }
    rom.resize(128, 0);
    return rom;
}

/// Records of 16 bytes: an event of a fan, an OEM record, and one that is neither.
Bytes fan16(unsigned char id)
{
    return {id, 0, 0x02, 0xCC, 0xB5, 0x29, 0x67, 0x20, 0, 0x04, 0x04, 0x10, 0x01, 0x50, 0x01, 0x02};
}

Bytes oem16(unsigned char id)
{
    return {id, 0, 0xE0, 0xCC, 0xB5, 0x29, 0x67, 0x20, 0, 0x04, 0x04, 0x10, 0x01, 0x50, 0x01, 0x02};
}

Bytes odd16(unsigned char id)
{
    Bytes record = fan16(id);
    record[9] = 0x05; // the revision of the event's format
    return record;
}

}

TEST(ImageKind, EveryKindHasAName)
{
    std::set<std::string> names;
    for (int kind = 0; kind <= static_cast<int>(ImageKind::UNKNOWN); ++kind) {
        EXPECT_TRUE(names.insert(imageKindName(static_cast<ImageKind>(kind))).second);
    }
    EXPECT_STREQ(imageKindName(ImageKind::EVENT_LOG), "event log");
    EXPECT_STREQ(imageKindName(ImageKind::EMPTY), "empty file");
    EXPECT_STREQ(imageKindName(ImageKind::UNKNOWN), "not recognised");
}

TEST(ImageKind, EveryExampleIsWhatItsFolderSays)
{
    std::map<ImageKind, int> kinds;
    for (const std::string folder : {"/board", "/data"}) {
        for (const auto& [path, content] : filesOf(EXAMPLES + folder)) {
            const Recognised found = recognise(path, content);
            EXPECT_EQ(found.kind, expectedOf(path)) << path;
            ++kinds[found.kind];
            const std::string name = fs::path(path).filename().string();
            EXPECT_EQ(found.recordClass == nullptr ? "" : found.recordClass->name,
                      found.kind == ImageKind::RECORD ? name.substr(0, name.find('.')) : "");
            // Nothing but a record depends on the name.
            EXPECT_EQ(kindOf(content, "x") == found.kind, found.kind != ImageKind::RECORD) << path;
        }
    }
    EXPECT_EQ(kinds[ImageKind::RECORD], 32);
    EXPECT_EQ(kinds[ImageKind::FRU], 12);
    EXPECT_EQ(kinds[ImageKind::SPD], 17);
    EXPECT_EQ(kinds[ImageKind::EVENT_LOG], 6);
    EXPECT_EQ(kinds[ImageKind::CPU_ROM], 5);
    EXPECT_EQ(kinds[ImageKind::SDR], 2);
    EXPECT_EQ(kinds[ImageKind::SETTING_INDEX], 2);
    EXPECT_EQ(kinds[ImageKind::EFI_INDEX], 1);
    EXPECT_EQ(kinds[ImageKind::UNKNOWN], 3); // the settings and the backup themselves, a listing
}

TEST(ImageKind, EveryPublicSampleIsWhatItsFolderSays)
{
    const std::string folder = RECORDKIT_PUBLIC_DATA "/";
    if (!fs::exists(folder)) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    // Headers without any area and with one byte wrong, a header with two, and what no area of
    // SPD data says.
    const std::set<std::string> unknown = {
        "velia__wrong_header_checksum.bin", "velia__wrong_header_format.bin",
        "velia__wrong_header_pad.bin",      "infrasim__dell_r740xd_mc20_fru0d.bin",
        "rigred-spd_tool__2133_c9_psc.bin", "rigred-SPD__dump-crc-orig-125.bin",
    };
    const std::pair<const char*, ImageKind> folders[] = {
        {"fru", ImageKind::FRU},           {"fru/other", ImageKind::UNKNOWN},
        {"spd", ImageKind::SPD},           {"spd/hex", ImageKind::SPD},
        {"spd/other", ImageKind::SPD},     {"spd-more", ImageKind::SPD},
        {"sdr", ImageKind::SDR},           {"sdr/ipmitool-dump", ImageKind::SDR},
        {"sel", ImageKind::EVENT_RECORDS}, {"sel/ref", ImageKind::TEXT},
    };
    std::size_t files = 0;
    for (const auto& [name, kind] : folders) {
        for (const auto& entry : fs::directory_iterator(folder + name)) {
            const std::string file = entry.path().filename().string();
            if (!entry.is_regular_file() || file == "INDEX.tsv" ||
                entry.path().extension() == ".gz") {
                continue;
            }
            ++files;
            EXPECT_EQ(kindOf(contentOfFile(entry.path())),
                      unknown.count(file) == 0 ? kind : ImageKind::UNKNOWN)
                << entry.path();
        }
    }
    EXPECT_GT(files, 200U);
}

TEST(ImageKind, EmptyAndErased)
{
    EXPECT_EQ(kindOf(Bytes{}), ImageKind::EMPTY);
    for (const std::size_t size : {1UL, 8UL, 432UL, 512UL, 65536UL, 110399UL, 200000UL}) {
        EXPECT_EQ(kindOf(Bytes(size, 0x00)), ImageKind::ERASED) << size;
        EXPECT_EQ(kindOf(Bytes(size, 0xFF)), ImageKind::ERASED) << size;
    }
    EXPECT_EQ(kindOf(Bytes(512, 0x01)), ImageKind::UNKNOWN);
    Bytes both(512, 0xFF);
    both[511] = 0;
    EXPECT_EQ(kindOf(both), ImageKind::UNKNOWN);
}

TEST(ImageKind, Text)
{
    EXPECT_EQ(kindOfText("a line\n\tand another\r\n"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("gr\xC3\xBC\xC3\x9F\n"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("\xC3\xBC\xC3\x9F"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("\xFC\xDF"), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOfText("123456789\xFC"), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOfText(std::string("a\0b", 3)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOfText("a\x1B[31m"), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOfText("a\x7F"), ImageKind::UNKNOWN);
    // The bytes of a sensor data record, too.
    EXPECT_EQ(kindOfText("SEQ\tN" + std::string('N', '-')), ImageKind::TEXT);
}

TEST(ImageKind, ARecordIsNamedForItsClassAndHasItsSize)
{
    const TraceCapture traces;
    const Bytes status = {0x01, 0x02};
    EXPECT_EQ(kindOf(status, "PSUStatus.power-supply0.bin"), ImageKind::RECORD);
    EXPECT_EQ(kindOf(status, "a/b/PSUStatus.bin"), ImageKind::RECORD);
    EXPECT_STREQ(recognise("PSUStatus.bin", status).recordClass->name, "PSUStatus");
    for (const char* name : {"PSUStatus", "PSUStatus0.bin", "psustatus.bin", "a-PSUStatus.bin",
                             "PSUStatus.d/file", "DIMMType.bin"}) {
        EXPECT_EQ(kindOf(status, name), ImageKind::UNKNOWN) << name;
        EXPECT_EQ(recognise(name, status).recordClass, nullptr);
    }
    EXPECT_EQ(kindOf({1, 2, 3}, "PSUStatus.bin"), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(Bytes{1}, "PSUStatus.bin"), ImageKind::UNKNOWN);
    // A record of zeroes, and one that is text.
    EXPECT_EQ(kindOf({0, 0}, "PSUStatus.bin"), ImageKind::RECORD);
    EXPECT_EQ(kindOfText("12", "PSUStatus.bin"), ImageKind::RECORD);
    EXPECT_EQ(kindOfText("123", "PSUStatus.bin"), ImageKind::TEXT);
    // Two slots; the size is that of its counts.
    Bytes unit(13, 0);
    unit[8] = 2;
    const ImageKind whole = kindOf(unit, "IOUBoardInfo.bin");
    unit.push_back(0);
    EXPECT_NE(kindOf(unit, "IOUBoardInfo.bin"), whole);
    EXPECT_TRUE(traces.lines().empty());
    // The content of another kind decides.
    EXPECT_EQ(kindOf(part(spdModule(), 0, 146), "MemorySPDData.bin"), ImageKind::SPD);
}

TEST(ImageKind, FruByItsHeader)
{
    EXPECT_EQ(kindOf(summed({1, 0, 0, 0, 0, 0, 0})), ImageKind::FRU);
    EXPECT_EQ(kindOf(summed({1, 0, 2, 0, 0, 0, 0})), ImageKind::FRU); // its area is cut off
    EXPECT_EQ(kindOf({1, 0, 0xFF, 0, 0, 0, 0}), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf({1, 0, 0, 0, 0, 0, 0, 0xFE}), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(summed({2, 0, 0, 0, 0, 0, 0})), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(summed({1, 0, 0, 0, 0, 0, 1})), ImageKind::UNKNOWN);
    Bytes large = summed({1, 0, 0, 0, 0, 0, 0});
    large.resize(65536, 0xFF);
    EXPECT_EQ(kindOf(large), ImageKind::FRU);
    large.resize(65537, 0xFF);
    EXPECT_EQ(kindOf(large), ImageKind::UNKNOWN);
}

TEST(ImageKind, ARepositoryWhoseFirstBytesAreAFruHeader)
{
    // Record 1 of sensor 8Bh on controller 20h.
    Bytes repository = compactRecord(1) + compactRecord(2);
    unsigned int sum = 0;
    for (std::size_t i = 0; i < 7; ++i) {
        sum += repository[i];
    }
    repository[7] = static_cast<unsigned char>(0x100 - (sum & 0xFF));
    EXPECT_EQ(kindOf(part(repository, 0, 8)), ImageKind::FRU);
    EXPECT_EQ(kindOf(repository), ImageKind::SDR);
    repository = repository + Bytes(20, 0x55);
    EXPECT_EQ(kindOf(repository), ImageKind::SDR);
}

TEST(ImageKind, FruWithOneByteOfItsHeaderWrong)
{
    const Bytes image = fruImage(boardArea({"maker", "name", "serial", "part", "file"}));
    ASSERT_EQ(kindOf(image), ImageKind::FRU);
    ASSERT_LE(image.size(), 135U);
    EXPECT_EQ(kindOf(image, "BMCLog.bin"), ImageKind::FRU);
    EXPECT_EQ(damageEach(image, 8, ImageKind::FRU), 0U);
    Bytes large = image;
    large[7] ^= 1;
    large.resize(65536, 0xFF);
    EXPECT_EQ(kindOf(large), ImageKind::FRU);
    large.push_back(0xFF);
    EXPECT_EQ(kindOf(large), ImageKind::UNKNOWN);
    // Without a right area nothing is left to tell.
    Bytes worse = image;
    worse[7] ^= 1;
    worse.back() ^= 1;
    EXPECT_EQ(kindOf(worse), ImageKind::UNKNOWN);
    worse.back() ^= 1;
    worse[8] = 0x11; // the area's format; with the sum of before
    worse[9 + 1] = static_cast<unsigned char>(worse[10] - 0x10);
    EXPECT_EQ(kindOf(worse), ImageKind::UNKNOWN);
    // Multirecords.
    const Bytes record = summed({0xC0, 0x82, 3, 0xFA}) + Bytes{1, 2, 3};
    Bytes records = summed({1, 0, 0, 0, 0, 1, 0}) + record;
    records[7] ^= 1;
    EXPECT_EQ(kindOf(records), ImageKind::FRU);
    records.back() ^= 1;
    EXPECT_EQ(kindOf(records), ImageKind::UNKNOWN);
}

TEST(ImageKind, ADamagedExampleIsStillOfItsKindOrOfNone)
{
    for (const auto& [path, content] : filesOf(EXAMPLES + "/board/fru")) {
        EXPECT_EQ(damageEach(content, 8, ImageKind::FRU), 0U) << path;
    }
    for (const char* const path : {"/data/fru/ascii-all.bin", "/data/fru/mixed-encodings.bin"}) {
        const Bytes content = contentOfFile(EXAMPLES + path);
        EXPECT_EQ(damageEach(content, content.size(), ImageKind::FRU), 0U) << path;
    }
    for (const char* const path :
         {"/board/spd/sb0/dimm0.bin", "/board/spd/sb1/dimm1.bin", "/data/spd/dimm.bin"}) {
        const Bytes content = contentOfFile(EXAMPLES + path);
        EXPECT_LT(damageEach(content, content.size(), ImageKind::SPD), 45U) << path;
    }
    const Bytes efi = contentOfFile(EXAMPLES + "/board/eeprom/eeprom10.bin");
    EXPECT_EQ(damageEach(efi, 144, ImageKind::EFI_INDEX), 0U);
    EXPECT_EQ(damageEach(contentOfFile(EXAMPLES + "/board/etc/default/config/panelindex.dat"), 432,
                         ImageKind::SETTING_INDEX),
              0U);
    const Bytes rom = contentOfFile(EXAMPLES + "/data/cpu/sample.bin");
    EXPECT_LE(damageEach(rom, rom.size(), ImageKind::CPU_ROM), 5U); // the processor block's offset
    const Bytes log = part(contentOfFile(EXAMPLES + "/board/tmp/sb0_bmc_sel0"), 0, 1380);
    EXPECT_EQ(damageEach(log, log.size(), ImageKind::EVENT_LOG), 0U);
    const Bytes events = part(contentOfFile(EXAMPLES + "/data/sel/events.raw"), 0, 160);
    EXPECT_EQ(damageEach(events, events.size(), ImageKind::EVENT_RECORDS), 0U);
    const Bytes sdr = contentOfFile(EXAMPLES + "/data/sdr/repository.sdr");
    EXPECT_LT(damageEach(sdr, sdr.size(), ImageKind::SDR), 200U); // lengths of the first records
}

TEST(ImageKind, SpdByACrc)
{
    EXPECT_EQ(kindOf(spdModule()), ImageKind::SPD);
    EXPECT_EQ(kindOf(ddr4Module()), ImageKind::SPD);
    EXPECT_EQ(kindOf(ddr5Module()), ImageKind::SPD);
    EXPECT_EQ(kindOf(part(spdModule(), 0, 128)), ImageKind::SPD);
    EXPECT_EQ(kindOf(part(spdModule(), 0, 127)), ImageKind::UNKNOWN);
    Bytes module = spdModule(); // without times
    module[126] ^= 1;
    EXPECT_EQ(kindOf(module), ImageKind::UNKNOWN);
    module = spdModule();
    module[2] = 0x55;
    writeSpdCrc(module, 0, 117, 126);
    EXPECT_EQ(kindOf(module), ImageKind::UNKNOWN);
    // The CRC of the second block is enough, unless it is that of zeroes.
    module = Bytes(512, 0);
    put(module, 0, {0x23, 0x11, 0x0C, 0x01});
    module[130] = 1;
    writeSpdCrc(module, 128, 126, 254);
    EXPECT_EQ(kindOf(module), ImageKind::SPD);
    module[130] = 0;
    module[254] = 0;
    module[255] = 0;
    EXPECT_EQ(kindOf(module), ImageKind::UNKNOWN);
    module = spdModule();
    module.resize(4096, 0);
    EXPECT_EQ(kindOf(module), ImageKind::SPD);
    module.resize(4097, 0);
    EXPECT_EQ(kindOf(module), ImageKind::UNKNOWN);
}

TEST(ImageKind, SpdWithAWrongCrcByWhatItSays)
{
    Bytes module = ddr3Module();
    module[126] ^= 1;
    EXPECT_EQ(kindOf(module), ImageKind::SPD);
    const std::pair<std::size_t, unsigned char> changes[] = {
        {4, 0x0F},  // density
        {12, 0xFF}, // cycle: 31.9 ns
        {12, 0x01}, // 125 ps
        {16, 0x20}, // CAS latency: 4 ns
        {16, 0xFF}, // 31.9 ns
        {18, 0x20}, // RAS to CAS
        {18, 0xFF}, //
    };
    for (const auto& [at, byte] : changes) {
        Bytes changed = module;
        changed[at] = byte;
        EXPECT_EQ(kindOf(changed), ImageKind::UNKNOWN) << at << ": " << unsigned{byte};
    }
}

TEST(ImageKind, SpdAsAHexDump)
{
    const std::string digits = toHex(ddr3Module());
    EXPECT_EQ(kindOfText(digits), ImageKind::SPD);
    EXPECT_EQ(kindOfText(digits.substr(0, 200)), ImageKind::TEXT);
    EXPECT_EQ(kindOfText(digits + "x"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText(digits + std::string(65536 - digits.size(), ' ')), ImageKind::SPD);
    EXPECT_EQ(kindOfText(digits + std::string(65537 - digits.size(), ' ')), ImageKind::TEXT);
    EXPECT_EQ(kindOfText(toHex(spdModule())), ImageKind::SPD); // without times
    Bytes damaged = ddr3Module();
    damaged[126] ^= 1;
    EXPECT_EQ(kindOfText(toHex(damaged)), ImageKind::SPD);
}

TEST(ImageKind, ProcessorRomByThreeChecksums)
{
    EXPECT_EQ(kindOf(cpuRom(2)), ImageKind::CPU_ROM);
    EXPECT_EQ(kindOf(cpuRom(1)), ImageKind::UNKNOWN);
    Bytes rom = cpuRom(2);
    rom[40] ^= 1; // in the second block
    EXPECT_EQ(kindOf(rom), ImageKind::UNKNOWN);
    // Three blocks, but not that of the processor.
    rom = summed({2, 0x80, 0, 0, 14, 0, 0, 0, 0, 0, 29, 0, 0}) +
          summed({0, 0, 0, 0x12, 0x10, 0x27, 0x34, 0x12, 1, 2, 3, 4, 5, 6}) +
          summed({1, 2, 3, 4, 5, 6, 7, 8}) + Bytes(90, 0);
    EXPECT_EQ(kindOf(rom), ImageKind::UNKNOWN);
    // Blocks of zeroes, and blocks in the place of others, say nothing.
    rom = cpuRom(1);
    put(rom, 4, {60, 60, 80});
    rom[13] = static_cast<unsigned char>(rom[13] - 200);
    EXPECT_EQ(kindOf(rom), ImageKind::UNKNOWN);
    rom = summed({2, 0x80, 0, 14, 0, 0, 0, 0, 14, 0, 0, 0, 0});
    rom = rom + summed({1, 2, 3, 4, 5}) + Bytes(108, 0);
    EXPECT_EQ(kindOf(rom), ImageKind::UNKNOWN);
    rom = cpuRom(2);
    rom.resize(65537, 0);
    EXPECT_EQ(kindOf(rom), ImageKind::UNKNOWN);
}

TEST(ImageKind, SettingIndexByMostOfItsEntries)
{
    const Bytes blank(16, 0);
    Bytes index = settingEntry(0) + settingEntry(1);
    index.resize(432, 0);
    EXPECT_EQ(kindOf(index), ImageKind::SETTING_INDEX);
    Bytes eeprom = Bytes(512, 0xFF) + index;
    EXPECT_EQ(kindOf(eeprom), ImageKind::SETTING_INDEX);
    EXPECT_EQ(kindOf(part(eeprom, 0, 943)), ImageKind::UNKNOWN);
    eeprom.resize(65536, 0);
    EXPECT_EQ(kindOf(eeprom), ImageKind::SETTING_INDEX);
    eeprom.resize(65537, 0);
    EXPECT_EQ(kindOf(eeprom), ImageKind::UNKNOWN);
    // The file has no other size.
    EXPECT_EQ(kindOf(part(index, 0, 431)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(index + blank), ImageKind::UNKNOWN);
    // As many wrong entries as right ones.
    index[32] = 1;
    EXPECT_EQ(kindOf(index), ImageKind::SETTING_INDEX);
    index[48] = 1;
    EXPECT_EQ(kindOf(index), ImageKind::UNKNOWN);
    // A right checksum, but the number of another entry; the flag of none.
    Bytes single = blank + settingEntry(0);
    single.resize(432, 0);
    EXPECT_EQ(kindOf(single), ImageKind::UNKNOWN);
    single = summed({2, 0, 0, 0, 4, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
    single.resize(432, 0);
    EXPECT_EQ(kindOf(single), ImageKind::UNKNOWN);
    single = settingEntry(0);
    single[15] ^= 1;
    single.resize(432, 0);
    EXPECT_EQ(kindOf(single), ImageKind::UNKNOWN);
    single = settingEntry(0);
    single.resize(432, 0);
    EXPECT_EQ(kindOf(single), ImageKind::SETTING_INDEX);
}

TEST(ImageKind, EfiIndex)
{
    EXPECT_EQ(kindOf(efiIndex()), ImageKind::EFI_INDEX);
    EXPECT_EQ(kindOf(efiIndex(144)), ImageKind::EFI_INDEX);
    EXPECT_EQ(kindOf(efiIndex(143)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(efiIndex(65537)), ImageKind::UNKNOWN);
    // Bytes that no index has, with a right checksum.
    const std::pair<std::size_t, unsigned char> changes[] = {
        {2, 0x1F}, {13, 0x7F}, {16, 0x02}, {16, 0x20}, {143, 0x80}};
    for (const auto& [at, byte] : changes) {
        Bytes index = efiIndex();
        const auto change = static_cast<unsigned char>(byte - index[at]);
        index[at] = byte;
        index[0] = static_cast<unsigned char>(index[0] - change);
        EXPECT_EQ(kindOf(index), ImageKind::UNKNOWN) << at;
    }
    Bytes index = efiIndex();
    index[255] = 1;
    EXPECT_EQ(kindOf(index), ImageKind::UNKNOWN);
    index[255] = 0;
    index[256] = 1;
    EXPECT_EQ(kindOf(index), ImageKind::EFI_INDEX);
    // Carried bytes can be anything, as long as the checksum is right.
    index = efiIndex();
    index[1] = 0x55;
    index[0] = static_cast<unsigned char>(index[0] - 0x55);
    EXPECT_EQ(kindOf(index), ImageKind::EFI_INDEX);
}

TEST(ImageKind, EfiIndexHasASerial)
{
    const auto withSerial = [](const Bytes& serial) {
        Bytes index(144, 0);
        put(index, 2, serial);
        unsigned int sum = 0;
        for (const unsigned char byte : index) {
            sum += byte;
        }
        index[0] = static_cast<unsigned char>(0x100 - (sum & 0xFF));
        return index;
    };
    EXPECT_EQ(kindOf(withSerial(textBytes("ABCDE"))), ImageKind::EFI_INDEX);
    EXPECT_EQ(kindOf(withSerial(textBytes("ABCD"))), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(withSerial({'A', 'B', 'C', 'D', 'E', 0, 'F'})), ImageKind::UNKNOWN);
    // Texts at the beginning of an EEPROM are not an index with a wrong checksum.
    Bytes text = textBytes("fan=normal");
    text.resize(65536, 0);
    EXPECT_EQ(kindOf(text), ImageKind::UNKNOWN);
    Bytes damaged = withSerial(textBytes("ABCDEFGHIJKL"));
    damaged[0] ^= 0x21;
    EXPECT_EQ(kindOf(damaged), ImageKind::EFI_INDEX);
    damaged[14] = 1;
    damaged[15] = 1;
    EXPECT_EQ(kindOf(damaged), ImageKind::UNKNOWN);
}

TEST(ImageKind, EventLog)
{
    EXPECT_EQ(kindOf(eventFile(3, 1)), ImageKind::EVENT_LOG);
    EXPECT_EQ(kindOf(eventSlot(1)), ImageKind::EVENT_LOG);
    EXPECT_EQ(kindOf(part(eventSlot(1), 0, 137)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(eventSlot(1) + Bytes(100, 0x55)), ImageKind::EVENT_LOG);
    // Half of the slots.
    const Bytes other(138, 0x55);
    EXPECT_EQ(kindOf(eventSlot(1) + other), ImageKind::EVENT_LOG);
    EXPECT_EQ(kindOf(eventSlot(1) + other + other), ImageKind::UNKNOWN);
    // An empty log, and no other size of the same bytes.
    EXPECT_EQ(kindOf(Bytes(110400, 0xFF)), ImageKind::EVENT_LOG);
    EXPECT_EQ(kindOf(Bytes(110401, 0xFF)), ImageKind::ERASED);
    Bytes cut(138, 0xFF);
    cut.push_back(1);
    EXPECT_EQ(kindOf(cut), ImageKind::UNKNOWN);
    // OEM records say little of themselves: four of them, or an event.
    const auto oemSlot = [](unsigned int id) {
        Bytes slot = eventSlot(id);
        slot[4] = 0xE0;
        return slot;
    };
    const Bytes three = oemSlot(1) + oemSlot(2) + oemSlot(3);
    EXPECT_EQ(kindOf(three), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(three + oemSlot(4)), ImageKind::EVENT_LOG);
    EXPECT_EQ(kindOf(oemSlot(1) + eventSlot(2)), ImageKind::EVENT_LOG);
    Bytes odd = eventSlot(2);
    odd[11] = 0x05; // the revision of the event's format
    EXPECT_EQ(kindOf(oemSlot(1) + odd), ImageKind::UNKNOWN);
    Bytes large;
    for (int i = 0; i < 65536; ++i) {
        large.insert(large.end(), 138, 0xFF);
    }
    put(large, 0, eventSlot(1));
    EXPECT_EQ(kindOf(large), ImageKind::EVENT_LOG);
    large.push_back(0xFF);
    EXPECT_EQ(kindOf(large), ImageKind::UNKNOWN);
}

TEST(ImageKind, Repository)
{
    const Bytes blank(10, 0);
    const Bytes one = compactRecord(1);
    EXPECT_EQ(kindOf(one), ImageKind::SDR);
    EXPECT_EQ(kindOf(one + compactRecord(2)), ImageKind::SDR);
    EXPECT_EQ(kindOf(one + compactRecord(2) + blank), ImageKind::SDR);
    EXPECT_EQ(kindOf(one + compactRecord(2), "BMCLog.bin"), ImageKind::SDR);
    EXPECT_EQ(kindOf(one + blank), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(Bytes{2, 0} + one + Bytes{0xFF, 0xFF} + compactRecord(2)), ImageKind::SDR);
    EXPECT_EQ(kindOf(Bytes{2, 0} + one), ImageKind::SDR);
    for (const auto& [at, byte] : {std::pair(2, 0x52), std::pair(3, 0x2A), std::pair(4, 26)}) {
        Bytes wrong = one;
        wrong[static_cast<std::size_t>(at)] = static_cast<unsigned char>(byte);
        EXPECT_EQ(kindOf(wrong), ImageKind::UNKNOWN) << at;
    }
    // Two records that are half of the bytes.
    const Bytes two = one + compactRecord(2);
    EXPECT_EQ(kindOf(two + Bytes(64, 0x55)), ImageKind::SDR);
    EXPECT_EQ(kindOf(two + Bytes(65, 0x55)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(one + Bytes(20, 0x55)), ImageKind::UNKNOWN);
    Bytes large = two;
    large.resize(std::size_t{1} << 20, 0);
    EXPECT_EQ(kindOf(large), ImageKind::SDR);
    large.push_back(0);
    EXPECT_EQ(kindOf(large), ImageKind::UNKNOWN);
}

TEST(ImageKind, EventRecordsOf16Bytes)
{
    EXPECT_EQ(kindOf(fan16(1)), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOf(odd16(1)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(fan16(1) + Bytes{1}), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(fan16(1) + odd16(2)), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(fan16(1) + oem16(2)), ImageKind::EVENT_RECORDS);
    // Two events that are half of them.
    EXPECT_EQ(kindOf(fan16(1) + odd16(2) + odd16(3) + fan16(4)), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOf(fan16(1) + odd16(2) + odd16(3) + fan16(4) + odd16(5)), ImageKind::UNKNOWN);
    // Without one: four with rising ids.
    const Bytes three = oem16(1) + oem16(2) + oem16(3);
    EXPECT_EQ(kindOf(three), ImageKind::UNKNOWN);
    EXPECT_EQ(kindOf(three + oem16(4)), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOf(three + oem16(3)), ImageKind::UNKNOWN);
    Bytes many;
    for (int i = 0; i < 65535; ++i) {
        const Bytes record = fan16(1);
        many.insert(many.end(), record.begin(), record.end());
    }
    EXPECT_EQ(kindOf(many), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOf(many + fan16(1)), ImageKind::UNKNOWN);
}

TEST(ImageKind, EventRecordsAsText)
{
    const std::string one = toHex(fan16(1));
    EXPECT_EQ(kindOfText(one), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText("# a comment\n\n " + one + " # a fan\n"), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText(toHex(eventSlot(1)) + "\n" + one + "\n"), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText(one + "00"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText(one + "\nhello\n"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText(toHex(odd16(1))), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("# only a comment\n"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("\n\n"), ImageKind::TEXT);
    std::string half = one + "\n" + one + "\n" + toHex(odd16(1)) + "\n" + toHex(odd16(2)) + "\n";
    EXPECT_EQ(kindOfText(half), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText(half + toHex(odd16(3)) + "\n"), ImageKind::TEXT);
}

TEST(ImageKind, AListHasNoMoreRecordsThanThereAreIds)
{
    const std::string line = toHex(fan16(1)) + "\n";
    std::string lines;
    for (int i = 0; i < 65535; ++i) {
        lines += line;
    }
    EXPECT_EQ(kindOfText(lines), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText(lines + line), ImageKind::TEXT);
}

TEST(ImageKind, EventRecordsAsJson)
{
    const std::string slot = toHex(eventSlot(1));
    const std::string object = "{\"id\":1,\"image\":\"" + slot + "\"}";
    EXPECT_EQ(kindOfText(object + "\n" + object + "\n"), ImageKind::EVENT_RECORDS);
    EXPECT_EQ(
        kindOfText("[\n  {\"image\" : \"" + slot + "\"},\n  {\"image\": \"" + slot + "\"}\n]\n"),
        ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText("{\"record\":\"" + toHex(fan16(1)) + "\",\"extended\":null}"),
              ImageKind::EVENT_RECORDS);
    EXPECT_EQ(kindOfText("{\"id\":1}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\":1}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\"}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\";\"" + slot + "\"}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\":x" + slot + "\"}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\""), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\":"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("{\"image\":\"a photo\"}"), ImageKind::TEXT);
    EXPECT_EQ(kindOfText("x" + object), ImageKind::TEXT);
}

TEST(ImageKind, RandomBytesAreOfNoKind)
{
    std::mt19937 random(20250107);
    const TraceCapture traces;
    for (int i = 0; i < 2000; ++i) {
        const std::size_t sizes[] = {8, 16, 128, 138, 144, 256, 432, 512, 1024};
        const std::size_t size = i % 2 == 0 ? 8 + random() % 3000 : sizes[random() % 9];
        Bytes bytes(size);
        for (unsigned char& byte : bytes) {
            byte = static_cast<unsigned char>(random() >> 8);
        }
        EXPECT_EQ(kindOf(bytes, "file"), ImageKind::UNKNOWN) << i;
    }
    EXPECT_TRUE(traces.lines().empty());
}

TEST(ImageKind, WhatIsCutOffIsOfItsKindOrOfNone)
{
    for (const std::string folder : {"/board", "/data"}) {
        for (const auto& [path, content] : filesOf(EXAMPLES + folder)) {
            const ImageKind whole = expectedOf(path);
            const std::size_t most = std::min<std::size_t>(content.size(), 600);
            for (std::size_t size = 0; size < most; ++size) {
                const ImageKind found = kindOf(part(content, 0, size), "x");
                const bool isNothing = found == ImageKind::EMPTY || found == ImageKind::ERASED ||
                                       found == ImageKind::TEXT || found == ImageKind::UNKNOWN;
                EXPECT_TRUE(isNothing || found == whole)
                    << path << ", " << size << ": " << imageKindName(found);
            }
        }
    }
}
