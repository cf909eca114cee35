// SPDX-License-Identifier: Apache-2.0
// The EFI backup and its index record, by their rules.
#include <gtest/gtest.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>

#include "Eeproms.h"

namespace {

using namespace testing_support;
using namespace TAVLib::RecordKit;

enum Operation {
    // What happens around the store.
    PUT_RECORD, ///< bytes of the index record; those that are missing are 0
    PUT_BYTES,  ///< EEPROM, offset; bytes
    FAIL_AT,    ///< access from now on, whether all after it fail too
    FAIL_OTHERWISE,
    FAIL_NO_MORE,
    ANSWER_WITH, ///< what writes and reads return
    NEW_STORE,
    // An index record of its own, which shares the flags with the store.
    POKE_RECORD,
    SET_INDEX_STATE,
    GET_AREA_EEPROM_ID,
    SET_CHECKSUM,
    IS_CHECKSUM,
    SET_CLR_FLAG,
    GET_CLR_BLOCK_STATE,
    GET_CLR_BLOCK_NUMBER,
    GET_CLR_BLOCK_ADDRESS,
    GET_INDEX_POINT,
    CHECK_SERIAL_INFO,
    SET_INDEX_VALID_FLAG,
    EXPAND_CLR_FLAGS,
    // The store.
    IS_VALID,
    WRITE, ///< partition, bank, offset; bytes
    READ,  ///< partition, bank, offset, length
    CHECK_INDEX_DATA,
    SET_INDEX_DATA, ///< whether valid; serial
    WRITE_INDEX_DATA,
    WRITE_BLOCK_FLAG,
    WRITE_GROUP_FLAGS,
    RESET_CLEAR_FLAG,
    MARK_BLOCK,
    CLEAR_EXECUTE,
    SET_THROW,
    OPERATIONS
};

constexpr std::size_t RECORD_SIZE = 144;
constexpr int INDEX_EEPROM = 10;
constexpr unsigned char UNWRITTEN = 0xB7;

class Library : public Subject {
public:
    Library()
    {
        EFIBackupEEPROMIndex::IndexState = 0xFF;
        for (auto& flags : EFIBackupEEPROMIndex::clrinfo) {
            flags = 0;
        }
    }

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
        all["record"] = Bytes(index.getIndexData(), index.getIndexData() + RECORD_SIZE);
        Bytes& flags = all["flags"];
        for (const auto& byte : EFIBackupEEPROMIndex::clrinfo) {
            flags.push_back(byte);
        }
        return all;
    }

private:
    Lines call(const Step& step)
    {
        const auto number = [&step](std::size_t i) {
            return static_cast<unsigned int>(step.number(i));
        };
        const auto integer = [&step](std::size_t i) { return static_cast<int>(step.number(i)); };
        const std::string serial(step.bytes.begin(), step.bytes.end());
        switch (step.operation) {
        case PUT_RECORD: {
            Bytes record = step.bytes;
            record.resize(RECORD_SIZE);
            eeproms.put(INDEX_EEPROM, 0, record);
            return {};
        }
        case PUT_BYTES:
            eeproms.put(integer(0), number(1), step.bytes);
            return {};
        case FAIL_AT:
            eeproms.failNoMore();
            eeproms.failAt(number(0), number(1) != 0);
            return {};
        case FAIL_OTHERWISE:
            eeproms.failNoMore();
            eeproms.failOtherwiseAt(number(0));
            return {};
        case FAIL_NO_MORE:
            eeproms.failNoMore();
            return {};
        case ANSWER_WITH:
            eeproms.answerWith(integer(0));
            return {};
        case NEW_STORE:
            store.emplace(eeproms);
            return {};
        case POKE_RECORD:
            index.getIndexData()[number(0) % RECORD_SIZE] = static_cast<unsigned char>(number(1));
            return {};
        case SET_INDEX_STATE:
            index.setIndexState(number(0) != 0);
            return {fmt::format("{}", index.getIndexState())};
        case GET_AREA_EEPROM_ID:
            return {fmt::format("{}", index.getAreaEEPROMID(number(0), number(1)))};
        case SET_CHECKSUM:
            index.setChecksum();
            return {};
        case IS_CHECKSUM:
            return {fmt::format("{} {}", index.isChecksum(), index.getIndexChecksumPoint())};
        case SET_CLR_FLAG:
            index.setClrFlag(number(0), number(1), number(2), number(3) != 0);
            return {};
        case GET_CLR_BLOCK_STATE:
            return {fmt::format("{}", index.getClrBlockState(number(0), number(1), number(2)))};
        case GET_CLR_BLOCK_NUMBER:
            return {fmt::format("{}", index.getClrBlockNumber(number(0)))};
        case GET_CLR_BLOCK_ADDRESS: {
            unsigned int start = UNWRITTEN;
            unsigned int end = UNWRITTEN;
            index.getClrBlockAddress(number(0), start, end);
            return {fmt::format("{} {}", start, end)};
        }
        case GET_INDEX_POINT:
            return {fmt::format("{}", index.getIndexPoint(integer(0), integer(1), integer(2)))};
        case CHECK_SERIAL_INFO:
            return {fmt::format("{}", index.checkSerialInfo(serial))};
        case SET_INDEX_VALID_FLAG:
            index.setIndexValidFlag(number(0) != 0, serial);
            return {};
        case EXPAND_CLR_FLAGS:
            index.expandClrFlags();
            return {};
        case IS_VALID:
            return {fmt::format("{} {}", store->isValid(), index.getIndexState())};
        case WRITE: {
            Bytes data = step.bytes;
            return {fmt::format("{}",
                                store->write(number(0), number(1), number(2),
                                             static_cast<unsigned int>(data.size()), data.data())),
                    hex(data)};
        }
        case READ: {
            Bytes data(number(3) % 256, UNWRITTEN);
            const unsigned int count =
                store->read(number(0), number(1), number(2), number(3) % 256, data.data());
            return {fmt::format("{}", count), hex(data)};
        }
        case CHECK_INDEX_DATA:
            return {fmt::format("{}", store->checkIndexData(serial))};
        case SET_INDEX_DATA:
            store->setIndexData(number(0) != 0, serial);
            return {};
        case WRITE_INDEX_DATA:
            return {fmt::format("{}", store->writeIndexData())};
        case WRITE_BLOCK_FLAG:
            return {fmt::format("{}", store->writeIndexData(integer(0), integer(1), integer(2)))};
        case WRITE_GROUP_FLAGS:
            return {fmt::format("{}", store->writeIndexData(integer(0), integer(1)))};
        case RESET_CLEAR_FLAG:
            return {fmt::format("{}", store->resetClearFlag(number(0), number(1), number(2)))};
        case MARK_BLOCK:
            return {fmt::format("{}", store->markBlock(number(0), number(1), number(2)))};
        case CLEAR_EXECUTE:
            return {fmt::format("{}", store->clearExecute(number(0), number(1)))};
        default:
            store->setThrow(integer(0), "%s, %d", serial.c_str(), integer(0));
        }
    }

    WatchedEEPROMs eeproms;
    std::optional<EFIBackupEEPROMData> store{std::in_place, eeproms};
    EFIBackupEEPROMIndex index;
    Medium all;
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
        all["record"] = own;
        all["flags"] = flags;
        return all;
    }

private:
    /// State of the index, for the whole process.
    enum State { UNKNOWN, VALID, INVALID };

    static Failure failed(const std::string& text)
    {
        return failure(128, 14, 2, 3, 20031, {text.substr(0, 255)});
    }
    static void rethrowOther(FailureKind kind)
    {
        if (kind == FailureKind::OTHER) {
            throw kind;
        }
    }
    static std::string deviceCodes() { return codes(DEVICE_ACTION, DEVICE_DETAIL); }

    static unsigned char sum(const Bytes& record, std::size_t from)
    {
        unsigned int total = 0;
        for (std::size_t i = from; i < RECORD_SIZE; ++i) {
            total += record[i];
        }
        return static_cast<unsigned char>(total % 256);
    }
    static void correctChecksum(Bytes& record)
    {
        record[0] = static_cast<unsigned char>((256 - sum(record, 1)) % 256);
    }

    static long long eepromOf(long long p, long long b)
    {
        return p >= 0 && p <= 3 && b >= 0 && b <= 3 ? 11 + 4 * p + b : -1;
    }

    /// Place of a block's flag byte, by a formula that blocks above 15 follow, too.
    static long long placeOf(long long p, long long b, long long n)
    {
        const long long group = (p & 3) * 4 + (b & 3);
        return 16 + 8 * group + (n >> 1);
    }
    /// Whether it is inside the record: a block without a flag byte is refused.
    static bool isInRecord(long long place)
    {
        return place >= 0 && place < static_cast<long long>(RECORD_SIZE);
    }

    void setFlag(Bytes& record, long long p, long long b, long long n, bool set)
    {
        const long long place = placeOf(p, b, n);
        if (!isInRecord(place)) {
            return;
        }
        unsigned char& shared = flags[static_cast<std::size_t>(place - 16)];
        const unsigned int high = shared / 16U;
        const unsigned int low = shared % 16U;
        const unsigned int bit = set ? 1 : 0;
        shared = static_cast<unsigned char>(n % 2 == 0 ? bit * 16 + low : high * 16 + bit);
        record[static_cast<std::size_t>(place)] = shared;
    }

    void changeFlag(long long p, long long b, long long n, bool set)
    {
        setFlag(stored, p, b, n, set);
        correctChecksum(stored);
    }

    bool isFlagSet(long long p, long long b, long long n) const
    {
        const long long place = placeOf(p, b, n);
        if (!isInRecord(place)) {
            return false;
        }
        const unsigned char byte = flags[static_cast<std::size_t>(place - 16)];
        return (n % 2 == 0 ? byte / 16 : byte % 16) != 0;
    }

    static bool namesSystem(const Bytes& record, const Bytes& serial)
    {
        if (serial.size() < 12) {
            return false;
        }
        for (std::size_t i = 0; i < 12; ++i) {
            if (record[2 + i] != serial[i]) {
                return false;
            }
        }
        return true;
    }

    void beginRecord(Bytes& record, bool valid, const Bytes& serial)
    {
        record.assign(RECORD_SIZE, 0);
        if (valid) {
            for (std::size_t i = 0; i < 12 && i < serial.size(); ++i) {
                record[2 + i] = serial[i];
            }
            correctChecksum(record);
        }
        share(record);
    }

    void share(const Bytes& record) { flags = part(record, 16, 128); }

    void readRecord(const char* where)
    {
        try {
            stored = eeproms.read(INDEX_EEPROM, 0, RECORD_SIZE);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(
                fmt::format("EFIBackup {}: read error.({} select=0xa)", where, deviceCodes()));
        }
    }

    /// Writes a range of the index's EEPROM and returns what the device returns.
    long long writeStretch(std::size_t from, const Bytes& bytes)
    {
        try {
            eeproms.write(INDEX_EEPROM, from, bytes);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            // The bracket stays open.
            throw failed(
                fmt::format("EFIBackup writeIndexData: write error.({} select=0xa", deviceCodes()));
        }
        return answer.value_or(static_cast<long long>(bytes.size()));
    }

    long long writeIndexData()
    {
        writeStretch(0, stored);
        return writeStretch(RECORD_SIZE, Bytes(112, 0));
    }

    long long writeFlags(long long p, long long b, long long n, std::size_t count)
    {
        const long long place = placeOf(p, b, n);
        if (!isInRecord(place)) {
            return 0;
        }
        writeStretch(0, part(stored, 0, 1));
        return writeStretch(static_cast<std::size_t>(place),
                            part(stored, static_cast<std::size_t>(place), count));
    }

    void resetClearFlag(long long p, long long b, long long address)
    {
        readRecord("resetClearFlag");
        share(stored);
        changeFlag(p, b, address >> 12, false);
        writeFlags(p, b, address >> 12, 1);
    }

    void markBlock(long long p, long long b, long long address)
    {
        readRecord("markBlock");
        share(stored);
        const long long n = address >> 12;
        const bool isMarked = isFlagSet(p, b, n);
        changeFlag(p, b, n, true);
        try {
            writeFlags(p, b, n, 1);
        } catch (...) {
            changeFlag(p, b, n, isMarked);
            throw;
        }
    }

    void clearExecute(long long p, long long b)
    {
        if (state != VALID) {
            return;
        }
        const long long select = eepromOf(p, b);
        for (long long n = 0; n < 16; ++n) {
            if (!isFlagSet(p, b, n)) {
                continue;
            }
            try {
                eeproms.write(static_cast<int>(select), static_cast<unsigned long>(n * 4096),
                              Bytes(4096, 0xFF));
            } catch (FailureKind kind) {
                rethrowOther(kind);
                throw failed(
                    fmt::format("EFIBackup clearExecute: initialize error.({} select=0x{:x})",
                                deviceCodes(), static_cast<unsigned int>(select)));
            }
            resetClearFlag(p, b, n * 4096);
        }
    }

    static std::string moveError(const char* what, long long select, long long offset,
                                 std::size_t length)
    {
        return fmt::format("EFIBackup {0}: {0} error.({1} select=0x{2:x} offset=0x{3:x} "
                           "length=0x{4:x})",
                           what, deviceCodes(), static_cast<unsigned int>(select), offset, length);
    }

    Lines write(long long p, long long b, long long offset, const Bytes& data)
    {
        if (state != VALID) {
            return {"0", hex(data)};
        }
        const long long select = eepromOf(p, b);
        try {
            eeproms.write(static_cast<int>(select), static_cast<unsigned long>(offset), data);
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(moveError("write", select, offset, data.size()));
        }
        return {fmt::format("{}", data.size()), hex(data)};
    }

    Lines read(long long p, long long b, long long offset, std::size_t length)
    {
        if (state != VALID) {
            return {"0", hex(Bytes(length, UNWRITTEN))};
        }
        const long long select = eepromOf(p, b);
        try {
            const Bytes data =
                eeproms.read(static_cast<int>(select), static_cast<unsigned long>(offset), length);
            return {fmt::format("{}", length), hex(data)};
        } catch (FailureKind kind) {
            rethrowOther(kind);
            throw failed(moveError("read", select, offset, length));
        }
    }

    bool checkIndexData(const Bytes& serial)
    {
        readRecord("checkIndexData");
        if (sum(stored, 0) != 0 || !namesSystem(stored, serial)) {
            return false;
        }
        share(stored);
        return true;
    }

    void setIndexData(bool valid, const Bytes& serial)
    {
        if (valid) {
            beginRecord(stored, true, serial);
            writeIndexData();
        }
        state = valid ? VALID : INVALID;
    }

    Lines call(const Step& step)
    {
        const auto n = [&step](std::size_t i) { return step.number(i); };
        switch (step.operation) {
        case PUT_RECORD: {
            Bytes record = step.bytes;
            record.resize(RECORD_SIZE);
            eeproms.put(INDEX_EEPROM, 0, record);
            return {};
        }
        case PUT_BYTES:
            eeproms.put(static_cast<int>(n(0)), static_cast<std::size_t>(n(1)), step.bytes);
            return {};
        case FAIL_AT:
            eeproms.failAt(static_cast<std::size_t>(n(0)), n(1) != 0);
            return {};
        case FAIL_OTHERWISE:
            eeproms.failOtherwiseAt(static_cast<std::size_t>(n(0)));
            return {};
        case FAIL_NO_MORE:
            eeproms.failNoMore();
            return {};
        case ANSWER_WITH:
            answer = n(0);
            return {};
        case NEW_STORE:
            stored.assign(RECORD_SIZE, 0);
            return {};
        case POKE_RECORD:
            own[static_cast<std::size_t>(n(0)) % RECORD_SIZE] = static_cast<unsigned char>(n(1));
            return {};
        case SET_INDEX_STATE:
            state = n(0) != 0 ? VALID : INVALID;
            return {fmt::format("{}", state == VALID)};
        case GET_AREA_EEPROM_ID:
            return {fmt::format("{}", static_cast<unsigned int>(eepromOf(n(0), n(1))))};
        case SET_CHECKSUM:
            correctChecksum(own);
            return {};
        case IS_CHECKSUM:
            return {fmt::format("{} 0", sum(own, 0) == 0)};
        case SET_CLR_FLAG:
            setFlag(own, n(0), n(1), n(2), n(3) != 0);
            return {};
        case GET_CLR_BLOCK_STATE:
            return {fmt::format("{}", isFlagSet(n(0), n(1), n(2)))};
        case GET_CLR_BLOCK_NUMBER:
            return {fmt::format("{}", n(0) >> 12)};
        case GET_CLR_BLOCK_ADDRESS: {
            const auto start = static_cast<unsigned int>(n(0) * 4096);
            return {fmt::format("{} {}", start, start + 4095)};
        }
        case GET_INDEX_POINT:
            return {fmt::format("{}", placeOf(n(0), n(1), n(2)))};
        case CHECK_SERIAL_INFO:
            return {fmt::format("{}", namesSystem(own, step.bytes))};
        case SET_INDEX_VALID_FLAG:
            beginRecord(own, n(0) != 0, step.bytes);
            return {};
        case EXPAND_CLR_FLAGS:
            share(own);
            return {};
        case IS_VALID:
            return {fmt::format("{} {}", state == VALID, state == VALID)};
        case WRITE:
            return write(n(0), n(1), n(2), step.bytes);
        case READ:
            return read(n(0), n(1), n(2), static_cast<std::size_t>(n(3) % 256));
        case CHECK_INDEX_DATA:
            return {fmt::format("{}", checkIndexData(step.bytes))};
        case SET_INDEX_DATA:
            setIndexData(n(0) != 0, step.bytes);
            return {};
        case WRITE_INDEX_DATA:
            return {fmt::format("{}", writeIndexData())};
        case WRITE_BLOCK_FLAG:
            return {fmt::format("{}", writeFlags(n(0), n(1), n(2), 1))};
        case WRITE_GROUP_FLAGS:
            return {fmt::format("{}", writeFlags(n(0), n(1), 0, 8))};
        case RESET_CLEAR_FLAG:
            resetClearFlag(n(0), n(1), n(2));
            return {"0"};
        case MARK_BLOCK:
            markBlock(n(0), n(1), n(2));
            return {"0"};
        case CLEAR_EXECUTE:
            clearExecute(n(0), n(1));
            return {"0"};
        default:
            // A text ends at its first zero byte.
            throw failed(fmt::format(
                "{}, {}",
                std::string(step.bytes.begin(), std::find(step.bytes.begin(), step.bytes.end(),
                                                          static_cast<unsigned char>(0))),
                n(0)));
        }
    }

    PlainEEPROMs eeproms;
    std::optional<long long> answer;
    State state = UNKNOWN;
    Bytes flags = Bytes(128, 0);
    Bytes stored = Bytes(RECORD_SIZE, 0);
    Bytes own = Bytes(RECORD_SIZE, 0);
    Medium all;
};

/// One of three serials, of which two differ in their twelfth byte only; at times cut short or
/// with bytes after the twelve.
Bytes anySerial(Random& random)
{
    Bytes serial = textBytes(random.oneIn(3) ? "ABCDEFGHIJKM" : "ABCDEFGHIJKL");
    if (random.oneIn(6)) {
        serial.resize(random.below(12));
    } else if (random.oneIn(6)) {
        serial = serial + random.bytes(random.below(4));
    } else if (random.oneIn(20)) {
        serial.assign(12, 0);
    }
    return serial;
}

/// A record with few flags, mostly those of one EEPROM, and mostly in order.
Bytes anyRecord(Random& random)
{
    Bytes record(RECORD_SIZE, 0);
    const Bytes serial = anySerial(random);
    std::copy_n(serial.begin(), std::min<std::size_t>(serial.size(), 12), record.begin() + 2);
    const unsigned int count = random.below(6);
    const unsigned int group = random.oneIn(3) ? random.below(16) : random.below(2);
    for (unsigned int i = 0; i < count; ++i) {
        const std::size_t place = 16 + 8 * group + random.below(8);
        record[place] = static_cast<unsigned char>(
            random.oneIn(3) ? random.byte() : random.oneOf({0x01, 0x10, 0x11}));
    }
    if (random.oneIn(8)) {
        record[random.below(RECORD_SIZE)] = random.byte();
    }
    unsigned int sum = 0;
    for (const unsigned char byte : record) {
        sum += byte;
    }
    record[0] = static_cast<unsigned char>(record[0] - sum);
    if (random.oneIn(8)) {
        ++record[random.oneIn(2) ? 0 : 143];
    }
    return record;
}

long long anyPart(Random& random)
{
    if (random.oneIn(12)) {
        return random.oneOf({4, 5, 7, 0x7FFFFFFF});
    }
    return random.oneIn(3) ? random.between(0, 3) : 0;
}

long long anyBlock(Random& random)
{
    if (random.oneIn(4)) {
        return random.oneIn(4) ? random.oneOf({256, 257, 0x7FFFFFFF, 0x10000})
                               : random.between(16, 300);
    }
    return random.between(0, 15);
}

/// The number, or at times one below 0, where that is a number that a caller can give.
long long anySigned(Random& random, long long number)
{
    return random.oneIn(10) ? -static_cast<long long>(random.below(300)) : number;
}

long long anyAddress(Random& random)
{
    const long long block = anyBlock(random) % 0x80000;
    return block * 4096 + random.below(4096);
}

Steps generate(Random& random)
{
    Steps steps;
    if (!random.oneIn(4)) {
        steps.push_back({PUT_RECORD, {}, anyRecord(random)});
    }
    if (!random.oneIn(3)) {
        steps.push_back({SET_INDEX_STATE, {1}, {}});
    }
    const int count = random.between(2, 9);
    for (int i = 0; i < count; ++i) {
        Step step;
        step.operation = random.oneIn(3) ? random.between(CHECK_INDEX_DATA, CLEAR_EXECUTE)
                                         : random.between(0, OPERATIONS - 1);
        switch (step.operation) {
        case PUT_RECORD:
            step.bytes = anyRecord(random);
            break;
        case PUT_BYTES:
            step.numbers = {random.between(10, 13), random.below(65000)};
            step.bytes = random.bytes(random.below(40));
            break;
        case FAIL_AT:
            step.numbers = {random.oneIn(4) ? random.between(1, 20) : random.between(1, 4),
                            random.oneIn(2)};
            break;
        case FAIL_OTHERWISE:
            step.numbers = {random.oneIn(4) ? random.between(1, 20) : random.between(1, 4)};
            break;
        case ANSWER_WITH:
            step.numbers = {random.between(-1, 300)};
            break;
        case POKE_RECORD:
            step.numbers = {random.below(RECORD_SIZE), random.byte()};
            break;
        case CHECK_SERIAL_INFO:
        case CHECK_INDEX_DATA:
            step.bytes = anySerial(random);
            break;
        case SET_INDEX_VALID_FLAG:
        case SET_INDEX_DATA:
            step.numbers = {random.oneIn(4) ? 0 : 1};
            step.bytes = anySerial(random);
            break;
        case SET_INDEX_STATE:
            step.numbers = {random.oneIn(4) ? 0 : 1};
            break;
        case GET_CLR_BLOCK_NUMBER:
            step.numbers = {anyAddress(random)};
            break;
        case GET_CLR_BLOCK_ADDRESS:
            step.numbers = {anyBlock(random)};
            break;
        case WRITE:
            step.numbers = {anyPart(random), anyPart(random), random.below(65600)};
            step.bytes = random.bytes(random.below(40));
            break;
        case READ:
            step.numbers = {anyPart(random), anyPart(random), random.below(65600),
                            random.below(40)};
            break;
        case RESET_CLEAR_FLAG:
        case MARK_BLOCK:
            step.numbers = {anyPart(random), anyPart(random), anyAddress(random)};
            break;
        case SET_THROW:
            step.numbers = {random.between(-2, 14)};
            step.bytes = Bytes(random.oneIn(3) ? 240 + random.below(20) : random.below(30), 't');
            break;
        case GET_INDEX_POINT:
        case WRITE_BLOCK_FLAG:
            step.numbers = {anySigned(random, anyPart(random)), anySigned(random, anyPart(random)),
                            anySigned(random, anyBlock(random))};
            break;
        default:
            step.numbers = {anyPart(random), anyPart(random), anyBlock(random), random.below(2)};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"eeproms.put(10, 0) record",
                                 "eeproms.put",
                                 "eeproms.failAt",
                                 "eeproms.failOtherwiseAt",
                                 "eeproms.failNoMore",
                                 "eeproms.answerWith",
                                 "new store",
                                 "index.getIndexData()[..] =",
                                 "index.setIndexState",
                                 "index.getAreaEEPROMID",
                                 "index.setChecksum",
                                 "index.isChecksum",
                                 "index.setClrFlag",
                                 "index.getClrBlockState",
                                 "index.getClrBlockNumber",
                                 "index.getClrBlockAddress",
                                 "index.getIndexPoint",
                                 "index.checkSerialInfo",
                                 "index.setIndexValidFlag",
                                 "index.expandClrFlags",
                                 "store.isValid",
                                 "store.write",
                                 "store.read",
                                 "store.checkIndexData",
                                 "store.setIndexData",
                                 "store.writeIndexData() ",
                                 "store.writeIndexData(p, b, n) ",
                                 "store.writeIndexData(p, b) ",
                                 "store.resetClearFlag",
                                 "store.markBlock",
                                 "store.clearExecute",
                                 "store.setThrow"};
    return callOf(names[step.operation], step);
}

TEST(EFIBackupModel, StoreAndIndexKeepTheirRules)
{
    Comparison comparison;
    comparison.library = [] { return std::make_unique<Library>(); };
    comparison.rules = [] { return std::make_unique<Rules>(); };
    comparison.generate = generate;
    comparison.print = print;
    compare(comparison, 20000, 93000);
}

}
