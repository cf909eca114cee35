// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_EXPORT_H
#define RECORDKIT_PLATFORM_EXPORT_H

// The classes of this folder that the library and programs construct (BMCMessageFile,
// CsvInfoAccess, LockedFile, PException, TavTrace) have exactly one member: the pointer `state` to
// a class State, which their implementation defines, allocates and deletes. Their size is compiled
// into everything that constructs them, so an implementation includes these headers unchanged: one
// with a header of its own that has other members, bases or virtual functions overwrites its
// callers' memory.

/// Marks what programs link against; everything else stays inside its library.
#define RECORDKIT_API __attribute__((visibility("default")))

#endif
