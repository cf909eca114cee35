// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <fmt/format.h>
#include <memory>
#include <mutex>
#include <thread>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/platform/PException.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../print/Json.h"
#include "Images.h"

namespace recordkit::tool {

using TAVLib::RecordKit::EFIBackupEEPROMData;
using Index = TAVLib::RecordKit::EFIBackupEEPROMIndex;

namespace {

struct Options {
    ImagesOption images;
    std::string serial;
    std::string partition;
    std::string bank;
    std::string offset;
    std::string block;
    std::string length = "4096";
    std::string file;
    bool isJson = false;
};

unsigned int numberOf(const char* what, const std::string& text, unsigned long limit)
{
    return static_cast<unsigned int>(
        orThrow(parseNumber(text, limit),
                usageError(fmt::format("{}: \"{}\", expected 0 to {}", what, text, limit))));
}

unsigned int partitionOf(const Options& options)
{
    return numberOf("PARTITION", options.partition, Index::PARTITIONS - 1);
}

unsigned int bankOf(const Options& options)
{
    return numberOf("BANK", options.bank, Index::BANKS - 1);
}

/// The record of the images, with its flags copied for the queries.
Index readRecord(const Options& options)
{
    auto device = options.images.open();
    Index index;
    attempt([&] { device.read(Index::INDEX_EEPROM, 0, index.getIndexData(), Index::INDEX_SIZE); });
    index.expandClrFlags();
    return index;
}

std::string serialOf(const Index& index)
{
    const unsigned char* const first = index.getIndexData() + Index::SERIAL;
    return std::string(first, first + Index::SERIAL_SIZE);
}

/// Opens the store for the system that its record names; throws if there is no such record.
/// setIndexData would start a new record, so only the state is set.
Index openStore(const Options& options)
{
    Index index = readRecord(options);
    if (!index.isChecksum()) {
        throw dataError("the checksum of the index record on EEPROM 10 is wrong");
    }
    if (serialOf(index) == std::string(Index::SERIAL_SIZE, '\0')) {
        throw dataError("the index record on EEPROM 10 names no system; recordkit eeprom efi init "
                        "begins one");
    }
    index.setIndexState(true);
    return index;
}

void status(const Options& options)
{
    const Index index = readRecord(options);
    std::string serial = serialOf(index);
    serial.erase(serial.find_last_not_of('\0') + 1);
    Json json;
    json["serial"] = toUtf8(serial);
    json["checksum_right"] = index.isChecksum();
    json["eeproms"] = Json::array();
    std::string text = fmt::format("owner     {}\nchecksum  {}\n\nEEPROM  P B  0123456789ABCDEF\n",
                                   serial.empty() ? "none" : printable(toUtf8(serial)),
                                   index.isChecksum() ? "right" : "WRONG");
    unsigned int pending = 0;
    for (unsigned int p = 0; p < Index::PARTITIONS; ++p) {
        for (unsigned int b = 0; b < Index::BANKS; ++b) {
            std::string blocks;
            Json list = Json::array();
            for (unsigned int n = 0; n < Index::BLOCKS; ++n) {
                const bool isPending = index.getClrBlockState(p, b, n);
                blocks += isPending ? '#' : '.';
                if (isPending) {
                    list.push_back(n);
                }
            }
            pending += static_cast<unsigned int>(list.size());
            text += fmt::format("{:<6}  {} {}  {}\n", index.getAreaEEPROMID(p, b), p, b, blocks);
            json["eeproms"].push_back({{"eeprom", index.getAreaEEPROMID(p, b)},
                                       {"partition", p},
                                       {"bank", b},
                                       {"pending", list}});
        }
    }
    text += fmt::format("{} blocks to be erased (#)\n", pending);
    fmt::print("{}", options.isJson ? indented(json) : text);
    if (!index.isChecksum()) {
        throw dataError("the checksum of the index record on EEPROM 10 is wrong");
    }
}

void initialise(const Options& options)
{
    const std::string serial = toLatin1(options.serial).value_or("");
    if (serial.empty() || serial.size() > Index::SERIAL_SIZE) {
        throw usageError(
            fmt::format("--serial: expected 1 to {} Latin-1 characters", +Index::SERIAL_SIZE));
    }
    auto device = options.images.open();
    attempt([&] { EFIBackupEEPROMData(device).setIndexData(true, serial); });
    fmt::print("EEPROM 10: new index record for {}, no block is to be erased\n",
               printable(options.serial));
}

/// Where a read or write of `length` bytes begins; it must be inside the EEPROM.
unsigned int offsetOf(const Options& options, std::size_t length)
{
    constexpr unsigned int SIZE = Index::BLOCKS * Index::BLOCK_SIZE;
    const unsigned int offset = numberOf("OFFSET", options.offset, SIZE - 1);
    if (length > SIZE - offset) {
        throw usageError(fmt::format(
            "{} bytes at offset {} reach beyond the {} bytes of the EEPROM", length, offset, SIZE));
    }
    return offset;
}

void read(const Options& options)
{
    const unsigned int p = partitionOf(options);
    const unsigned int b = bankOf(options);
    const unsigned int length =
        numberOf("--length", options.length, Index::BLOCKS * Index::BLOCK_SIZE);
    const unsigned int offset = offsetOf(options, length);
    openStore(options);
    auto device = options.images.open();
    std::vector<unsigned char> bytes(length);
    attempt([&] { EFIBackupEEPROMData(device).read(p, b, offset, length, bytes.data()); });
    const std::string content(bytes.begin(), bytes.end());
    if (options.file.empty()) {
        std::fwrite(content.data(), 1, content.size(), stdout);
        return;
    }
    writeOutput(options.file, content);
    fmt::print("{} bytes written to {}\n", length, options.file);
}

void write(const Options& options)
{
    const unsigned int p = partitionOf(options);
    const unsigned int b = bankOf(options);
    const std::string content = readInput(options.file.empty() ? "-" : options.file);
    const unsigned int offset = offsetOf(options, content.size());
    const Index index = openStore(options);
    auto device = options.images.open();
    std::vector<unsigned char> bytes(content.begin(), content.end());
    attempt([&] {
        EFIBackupEEPROMData(device).write(p, b, offset, static_cast<unsigned int>(bytes.size()),
                                          bytes.data());
    });
    fmt::print("EEPROM {}: {} bytes written at offset {}\n", index.getAreaEEPROMID(p, b),
               bytes.size(), offset);
}

void mark(const Options& options)
{
    const unsigned int p = partitionOf(options);
    const unsigned int b = bankOf(options);
    const unsigned int n = numberOf("BLOCK", options.block, Index::BLOCKS - 1);
    Index index = openStore(options);
    index.setClrFlag(p, b, n, true);
    index.setChecksum();
    auto device = options.images.open();
    const int point =
        index.getIndexPoint(static_cast<int>(p), static_cast<int>(b), static_cast<int>(n));
    attempt([&] {
        device.write(Index::INDEX_EEPROM, 0, index.getIndexData(), 1);
        device.write(Index::INDEX_EEPROM, static_cast<unsigned long>(point),
                     index.getIndexData() + point, 1);
    });
    fmt::print("EEPROM {}: block {} is to be erased\n", index.getAreaEEPROMID(p, b), n);
}

/// Erases EEPROMs concurrently, and reports which are done.
class Clearing {
public:
    explicit Clearing(const Options& clearOptions) : options(clearOptions) {}

    void add(unsigned int p, unsigned int b, unsigned int blocks)
    {
        ++eeproms;
        threads.emplace_back([this, p, b, blocks] { clear(p, b, blocks); });
    }

    /// Throws the first failure.
    void finish()
    {
        for (std::thread& thread : threads) {
            thread.join();
        }
        if (!failure.empty()) {
            throw fileError(failure);
        }
    }

private:
    void clear(unsigned int p, unsigned int b, unsigned int blocks)
    {
        auto device = options.images.open();
        std::string text;
        bool hasFailed = false;
        try {
            EFIBackupEEPROMData(device).clearExecute(p, b);
            text = fmt::format("{} blocks erased", blocks);
        } catch (const TAVLib::PException& e) {
            hasFailed = true;
            text = e.getMessage();
        }
        const std::lock_guard<std::mutex> lock(mutex);
        ++done;
        fmt::print("[{}/{}] EEPROM {}: {}\n", done, eeproms.load(), Index().getAreaEEPROMID(p, b),
                   text);
        std::fflush(stdout);
        if (hasFailed && failure.empty()) {
            failure = text;
        }
    }

    const Options& options;
    std::vector<std::thread> threads;
    std::atomic<unsigned int> eeproms = 0;
    std::mutex mutex;
    unsigned int done = 0;
    std::string failure;
};

void clear(const Options& options)
{
    const bool isOne = !options.partition.empty();
    if (isOne && options.bank.empty()) {
        throw usageError("expected PARTITION and BANK, or neither");
    }
    const Index index = openStore(options);
    Clearing clearing(options);
    bool hasAny = false;
    for (unsigned int p = 0; p < Index::PARTITIONS; ++p) {
        for (unsigned int b = 0; b < Index::BANKS; ++b) {
            if (isOne && (p != partitionOf(options) || b != bankOf(options))) {
                continue;
            }
            unsigned int blocks = 0;
            for (unsigned int n = 0; n < Index::BLOCKS; ++n) {
                blocks += index.getClrBlockState(p, b, n) ? 1 : 0;
            }
            if (blocks != 0) {
                hasAny = true;
                clearing.add(p, b, blocks);
            }
        }
    }
    clearing.finish();
    if (!hasAny) {
        fmt::print("no block is to be erased\n");
    }
}

}

void addEfiCommands(CLI::App& eeprom)
{
    CLI::App* const efi = addCommand(eeprom, "efi", "The EFI backup and its index record",
                                     "recordkit eeprom efi status --images board");
    efi->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* description, const char* example) {
        CLI::App* const command = addCommand(*efi, name, description, example);
        options->images.addTo(*command);
        return command;
    };
    const auto addPlace = [&](CLI::App* command, bool isRequired) {
        command->add_option("PARTITION", options->partition, "0 to 3")->required(isRequired);
        command->add_option("BANK", options->bank, "0 to 3")->required(isRequired);
    };
    CLI::App* command = add("status", "Show whose backup it is, and the blocks to be erased",
                            "recordkit eeprom efi status --images board");
    command->add_flag("--json", options->isJson, "JSON instead of a grid");
    command->callback([options] { status(*options); });

    command = add("init", "Begin a new index record", "recordkit eeprom efi init --serial SN4711");
    command->add_option("--serial", options->serial, "The system's serial, up to 12 characters")
        ->required();
    command->callback([options] { initialise(*options); });

    command =
        add("read", "Read from a backup EEPROM", "recordkit eeprom efi read 1 2 0x1000 out.bin");
    addPlace(command, true);
    command->add_option("OFFSET", options->offset, "Byte address")->required();
    command->add_option("FILE", options->file, "Where to; standard output without it");
    command->add_option("--length", options->length, "Number of bytes")->capture_default_str();
    command->callback([options] { read(*options); });

    command =
        add("write", "Write to a backup EEPROM", "recordkit eeprom efi write 1 2 0x1000 in.bin");
    addPlace(command, true);
    command->add_option("OFFSET", options->offset, "Byte address")->required();
    command->add_option("FILE", options->file, "What; standard input without it");
    command->callback([options] { write(*options); });

    command = add("mark", "Mark a block as one to be erased", "recordkit eeprom efi mark 1 2 15");
    addPlace(command, true);
    command->add_option("BLOCK", options->block, "0 to 15")->required();
    command->callback([options] { mark(*options); });

    command = add("clear", "Erase the blocks that are marked, several EEPROMs at once",
                  "recordkit eeprom efi clear --images board");
    addPlace(command, false);
    command->callback([options] { clear(*options); });
}

}
