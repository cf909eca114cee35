// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_SELENTRYLONGTEXT_H
#define RECORDKIT_SEL_SELENTRYLONGTEXT_H

#include <string>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// The long text of an event.
///
/// | byte | width    | meaning                                                    |
/// |------|----------|------------------------------------------------------------|
/// | 0    | 14       | carried unchanged                                          |
/// | 14   | up to 65 | the text, ended by a zero byte or by the end of the buffer |
class RECORDKIT_API SELEntryLongText : public SerializableObject {
public:
    /// One byte more than any image fills, so that a zero byte follows the longest one.
    enum Size : unsigned int {
        TEXT_OFFSET = 14,
        MIN_SIZE = 15,
        BUFFER_SIZE = 80,
        MAX_SIZE = BUFFER_SIZE - 1
    };

    /// 0 and a trace line (module 83, location 0x1500, level 0, message 20008) when `size` is
    /// below the serialized size.
    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override { return validLength; }

    /// Accepts up to 79 bytes and ignores the rest.
    ///
    /// Fewer than 15 bytes throw PException (location 0x1500, action 1, detail 0x0B00, message
    /// 20008, "SELEntryLongText", bytes present, 15); the object keeps the bytes and their number,
    /// and the earlier text. The buffer is not cleared first: if an image has no zero byte, the
    /// text continues with what a longer earlier image left there.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

    /// The text of the last image that had one.
    std::string getLongText() const { return text; }

private:
    unsigned char buffer[BUFFER_SIZE] = {};
    unsigned int validLength = 0;
    std::string text;
};

}

#endif
