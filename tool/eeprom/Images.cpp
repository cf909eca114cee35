// SPDX-License-Identifier: Apache-2.0
#include "Images.h"

namespace recordkit::tool {

void ImagesOption::addTo(CLI::App& command)
{
    command.add_option("--images", text, "Folder of the images eeprom4.bin, eeprom5.bin, ...")
        ->envname("RECORDKIT_IMAGES")
        ->capture_default_str()
        ->type_name("DIR");
}

}
