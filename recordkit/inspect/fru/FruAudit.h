// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUAUDIT_H
#define RECORDKIT_INSPECT_FRU_FRUAUDIT_H

#include <cstddef>
#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruImage.h>

namespace recordkit::inspect {

/// Something about one of many images that a person should look at.
struct FruFinding {
    std::size_t image = 0; ///< its position
    std::string field;     ///< "board.serial"; empty for the image as a whole
    std::string text;
};

/// Looks at images of a fleet, in their order:
/// - whatever is damaged in one;
/// - a serial number that is blank, or a placeholder such as "To be filled by O.E.M." or
///   "00000000";
/// - the same serial number in another image with the same manufacturer and part number;
/// - a manufacturing date after `now`, in seconds since 1970;
/// - a field other than serial numbers, dates, asset tags and custom fields in which an image
///   differs from more than half of the images of the same product: with the same manufacturer and
///   name of the product, or of the board where there is no product area. This takes at least three
///   images.
std::vector<FruFinding> auditFruImages(const std::vector<FruImage>& images, unsigned int now);

}

#endif
