// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_BOARDS_H
#define RECORDKIT_EXAMPLES_GENERATOR_BOARDS_H

#include "Bytes.h"

namespace generator {

// Images that `recordkit decode` reads, each named after its class: CLASS.UNIT.bin.

/// What is in the cabinet, as its controllers report it at the end of the week.
Files boardImages();

/// The versions after the update of the third day.
Files firmwareImages();

/// The information ROM of each processor.
Files processorRoms();

}

#endif
