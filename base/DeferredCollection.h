// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkGarbageCollector.h>

namespace morrow {

/// Defers VTK's garbage collection while it lives, so that a bulk removal walks the reference graph once.
/// Closes the bracket on every way out: one left open would stop collection for the whole process.
class DeferredCollection
{
public:
  DeferredCollection() { vtkGarbageCollector::DeferredCollectionPush(); }
  ~DeferredCollection() { vtkGarbageCollector::DeferredCollectionPop(); }
  DeferredCollection(const DeferredCollection&) = delete;
  DeferredCollection& operator=(const DeferredCollection&) = delete;
};

} // namespace morrow
