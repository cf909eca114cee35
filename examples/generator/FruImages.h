// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_FRUIMAGES_H
#define RECORDKIT_EXAMPLES_GENERATOR_FRUIMAGES_H

#include "Bytes.h"

namespace generator {

/// The FRU images of all units, in the folder fru (IPMI FRU Information Storage Definition v1.0).
Files fruImages();

}

#endif
