// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_ENTITIES_H
#define RECORDKIT_INSPECT_WORDS_ENTITIES_H

#include <string>

namespace recordkit::inspect {

/// Name of an entity id (IPMI v2.0, table 43-13); "entity 200" for those without one.
std::string entityName(unsigned char entityId);

}

#endif
