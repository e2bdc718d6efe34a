// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

#include <vtkSmartPointer.h>

class vtkActor;
class vtkDataObject;
class vtkMapper;
class vtkMatrix4x4;
class vtkPolyData;
class vtkTexture;

namespace morrow {

struct SceneContent;

/// Copies one actor as plain actors with plain polygonal data in world coordinates: one for each kind of cell
/// and each block of composite data. The original is brought up to date and else not changed.
class ActorCopier
{
public:
  /// The actor, its place in the world, and what of it is wanted. All are kept as references.
  ActorCopier(vtkActor& actor, vtkMatrix4x4& placement, const SceneContent& content);

  /// To be called once. Empty data gives no actor.
  [[nodiscard]] std::vector<vtkSmartPointer<vtkActor>> copy();

  /// The kinds of what could not be copied, one entry for each.
  [[nodiscard]] const std::vector<std::string>& left_out() const { return mLeftOut; }

private:
  struct Look
  {
    double opacity;
    double color[3];
    bool is_visible;
    bool has_color; // otherwise the actor's property decides
  };

  void copy_data(vtkDataObject& data);
  void copy_block(vtkDataObject& block, Look look);
  [[nodiscard]] Look look_of_block(vtkDataObject& block, Look look) const;
  void copy_mesh(vtkPolyData& mesh, const Look& look);
  void add(vtkPolyData* part, const Look& look, vtkTexture* texture);
  [[nodiscard]] vtkSmartPointer<vtkTexture> copy_texture();

  vtkActor& mActor;
  vtkMatrix4x4& mPlacement;
  const SceneContent& mContent;
  vtkSmartPointer<vtkMapper> mMapper;
  vtkSmartPointer<vtkTexture> mTexture;
  std::vector<vtkSmartPointer<vtkActor>> mCopies;
  std::vector<std::string> mLeftOut;
};

} // namespace morrow
