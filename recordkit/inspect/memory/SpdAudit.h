// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_MEMORY_SPDAUDIT_H
#define RECORDKIT_INSPECT_MEMORY_SPDAUDIT_H

#include <cstddef>
#include <string>
#include <vector>

#include <recordkit/inspect/memory/Spd.h>

namespace recordkit::inspect {

/// Something about one of a board's modules that a person should look at.
struct SpdFinding {
    std::size_t module = 0; ///< its position
    bool isError = false;   ///< damaged data, or modules that do not work together
    std::string field;      ///< "speed_mts", as in JSON; empty for the data as a whole
    std::string text;
};

/// Looks at the modules of a board, in their order:
/// - whatever spdProblems says of one;
/// - a type of memory other than that of most modules (an error); then, among modules of the same
///   type, another type of module (an error), speed, voltage, capacity, number of ranks or width.
///   Where no value is that of most modules, the one that is found first among the most frequent is
///   taken for it. A value that is unknown is not compared;
/// - a serial number that is blank (zeroes or FFh), or that several modules of the same maker have;
/// - a date after `now`, in seconds since 1970, or that is not one.
std::vector<SpdFinding> auditSpdModules(const std::vector<Spd>& modules, unsigned int now);

}

#endif
