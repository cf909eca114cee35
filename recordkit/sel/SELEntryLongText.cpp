// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/SELEntryLongText.h>

#include <algorithm>

#include <recordkit/serial/Failure.h>
#include <recordkit/serial/ImageCopy.h>

namespace TAVLib::RecordKit {

unsigned int SELEntryLongText::getSerialized(unsigned char* buf, unsigned int size) const
{
    return copyImage(SEL_ENTRY_LONG_TEXT_LOCATION, "SELEntryLongText::getSerialized", buffer,
                     validLength, buf, size);
}

bool SELEntryLongText::setSerialized(const unsigned char* data, unsigned int size)
{
    // Kept even if the image is then refused: callers look at what was too short.
    validLength = keepImage(data, size, buffer, MAX_SIZE);
    if (validLength < MIN_SIZE) {
        throwLengthError(SEL_ENTRY_LONG_TEXT_LOCATION, "SELEntryLongText", validLength, MIN_SIZE);
    }
    text.assign(buffer + TEXT_OFFSET, std::find(buffer + TEXT_OFFSET, buffer + BUFFER_SIZE, 0));
    return true;
}

}
