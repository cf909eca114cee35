// SPDX-License-Identifier: Apache-2.0
// What the benchmarks share: an event, a scratch root, event files.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <recordkit/host/HostRoot.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "Scratch.h"

namespace bench {

using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;
namespace Layout = TAVLib::RecordKit::SELFileLayout;

const Bytes& record()
{
    static const Bytes bytes = {0x01, 0x00, 0x02, 0x0C, 0xB6, 0x29, 0x67, 0x20,
                                0x00, 0x04, 0x01, 0x30, 0x01, 0x59, 0x62, 0x60};
    return bytes;
}

Bytes slot(unsigned int id)
{
    Bytes image = {0xFF, 0xFF};
    image.insert(image.end(), record().begin(), record().end());
    OEMSELEntry oem;
    oem.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
    BMCSELEntryMessage message;
    message.convert(oem);
    image.resize(Layout::SLOT_SIZE);
    message.getSerialized(image.data(), Layout::SLOT_SIZE);
    image[Layout::RECORD_ID_OFFSET] = static_cast<unsigned char>(id & 0xFF);
    image[Layout::RECORD_ID_OFFSET + 1] = static_cast<unsigned char>(id >> 8);
    return image;
}

Root::Root()
{
    std::string pattern =
        (std::filesystem::temp_directory_path() / "recordkit-bench-XXXXXX").string();
    path = ::mkdtemp(pattern.data());
    for (const char* folder : {"/tmp", "/var/tmp", "/var/tav/fmem/ipmi"}) {
        std::filesystem::create_directories(path + folder);
    }
    TAVLib::host::setSystemRoot(path);
}

Root::~Root()
{
    TAVLib::host::setSystemRoot("");
    std::filesystem::remove_all(path);
}

void writeEventFile(const std::string& name, unsigned int count)
{
    Bytes bytes(Layout::FILE_SIZE, Layout::EMPTY_BYTE);
    for (unsigned int i = 0; i < count; ++i) {
        const Bytes event = slot(i + 1);
        std::copy(event.begin(), event.end(),
                  bytes.begin() + static_cast<long>(i) * Layout::SLOT_SIZE);
    }
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
}

}
