// SPDX-License-Identifier: Apache-2.0
// The event store: files, rotation and hand-shake, by their rules.
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/host/Machine.h>
#include <recordkit/selfile/BMCSELDataFile.h>

#include "MemoryRoot.h"
#include "Model.h"
#include "StoreCalls.h"

namespace {

using namespace testing_support;
using Message = TAVLib::RecordKit::BMCSELEntryMessage;

enum Operation {
    // What happens around the store. The first number names a file.
    PUT_FILE,  ///< number of records, id of the first, filler: a file of 800 slots
    PUT_BYTES, ///< bytes
    RESIZE,    ///< size, byte that fills it up
    PATCH,     ///< offset; bytes
    REMOVE,
    PUT_FOLDER,
    PUT_FULL_FOLDER,
    PUT_LOOP, ///< a link to itself
    SET_BOARDS,
    FAIL_MESSAGE_FILES, ///< bits
    FAIL_COMMANDS,      ///< status
    USE_SHELL,
    // The store.
    GET_FILE_NAME,
    READ_PLAINLY, ///< file, offset, whence, length
    USE_BAD_DESCRIPTOR,
    WRITE_TRACE,
    SEARCH_RECORD,
    GET_TAIL_ADDR,
    GET_TAIL_ADDR_EX,
    GET_LAST_REC_ADDR,
    GET_ENTRY_NUM_EX,
    GET_ENTRY_NUM,
    FULL_ENTRY_CHECK,
    TRUNCATE,
    WRITE_RECORD,
    READ_RECORD,
    READ_FIRST_RECORD,
    READ_LAST_RECORD_EX,
    READ_LAST_RECORD,
    READ_STORED_RECORD,
    CLEAR_ALL_RECORD,
    MAKE_COPY,
    SHIFT,
    BACKUP,
    RESTORE,
    INITIAL_TRUNCATE,
    OPERATIONS
};

constexpr std::size_t SLOT = 138;
constexpr std::size_t SLOTS = 800;
constexpr std::size_t FULL_SIZE = SLOT * SLOTS;
constexpr std::size_t LAST_SLOT = FULL_SIZE - SLOT;
constexpr unsigned int NO_ID = 0xFFFF;

constexpr unsigned long UNWRITTEN = 0xABCD;
constexpr unsigned char UNWRITTEN_BYTE = 0x5A;

/// Where positions and sizes are the medium's own affair.
constexpr const char* A_FOLDER = "a folder";

constexpr const char* REQUEST = "/var/tmp/shift_sel_sync";

// How a medium names what is not a plain file.
constexpr const char* FOLDER_MARK = "/";
constexpr const char* LOOP_MARK = "@";

std::string workingFile(unsigned int sb)
{
    return fmt::format("/tmp/sb{}_bmc_sel0", sb);
}

std::string keptFile(unsigned int sb, int index)
{
    return fmt::format("/var/tav/fmem/ipmi/sb{}_bmc_sel{}", sb, index);
}

/// The files that sequences create or damage.
const std::vector<std::string>& paths()
{
    static const std::vector<std::string> all = [] {
        std::vector<std::string> names = {workingFile(1)};
        for (int i = 0; i <= 7; ++i) {
            names.push_back(keptFile(1, i));
        }
        for (const unsigned int sb : {0U, 2U}) {
            names.push_back(workingFile(sb));
            names.push_back(keptFile(sb, 0));
            names.push_back(keptFile(sb, 1));
        }
        names.emplace_back(REQUEST);
        return names;
    }();
    return all;
}

/// The last of them.
constexpr long long REQUEST_FILE = 15;

const std::string& pathOf(const Step& step)
{
    return paths()[static_cast<std::size_t>(step.number(0)) % paths().size()];
}

/// A file whose first slots have records with ids from one on, and whose other slots are empty.
const Bytes& fileOf(const Step& step)
{
    // The library and its rules ask for the same files one after the other.
    static std::map<std::vector<long long>, Bytes> made;
    const std::vector<long long> key(step.numbers.begin() + 1, step.numbers.end());
    const auto found = made.find(key);
    if (found != made.end()) {
        return found->second;
    }
    if (made.size() > 100) {
        made.clear();
    }
    Bytes& file = made[key];
    file.assign(FULL_SIZE, 0xFF);
    const auto records = static_cast<std::size_t>(step.number(1));
    for (std::size_t i = 0; i < records && i < SLOTS; ++i) {
        const std::size_t id = (static_cast<std::size_t>(step.number(2)) + i) % NO_ID;
        for (std::size_t k = 0; k < SLOT; ++k) {
            file[i * SLOT + k] =
                static_cast<unsigned char>(static_cast<std::size_t>(step.number(3)) + i + k);
        }
        file[i * SLOT + 2] = static_cast<unsigned char>(id % 256);
        file[i * SLOT + 3] = static_cast<unsigned char>(id / 256);
    }
    return file;
}

/// The folders that the store works in, in memory.
class Root {
public:
    const std::string& path() const { return root->path(); }
    std::string at(const std::string& name) const { return root->at(name); }

    void clear() const
    {
        for (const char* const folder : FOLDERS) {
            for (const std::string& name : listFolder(at(folder))) {
                std::filesystem::remove_all(at(folder) + "/" + name);
            }
        }
    }

    void readInto(Medium& medium) const
    {
        medium.clear();
        for (const char* const folder : FOLDERS) {
            readFolder(folder, medium);
        }
    }

private:
    static constexpr const char* FOLDERS[] = {"/tmp", "/var/tmp", "/var/tav/fmem/ipmi"};

    void readFolder(const std::string& folder, Medium& medium) const
    {
        DIR* const entries = ::opendir(at(folder).c_str());
        while (const dirent* const entry = ::readdir(entries)) {
            const std::string name = folder + "/" + entry->d_name;
            struct stat status = {};
            if (entry->d_name[0] == '.' || ::lstat(at(name).c_str(), &status) != 0) {
                continue;
            }
            if (S_ISDIR(status.st_mode)) {
                medium[name + FOLDER_MARK];
                readFolder(name, medium);
            } else if (S_ISLNK(status.st_mode)) {
                medium[name + LOOP_MARK];
            } else {
                medium[name] = contentOf(name, static_cast<std::size_t>(status.st_size));
            }
        }
        ::closedir(entries);
    }

    Bytes contentOf(const std::string& name, std::size_t size) const
    {
        Bytes bytes(size);
        const int fd = ::open(at(name).c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t count = ::read(fd, bytes.data(), size);
        ::close(fd);
        bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        return bytes;
    }

    const std::unique_ptr<ScratchRoot> root = makeMemoryRoot();
};

const Root& root()
{
    static const Root one;
    return one;
}

std::string shown(unsigned int code, unsigned long addr)
{
    return fmt::format("{} at {}", code, addr);
}

class Library : public Subject {
public:
    Library()
    {
        root().clear();
        storeCalls() = {};
        storeCalls().root = root().path();
    }
    ~Library() override
    {
        TAVLib::host::setMachine({});
        root().clear();
    }

    Lines perform(const Step& step) override
    {
        if (step.operation < GET_FILE_NAME) {
            prepare(step);
            return {};
        }
        const std::size_t descriptors = openDescriptors();
        const TraceCapture trace;
        Lines seen;
        try {
            seen = call(step);
        } catch (const TAVLib::PException& e) {
            seen = {describe(e)};
        }
        if (openDescriptors() != descriptors) {
            seen.push_back("descriptors are left open");
        }
        seen = joined(seen, storeCalls().log);
        storeCalls().log.clear();
        return joined(seen, trace.lines());
    }

    const Medium& medium() override
    {
        root().readInto(files);
        return files;
    }

private:
    static void put(const std::string& path, const Bytes& bytes)
    {
        const int fd =
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        ::close(fd);
        if (count != static_cast<ssize_t>(bytes.size())) {
            throw std::runtime_error(path + " cannot be written");
        }
    }

    static void prepare(const Step& step)
    {
        const std::string path = root().at(pathOf(step));
        const bool isFile = std::filesystem::is_regular_file(std::filesystem::symlink_status(path));
        if (step.operation <= PUT_LOOP && step.operation != RESIZE && step.operation != PATCH) {
            std::filesystem::remove_all(path);
        }
        switch (step.operation) {
        case PUT_FILE:
            return put(path, fileOf(step));
        case PUT_BYTES:
            return put(path, step.bytes);
        case RESIZE:
            if (isFile) {
                Bytes bytes = readFile(path);
                bytes.resize(static_cast<std::size_t>(step.number(1)),
                             static_cast<unsigned char>(step.number(2)));
                put(path, bytes);
            }
            return;
        case PATCH:
            if (isFile) {
                Bytes bytes = readFile(path);
                for (std::size_t i = 0; i < step.bytes.size(); ++i) {
                    const std::size_t at = static_cast<std::size_t>(step.number(1)) + i;
                    if (at < bytes.size()) {
                        bytes[at] = step.bytes[i];
                    }
                }
                put(path, bytes);
            }
            return;
        case REMOVE:
            return;
        case PUT_FOLDER:
        case PUT_FULL_FOLDER:
            std::filesystem::create_directory(path);
            if (step.operation == PUT_FULL_FOLDER) {
                put(path + "/x", {1});
            }
            return;
        case PUT_LOOP:
            return std::filesystem::create_symlink(path, path);
        case SET_BOARDS: {
            TAVLib::host::Machine machine;
            machine.systemBoards = static_cast<int>(step.number(0));
            return TAVLib::host::setMachine(machine);
        }
        case FAIL_MESSAGE_FILES:
            storeCalls().failingMessageFiles = static_cast<unsigned int>(step.number(0));
            return;
        case FAIL_COMMANDS:
            storeCalls().commandStatus = static_cast<int>(step.number(0));
            return;
        default:
            storeCalls().realShell = true;
            return;
        }
    }

    Lines call(const Step& step)
    {
        const auto sb = static_cast<unsigned char>(step.number(0));
        const int second = static_cast<int>(step.number(1));
        const int third = static_cast<int>(step.number(2));
        unsigned long addr = UNWRITTEN;
        switch (step.operation) {
        case GET_FILE_NAME:
            return {store.getFileName(sb, second, third)};
        case READ_PLAINLY:
            return readPlainly(step);
        case USE_BAD_DESCRIPTOR: {
            char byte = 0;
            const long at = store.lseek(-1, 0, SEEK_SET);
            const long count = store.read(-1, &byte, 1);
            return {fmt::format("{} {} {}", at, count, store.closeFile(-1))};
        }
        case WRITE_TRACE:
            store.writeTrace(sb, 20003, "%s %d",
                             std::string(step.bytes.begin(), step.bytes.end()).c_str(), second);
            return {};
        case SEARCH_RECORD: {
            Message out = unwrittenMessage();
            const unsigned int code = store.searchRecord(
                root().at(pathOf(step)), static_cast<unsigned short>(second), out, addr);
            return {shown(code, addr), hex(imageOf(out))};
        }
        case GET_TAIL_ADDR: {
            const unsigned int code = store.getTailAddr(sb, addr);
            return {shown(code, addr)};
        }
        case GET_TAIL_ADDR_EX: {
            const unsigned int code = store.getTailAddrEx(sb, second, addr, third);
            return {shown(code, addr)};
        }
        case GET_LAST_REC_ADDR: {
            const unsigned int code = store.getLastRecAddr(sb, addr);
            return {shown(code, addr)};
        }
        case GET_ENTRY_NUM_EX: {
            unsigned short total = UNWRITTEN;
            unsigned short last = UNWRITTEN;
            std::vector<unsigned short> counts = {7, 7};
            const unsigned int code = store.getEntryNumEx(sb, total, last, counts);
            return {fmt::format("{} total {} last {} counts {}", code, total, last,
                                fmt::join(counts, " "))};
        }
        case GET_ENTRY_NUM: {
            unsigned short total = UNWRITTEN;
            unsigned short last = UNWRITTEN;
            const unsigned int code = store.getEntryNum(sb, total, last);
            return {fmt::format("{} total {} last {}", code, total, last)};
        }
        case FULL_ENTRY_CHECK:
            return {fmt::format("{}", store.fullEntryCheck(sb))};
        case TRUNCATE:
            return {fmt::format("{}", store.truncate(sb, second, third))};
        case WRITE_RECORD: {
            Message record;
            {
                const TraceCapture unseen;
                load(record, step.bytes);
            }
            return {fmt::format("{}", store.writeRecord(sb, record))};
        }
        case CLEAR_ALL_RECORD:
            return {fmt::format("{}", store.clearAllRecord(sb))};
        case MAKE_COPY:
            return {fmt::format("{}", store.makeCopySELFile(sb))};
        case SHIFT:
            return {fmt::format("{}", store.shiftSelFile(sb, second != 0))};
        case BACKUP:
            return {fmt::format("{}", store.backupTmpSel(sb))};
        case RESTORE:
            return {fmt::format("{}", store.restoreTmpSel(sb))};
        case INITIAL_TRUNCATE:
            return {fmt::format("{}", store.initialTruncate())};
        default:
            return readInto(step);
        }
    }

    Lines readInto(const Step& step)
    {
        const auto sb = static_cast<unsigned char>(step.number(0));
        Message out = unwrittenMessage();
        long long result = 0;
        switch (step.operation) {
        case READ_RECORD:
            result = store.readRecord(sb, static_cast<unsigned short>(step.number(1)), out);
            break;
        case READ_FIRST_RECORD:
            result = store.readFirstRecord(sb, out);
            break;
        case READ_LAST_RECORD_EX:
            result = store.readLastRecordEx(sb, static_cast<int>(step.number(1)), out,
                                            static_cast<int>(step.number(2)));
            break;
        case READ_LAST_RECORD:
            result = store.readLastRecord(sb, out);
            break;
        default:
            result = store.readStoredRecord(sb, static_cast<unsigned short>(step.number(1)), out);
            break;
        }
        return {fmt::format("{}", result), hex(imageOf(out))};
    }

    Lines readPlainly(const Step& step)
    {
        const int fd = store.openFile(root().at(pathOf(step)));
        if (fd < 0) {
            return {"not opened"};
        }
        if (std::filesystem::is_directory(root().at(pathOf(step)))) {
            store.closeFile(fd);
            return {A_FOLDER};
        }
        const long at =
            store.lseek(fd, static_cast<long>(step.number(1)), static_cast<int>(step.number(2)));
        Bytes buffer(static_cast<std::size_t>(step.number(3)), UNWRITTEN_BYTE);
        const long count = store.read(fd, buffer.data(), static_cast<unsigned int>(buffer.size()));
        const int closed = store.closeFile(fd);
        return {fmt::format("{} {} {}", at, count, closed), hex(buffer)};
    }

    static Message unwrittenMessage() { return fromBytes<Message>(Bytes(SLOT, UNWRITTEN_BYTE)); }

    BMCSELDataFile store;
    Medium files;
};

class Rules : public Subject {
public:
    Lines perform(const Step& step) override
    {
        if (step.operation < GET_FILE_NAME) {
            prepare(step);
            return {};
        }
        out = Bytes(SLOT, UNWRITTEN_BYTE);
        const Lines seen = call(step);
        return joined(joined(seen, std::exchange(calls, {})), std::exchange(traces, {}));
    }

    const Medium& medium() override { return files; }

private:
    enum Code {
        SUCCESS = 0,
        NO_RECORD = 1,
        FULL = 2,
        DAMAGED_TAIL = 3,
        NOT_OPENED = 4,
        NOT_REWRITTEN = 6,
        NOT_MOVED = 7,
        NOT_POSITIONED = 8,
        NOT_READ = 10,
        NO_STATUS = 14,
        NOT_FOUND = 15
    };

    // The medium.

    bool isFile(const std::string& path) const { return files.count(path) != 0; }
    bool isFolder(const std::string& path) const { return files.count(path + FOLDER_MARK) != 0; }
    bool isLoop(const std::string& path) const { return files.count(path + LOOP_MARK) != 0; }
    bool isThere(const std::string& path) const
    {
        return isFile(path) || isFolder(path) || isLoop(path);
    }
    /// Names below a folder.
    std::vector<std::string> below(const std::string& folder) const
    {
        std::vector<std::string> names;
        for (const auto& [name, bytes] : files) {
            if (name.size() > folder.size() + 1 &&
                name.compare(0, folder.size() + 1, folder + "/") == 0) {
                names.push_back(name);
            }
        }
        return names;
    }
    void erase(const std::string& path)
    {
        for (const std::string& name : below(path)) {
            files.erase(name);
        }
        files.erase(path);
        files.erase(path + FOLDER_MARK);
        files.erase(path + LOOP_MARK);
    }
    /// What stat sets errno to; 0 when it succeeds.
    int statusError(const std::string& path) const
    {
        return isLoop(path) ? ELOOP : isThere(path) ? 0 : ENOENT;
    }
    /// Size as stat returns it. That of a folder depends on the medium.
    long long sizeOf(const std::string& path) const
    {
        if (isFile(path)) {
            return static_cast<long long>(files.at(path).size());
        }
        struct stat status = {};
        ::stat(root().at(path).c_str(), &status);
        return static_cast<long long>(status.st_size);
    }

    void prepare(const Step& step)
    {
        const std::string& path = pathOf(step);
        if (step.operation <= PUT_LOOP && step.operation != RESIZE && step.operation != PATCH) {
            erase(path);
        }
        switch (step.operation) {
        case PUT_FILE:
            files[path] = fileOf(step);
            return;
        case PUT_BYTES:
            files[path] = step.bytes;
            return;
        case RESIZE:
            if (isFile(path)) {
                files[path].resize(static_cast<std::size_t>(step.number(1)),
                                   static_cast<unsigned char>(step.number(2)));
            }
            return;
        case PATCH:
            if (isFile(path)) {
                Bytes& bytes = files[path];
                for (std::size_t i = 0; i < step.bytes.size(); ++i) {
                    const std::size_t at = static_cast<std::size_t>(step.number(1)) + i;
                    if (at < bytes.size()) {
                        bytes[at] = step.bytes[i];
                    }
                }
            }
            return;
        case REMOVE:
            return;
        case PUT_FOLDER:
            files[path + FOLDER_MARK];
            return;
        case PUT_FULL_FOLDER:
            files[path + FOLDER_MARK];
            files[path + "/x"] = {1};
            return;
        case PUT_LOOP:
            files[path + LOOP_MARK];
            return;
        case SET_BOARDS:
            boards = step.number(0);
            return;
        case FAIL_MESSAGE_FILES:
            failingMessageFiles = static_cast<unsigned int>(step.number(0));
            return;
        case FAIL_COMMANDS:
            commandStatus = static_cast<int>(step.number(0));
            return;
        default:
            return;
        }
    }

    // What the store says and asks for.

    void trace(const std::string& text) { traces.push_back(traceLine(83, 0x1000, 0, text)); }
    void traceCall(const std::string& text, int error)
    {
        trace(fmt::format("{} failed: errno {}", text, error));
    }
    bool messageFiles(MessageFileOperation operation, const char* name, unsigned int sb)
    {
        calls.push_back(fmt::format("{} {}", name, sb));
        return (failingMessageFiles >> operation) % 2 == 0;
    }

    /// Whether a file can be opened for reading, which is traced when it cannot.
    bool opens(const std::string& path)
    {
        if (isFile(path) || isFolder(path)) {
            return true;
        }
        traceCall("open filename:[" + root().at(path) + "]", isLoop(path) ? ELOOP : ENOENT);
        return false;
    }
    /// Up to 138 bytes; none where they cannot be read, which is traced.
    struct Reading {
        bool failed;
        Bytes bytes;

        /// The slot with zeroes where the file had nothing.
        Bytes slot() const
        {
            Bytes whole = bytes;
            whole.resize(SLOT, 0);
            return whole;
        }
    };
    Reading readSlot(const std::string& path, std::size_t addr)
    {
        if (isFolder(path)) {
            traceCall("read", EISDIR);
            return {true, {}};
        }
        const Bytes& bytes = files.at(path);
        const std::size_t from = std::min(addr, bytes.size());
        return {false, part(bytes, from, std::min(SLOT, bytes.size() - from))};
    }

    static unsigned int idOf(const Bytes& slot) { return slot[2] + 256U * slot[3]; }

    static bool isEmpty(const Bytes& slot)
    {
        for (const unsigned char byte : slot) {
            if (byte != 0xFF) {
                return false;
            }
        }
        return true;
    }

    // Scans.

    static std::string nameOf(unsigned int sb, int fileNo, int kind)
    {
        if (fileNo == 0 && kind == 0) {
            return workingFile(sb);
        }
        return keptFile(sb, fileNo);
    }

    unsigned int search(const std::string& path, unsigned int id, Bytes& record,
                        unsigned long& addr)
    {
        addr = 0;
        if (!opens(path)) {
            return NOT_OPENED;
        }
        while (true) {
            const Reading reading = readSlot(path, addr);
            if (reading.failed || reading.bytes.empty()) {
                return NOT_FOUND;
            }
            if (reading.bytes.size() == 1) {
                traces.push_back(
                    traceLine(83, 0x0900, 0, "SELEntry::setSerialized: 1 where 2 is needed"));
                traces.push_back(traceLine(
                    83, 0x1300, 0, "failed: BMCSELEntry::setSerialized(SELEntry::setSerialized)"));
                traces.push_back(traceLine(83, 0x1400, 0,
                                           "failed: BMCSELEntryMessage::setSerialized(BMCSELEntry::"
                                           "setSerialized)"));
            }
            if (reading.bytes.size() < 4) {
                trace("searchRecord");
                return NOT_READ;
            }
            if (idOf(reading.bytes) == id) {
                record = reading.slot();
                return SUCCESS;
            }
            addr += SLOT;
        }
    }

    unsigned int tailOf(const std::string& path, unsigned long& addr)
    {
        Bytes record;
        const unsigned int code = search(path, NO_ID, record, addr);
        if (code == NOT_FOUND && addr == FULL_SIZE) {
            return FULL;
        }
        if (code == SUCCESS) {
            return isEmpty(record) ? SUCCESS : DAMAGED_TAIL;
        }
        return code;
    }

    unsigned int getTailAddrEx(unsigned int sb, int fileNo, int kind, unsigned long& addr)
    {
        const unsigned int code = tailOf(nameOf(sb, fileNo, kind), addr);
        if (code != SUCCESS && code != FULL && code != DAMAGED_TAIL) {
            trace(
                fmt::format("BMCSELDataFile::getTailAddrEx SB#{} sel{} ret({})", sb, fileNo, code));
        }
        return code;
    }

    unsigned int getLastRecAddr(unsigned int sb, unsigned long& addr)
    {
        const unsigned int code = tailOf(workingFile(sb), addr);
        if (code == NOT_FOUND) {
            addr = LAST_SLOT;
            return SUCCESS;
        }
        if (code != SUCCESS) {
            return code;
        }
        if (addr <= 137) {
            return NO_RECORD;
        }
        addr -= SLOT;
        return SUCCESS;
    }

    unsigned int getEntryNumEx(unsigned int sb, unsigned int& total, unsigned int& last,
                               std::vector<unsigned int>& counts)
    {
        std::vector<unsigned int> found(8, 0);
        last = 1;
        while (last < 8) {
            const int index = static_cast<int>(last);
            const std::string path = keptFile(sb, index);
            const int error = statusError(path);
            if (error != 0 && error != ENOENT) {
                trace(fmt::format("BMCSELDataFile::getEntryNumEx SB#{} sel{} stat({})", sb, index,
                                  error));
                return NO_STATUS;
            }
            if (error == ENOENT || sizeOf(path) != static_cast<long long>(FULL_SIZE)) {
                last -= 1;
                break;
            }
            unsigned long addr = 0;
            const unsigned int code = getTailAddrEx(sb, index, 1, addr);
            if (code == SUCCESS) {
                found[last] = static_cast<unsigned int>(addr / SLOT);
            } else if (code == FULL) {
                found[last] = SLOTS;
            } else {
                trace(fmt::format("BMCSELDataFile::getEntryNumEx SB#{} sel{} ret({})", sb, index,
                                  code));
            }
            last += 1;
        }
        if (last > 7) {
            last = 7;
        }
        unsigned long addr = 0;
        const unsigned int code = getTailAddrEx(sb, 0, 0, addr);
        if (code == SUCCESS) {
            found[0] = static_cast<unsigned int>(addr / SLOT);
        } else if (code == FULL) {
            found[0] = SLOTS;
        } else {
            trace(fmt::format("BMCSELDataFile::getEntryNumEx(tmp) SB#{} sel{} ret({})", sb, last,
                              code));
        }
        counts.assign(found.begin(), found.begin() + static_cast<long>(last) + 1);
        total = 0;
        for (const unsigned int count : counts) {
            total = (total + count) % 65536;
        }
        return SUCCESS;
    }

    /// Rewrites a file as empty slots.
    unsigned int truncate(unsigned int sb, int fileNo, int kind)
    {
        const std::string path = nameOf(sb, fileNo, kind);
        if (isFolder(path) || isLoop(path)) {
            trace("BMCSELDataFile::truncate " + root().at(path) + " ");
            return NOT_REWRITTEN;
        }
        files[path] = Bytes(FULL_SIZE, 0xFF);
        return SUCCESS;
    }

    unsigned int fullEntryCheck(unsigned int sb)
    {
        const std::string path = workingFile(sb);
        const int error = statusError(path);
        if (error != 0 && error != ENOENT) {
            return NO_STATUS;
        }
        if (error == ENOENT || sizeOf(path) != static_cast<long long>(FULL_SIZE)) {
            return truncate(sb, 0, 0);
        }
        unsigned long addr = 0;
        return tailOf(path, addr);
    }

    // Records.

    int writeRecord(unsigned int sb, const Bytes& image)
    {
        if (image.size() < SLOT) {
            return 0;
        }
        unsigned long addr = 0;
        if (tailOf(workingFile(sb), addr) != SUCCESS) {
            return 0;
        }
        Bytes& bytes = files[workingFile(sb)];
        bytes.resize(std::max<std::size_t>(bytes.size(), addr + SLOT), 0);
        std::copy_n(image.begin(), SLOT, bytes.begin() + static_cast<long>(addr));
        return 1;
    }

    unsigned int readRecord(unsigned int sb, unsigned int id)
    {
        for (int i = 0; i <= 7; ++i) {
            const std::string path = nameOf(sb, i, 0);
            if (!opens(path)) {
                return NOT_OPENED;
            }
            const Reading begin = readSlot(path, 0);
            if (begin.failed) {
                return NOT_READ;
            }
            const unsigned int first = idOf(begin.slot());
            unsigned long addr = LAST_SLOT;
            if (i == 0) {
                if (first == NO_ID) {
                    return NO_RECORD;
                }
                if (getLastRecAddr(sb, addr) != SUCCESS) {
                    return NOT_FOUND;
                }
            }
            const Reading end = readSlot(path, addr);
            if (end.bytes.size() != SLOT) {
                return NOT_READ;
            }
            const unsigned int last = idOf(end.bytes);
            const bool contains =
                first <= last ? first <= id && id <= last : id >= first || id <= last;
            if (contains) {
                return search(path, id, out, addr);
            }
        }
        return NOT_FOUND;
    }

    int readFirstRecord(unsigned int sb)
    {
        for (int i = 7; i >= 0; --i) {
            const std::string path = nameOf(sb, i, 0);
            if (isLoop(path)) {
                return 0;
            }
            if (!isThere(path)) {
                continue;
            }
            const Reading reading = readSlot(path, 0);
            if (reading.bytes.size() != SLOT || idOf(reading.bytes) == NO_ID) {
                return 0;
            }
            out = reading.bytes;
            return 1;
        }
        return 0;
    }

    int readLastRecordEx(unsigned int sb, int fileNo, int kind)
    {
        unsigned long addr = 0;
        const unsigned int code = getTailAddrEx(sb, fileNo, kind, addr);
        if (code == SUCCESS && addr > 137) {
            addr -= SLOT;
        } else if (code == FULL) {
            addr = LAST_SLOT;
        } else {
            return 0;
        }
        const Reading reading = readSlot(nameOf(sb, fileNo, kind), addr);
        if (reading.bytes.size() != SLOT) {
            return 0;
        }
        out = reading.bytes;
        return 1;
    }

    int readLastRecord(unsigned int sb)
    {
        return readLastRecordEx(sb, 0, 0) == 1 || readLastRecordEx(sb, 1, 1) == 1 ? 1 : 0;
    }

    unsigned int readStoredRecord(unsigned int sb, unsigned int logNum)
    {
        unsigned int total = 0;
        unsigned int last = 0;
        std::vector<unsigned int> counts;
        const unsigned int code = getEntryNumEx(sb, total, last, counts);
        const std::string prefix = "BMCSELDataFile::readStoredRecord ";
        if (code != SUCCESS) {
            trace(prefix + fmt::format("SB#{} failed to get SEL entry num", sb));
            return code;
        }
        if (total == 0) {
            trace(prefix + fmt::format("SB#{} SEL entry is not exists", sb));
            return NOT_FOUND;
        }
        if (total < logNum) {
            trace(prefix + fmt::format("logNum over({})", logNum));
            return NOT_FOUND;
        }
        const unsigned int idx = (logNum + 65535) % 65536;
        unsigned int start = 0;
        for (int f = static_cast<int>(last); f >= 0; --f) {
            const unsigned int end = start + counts[static_cast<std::size_t>(f)];
            if (start <= idx && idx < end) {
                const std::string path = nameOf(sb, f, f > 0 ? 1 : 0);
                if (!opens(path)) {
                    return NOT_OPENED;
                }
                const Reading reading = readSlot(path, (idx - start) * SLOT);
                if (reading.failed) {
                    return NOT_READ;
                }
                out = reading.slot();
                return SUCCESS;
            }
            if (f == 0) {
                trace(prefix + fmt::format("SB#{} SEL entry total is mismatch({})", sb, end));
            }
            start = end;
        }
        return NOT_FOUND;
    }

    // Maintenance.

    /// Runs a copying command and returns its status.
    int copy(const std::string& from, const std::string& to, const char* blank)
    {
        calls.push_back("/bin/cp " + from + " " + to + blank + ">/dev/null 2>&1");
        if (commandStatus != 0) {
            return commandStatus;
        }
        constexpr int EXIT_1 = 256;
        if (!isFile(from) || isLoop(to)) {
            return EXIT_1;
        }
        const std::string name = from.substr(from.rfind('/') + 1);
        files[isFolder(to) ? to + "/" + name : to] = Bytes(files.at(from));
        return 0;
    }

    /// The result of remove: 0, or errno.
    int remove(const std::string& path)
    {
        calls.push_back("remove " + path);
        if (!isThere(path)) {
            return ENOENT;
        }
        if (!below(path).empty()) {
            return ENOTEMPTY;
        }
        erase(path);
        return 0;
    }

    /// The result of rename: 0, or errno.
    int rename(const std::string& from, const std::string& to)
    {
        calls.push_back("rename " + from + " " + to);
        if (!isFolder(from) && isFolder(to)) {
            return EISDIR;
        }
        if (isFolder(from) && (isFile(to) || isLoop(to))) {
            return ENOTDIR;
        }
        if (!below(to).empty()) {
            return ENOTEMPTY;
        }
        erase(to);
        if (isFile(from)) {
            files[to] = files.at(from);
        } else {
            files[to + FOLDER_MARK];
            for (const std::string& name : below(from)) {
                files[to + name.substr(from.size())] = files.at(name);
            }
        }
        erase(from);
        return 0;
    }

    unsigned int clearAllRecord(unsigned int sb)
    {
        if (truncate(sb, 0, 0) != SUCCESS) {
            return NOT_REWRITTEN;
        }
        for (int i = 0; i <= 7; ++i) {
            if (truncate(sb, i, 1) != SUCCESS) {
                return NOT_REWRITTEN;
            }
        }
        return messageFiles(CLEAR_MESSAGES, "clear messages", sb) ? SUCCESS : NOT_REWRITTEN;
    }

    unsigned int makeCopySELFile(unsigned int sb)
    {
        if (sb >= boards) {
            return NOT_POSITIONED;
        }
        const std::string to = keptFile(sb, 0);
        const std::string prefix = "BMCSELDataFile::makeCopySELFile ";
        const int error = statusError(to);
        if (error == 0) {
            const int removal = remove(to);
            if (removal != 0) {
                trace(prefix + fmt::format("{} remove({})", root().at(to), removal));
                return NOT_REWRITTEN;
            }
        } else if (error != ENOENT) {
            trace(prefix + fmt::format("{} stat({})", root().at(to), error));
            return NO_STATUS;
        }
        const int status = copy(workingFile(sb), to, "");
        if (status != 0) {
            trace(prefix + fmt::format("mv({})", status));
            return NOT_MOVED;
        }
        return truncate(sb, 0, 0);
    }

    int shiftChain(unsigned int sb)
    {
        const std::string prefix = "BMCSELDataFile::shiftSelFile ";
        if (!messageFiles(SHIFT_MESSAGES, "shift messages", sb)) {
            trace(prefix + "shiftSelMessageFile");
        }
        const unsigned int copied = makeCopySELFile(sb);
        if (copied != SUCCESS) {
            return static_cast<int>(copied);
        }
        for (int i = 6; i >= 0; --i) {
            const int error = statusError(keptFile(sb, i));
            if (error == ENOENT) {
                continue;
            }
            if (error != 0) {
                trace(prefix + fmt::format("sel{} stat({})", i, error));
                return NO_STATUS;
            }
            const int renaming = rename(keptFile(sb, i), keptFile(sb, i + 1));
            if (renaming != 0) {
                // The number after "sel" is the error, and the index comes in brackets.
                trace(prefix + fmt::format("sel{} rename({})", renaming, i));
                return NOT_MOVED;
            }
            calls.emplace_back("sync");
        }
        return SUCCESS;
    }

    int shiftSelFile(unsigned int sb, bool noSync)
    {
        if (noSync) {
            return shiftChain(sb);
        }
        int result = 0;
        const int removal = remove(REQUEST);
        if (removal == ENOENT) {
            result = -1;
        } else if (removal != 0) {
            trace(fmt::format("BMCSELDataFile::clearAllRecord {} remove({})", root().at(REQUEST),
                              removal));
            result = NOT_REWRITTEN;
        } else {
            result = shiftChain(sb);
        }
        if (!isFolder(REQUEST) && !isLoop(REQUEST)) {
            Bytes answer = textBytes(std::to_string(result));
            answer.resize(16, 0);
            files[REQUEST] = answer;
        }
        return result;
    }

    int backupTmpSel(unsigned int sb)
    {
        if (!messageFiles(BACKUP_MESSAGES, "backup messages", sb)) {
            return 0;
        }
        const int status = copy(workingFile(sb), keptFile(sb, 0), " ");
        if (status == 0) {
            return 1;
        }
        trace(fmt::format("BMCSELDataFile::backupTmpSel cp SB#{} ret({}) errno({})", sb, status,
                          ERROR_AFTER_COMMAND));
        return 0;
    }

    int restoreTmpSel(unsigned int sb)
    {
        if (!messageFiles(RESTORE_MESSAGES, "restore messages", sb)) {
            return 0;
        }
        const std::string from = keptFile(sb, 0);
        const std::string prefix = "BMCSELDataFile::restoreTmpSel ";
        const int error = statusError(from);
        if (error == ENOENT) {
            return 0;
        }
        if (error != 0) {
            trace(prefix + fmt::format("stat SB#{} stat({})", sb, error));
            return 0;
        }
        if (sizeOf(from) != static_cast<long long>(FULL_SIZE)) {
            trace(prefix + fmt::format("invalid size SB#{} size({})", sb, sizeOf(from)));
            return 0;
        }
        // A link in the place of the working file may be anyone's: it is refused.
        const bool isRefused = isLoop(workingFile(sb));
        const int status = isRefused ? -1 : copy(from, workingFile(sb), " ");
        if (status == 0) {
            return 1;
        }
        trace(prefix + fmt::format("cp SB#{} ret({}) errno({})", sb, status,
                                   isRefused ? ELOOP : ERROR_AFTER_COMMAND));
        return 0;
    }

    long long initialTruncate()
    {
        for (unsigned int sb = 0; sb < boards; ++sb) {
            const std::string path = workingFile(sb);
            if (restoreTmpSel(sb) == 0 && !isFile(path) && !isFolder(path)) {
                truncate(sb, 0, 0);
            }
        }
        return boards;
    }

    Lines readPlainly(const Step& step)
    {
        const std::string& path = pathOf(step);
        if (!opens(path)) {
            return {"not opened"};
        }
        if (isFolder(path)) {
            return {A_FOLDER};
        }
        const auto size = static_cast<long long>(files.at(path).size());
        const auto length = static_cast<std::size_t>(step.number(3));
        long long at = step.number(1) + (step.number(2) == SEEK_END ? size : 0);
        std::size_t from = static_cast<std::size_t>(std::max(at, 0LL));
        if (at < 0) {
            traceCall("lseek", EINVAL);
            at = -1;
            from = 0;
        }
        const Bytes& bytes = files.at(path);
        from = std::min(from, bytes.size());
        const std::size_t count = std::min(length, bytes.size() - from);
        Bytes buffer = part(bytes, from, count);
        buffer.resize(length, UNWRITTEN_BYTE);
        return {fmt::format("{} {} 0", at, count), hex(buffer)};
    }

    Lines call(const Step& step)
    {
        const auto sb = static_cast<unsigned int>(step.number(0) & 0xFF);
        const int second = static_cast<int>(step.number(1));
        const int third = static_cast<int>(step.number(2));
        const auto id = static_cast<unsigned int>(step.number(1) & 0xFFFF);
        unsigned long addr = UNWRITTEN;
        const auto outcome = [&](long long result) -> Lines {
            return {fmt::format("{}", result), hex(out)};
        };
        switch (step.operation) {
        case GET_FILE_NAME:
            return {root().at(nameOf(sb, second, third))};
        case READ_PLAINLY:
            return readPlainly(step);
        case USE_BAD_DESCRIPTOR:
            traceCall("lseek", EBADF);
            traceCall("read", EBADF);
            traceCall("close", EBADF);
            return {"-1 -1 -1"};
        case WRITE_TRACE:
            traces.push_back(traceLine(
                83, 0x1000, static_cast<int>(sb),
                fmt::format("{} {}", std::string(step.bytes.begin(), step.bytes.end()), second)));
            return {};
        case SEARCH_RECORD: {
            const unsigned int code = search(pathOf(step), id, out, addr);
            return {shown(code, addr), hex(out)};
        }
        case GET_TAIL_ADDR: {
            const unsigned int code = tailOf(workingFile(sb), addr);
            return {shown(code, addr)};
        }
        case GET_TAIL_ADDR_EX: {
            const unsigned int code = getTailAddrEx(sb, second, third, addr);
            return {shown(code, addr)};
        }
        case GET_LAST_REC_ADDR: {
            const unsigned int code = getLastRecAddr(sb, addr);
            return {shown(code, addr)};
        }
        case GET_ENTRY_NUM_EX:
        case GET_ENTRY_NUM: {
            unsigned int total = UNWRITTEN;
            unsigned int last = UNWRITTEN;
            std::vector<unsigned int> counts = {7, 7};
            const unsigned int code = getEntryNumEx(sb, total, last, counts);
            const std::string shownTotal = fmt::format("{} total {} last {}", code, total, last);
            return {step.operation == GET_ENTRY_NUM
                        ? shownTotal
                        : shownTotal + fmt::format(" counts {}", fmt::join(counts, " "))};
        }
        case FULL_ENTRY_CHECK:
            return {fmt::format("{}", fullEntryCheck(sb))};
        case TRUNCATE:
            return {fmt::format("{}", truncate(sb, second, third))};
        case WRITE_RECORD:
            return {fmt::format("{}", writeRecord(sb, step.bytes))};
        case READ_RECORD:
            return outcome(readRecord(sb, id));
        case READ_FIRST_RECORD:
            return outcome(readFirstRecord(sb));
        case READ_LAST_RECORD_EX:
            return outcome(readLastRecordEx(sb, second, third));
        case READ_LAST_RECORD:
            return outcome(readLastRecord(sb));
        case READ_STORED_RECORD:
            return outcome(readStoredRecord(sb, id));
        case CLEAR_ALL_RECORD:
            return {fmt::format("{}", clearAllRecord(sb))};
        case MAKE_COPY:
            return {fmt::format("{}", makeCopySELFile(sb))};
        case SHIFT:
            return {fmt::format("{}", shiftSelFile(sb, second != 0))};
        case BACKUP:
            return {fmt::format("{}", backupTmpSel(sb))};
        case RESTORE:
            return {fmt::format("{}", restoreTmpSel(sb))};
        default:
            return {fmt::format("{}", initialTruncate())};
        }
    }

    Medium files;
    Bytes out;
    Lines calls;
    Lines traces;
    long long boards = 4;
    unsigned int failingMessageFiles = 0;
    int commandStatus = 0;
};

long long anyBoard(Random& random)
{
    return random.oneIn(8) ? random.oneOf({0, 2, 3, 4, 255}) : 1;
}

/// The files of board 1 mostly, and more often those that operations come to first.
long long anyFile(Random& random)
{
    return random.oneIn(3) ? random.below(static_cast<unsigned int>(paths().size()))
                           : random.oneOf({0, 0, 0, 1, 1, 2, 2, 3});
}

long long anyId(Random& random)
{
    if (random.oneIn(8)) {
        return random.oneOf({0, 1, 0xFFFE, 0xFFFF});
    }
    return random.oneIn(4) ? random.below(65536) : random.below(1200);
}

/// How many records a file has: few, many, all but a few, or all.
long long anyCount(Random& random)
{
    switch (random.below(6)) {
    case 0:
        return 0;
    case 1:
        return random.below(6);
    case 2:
        return random.below(801);
    case 3:
        return 795 + random.below(6);
    default:
        return 800;
    }
}

void addFile(Random& random, Steps& steps, long long which, bool mostlyFull)
{
    const long long first = random.oneIn(4) ? 65536 - random.below(900) : random.below(1000);
    steps.push_back(
        {PUT_FILE,
         {which, mostlyFull && !random.oneIn(5) ? 800 : anyCount(random), first, random.below(256)},
         {}});
}

void addDamage(Random& random, Steps& steps)
{
    const long long which = anyFile(random);
    switch (random.below(9)) {
    case 0:
        steps.push_back({PUT_BYTES, {which}, random.bytes(random.below(300))});
        break;
    case 1: {
        long long size = random.below(400);
        if (!random.oneIn(3)) {
            size = static_cast<long long>(SLOT) * random.between(0, 803);
            size = std::max(size + random.between(-3, 5), 0LL);
        }
        steps.push_back({RESIZE, {which, size, random.oneIn(2) ? 0xFF : random.below(256)}, {}});
        break;
    }
    case 2:
        steps.push_back({RESIZE,
                         {which,
                          static_cast<long long>(FULL_SIZE) +
                              random.oneOf({-1, 1, 2, 3, 4, 137, 138, 139, 140, 276}),
                          random.oneIn(2) ? 0xFF : random.below(256)},
                         {}});
        break;
    case 3:
        steps.push_back({REMOVE, {which}, {}});
        break;
    case 4:
        steps.push_back({random.oneIn(2) ? PUT_FOLDER : PUT_FULL_FOLDER, {which}, {}});
        break;
    case 5:
        steps.push_back({PUT_LOOP, {which}, {}});
        break;
    default: {
        // An id in the middle, or bytes of an empty slot.
        const long long slot = random.oneIn(2) ? random.below(10) : random.below(800);
        const Bytes bytes = random.oneIn(2) ? Bytes({0xFF, 0xFF}) : random.bytes(random.below(4));
        const long long place = random.oneOf({2, 2, 0, 137});
        steps.push_back({PATCH, {which, slot * static_cast<long long>(SLOT) + place}, bytes});
        break;
    }
    }
}

void addCircumstance(Random& random, Steps& steps)
{
    switch (random.below(5)) {
    case 0:
        steps.push_back({SET_BOARDS, {random.below(5)}, {}});
        break;
    case 1:
        steps.push_back({FAIL_MESSAGE_FILES, {random.below(16)}, {}});
        break;
    case 2:
        steps.push_back({FAIL_COMMANDS, {random.oneOf({256, 512, -1, 9, 0})}, {}});
        break;
    default:
        steps.push_back({PUT_BYTES, {REQUEST_FILE}, random.bytes(random.below(20))});
        break;
    }
}

void addCall(Random& random, Steps& steps)
{
    Step step;
    step.operation = random.oneIn(4) ? random.between(CLEAR_ALL_RECORD, INITIAL_TRUNCATE)
                                     : random.between(GET_FILE_NAME, READ_STORED_RECORD);
    const long long sb = anyBoard(random);
    switch (step.operation) {
    case GET_FILE_NAME:
        step.numbers = {random.below(256), random.between(-1, 12), random.between(0, 2)};
        break;
    case READ_PLAINLY:
        step.numbers = {anyFile(random), random.between(-100, 400),
                        random.oneIn(3) ? SEEK_END : SEEK_SET, random.below(300)};
        break;
    case WRITE_TRACE:
        step.numbers = {random.below(256), random.between(-9, 9)};
        step.bytes = Bytes(random.oneIn(3) ? random.below(300) : random.below(20), 'x');
        break;
    case SEARCH_RECORD:
        step.numbers = {anyFile(random), anyId(random)};
        break;
    case GET_TAIL_ADDR_EX:
    case TRUNCATE:
    case READ_LAST_RECORD_EX:
        step.numbers = {sb, random.oneIn(3) ? random.between(0, 8) : random.between(0, 2),
                        random.between(0, 2)};
        break;
    case WRITE_RECORD:
        step.numbers = {sb};
        step.bytes = random.bytes(static_cast<std::size_t>(
            random.oneIn(3) ? random.oneOf({2, 17, 18, 130, 131, 137, 139, 150}) : 138));
        if (random.oneIn(8)) {
            step.bytes[2 % step.bytes.size()] = 0xFF;
            step.bytes[3 % step.bytes.size()] = 0xFF;
        }
        break;
    case READ_RECORD:
    case READ_STORED_RECORD:
        step.numbers = {sb, anyId(random)};
        break;
    case SHIFT:
        step.numbers = {sb, random.below(2)};
        break;
    default:
        step.numbers = {sb};
        break;
    }
    steps.push_back(step);
}

/// Calls on arbitrary files.
Steps generateMixed(Random& random)
{
    Steps steps;
    if (!random.oneIn(6)) {
        addFile(random, steps, 0, false);
    }
    if (random.oneIn(2)) {
        addFile(random, steps, 1, false);
    }
    const unsigned int chain = random.oneIn(8) ? random.below(8) : random.below(3);
    for (unsigned int i = 0; i < chain; ++i) {
        addFile(random, steps, 2 + i, true);
    }
    const int count = random.between(1, 5);
    for (int i = 0; i < count; ++i) {
        if (random.oneIn(2)) {
            addDamage(random, steps);
        }
        if (random.oneIn(5)) {
            addCircumstance(random, steps);
        }
        addCall(random, steps);
    }
    return steps;
}

/// A chain whose ids follow each other, at times across the highest one, and readers that ask for
/// records at the ends of its files.
Steps generateReading(Random& random)
{
    Steps steps;
    const unsigned int chain = random.oneIn(6) ? random.below(8) : random.below(4);
    long long id = random.oneIn(2) ? NO_ID - random.below(SLOTS * (chain + 1)) : random.below(900);
    long long logNumber = 1;
    std::vector<long long> ids = {0, 0xFFFE, 0xFFFF};
    std::vector<long long> logNumbers = {0, 1};
    for (unsigned int i = chain + 1; i > 0; --i) {
        const long long count = i > 1 && !random.oneIn(10) ? SLOTS : anyCount(random);
        steps.push_back({PUT_FILE, {i == 1 ? 0 : i, count, id, random.below(256)}, {}});
        const long long last = (id + count - 1) % NO_ID;
        ids.insert(ids.end(), {id % NO_ID, last, last + 1});
        id = (id + count) % NO_ID;
        logNumber += count;
        logNumbers.insert(logNumbers.end(), {logNumber - 1, logNumber});
    }
    const int count = random.between(2, 7);
    for (int i = 0; i < count; ++i) {
        if (random.oneIn(8)) {
            addDamage(random, steps);
        }
        const auto at = [&random](const std::vector<long long>& numbers) {
            const int beside = random.oneIn(3) ? random.between(-1, 1) : 0;
            return numbers[random.below(static_cast<unsigned int>(numbers.size()))] + beside;
        };
        switch (random.below(6)) {
        case 0:
        case 1:
            steps.push_back({READ_RECORD, {1, random.oneIn(5) ? anyId(random) : at(ids)}, {}});
            break;
        case 2:
        case 3:
            steps.push_back(
                {READ_STORED_RECORD, {1, random.oneIn(5) ? anyId(random) : at(logNumbers)}, {}});
            break;
        case 4:
            steps.push_back({random.oneIn(2) ? READ_FIRST_RECORD : READ_LAST_RECORD, {1}, {}});
            break;
        default:
            steps.push_back(
                {READ_LAST_RECORD_EX, {1, random.below(chain + 2), random.below(2)}, {}});
            break;
        }
    }
    return steps;
}

/// A chain that is shifted, where most files are short and some are none at all.
Steps generateRotation(Random& random)
{
    Steps steps;
    addFile(random, steps, 0, false);
    for (long long i = 1; i <= 8; ++i) {
        if (random.oneIn(2)) {
            steps.push_back({PUT_BYTES, {i}, random.bytes(random.below(9))});
        }
    }
    const int count = random.between(1, 3);
    for (int i = 0; i < count; ++i) {
        if (random.oneIn(2)) {
            steps.push_back({random.between(REMOVE, PUT_LOOP), {random.below(9)}, {}});
        }
        if (random.oneIn(4)) {
            addCircumstance(random, steps);
        }
        const long long withoutRequest = random.below(2);
        if (withoutRequest == 0 && !random.oneIn(4)) {
            steps.push_back({random.oneIn(6) ? random.between(PUT_FOLDER, PUT_LOOP) : PUT_BYTES,
                             {REQUEST_FILE},
                             {}});
        }
        steps.push_back({SHIFT, {1, withoutRequest}, {}});
        if (random.oneIn(2)) {
            addCall(random, steps);
        }
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"put file",
                                 "put bytes",
                                 "resize",
                                 "patch",
                                 "remove",
                                 "put folder",
                                 "put folder with a file",
                                 "put link to itself",
                                 "machine.systemBoards =",
                                 "fail message files",
                                 "fail commands with",
                                 "use the shell",
                                 "store.getFileName",
                                 "openFile, lseek, read, closeFile",
                                 "lseek, read, closeFile of -1",
                                 "store.writeTrace",
                                 "store.searchRecord",
                                 "store.getTailAddr",
                                 "store.getTailAddrEx",
                                 "store.getLastRecAddr",
                                 "store.getEntryNumEx",
                                 "store.getEntryNum",
                                 "store.fullEntryCheck",
                                 "store.truncate",
                                 "store.writeRecord",
                                 "store.readRecord",
                                 "store.readFirstRecord",
                                 "store.readLastRecordEx",
                                 "store.readLastRecord",
                                 "store.readStoredRecord",
                                 "store.clearAllRecord",
                                 "store.makeCopySELFile",
                                 "store.shiftSelFile",
                                 "store.backupTmpSel",
                                 "store.restoreTmpSel",
                                 "store.initialTruncate"};
    std::string text = callOf(names[step.operation], step);
    if (step.operation <= PUT_LOOP || step.operation == READ_PLAINLY ||
        step.operation == SEARCH_RECORD) {
        text += " // " + pathOf(step);
    }
    return text;
}

void compareStores(Steps (*generate)(Random&), unsigned int sequences, unsigned int firstSeed)
{
    Comparison comparison;
    comparison.library = [] { return std::make_unique<Library>(); };
    comparison.rules = [] { return std::make_unique<Rules>(); };
    comparison.generate = [generate](Random& random) {
        Steps steps = generate(random);
        if (random.oneIn(25)) {
            steps.insert(steps.begin(), Step{USE_SHELL, {}, {}});
        }
        return steps;
    };
    comparison.changesMedium = [](const Step& step) {
        return (step.operation >= FULL_ENTRY_CHECK && step.operation <= WRITE_RECORD) ||
               step.operation >= CLEAR_ALL_RECORD;
    };
    comparison.print = print;
    compare(comparison, sequences, firstSeed);
}

TEST(EventStoreModel, StoreKeepsItsRulesWhateverLiesThere)
{
    compareStores(generateMixed, 6000, 51000);
}

TEST(EventStoreModel, ReadersKeepTheirRulesAtTheEndsOfFiles)
{
    compareStores(generateReading, 3000, 152000);
}

TEST(EventStoreModel, ShiftsKeepTheirRulesOnChainsWithGaps)
{
    compareStores(generateRotation, 3000, 253000);
}

}
