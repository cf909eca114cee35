// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_INSPECT_FIELDS_SAMPLES_H
#define RECORDKIT_TESTS_INSPECT_FIELDS_SAMPLES_H

#include <optional>
#include <ostream>
#include <random>

#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

/// What test listings show of a class.
inline void PrintTo(const RecordClass* recordClass, std::ostream* out)
{
    *out << (recordClass == nullptr ? "no class" : recordClass->name);
}

}

namespace testing_support {

using recordkit::inspect::Bytes;
using recordkit::inspect::DecodedFields;
using recordkit::inspect::RecordClass;

/// The fields of an image; nothing if the class refuses it.
std::optional<DecodedFields> decoded(const RecordClass& recordClass, const Bytes& image);

/// Bytes of the image that an object keeps; 0 if it refuses the image.
std::size_t keptSize(const RecordClass& recordClass, const Bytes& image);

/// Images that a class takes, an endless row that is always the same: blank ones, full ones,
/// counting ones, then random ones of which some have only small numbers. They are as long as the
/// class takes them, and have no lists that are longer than the rest.
class Samples {
public:
    explicit Samples(const RecordClass& ofClass) : recordClass(ofClass) {}

    Bytes next();

private:
    Bytes candidate();
    bool isTaken(const Bytes& image) const;

    const RecordClass& recordClass;
    std::mt19937 random{1};
    unsigned int made = 0;
};

}

#endif
