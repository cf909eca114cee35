// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_LOCKTIMEOUT_H
#define RECORDKIT_HOST_LOCKTIMEOUT_H

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// Waiting for a lock without end, as a LockedFile does until setLockTimeout is called.
constexpr int FOREVER = -1;

/// How many milliseconds each LockedFile that is constructed from now on waits at most for its
/// lock; 0 tries once. Then it throws, with the errno EWOULDBLOCK as detail.
///
/// Every user who may read a file can lock it, so a program that must not hang sets a limit.
RECORDKIT_API void setLockTimeout(int milliseconds);
RECORDKIT_API int lockTimeout();

}

#endif
