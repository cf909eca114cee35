// SPDX-License-Identifier: Apache-2.0
#include "Images.h"

#include <system_error>

#include <fmt/format.h>

#include <recordkit/host/Catalogue.h>
#include <recordkit/inspect/bytes/Numbers.h>

#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
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

std::string failureText(const TAVLib::PException& failure)
{
    // The text of a store is a parameter of its message; a file's message has path and reason.
    std::string text = failure.getParameter(0);
    if (failure.getMessageNumber() == TAVLib::host::MESSAGE_FILE_OPERATION || text.empty()) {
        return failure.getMessage();
    }
    // The codes of what the store was told: action 2 comes with an error of the system.
    const std::string codes = "ActCode=0x02 DetCode=0x";
    const std::size_t at = text.find(codes);
    if (at == std::string::npos) {
        return text;
    }
    const int error = std::stoi(text.substr(at + codes.size(), 4), nullptr, 16);
    return text + ": " + std::generic_category().message(error);
}

void attempt(const std::function<void()>& action, const std::string& input)
{
    try {
        action();
    } catch (const TAVLib::PException& e) {
        constexpr unsigned char REFUSED_ACTION = 1;
        const bool isRefused = e.getActionCode() == REFUSED_ACTION;
        throw CommandError(isRefused ? EXIT_DATA : EXIT_FILE,
                           (isRefused && !input.empty() ? input + ": " : "") + failureText(e));
    }
}

std::string readContent(const Arguments& arguments)
{
    const std::string file = arguments.text("FILE");
    std::string content = readInput(file, EEPROM_LIMIT);
    if (content.empty()) {
        throw dataError(inputName(file) + " is empty, expected bytes to write");
    }
    return content;
}

void writeRead(const Arguments& arguments, const std::string& content, const std::string& source)
{
    if (!arguments.has("FILE")) {
        printBytes(content);
        return;
    }
    writeOutput(arguments.text("FILE"), content, Readers::OWNER);
    print(fmt::format("{}: {} written to {}\n", source, counted(content.size(), "byte"),
                      inputName(arguments.text("FILE"))));
}

}
