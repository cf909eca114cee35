// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/IOUPortConfiguration.h>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

void checkPort(unsigned int port, const char* text)
{
    constexpr unsigned int FIRST_PORT = 2;
    constexpr unsigned int LAST_PORT = 7;
    if (port < FIRST_PORT || port > LAST_PORT) {
        throwIndexError(IOU_PORT_CONFIGURATION_LOCATION, text, port);
    }
}

}

void IOUPortConfiguration::setLIOUA_PCIExp(unsigned int port, bool on)
{
    checkPort(port, "IOUPortConfiguration::setLIOUA_PCIExp");
    writeBit(image[PORTS], port, on);
}

bool IOUPortConfiguration::isLIOUA_PCIExp(unsigned int port) const
{
    checkPort(port, "IOUPortConfiguration::isLIOUA_PCIExp");
    return get_bit(image[PORTS], port, 1) != 0;
}

}
