// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Conversion.h>

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

/// Bytes of a full record, header included.
enum Offset : unsigned int {
    UNITS_1 = 20,
    LINEARIZATION = 23,
    M_LOW = 24,
    M_HIGH = 25,
    B_LOW = 26,
    B_HIGH = 27,
    EXPONENTS = 29,
};

/// The functions of linearizations 0 to 11.
constexpr double (*FUNCTIONS[])(double) = {
    [](double x) { return x; },
    [](double x) { return std::log(x); },
    [](double x) { return std::log10(x); },
    [](double x) { return std::log2(x); },
    [](double x) { return std::exp(x); },
    [](double x) { return std::pow(10.0, x); },
    [](double x) { return std::exp2(x); },
    [](double x) { return 1 / x; },
    [](double x) { return x * x; },
    [](double x) { return x * x * x; },
    [](double x) { return std::sqrt(x); },
    [](double x) { return std::cbrt(x); },
};
constexpr unsigned char LINEAR = 0;

/// A two's complement number of so many bits.
int signedOf(unsigned int number, unsigned int bits)
{
    const int value = static_cast<int>(number);
    return number >> (bits - 1) == 0 ? value : value - (1 << bits);
}

}

std::optional<Conversion> Conversion::of(ByteView record)
{
    if (record.size() <= EXPONENTS) {
        return std::nullopt;
    }
    Conversion conversion;
    conversion.format = static_cast<Format>(record[UNITS_1] >> 6);
    conversion.linearization = record[LINEARIZATION] & 0x7F;
    if (conversion.format == Format::NONE || conversion.linearization >= std::size(FUNCTIONS)) {
        return std::nullopt;
    }
    const auto factor = [&record](unsigned int low, unsigned int high) {
        return signedOf(record[low] | (record[high] & 0xC0U) << 2, 10);
    };
    const int resultExponent = signedOf(record[EXPONENTS] >> 4, 4);
    const int offsetExponent = signedOf(record[EXPONENTS] & 0x0F, 4);
    conversion.slope = factor(M_LOW, M_HIGH) * std::pow(10.0, resultExponent);
    conversion.offset = factor(B_LOW, B_HIGH) * std::pow(10.0, offsetExponent + resultExponent);
    return conversion;
}

std::optional<double> Conversion::valueOf(unsigned char raw) const
{
    const double value = apply(countOf(raw));
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<double> Conversion::differenceOf(unsigned char counts) const
{
    return linearization == LINEAR ? std::optional(slope * counts) : std::nullopt;
}

std::optional<std::string> Conversion::textOf(unsigned char raw) const
{
    constexpr int MOST_PLACES = 6;
    const std::optional<double> value = valueOf(raw);
    if (!value) {
        return std::nullopt;
    }
    const int count = countOf(raw);
    double step = 0;
    for (const double neighbour : {apply(count - 1), apply(count + 1)}) {
        const double difference = std::fabs(neighbour - *value);
        if (std::isfinite(difference) && difference != 0) {
            step = step == 0 ? difference : std::min(step, difference);
        }
    }
    // Three steps of 0.1 are not 0.30000000000000004, and a step of 0.1 is one place.
    constexpr double ROUNDING = 1e-9;
    const int places = step == 0 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - ROUNDING));
    const std::string text = fmt::format("{:.{}f}", *value, std::clamp(places, 0, MOST_PLACES));
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    return isZero && text[0] == '-' ? text.substr(1) : text;
}

std::string readingText(const std::optional<Conversion>& conversion, unsigned char raw)
{
    return conversion ? conversion->textOf(raw).value_or("none") : std::to_string(raw);
}

int Conversion::countOf(unsigned char raw) const
{
    switch (format) {
    case Format::ONES_COMPLEMENT:
        return raw < 0x80 ? raw : raw - 0xFF;
    case Format::TWOS_COMPLEMENT:
        return raw < 0x80 ? raw : raw - 0x100;
    case Format::UNSIGNED:
    case Format::NONE:
        break;
    }
    return raw;
}

double Conversion::apply(int count) const
{
    return FUNCTIONS[linearization](slope * count + offset);
}

}
