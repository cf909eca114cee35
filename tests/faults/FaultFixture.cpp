// SPDX-License-Identifier: Apache-2.0
#include "FaultFixture.h"

#include <cerrno>
#include <filesystem>
#include <fstream>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/host/FileEEPROMRWif.h>

namespace testing_support {

namespace fs = std::filesystem;
using TAVLib::RecordKit::EFIBackupEEPROMData;
using TAVLib::RecordKit::PanelEEPROMIndex;
using TAVLib::RecordKit::SettingEEPROMData;

namespace {

constexpr std::size_t EEPROM_SIZE = 65536;

/// 27 entries, of which entry 0 has an area of 64 bytes.
Bytes settingIndex()
{
    Bytes bytes;
    for (int n = 0; n <= 26; ++n) {
        PanelEEPROMIndex entry;
        unsigned char* const image = entry.getIndexData();
        image[PanelEEPROMIndex::NUMBER] = static_cast<unsigned char>(n);
        if (n == 0) {
            image[PanelEEPROMIndex::OFFSET] = 0x10;
            image[PanelEEPROMIndex::AREA_SIZE + 1] = 64;
        }
        entry.setChecksum();
        bytes.insert(bytes.end(), image, image + PanelEEPROMIndex::SIZE);
    }
    return bytes;
}

}

const std::vector<std::string> FAULTY_CALLS = {"open",  "read",   "write",  "lseek",
                                               "stat",  "rename", "remove", "ftruncate",
                                               "flock", "fsync",  "close",  "system"};

FaultWorld::FaultWorld()
{
    const std::string kept = at("/var/tav/fmem/ipmi/sb1_bmc_sel");
    writeFile(at("/tmp/sb1_bmc_sel0"), fileOf(5));
    writeFile(kept + "0", fileOf(3));
    writeFile(kept + "1", fileOf(800, 1000));
    writeFile(kept + "2", fileOf(800, 2000));
    writeFile(at("/tmp/sb1_bmc_msg0"), "messages");
    writeFile(at("/var/tmp/shift_sel_sync"), "");
    writeFile(at("/tmp/psumode"), Bytes{1});
    fs::create_directories(at("/etc/tav/common"));
    writeFile(at("/etc/tav/common/cpu_ca_number.csv"), "06F3,x,CA1\n");
    fs::create_directories(at("/etc/default/config"));
    writeFile(at("/etc/default/config/panelindex.dat"), settingIndex());
    fs::copy_file(RECORDKIT_EXAMPLE_DATA "/fru/mixed-encodings.bin", at("/board.bin"));
    fs::create_directories(at("/images"));
    for (const int select : {4, 5, 10, 11}) {
        writeFile(at("/images/eeprom" + std::to_string(select) + ".bin"), Bytes(EEPROM_SIZE, 0xFF));
    }
    TAVLib::host::FileEEPROMRWif device(at("/images"));
    SettingEEPROMData settings(device);
    settings.initializeIndexData(-1);
    std::string old(64, 'o');
    settings.write(0, old);
    EFIBackupEEPROMData(device).setIndexData(true, "SERIAL-01234");
    original = files();
}

void FaultWorld::reset() const
{
    const auto now = files();
    for (const auto& [path, bytes] : now) {
        if (original.count(path) == 0) {
            fs::remove(path);
        }
    }
    for (const auto& [path, bytes] : original) {
        const auto found = now.find(path);
        if (found == now.end() || found->second != bytes) {
            fs::create_directories(fs::path(path).parent_path());
            writeFile(path, bytes);
        }
    }
}

std::map<std::string, Bytes> FaultWorld::files() const
{
    std::map<std::string, Bytes> all;
    for (const auto& entry : fs::recursive_directory_iterator(root.path())) {
        if (entry.is_regular_file()) {
            all[entry.path()] = readFile(entry.path());
        }
    }
    return all;
}

std::multiset<unsigned int> FaultWorld::events() const
{
    std::multiset<unsigned int> ids;
    for (const auto& [path, bytes] : files()) {
        if (path.find("sb1_bmc_sel") == std::string::npos) {
            continue;
        }
        for (std::size_t at = 0; at + SLOT <= bytes.size(); at += SLOT) {
            const unsigned int id = bytes[at + 2] | static_cast<unsigned int>(bytes[at + 3]) << 8;
            if (id != 0xFFFF) {
                ids.insert(id);
            }
        }
    }
    return ids;
}

FaultRun runWithFault(const FaultWorld& world, const Arguments& program, const std::string& fault)
{
    const std::string report = world.path() + ".report";
    FaultRun result;
    result.outcome = run(
        program, "",
        {"LD_PRELOAD=" FAULT_SHIM, "RECORDKIT_FAULT=" + fault, "RECORDKIT_FAULT_REPORT=" + report});
    std::ifstream file(report);
    int hit = 0;
    if (!(file >> result.calls >> hit >> result.descriptorsLeft >> result.inherited)) {
        ADD_FAILURE() << fault << ": no report; " << result.outcome.err;
    }
    result.wasHit = hit != 0;
    fs::remove(report);
    return result;
}

bool isInterruption(const std::string& fault)
{
    return fault.substr(fault.find_last_of(':') + 1) == std::to_string(EINTR);
}

std::vector<std::string> faultsOf(const std::string& call, long calls)
{
    std::vector<int> errors = {EIO};
    if (call == "open") {
        errors = {EACCES, EMFILE, EINTR};
    } else if (call == "read") {
        errors = {EIO, EINTR};
    } else if (call == "write" || call == "ftruncate" || call == "fsync") {
        errors = {ENOSPC, EINTR};
    } else if (call == "flock") {
        errors = {ENOLCK, EINTR};
    } else if (call == "rename" || call == "remove") {
        errors = {EROFS};
    }
    std::vector<std::string> faults;
    for (long n = 1; n <= calls; ++n) {
        const std::string place = call + ":" + std::to_string(n) + ":";
        for (const int error : errors) {
            faults.push_back(place + std::to_string(error));
        }
        if (call == "read" || call == "write" || call == "system") {
            faults.push_back(place + "short");
        }
        if (call == "write") {
            faults.push_back(place + "always:" + std::to_string(ENOSPC));
        }
    }
    return faults;
}

}
