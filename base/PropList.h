// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <unordered_set>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkProp;
class vtkRenderer;

namespace morrow {

/// Adds props to a renderer, and removes them, in time proportional to their number.
///
/// The outcome is the one of calling vtkRenderer::AddViewProp or RemoveViewProp for each prop in turn: order,
/// reference counts, consumers, released graphics resources. VTK searches its linked list for every single
/// prop; this class remembers which props the renderer has, and looks again only when somebody else has
/// changed the list.
class PropList
{
public:
  using Props = std::vector<vtkSmartPointer<vtkProp>>;

  /// The renderer is not owned and must outlive this object.
  explicit PropList(vtkRenderer& renderer);

  /// Appends each prop that is not there yet, in vector order. Null and repeated props are passed over.
  void add(const Props& props);

  /// Removes each prop that is there, in vector order. Null, absent and repeated props are passed over.
  void remove(const Props& props);

private:
  void refresh_members();
  std::vector<vtkProp*> take_present(const Props& props);
  void detach(vtkProp* prop);
  void erase_one_by_one(const std::vector<vtkProp*>& props);
  void erase_in_one_sweep(const std::vector<vtkProp*>& props);

  vtkRenderer& mRenderer;
  std::unordered_set<vtkProp*> mMembers;
  vtkMTimeType mMembersTime = 0; // the collection's modification time when mMembers was true
};

} // namespace morrow
