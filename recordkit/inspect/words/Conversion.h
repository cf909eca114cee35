// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_CONVERSION_H
#define RECORDKIT_INSPECT_WORDS_CONVERSION_H

#include <optional>
#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// How raw readings become units: y = L[(M x + B 10^K1) 10^K2], with the factors of a full sensor
/// record (IPMI v2.0, sections 36.3 and 43.1).
class Conversion {
public:
    /// That of a full record; none for a sensor without an analog reading, and for one whose
    /// factors depend on the reading (linearization 70h to 7Fh), which only the controller knows.
    static std::optional<Conversion> of(ByteView record);

    /// None where the function has no value, as 1/x at 0.
    std::optional<double> valueOf(unsigned char raw) const;
    /// Units in a difference of so many counts; none for a sensor that is not linear.
    std::optional<double> differenceOf(unsigned char counts) const;

    /// The value with as many decimal places as readings around it differ in.
    std::optional<std::string> textOf(unsigned char raw) const;

private:
    enum class Format : unsigned char { UNSIGNED, ONES_COMPLEMENT, TWOS_COMPLEMENT, NONE };

    int countOf(unsigned char raw) const;
    double apply(int count) const;

    Format format = Format::NONE;
    unsigned char linearization = 0;
    double slope = 0;  ///< M 10^K2
    double offset = 0; ///< B 10^(K1 + K2)
};

/// A reading in units where it has a conversion, otherwise in counts; "none" where the conversion
/// has no value.
std::string readingText(const std::optional<Conversion>& conversion, unsigned char raw);

}

#endif
