// SPDX-License-Identifier: Apache-2.0
#include "Images.h"

#include <fmt/format.h>

#include <recordkit/host/Catalogue.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/platform/PException.h>

#include "../Errors.h"
#include "../Files.h"
#include "../print/Output.h"

namespace recordkit::tool {

Option images()
{
    Option option =
        text("--images", "DIR", "Folder of the images (eeprom4.bin, eeprom5.bin and so on)")
            .by(".");
    option.environment = "RECORDKIT_IMAGES";
    return option;
}

TAVLib::host::FileEEPROMRWif openImages(const Arguments& arguments)
{
    return TAVLib::host::FileEEPROMRWif(arguments.text("--images"));
}

void attempt(const std::function<void()>& action)
{
    try {
        action();
    } catch (const TAVLib::PException& e) {
        constexpr unsigned char REFUSED_ACTION = 1;
        // The text of a store is a parameter of its message; a file's message has path and reason.
        const bool isOfStore = e.getMessageNumber() != TAVLib::host::MESSAGE_FILE_OPERATION &&
                               !e.getParameter(0).empty();
        throw CommandError(e.getActionCode() == REFUSED_ACTION ? EXIT_DATA : EXIT_FILE,
                           isOfStore ? e.getParameter(0) : e.getMessage());
    }
}

void writeRead(const Arguments& arguments, const std::string& content, const std::string& source)
{
    if (!arguments.has("FILE")) {
        printBytes(content);
        return;
    }
    writeOutput(arguments.text("FILE"), content);
    print(fmt::format("{}: {} written to {}\n", source, counted(content.size(), "byte"),
                      arguments.text("FILE")));
}

}
