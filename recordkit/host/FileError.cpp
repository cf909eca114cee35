// SPDX-License-Identifier: Apache-2.0
#include "FileError.h"

#include <system_error>

#include "Catalogue.h"

namespace TAVLib::host {

PException fileError(HostLocation where, const char* operation, const std::string& path, int error,
                     const std::string& reason)
{
    constexpr unsigned char PRODUCER = 1;
    constexpr unsigned char FILE_ERROR_ACTION = 2;
    const std::string text = reason.empty() ? std::generic_category().message(error) : reason;
    return {PRODUCER,
            HOST_MODULE,
            where,
            FILE_ERROR_ACTION,
            static_cast<unsigned short>(error),
            MESSAGE_FILE_OPERATION,
            reinterpret_cast<long>(operation),
            reinterpret_cast<long>(path.c_str()),
            reinterpret_cast<long>(text.c_str()),
            error,
            0,
            0,
            0,
            0};
}

}
