// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_CATALOGUE_H
#define RECORDKIT_HOST_CATALOGUE_H

#include <vector>

#include <recordkit/platform/CatalogueFile.h>

namespace TAVLib::host {

/// The host's own message: an operation on a file failed (operation, path, reason, errno).
constexpr int MESSAGE_FILE_OPERATION = 30001;

/// The library's messages, which are compiled in, and the host's own.
const std::vector<CatalogueEntry>& catalogue();

/// The message with that number; for an unknown number, one without parameters.
const CatalogueEntry& findMessage(int number);

}

#endif
