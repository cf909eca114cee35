// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_REPORT_IMAGESIGNS_H
#define RECORDKIT_INSPECT_REPORT_IMAGESIGNS_H

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

// The rows of ImageKind that are about images of devices: those that are certain, and those that
// allow for damage.

bool isFruImage(ByteView content);
bool isDamagedFruImage(ByteView content);
/// By its header only.
bool hasFruHeader(ByteView content);

bool isProcessorRom(ByteView content);

bool isSpdData(ByteView content);
bool isDamagedSpdData(ByteView content);

bool isSettingIndex(ByteView content);

bool isEfiIndex(ByteView content);
bool isDamagedEfiIndex(ByteView content);

bool isRepository(ByteView content);
bool isDamagedRepository(ByteView content);

}

#endif
