// SPDX-License-Identifier: Apache-2.0
// JSON of FRU images, ours or frugen's: an image that it becomes has no problem but records that
// are too short, and its own JSON becomes the same image again. The first byte chooses: bit 0 for
// frugen's form, bit 1 for an image whose JSON is made.
#include <recordkit/inspect/fru/FruImage.h>

#include "Fuzz.h"
#include "tool/fru/FruJson.h"
#include "tool/fru/FrugenJson.h"
#include "tool/print/Json.h"
#include "tool/print/JsonInput.h"

using namespace recordkit::tool;

namespace {

constexpr unsigned int NOW = 1730786820;

std::string imageOf(const FruDescription& description)
{
    return buildFruImage(description.content, description.size);
}

/// What the JSON of an image becomes.
std::string again(const std::string& image)
{
    const auto json = jsonOfFru({contentOf(parseFruImage(image), image), image.size()});
    return imageOf(fruFromJson(readJson(indentedJson(json)), NOW));
}

void create(const std::string& text, bool isFrugen)
{
    const std::string image =
        imageOf(isFrugen ? fruFromFrugenJson(readJson(text, JsonComments::SKIPPED), NOW)
                         : fruFromJson(readJson(text), NOW));
    const FruImage parsed = parseFruImage(image);
    fuzz::expect(parsed.allProblems().size() == parsed.contentProblems.size());
    fuzz::expect(again(image) == image);
}

void exportImage(const std::string& image)
{
    const FruImage parsed = parseFruImage(image);
    if (parsed.allProblems().size() == parsed.contentProblems.size()) {
        const std::string created = again(image);
        fuzz::expect(created == image || !lostByJson(image, created).empty());
        fuzz::expect(again(created) == created);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::string input(data + 1, data + size);
    fuzz::attempt([&] {
        if ((data[0] & 2) != 0) {
            exportImage(input);
        } else {
            create(input, (data[0] & 1) != 0);
        }
    });
    return 0;
}
