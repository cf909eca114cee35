// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_STATUSWORDS_H
#define RECORDKIT_HARDWARE_STATUSWORDS_H

#include <vector>

namespace TAVLib::RecordKit {

/// Counted lists of status words of 16 bits, low byte first in the image.
using StatusWords = std::vector<unsigned short>;

/// Replaces the words with `count` words of an image. If there is no memory for them,
/// std::bad_alloc leaves the words unchanged; a list with enough capacity never fails.
void readWords(const unsigned char* data, unsigned int count, StatusWords& words);

/// Writes the words and returns the place after them.
unsigned char* writeWords(const StatusWords& words, unsigned char* buffer);

/// A word; throws the failure of a missing element, with these texts.
unsigned short statusOf(const StatusWords& words, unsigned int index, unsigned short location,
                        const char* method, const char* notFound);

/// Replaces the contents of `numbers` with 0, 1, ..., count - 1.
void numberElements(std::vector<int>& numbers, std::size_t count);

}

#endif
