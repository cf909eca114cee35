// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_MODULES_H
#define RECORDKIT_EXAMPLES_GENERATOR_MODULES_H

#include "Bytes.h"

namespace generator {

/// The SPD data of all memory modules, in a folder for each board below spd (JEDEC 21-C, annex L).
Files memoryModules();

}

#endif
