// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_FRURWIF_H
#define RECORDKIT_PLATFORM_FRURWIF_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// Reader and writer of one FRU device, supplied by the caller. Offsets are byte offsets in the
/// device; a failure is thrown as a PException, the results are not examined.
class RECORDKIT_API FRURWif {
public:
    virtual ~FRURWif() = default;
    virtual int read(unsigned int offset, unsigned int length, unsigned char* buffer) = 0;
    virtual int write(unsigned int offset, unsigned int length, const unsigned char* buffer) = 0;
};

}

#endif
