// SPDX-License-Identifier: Apache-2.0
#include "Errors.h"

#include <system_error>

namespace recordkit::tool {

CommandError systemError(const std::string& path, const char* what, int error)
{
    return fileError(path + " cannot be " + what + ": " + std::generic_category().message(error));
}

}
