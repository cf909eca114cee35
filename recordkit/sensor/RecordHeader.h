// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SENSOR_RECORDHEADER_H
#define RECORDKIT_SENSOR_RECORDHEADER_H

#include <recordkit/platform/Export.h>
#include <recordkit/serial/ByteOrder.h>

namespace TAVLib::RecordKit {

/// The header of a sensor data record (IPMI v2.0, section 43).
///
/// | byte | width | meaning                               |
/// |------|-------|---------------------------------------|
/// | 0    | 2     | record id, low byte first             |
/// | 2    | 1     | carried unchanged: SDR version        |
/// | 3    | 1     | record type                           |
/// | 4    | 1     | record length: bytes after the header |
///
/// A view of the image that the derived record owns. The order of the virtual operations is part
/// of the binary interface.
class RECORDKIT_API RecordHeader {
public:
    enum Size : unsigned int { HEADER_SIZE = 5 };
    enum Offset { RECORD_ID = 0, RECORD_TYPE = 3, RECORD_LENGTH = 4 };

    virtual unsigned short getRecordID() const { return readLE16(header + RECORD_ID); }
    virtual void setRecordID(unsigned short id) { writeLE16(id, header + RECORD_ID); }
    virtual unsigned char getRecordType() const { return header[RECORD_TYPE]; }
    virtual unsigned char getRecordLength() const { return header[RECORD_LENGTH]; }
    virtual ~RecordHeader();
    virtual void setRecordType(unsigned char type) { header[RECORD_TYPE] = type; }
    virtual void setRecordLength(unsigned char length) { header[RECORD_LENGTH] = length; }

    RecordHeader(const RecordHeader&) = delete;
    RecordHeader& operator=(const RecordHeader&) = delete;

protected:
    explicit RecordHeader(unsigned char* image) : header(image) {}

private:
    unsigned char* const header;
};

}

#endif
