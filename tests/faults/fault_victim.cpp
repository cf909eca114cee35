// SPDX-License-Identifier: Apache-2.0
// Runs one operation of a store in a root, and prints its result and its trace lines:
//
//   fault_victim ROOT OPERATION
//
// "result N", or "thrown" with the fields of the exception, then a line for each trace line. The
// operations are those of the table below; they work on board 1 and on the images in ROOT/images.
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <vector>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/host/FileEEPROMRWif.h>
#include <recordkit/host/FileFRURWif.h>
#include <recordkit/host/HostRoot.h>
#include <recordkit/host/TraceLog.h>
#include <recordkit/platform/PException.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELStoreCheck.h>
#include <recordkit/sensor/SeverityMap.h>
#include <recordkit/util/Util.h>

using namespace TAVLib::RecordKit;

namespace {

constexpr unsigned char SB = 1;
constexpr unsigned short NEW_ID = 0x7777;

std::string root;

/// The stores are made inside an operation: what they open on the way counts.
struct Operation {
    const char* name;
    std::function<int()> run;
};

int writeRecord()
{
    unsigned char image[138];
    std::memset(image, 0x42, sizeof image);
    image[2] = NEW_ID & 0xFF;
    image[3] = NEW_ID >> 8;
    BMCSELEntryMessage message;
    message.setSerialized(image, sizeof image);
    return BMCSELDataFile().writeRecord(SB, message);
}

int walk()
{
    SELChainReader reader(SB);
    SELChainReader::Record record = {};
    int count = 0;
    while (reader.next(record)) {
        ++count;
    }
    for (const SELChainReader::Damage& damage : reader.getDamage()) {
        std::fprintf(stderr, "%s\n", damage.text.c_str());
    }
    return reader.getDamage().empty() ? count : -1;
}

int recover()
{
    std::vector<std::string> actions;
    const bool isDone = SELStoreCheck(SB).recover(actions);
    for (const std::string& action : actions) {
        std::fprintf(stderr, "%s\n", action.c_str());
    }
    return isDone ? 1 : 0;
}

int withSettings(const std::function<int(SettingEEPROMData&)>& action)
{
    TAVLib::host::FileEEPROMRWif device(root + "/images");
    SettingEEPROMData settings(device);
    return action(settings);
}

int withBackup(const std::function<int(EFIBackupEEPROMData&)>& action)
{
    TAVLib::host::FileEEPROMRWif device(root + "/images");
    EFIBackupEEPROMData backup(device);
    return action(backup);
}

int editFru()
{
    TAVLib::host::FileFRURWif device(root + "/board.bin", true);
    FRUData fru(device);
    std::string serial = "SN4711";
    fru.updateItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial);
    fru.syncFRU();
    return 1;
}

const Operation OPERATIONS[] = {
    {"writeRecord", writeRecord},
    {"readRecord",
     [] {
         BMCSELEntryMessage message;
         return static_cast<int>(BMCSELDataFile().readRecord(SB, 3, message));
     }},
    {"readStoredRecord",
     [] {
         BMCSELEntryMessage message;
         return static_cast<int>(BMCSELDataFile().readStoredRecord(SB, 3, message));
     }},
    {"readFirstRecord",
     [] {
         BMCSELEntryMessage message;
         return BMCSELDataFile().readFirstRecord(SB, message);
     }},
    {"readLastRecord",
     [] {
         BMCSELEntryMessage message;
         return BMCSELDataFile().readLastRecord(SB, message);
     }},
    {"fullEntryCheck", [] { return static_cast<int>(BMCSELDataFile().fullEntryCheck(SB)); }},
    {"getEntryNum",
     [] {
         unsigned short total = 0;
         unsigned short last = 0;
         return static_cast<int>(BMCSELDataFile().getEntryNum(SB, total, last));
     }},
    {"truncate", [] { return static_cast<int>(BMCSELDataFile().truncate(SB, 0, 0)); }},
    {"clearAllRecord", [] { return static_cast<int>(BMCSELDataFile().clearAllRecord(SB)); }},
    {"makeCopySELFile", [] { return static_cast<int>(BMCSELDataFile().makeCopySELFile(SB)); }},
    {"shiftSelFile", [] { return BMCSELDataFile().shiftSelFile(SB, false); }},
    {"backupTmpSel", [] { return BMCSELDataFile().backupTmpSel(SB); }},
    {"restoreTmpSel", [] { return BMCSELDataFile().restoreTmpSel(SB); }},
    {"initialTruncate", [] { return BMCSELDataFile().initialTruncate(); }},
    {"walk", walk},
    {"recover", recover},
    {"setPowerSupplyMode",
     [] {
         SeverityMap::getInstance()->setPowerSupplyMode(true, true);
         return 1;
     }},
    {"getSeverity",
     [] { return static_cast<int>(SeverityMap::getInstance()->getSeverity(0x0B, 0x09, 8)); }},
    {"convertCPUPartNumber",
     [] {
         std::string found;
         return Util::convertCPUPartNumber("06F3", found, 0);
     }},
    {"settingRead",
     [] {
         return withSettings([](SettingEEPROMData& settings) {
             std::string file = root + "/area.bin";
             return static_cast<int>(settings.read(0, file.data()).size());
         });
     }},
    {"settingWrite",
     [] {
         return withSettings([](SettingEEPROMData& settings) {
             std::string data(64, 'n');
             return settings.write(0, data);
         });
     }},
    {"settingInit",
     [] {
         return withSettings([](SettingEEPROMData& settings) {
             settings.initializeIndexData(-1);
             return 1;
         });
     }},
    {"settingInvalidate",
     [] {
         return withSettings([](SettingEEPROMData& settings) {
             settings.setAllInvalid();
             return 1;
         });
     }},
    {"efiInit",
     [] {
         return withBackup([](EFIBackupEEPROMData& backup) {
             backup.setIndexData(true, "SERIAL-01234");
             return 1;
         });
     }},
    {"efiWrite",
     [] {
         return withBackup([](EFIBackupEEPROMData& backup) {
             backup.setIndexData(true, "SERIAL-01234");
             unsigned char data[16] = {1, 2, 3};
             return static_cast<int>(backup.write(0, 0, 0, sizeof data, data));
         });
     }},
    {"efiMark",
     [] {
         return withBackup(
             [](EFIBackupEEPROMData& backup) { return backup.markBlock(0, 0, 0x3000); });
     }},
    {"editFru", editFru},
};

/// Tells the shim, if there is one, that the operation is over.
void endFaults()
{
    if (void* const end = ::dlsym(RTLD_DEFAULT, "recordkit_faults_end")) {
        reinterpret_cast<void (*)()>(end)();
    }
}

void describe(const TAVLib::PException& e)
{
    std::printf("thrown act %u det 0x%04X %s\n", e.getActionCode(), e.getExceptionDetail(),
                e.getMessage().c_str());
}

}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: fault_victim ROOT OPERATION\n", stderr);
        return 2;
    }
    root = argv[1];
    TAVLib::host::setSystemRoot(root);
    std::vector<std::string> traces;
    TAVLib::host::setTraceSink(
        [&traces](const TAVLib::host::TraceLine& line) { traces.push_back(line.text); });
    for (const Operation& operation : OPERATIONS) {
        if (operation.name == std::string(argv[2])) {
            try {
                const int result = operation.run();
                endFaults();
                std::printf("result %d\n", result);
            } catch (const TAVLib::PException& e) {
                endFaults();
                describe(e);
            }
            for (const std::string& text : traces) {
                std::printf("trace %s\n", text.c_str());
            }
            TAVLib::host::setTraceSink({});
            return 0;
        }
    }
    std::fprintf(stderr, "fault_victim: no operation %s\n", argv[2]);
    return 2;
}
