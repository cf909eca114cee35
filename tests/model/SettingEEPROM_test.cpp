// SPDX-License-Identifier: Apache-2.0
// The setting store: entries of its index, areas on two EEPROMs, and files, by their rules.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/eeprom/SettingEEPROMData.h>

#include "Eeproms.h"
#include "MemoryRoot.h"

namespace {

using namespace testing_support;
using namespace TAVLib::RecordKit;

enum Operation {
    // What happens around the store.
    PUT_ENTRY,      ///< number; 16 bytes
    PUT_BYTES,      ///< EEPROM, offset; bytes
    FAIL_AT,        ///< access from now on, whether all after it fail too
    FAIL_OTHERWISE, ///< access from now on
    FAIL_NO_MORE,
    PUT_FILE,    ///< which file; bytes
    REMOVE_FILE, ///< which file
    PUT_FOLDER,  ///< in place of which file
    NEW_STORE,
    // An entry of its own.
    POKE_ENTRY, ///< place, value
    SET_VALID_FLAG,
    SET_CHECKSUM,
    GET_ENTRY,
    // The store.
    GET_INDEX_OFFSET,
    READ_INDEX_DATA,
    WRITE_INDEX_DATA,
    CHECK_INDEX_DATA,
    IS_VALID,
    SET_ALL_INVALID,
    INITIALIZE_INDEX_DATA,
    READ_INDEX_DATA_FILE,
    READ_AREA,
    WRITE_AREA, ///< bytes
    READ,       ///< number
    READ_TO,    ///< number, which file
    WRITE,      ///< number; bytes
    WRITE_FROM, ///< number, which file
    SET_THROW,  ///< kind; text
    OPERATIONS
};

constexpr const char* UNWRITTEN = "unwritten";

/// The files that the store and its callers name. The last one has a name that does not fit a
/// failure's text.
class Files {
public:
    static constexpr std::size_t COUNT = 4;

    Files()
    {
        std::filesystem::create_directories(root->at("/etc/default/config"));
        std::filesystem::create_directories(root->at("/folder"));
        struct stat status = {};
        ::stat(root->at("/folder").c_str(), &status);
        emptyFolderSize = static_cast<long>(status.st_size);
    }

    const std::string& path(long long which) const { return paths[which & 3]; }
    void clear() const
    {
        for (const std::string& name : paths) {
            remove(name);
        }
    }
    static void remove(const std::string& name)
    {
        std::error_code ignored;
        std::filesystem::remove(name, ignored);
    }
    long folderSize() const { return emptyFolderSize; }

private:
    const std::unique_ptr<ScratchRoot> root = makeMemoryRoot();
    const std::string paths[COUNT] = {root->at("/etc/default/config/panelindex.dat"),
                                      root->at("/setting"), root->at("/nowhere/setting"),
                                      root->at("/" + std::string(200, 'n'))};
    long emptyFolderSize = 0;
};

constexpr long long INDEX_FILE = 0;
constexpr long long FILE_IN_NO_FOLDER = 2;

const Files& files()
{
    static const Files all;
    return all;
}

class Library : public Subject {
public:
    Library() { files().clear(); }
    ~Library() override { files().clear(); }

    Lines perform(const Step& step) override
    {
        const TraceCapture trace;
        Lines seen;
        try {
            seen = call(step);
        } catch (const TAVLib::PException& e) {
            seen = {describe(e)};
        } catch (const OtherFailure&) {
            seen = {OTHER_FAILURE};
        }
        return joined(joined(seen, eeproms.takeAccesses()), trace.lines());
    }

    const Medium& medium() override
    {
        all = eeproms.medium();
        for (std::size_t i = 0; i < Files::COUNT; ++i) {
            const std::string& path = files().path(static_cast<long long>(i));
            if (std::filesystem::is_regular_file(path)) {
                all["file " + std::to_string(i)] = readFile(path);
            }
        }
        return all;
    }

private:
    Lines call(const Step& step)
    {
        const int n = static_cast<int>(step.number(0));
        std::string text(step.bytes.begin(), step.bytes.end());
        switch (step.operation) {
        case PUT_ENTRY:
            eeproms.put(4, 512 + 16 * static_cast<std::size_t>(n), step.bytes);
            return {};
        case PUT_BYTES:
            eeproms.put(n, static_cast<std::size_t>(step.number(1)), step.bytes);
            return {};
        case FAIL_AT:
            eeproms.failNoMore();
            eeproms.failAt(static_cast<std::size_t>(n), step.number(1) != 0);
            return {};
        case FAIL_OTHERWISE:
            eeproms.failNoMore();
            eeproms.failOtherwiseAt(static_cast<std::size_t>(n));
            return {};
        case FAIL_NO_MORE:
            eeproms.failNoMore();
            return {};
        case PUT_FILE:
            Files::remove(files().path(n));
            writeFile(files().path(n), step.bytes);
            return {};
        case REMOVE_FILE:
            Files::remove(files().path(n));
            return {};
        case PUT_FOLDER:
            Files::remove(files().path(n));
            std::filesystem::create_directory(files().path(n));
            return {};
        case NEW_STORE:
            store.emplace(eeproms);
            return {};
        case POKE_ENTRY:
            entry.getIndexData()[n & 15] = static_cast<unsigned char>(step.number(1));
            return {};
        case SET_VALID_FLAG:
            entry.setIndexValidFlag(n != 0);
            return {hex(Bytes(entry.getIndexData(), entry.getIndexData() + 16))};
        case SET_CHECKSUM:
            entry.setChecksum();
            return {hex(Bytes(entry.getIndexData(), entry.getIndexData() + 16))};
        case GET_ENTRY: {
            const EEPROMIndex& base = entry;
            return {fmt::format("{} {} {} {} {} {}; {} {} {} {} {} {}", base.isIndex(),
                                base.getAreaEEPROMID(), base.getAreaNumber(), base.getAreaOffset(),
                                base.getAreaSize(), base.isChecksum(), base.getIndexDataFileName(),
                                base.getIndexEEPROMID(), base.getIndexOffset(), base.getIndexSize(),
                                base.getIndexHeadNumber(), base.getIndexLastNumber())};
        }
        case GET_INDEX_OFFSET:
            return {fmt::format("{}", static_cast<int>(store->getIndexOffset(n)))};
        case READ_INDEX_DATA:
            store->readIndexData(n);
            return {};
        case WRITE_INDEX_DATA:
            store->writeIndexData(n);
            return {};
        case CHECK_INDEX_DATA:
            return {fmt::format("{}", store->checkIndexData(n))};
        case IS_VALID:
            return {fmt::format("{}", store->isValid(n))};
        case SET_ALL_INVALID:
            store->setAllInvalid();
            return {};
        case INITIALIZE_INDEX_DATA:
            store->initializeIndexData(n);
            return {};
        case READ_INDEX_DATA_FILE:
            store->readIndexDataFile(n);
            return {};
        case READ_AREA:
            return readArea();
        case WRITE_AREA: {
            const int count = store->writeArea(text);
            return {fmt::format("{}", count), hex(text)};
        }
        case READ:
            return {hex(store->read(n, nullptr))};
        case READ_TO: {
            std::string path = files().path(step.number(1));
            return {hex(store->read(n, path.data()))};
        }
        case WRITE: {
            const int count = store->write(n, text);
            return {fmt::format("{}", count), hex(text)};
        }
        case WRITE_FROM: {
            std::string path = files().path(step.number(1));
            return {fmt::format("{}", store->write(n, path.data()))};
        }
        default:
            store->setThrow(n, "%s, %d", text.c_str(), n);
        }
    }

    Lines readArea()
    {
        std::string out = UNWRITTEN;
        std::string how = "read";
        try {
            store->readArea(out);
        } catch (const TAVLib::PException& e) {
            how = describe(e);
        } catch (const OtherFailure&) {
            how = OTHER_FAILURE;
        }
        return {how, hex(out)};
    }

    WatchedEEPROMs eeproms;
    std::optional<SettingEEPROMData> store{std::in_place, eeproms};
    PanelEEPROMIndex entry;
    Medium all;
};

/// An entry of the index as its bytes.
struct Entry {
    Bytes bytes = Bytes(16, 0);

    bool isUsed() const { return bytes[0] == 1; }
    int eeprom() const { return bytes[2] == 0 ? 4 : 5; }
    int number() const { return bytes[3]; }
    unsigned int offset() const { return bytes[4] * 256U + bytes[5]; }
    unsigned int size() const { return bytes[6] * 256U + bytes[7]; }
    bool addsUpToZero() const
    {
        unsigned int sum = 0;
        for (const unsigned char byte : bytes) {
            sum += byte;
        }
        return sum % 256 == 0;
    }
    void correctChecksum()
    {
        unsigned int sum = 0;
        for (std::size_t i = 0; i < 15; ++i) {
            sum += bytes[i];
        }
        bytes[15] = static_cast<unsigned char>((256 - sum % 256) % 256);
    }
};

class Rules : public Subject {
public:
    Lines perform(const Step& step) override
    {
        Lines seen;
        try {
            seen = call(step);
        } catch (const Failure& failed) {
            seen = {failed.text};
        } catch (FailureKind) {
            seen = {OTHER_FAILURE};
        }
        return joined(seen, eeproms.takeAccesses());
    }

    const Medium& medium() override
    {
        all = eeproms.medium();
        for (std::size_t i = 0; i < Files::COUNT; ++i) {
            if (content[i] && !content[i]->isFolder) {
                all["file " + std::to_string(i)] = content[i]->bytes;
            }
        }
        return all;
    }

private:
    struct File {
        bool isFolder = false;
        Bytes bytes;
    };
    /// A failure of a system call on a file, with the host's codes for it.
    struct FileFailure {
        int error;
    };
    static constexpr int FILE_ACTION = 2;

    /// The failure of a kind; its text has room for 255 bytes.
    static Failure failed(int kind, const std::string& text)
    {
        struct Row {
            int action;
            int detail;
            int message;
        };
        const Row rows[] = {{1, 3, 20020}, {1, 3, 20020}, {1, 1, 20019}, {1, 1, 20019},
                            {2, 3, 20031}, {2, 3, 20031}, {2, 3, 20031}, {2, 5, 20032},
                            {2, 3, 20031}, {2, 5, 20032}, {2, 5, 20032}, {2, 3, 20031}};
        const Row row = kind >= 0 && kind <= 11 ? rows[kind] : Row{2, 0, 20003};
        return failure(128, 14, row.action, row.detail, row.message, {text.substr(0, 255)});
    }

    static std::string path(long long which) { return files().path(which); }
    std::optional<File>& fileAt(long long which) { return content[which & 3]; }

    /// The index file from an entry on; it is only read.
    Bytes indexFileFrom(int n)
    {
        const std::optional<File>& file = fileAt(INDEX_FILE);
        if (!file) {
            throw FileFailure{ENOENT};
        }
        if (n < 0) {
            throw FileFailure{EINVAL};
        }
        if (file->isFolder) {
            throw FileFailure{EISDIR};
        }
        const std::size_t from = std::min(16 * static_cast<std::size_t>(n), file->bytes.size());
        return part(file->bytes, from, file->bytes.size() - from);
    }

    /// The bytes of a file that is opened with its lock, which creates it.
    Bytes& opened(long long which)
    {
        if ((which & 3) == FILE_IN_NO_FOLDER) {
            throw FileFailure{ENOENT};
        }
        if (!fileAt(which)) {
            fileAt(which) = File{};
        }
        if (fileAt(which)->isFolder) {
            throw FileFailure{EISDIR};
        }
        return fileAt(which)->bytes;
    }

    void readIndexData(int n)
    {
        try {
            loaded.bytes = eeproms.read(4, static_cast<unsigned long>(512 + 16 * n), 16);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(4, indexError("readIndexData: read", n));
        }
    }

    void writeIndexData(int n)
    {
        try {
            eeproms.write(4, static_cast<unsigned long>(512 + 16 * n), loaded.bytes);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(5, indexError("writeIndexData: write", n));
        }
    }

    static void rethrowOther(FailureKind kind)
    {
        if (kind == FailureKind::OTHER) {
            throw kind;
        }
    }

    static std::string indexError(const char* what, int n)
    {
        return fmt::format("{} error.({} area=0x{:x} select=0x4 offset=0x{:x} length=0x10)", what,
                           codes(DEVICE_ACTION, DEVICE_DETAIL), static_cast<unsigned int>(n),
                           static_cast<unsigned int>(512 + 16 * n));
    }

    int checkIndexData(int n) const
    {
        if (!loaded.addsUpToZero()) {
            throw failed(1, fmt::format("checkIndexData: checksum error.(area=0x{:x})",
                                        static_cast<unsigned int>(n)));
        }
        if (loaded.number() != n) {
            throw failed(
                2, fmt::format("checkIndexData: area number mismatch.(darea=0x{:x} area=0x{:x})",
                               loaded.number(), static_cast<unsigned int>(n)));
        }
        return loaded.number();
    }

    bool isValid(int n)
    {
        readIndexData(n);
        if (!loaded.isUsed()) {
            return false;
        }
        try {
            checkIndexData(n);
        } catch (const Failure&) {
            return false;
        }
        return true;
    }

    void setAllInvalid()
    {
        for (int n = 0; n <= 26; ++n) {
            readIndexData(n);
            if (loaded.isUsed()) {
                checkIndexData(n);
                loaded.bytes[0] = 0;
                loaded.correctChecksum();
                writeIndexData(n);
            }
        }
    }

    void initializeIndexData(int n)
    {
        for (int i = n == -1 ? 0 : n; i <= (n == -1 ? 26 : n); ++i) {
            readIndexDataFile(i);
            checkIndexData(i);
            writeIndexData(i);
        }
    }

    void readIndexDataFile(int n)
    {
        const auto area = static_cast<unsigned int>(n);
        try {
            const Bytes bytes = indexFileFrom(n);
            const std::size_t count = std::min<std::size_t>(16, bytes.size());
            std::copy_n(bytes.begin(), count, loaded.bytes.begin());
            if (count < 16) {
                throw failed(7, fmt::format("rfIndexData: file read size mismatch.(area=0x{:x} "
                                            "path={} count=0x10 scount=0x{:x})",
                                            area, path(INDEX_FILE), count));
            }
        } catch (const FileFailure& e) {
            throw failed(6, fmt::format("rfIndexData: file read error.({} area=0x{:x} path={})",
                                        codes(FILE_ACTION, e.error), area, path(INDEX_FILE)));
        }
    }

    Bytes readArea()
    {
        try {
            return eeproms.read(loaded.eeprom(), loaded.offset(), loaded.size());
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(4, fmt::format("readArea: read error.({} select=0x{:x} offset=0x{:x} "
                                        "length=0x{:x} rLen=0x{:x})",
                                        codes(DEVICE_ACTION, DEVICE_DETAIL), loaded.eeprom(),
                                        loaded.offset(), loaded.size(), loaded.size()));
        }
    }

    std::size_t writeArea(const Bytes& data)
    {
        if (data.size() > loaded.size()) {
            throw failed(3, fmt::format("writeArea: size error.(size=0x{:x} wsize=0x{:x})",
                                        data.size(), loaded.size()));
        }
        try {
            eeproms.write(loaded.eeprom(), loaded.offset(), data);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            if (loaded.isUsed()) {
                loaded.bytes[0] = 0;
                loaded.correctChecksum();
                writeIndexData(loaded.number());
            }
            throw failed(5, fmt::format("writeArea: area write error.({} select=0x{:x} "
                                        "offset=0x{:x} length=0x{:x} wLen=0x{:x})",
                                        codes(DEVICE_ACTION, DEVICE_DETAIL), loaded.eeprom(),
                                        loaded.offset(), data.size(), data.size()));
        }
        return data.size();
    }

    std::size_t writeAndMarkValid(int n, const Bytes& data)
    {
        const std::size_t count = writeArea(data);
        if (!loaded.isUsed()) {
            loaded.bytes[0] = 1;
            loaded.correctChecksum();
            writeIndexData(n);
        }
        return count;
    }

    Bytes read(int n)
    {
        readIndexData(n);
        if (!loaded.isUsed()) {
            throw failed(0, fmt::format("checkIndexData: flag invalid.(area=0x{:x})",
                                        static_cast<unsigned int>(n)));
        }
        checkIndexData(n);
        return readArea();
    }

    Bytes readTo(int n, long long which)
    {
        const Bytes bytes = read(n);
        try {
            opened(which) = bytes;
        } catch (const FileFailure& e) {
            throw failed(8, fmt::format("read: file write error.({} area=0x{:x} path={})",
                                        codes(FILE_ACTION, e.error), static_cast<unsigned int>(n),
                                        path(which)));
        }
        return bytes;
    }

    std::size_t write(int n, const Bytes& data)
    {
        readIndexData(n);
        checkIndexData(n);
        return writeAndMarkValid(n, data);
    }

    std::size_t writeFrom(int n, long long which)
    {
        const auto area = static_cast<unsigned int>(n);
        readIndexData(n);
        checkIndexData(n);
        const std::optional<File>& file = fileAt(which);
        if (!file) {
            throw failed(11, fmt::format("write: stat error. area=0x{:x} path={} ret=-1", area,
                                         path(which)));
        }
        const auto size =
            file->isFolder ? static_cast<std::size_t>(files().folderSize()) : file->bytes.size();
        if (size > loaded.size()) {
            throw failed(
                11, fmt::format("write: file size.(area=0x{:x} path={} size=0x{:x} st_size=0x{:x})",
                                area, path(which), loaded.size(), size));
        }
        Bytes data;
        try {
            data = opened(which);
        } catch (const FileFailure& e) {
            throw failed(6, fmt::format("write: file read error.({} area=0x{:x} path={})",
                                        codes(FILE_ACTION, e.error), area, path(which)));
        }
        return writeAndMarkValid(n, data);
    }

    Lines call(const Step& step)
    {
        const int n = static_cast<int>(step.number(0));
        switch (step.operation) {
        case PUT_ENTRY:
            eeproms.put(4, 512 + 16 * static_cast<std::size_t>(n), step.bytes);
            return {};
        case PUT_BYTES:
            eeproms.put(n, static_cast<std::size_t>(step.number(1)), step.bytes);
            return {};
        case FAIL_AT:
            eeproms.failAt(static_cast<std::size_t>(n), step.number(1) != 0);
            return {};
        case FAIL_OTHERWISE:
            eeproms.failOtherwiseAt(static_cast<std::size_t>(n));
            return {};
        case FAIL_NO_MORE:
            eeproms.failNoMore();
            return {};
        case PUT_FILE:
            fileAt(n) = File{false, step.bytes};
            return {};
        case REMOVE_FILE:
            fileAt(n).reset();
            return {};
        case PUT_FOLDER:
            fileAt(n) = File{true, {}};
            return {};
        case NEW_STORE:
            loaded = Entry();
            return {};
        case POKE_ENTRY:
            entry.bytes[static_cast<std::size_t>(n & 15)] =
                static_cast<unsigned char>(step.number(1));
            return {};
        case SET_VALID_FLAG:
            entry.bytes[0] = n != 0 ? 1 : 0;
            return {hex(entry.bytes)};
        case SET_CHECKSUM:
            entry.correctChecksum();
            return {hex(entry.bytes)};
        case GET_ENTRY:
            return {fmt::format("{} {} {} {} {} {}; {}", entry.isUsed(), entry.eeprom(),
                                entry.number(), entry.offset(), entry.size(), entry.addsUpToZero(),
                                "/etc/default/config/panelindex.dat 4 512 16 0 26")};
        case GET_INDEX_OFFSET:
            return {fmt::format("{}", 512 + 16 * n)};
        case READ_INDEX_DATA:
            readIndexData(n);
            return {};
        case WRITE_INDEX_DATA:
            writeIndexData(n);
            return {};
        case CHECK_INDEX_DATA:
            return {fmt::format("{}", checkIndexData(n))};
        case IS_VALID:
            return {fmt::format("{}", isValid(n))};
        case SET_ALL_INVALID:
            setAllInvalid();
            return {};
        case INITIALIZE_INDEX_DATA:
            initializeIndexData(n);
            return {};
        case READ_INDEX_DATA_FILE:
            readIndexDataFile(n);
            return {};
        case READ_AREA:
            return readAreaOr();
        case WRITE_AREA: {
            const std::size_t count = writeArea(step.bytes);
            return {fmt::format("{}", count), hex(step.bytes)};
        }
        case READ:
            return {hex(read(n))};
        case READ_TO:
            return {hex(readTo(n, step.number(1)))};
        case WRITE: {
            const std::size_t count = write(n, step.bytes);
            return {fmt::format("{}", count), hex(step.bytes)};
        }
        case WRITE_FROM:
            return {fmt::format("{}", writeFrom(n, step.number(1)))};
        default:
            // A text ends at its first zero byte.
            throw failed(n, fmt::format("{}, {}",
                                        std::string(step.bytes.begin(),
                                                    std::find(step.bytes.begin(), step.bytes.end(),
                                                              static_cast<unsigned char>(0))),
                                        n));
        }
    }

    Lines readAreaOr()
    {
        std::string how = "read";
        std::string out = hex(std::string(UNWRITTEN));
        try {
            out = hex(readArea());
        } catch (const Failure& failure) {
            how = failure.text;
        } catch (FailureKind) {
            how = OTHER_FAILURE;
        }
        return {how, out};
    }

    PlainEEPROMs eeproms;
    Entry loaded;
    Entry entry;
    std::optional<File> content[Files::COUNT];
    Medium all;
};

/// An entry for number n, in one of ten cases with a different value somewhere.
Bytes anyEntry(Random& random, unsigned int n)
{
    Entry entry;
    entry.bytes = random.bytes(16);
    entry.bytes[0] = static_cast<unsigned char>(random.oneIn(10) ? random.byte() : random.below(2));
    entry.bytes[2] = static_cast<unsigned char>(random.oneIn(10) ? random.byte() : random.below(2));
    entry.bytes[3] = static_cast<unsigned char>(random.oneIn(10) ? random.byte() : n);
    // Areas inside the EEPROM, mostly small ones, after the index or on it.
    entry.bytes[4] &= 0x7F;
    entry.bytes[6] = static_cast<unsigned char>(random.oneIn(20) ? random.below(0x80) : 0);
    entry.bytes[7] &= random.oneIn(4) ? 0xFF : 0x0F;
    entry.correctChecksum();
    if (random.oneIn(10)) {
        entry.bytes[random.below(2) == 0 ? 15 : 8] ^= 0x10;
    }
    return entry.bytes;
}

/// Data for an area; seldom as long as the numbers of its size go.
Bytes anyData(Random& random)
{
    if (random.oneIn(150)) {
        return Bytes(65536 + random.below(20), 0x5A);
    }
    return random.bytes(random.oneIn(5) ? random.below(300) : random.below(20));
}

Steps generate(Random& random)
{
    Steps steps;
    const unsigned int entries = random.below(5);
    for (unsigned int i = 0; i < entries; ++i) {
        const unsigned int n = random.oneIn(6) ? random.below(31) : random.below(4);
        steps.push_back({PUT_ENTRY, {n}, anyEntry(random, n)});
    }
    const int count = random.between(2, 9);
    const auto anyNumber = [&random]() -> long long {
        return random.oneIn(8) ? random.between(-3, 31) : random.between(0, 3);
    };
    for (int i = 0; i < count; ++i) {
        Step step;
        step.operation = random.between(0, OPERATIONS - 1);
        switch (step.operation) {
        case PUT_ENTRY: {
            const unsigned int n = random.below(4);
            step.numbers = {n};
            step.bytes = anyEntry(random, n);
            break;
        }
        case PUT_BYTES:
            step.numbers = {random.between(4, 5), random.below(0x8000)};
            step.bytes = random.bytes(random.below(64));
            break;
        case FAIL_AT:
            step.numbers = {random.oneIn(4) ? random.between(1, 30) : random.between(1, 3),
                            random.oneIn(2)};
            break;
        case FAIL_OTHERWISE:
            step.numbers = {random.oneIn(4) ? random.between(1, 30) : random.between(1, 3)};
            break;
        case PUT_FILE:
            step.numbers = {random.oneOf({0, 0, 1, 3})};
            if (step.numbers[0] == INDEX_FILE) {
                const unsigned int whole = random.oneIn(2) ? 27 : random.below(6);
                for (unsigned int n = 0; n < whole; ++n) {
                    step.bytes = step.bytes + anyEntry(random, n);
                }
                step.bytes = step.bytes + random.bytes(random.oneIn(2) ? 0 : random.below(20));
            } else {
                step.bytes = random.bytes(random.oneIn(5) ? random.below(300) : random.below(20));
            }
            break;
        case REMOVE_FILE:
        case PUT_FOLDER:
            step.numbers = {random.oneOf({0, 1, 3})};
            break;
        case POKE_ENTRY:
            step.numbers = {random.below(16), random.oneIn(2) ? random.below(3) : random.byte()};
            break;
        case SET_VALID_FLAG:
            step.numbers = {random.below(2)};
            break;
        case WRITE_AREA:
            step.bytes = anyData(random);
            break;
        case READ_TO:
        case WRITE_FROM:
            step.numbers = {anyNumber(), random.below(4)};
            break;
        case WRITE:
            step.numbers = {anyNumber()};
            step.bytes = anyData(random);
            break;
        case SET_THROW:
            step.numbers = {random.between(-2, 14)};
            step.bytes = Bytes(random.oneIn(3) ? 240 + random.below(20) : random.below(30), 't');
            break;
        default:
            step.numbers = {anyNumber()};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"eeproms.put(4, entryPlace",
                                 "eeproms.put",
                                 "eeproms.failAt",
                                 "eeproms.failOtherwiseAt",
                                 "eeproms.failNoMore",
                                 "put file",
                                 "remove file",
                                 "put folder",
                                 "new store",
                                 "entry.getIndexData()[..] =",
                                 "entry.setIndexValidFlag",
                                 "entry.setChecksum",
                                 "all of entry",
                                 "settings.getIndexOffset",
                                 "settings.readIndexData",
                                 "settings.writeIndexData",
                                 "settings.checkIndexData",
                                 "settings.isValid",
                                 "settings.setAllInvalid",
                                 "settings.initializeIndexData",
                                 "settings.readIndexDataFile",
                                 "settings.readArea",
                                 "settings.writeArea",
                                 "settings.read",
                                 "settings.read to file",
                                 "settings.write",
                                 "settings.write from file",
                                 "settings.setThrow"};
    return callOf(names[step.operation], step);
}

TEST(SettingModel, StoreKeepsItsRules)
{
    Comparison comparison;
    comparison.library = [] { return std::make_unique<Library>(); };
    comparison.rules = [] { return std::make_unique<Rules>(); };
    comparison.generate = generate;
    comparison.print = print;
    compare(comparison, 20000, 92000);
}

}
