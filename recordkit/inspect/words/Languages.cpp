// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Languages.h>

#include <iterator>
#include <strings.h>

#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* NAMES[] = {
    "", "aa", "ab", "af", "am", "ar", "as", "ay", "az", "ba",
    "be", "bg", "bh", "bi", "bn", "bo", "br", "ca", "co", "cs", // 10
    "cy", "da", "de", "dz", "el", "en", "eo", "es", "et", "eu", // 20
    "fa", "fi", "fj", "fo", "fr", "fy", "ga", "gd", "gl", "gn", // 30
    "gu", "ha", "hi", "hr", "hu", "hy", "ia", "ie", "ik", "in", // 40
    "is", "it", "iw", "ja", "ji", "jw", "ka", "kk", "kl", "km", // 50
    "kn", "ko", "ks", "ku", "ky", "la", "ln", "lo", "lt", "lv", // 60
    "mg", "mi", "mk", "ml", "mn", "mo", "mr", "ms", "mt", "my", // 70
    "na", "ne", "nl", "no", "oc", "om", "or", "pa", "pl", "ps", // 80
    "pt", "qu", "rm", "rn", "ro", "ru", "rw", "sa", "sd", "sg", // 90
    "sh", "si", "sk", "sl", "sm", "sn", "so", "sq", "sr", "ss", // 100
    "st", "su", "sv", "sw", "ta", "te", "tg", "th", "ti", "tk", // 110
    "tl", "tn", "to", "tr", "ts", "tt", "tw", "uk", "ur", "uz", // 120
    "vi", "vo", "wo", "xh", "yo", "zh", "zu",                   // 130
};
// clang-format on
static_assert(std::size(NAMES) == 137, "one for each language up to 136");

}

std::string languageName(unsigned char language)
{
    return language < std::size(NAMES) ? NAMES[language] : "";
}

std::optional<unsigned char> findLanguage(const std::string& text)
{
    for (std::size_t i = 1; i < std::size(NAMES); ++i) {
        if (::strcasecmp(text.c_str(), NAMES[i]) == 0) {
            return static_cast<unsigned char>(i);
        }
    }
    return parseNumber(text, 0xFF);
}

}
