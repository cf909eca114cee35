// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_EEPROM_SETTINGFIXTURE_H
#define RECORDKIT_TESTS_EEPROM_SETTINGFIXTURE_H

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <recordkit/eeprom/SettingEEPROMData.h>

#include "MemoryEEPROMs.h"
#include "support/ScratchRoot.h"

namespace testing_support {

/// Entry n: its area is at 4096 + 64 n, odd ones on EEPROM 5, and has 32 bytes.
inline Bytes entry(unsigned int n, bool valid)
{
    const unsigned int offset = 4096 + 64 * n;
    return withSum({static_cast<unsigned char>(valid ? 1 : 0), 0xAA,
                    static_cast<unsigned char>(n % 2), static_cast<unsigned char>(n),
                    static_cast<unsigned char>(offset >> 8), static_cast<unsigned char>(offset), 0,
                    32, 1, 2, 3, 4, 5, 6, 7, 0},
                   15);
}

inline std::size_t entryPlace(unsigned int n)
{
    return 512 + 16 * n;
}

/// EEPROMs with an index of 27 entries, every third of them valid, and their areas.
class Settings : public testing::Test {
protected:
    Settings()
    {
        for (unsigned int n = 0; n <= 26; ++n) {
            eeproms.put(4, entryPlace(n), entry(n, n % 3 == 0));
            eeproms.put(n % 2 == 0 ? 4 : 5, 4096 + 64 * n, sequence(32, n));
        }
    }
    Bytes entryOf(unsigned int n) { return eeproms.get(4, entryPlace(n), 16); }
    void writeIndexFile(unsigned int entries)
    {
        Bytes file;
        for (unsigned int n = 0; n < entries; ++n) {
            file = file + entry(n, n % 5 == 0);
        }
        ::mkdir(root.at("/etc").c_str(), 0755);
        ::mkdir(root.at("/etc/default").c_str(), 0755);
        ::mkdir(root.at("/etc/default/config").c_str(), 0755);
        writeFile(indexFile, file);
    }
    static std::string text(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

    const ScratchRoot root;
    const std::string indexFile = root.at("/etc/default/config/panelindex.dat");
    MemoryEEPROMs eeproms;
    TAVLib::RecordKit::SettingEEPROMData settings{eeproms};
};

}

#endif
