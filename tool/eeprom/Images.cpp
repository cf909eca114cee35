// SPDX-License-Identifier: Apache-2.0
#include "Images.h"

#include <recordkit/platform/PException.h>

#include "../Errors.h"

namespace recordkit::tool {

void ImagesOption::addTo(CLI::App& command)
{
    command.add_option("--images", text, "Folder of the images eeprom4.bin, eeprom5.bin, ...")
        ->envname("RECORDKIT_IMAGES")
        ->capture_default_str()
        ->type_name("DIR");
}

void attempt(const std::function<void()>& action)
{
    try {
        action();
    } catch (const TAVLib::PException& e) {
        constexpr unsigned char REFUSED_ACTION = 1;
        throw CommandError(e.getActionCode() == REFUSED_ACTION ? EXIT_DATA : EXIT_FILE,
                           e.getParameter(0).empty() ? e.getMessage() : e.getParameter(0));
    }
}

}
