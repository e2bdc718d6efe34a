// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include <vtkType.h>

class vtkDataSetAttributes;

namespace morrow {

/// A run of source tuples: their numbers, one after another, as 32 or 64 bits.
struct TupleRun
{
  const void* ids;
  bool is_64_bit;
  vtkIdType count;
};

/// Makes to a copy of such tuples of from, run after run, with the arrays that
/// vtkDataSetAttributes::CopyAllocate() copies. The result is that of CopyData() for each tuple; most arrays
/// take a fraction of its time. A tuple that an array of from does not have is zero.
void gather_tuples(vtkDataSetAttributes& from, vtkDataSetAttributes& to, const std::vector<TupleRun>& runs);

} // namespace morrow
