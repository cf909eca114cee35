// SPDX-License-Identifier: Apache-2.0
#include "Errors.h"

#include <system_error>

#include "Files.h"

namespace recordkit::tool {

ExitStatus statusOf(const Error& error)
{
    if (const auto* const ofCommand = dynamic_cast<const CommandError*>(&error)) {
        return ofCommand->getStatus();
    }
    return dynamic_cast<const RequestError*>(&error) != nullptr ? EXIT_USAGE : EXIT_DATA;
}

CommandError systemError(const std::string& path, const char* what, int error)
{
    return fileError(inputName(path) + " cannot be " + what + ": " +
                     std::generic_category().message(error));
}

}
