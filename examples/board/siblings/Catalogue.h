// SPDX-License-Identifier: Apache-2.0
#ifndef BOARD_SIBLINGS_CATALOGUE_H
#define BOARD_SIBLINGS_CATALOGUE_H

#include <recordkit/platform/CatalogueFile.h>

namespace board {

/// What the siblings throw for a system call that failed: a text, and errno as detail.
constexpr int MESSAGE_FILE = 40001;

/// The catalogue's entry; one without parameters for a number that has none.
const TAVLib::CatalogueEntry& findMessage(int number);

}

#endif
