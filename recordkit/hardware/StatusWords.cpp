// SPDX-License-Identifier: Apache-2.0
#include "StatusWords.h"

#include <numeric>

#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

void readWords(const unsigned char* data, unsigned int count, StatusWords& words)
{
    words.resize(count);
    for (unsigned short& word : words) {
        word = readLE16(data);
        data += 2;
    }
}

unsigned char* writeWords(const StatusWords& words, unsigned char* buffer)
{
    for (const unsigned short word : words) {
        writeLE16(word, buffer);
        buffer += 2;
    }
    return buffer;
}

unsigned short statusOf(const StatusWords& words, unsigned int index, unsigned short location,
                        const char* method, const char* notFound)
{
    if (index >= words.size()) {
        throwNotFound(location, method, notFound);
    }
    return words[index];
}

void numberElements(std::vector<int>& numbers, std::size_t count)
{
    numbers.resize(count);
    std::iota(numbers.begin(), numbers.end(), 0);
}

}
