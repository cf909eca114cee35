// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUFIELDS_H
#define RECORDKIT_INSPECT_FRU_FRUFIELDS_H

#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

/// FRU images and processor ROMs, whose fields are not the same in every image.
RecordClasses fruClasses();

}

#endif
