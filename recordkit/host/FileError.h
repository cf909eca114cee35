// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_FILEERROR_H
#define RECORDKIT_HOST_FILEERROR_H

#include <string>

#include <recordkit/platform/PException.h>

namespace TAVLib::host {

/// Module code of the host platform's own reports.
constexpr unsigned char HOST_MODULE = 200;

/// Location codes of the host platform's classes.
enum HostLocation : unsigned short {
    LOCKED_FILE_LOCATION = 0x0100,
    BMC_MESSAGE_FILE_LOCATION = 0x0200,
    FILE_FRU_LOCATION = 0x0300,
    FILE_EEPROM_LOCATION = 0x0400,
};

/// The exception for a failed operation on a file: action 2, errno as detail, and the
/// operation, the path and the reason in the message. The reason is the system's text for errno if
/// none is given.
PException fileError(HostLocation where, const char* operation, const std::string& path, int error,
                     const std::string& reason = "");

}

#endif
