// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_STORY_H
#define RECORDKIT_EXAMPLES_GENERATOR_STORY_H

#include <vector>

#include <recordkit/sel/BMCSELEntryMessage.h>

namespace generator {

/// The events that a board logged in the week from 2026-11-14 to 2026-11-20, in their order, with
/// record ids from 1 on.
std::vector<TAVLib::RecordKit::BMCSELEntryMessage> eventsOf(unsigned int board);

}

#endif
