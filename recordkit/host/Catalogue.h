// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_CATALOGUE_H
#define RECORDKIT_HOST_CATALOGUE_H

#include <cstddef>
#include <string>
#include <vector>

namespace TAVLib::host {

/// The host's own message: an operation on a file failed (operation, path, reason, errno).
constexpr int MESSAGE_FILE_OPERATION = 30001;

/// One message: `kinds` has a letter for each parameter, s for a text and n for a number; the text
/// contains a {} for each of them, in the same order.
struct CatalogueMessage {
    int number;
    const char* kinds;
    const char* text;
};

/// The message with that number; for an unknown number, one without parameters.
const CatalogueMessage& findMessage(int number);

/// The message with its parameters filled in; a missing one stays {}.
std::string fillMessage(const CatalogueMessage& message,
                        const std::vector<std::string>& parameters);

/// The whole catalogue, for the tests of its rows.
const CatalogueMessage* catalogue(std::size_t& count);

}

#endif
