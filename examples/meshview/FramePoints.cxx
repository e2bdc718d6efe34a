// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FramePoints.h"

#include "GView.h"

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace {

constexpr double kDepthSlack = 0.0005; // of a point on the very surface that was drawn

} // namespace

FramePoints::FramePoints(GView& view)
{
  vtkRenderer& renderer = *view.get_renderer();
  mWidth = renderer.GetSize()[0];
  mHeight = renderer.GetSize()[1];
  mDepths.resize(static_cast<std::size_t>(mWidth) * static_cast<std::size_t>(mHeight));
  const int left = renderer.GetOrigin()[0];
  const int bottom = renderer.GetOrigin()[1];
  view.get_render_window()->GetZbufferData(left, bottom, left + mWidth - 1, bottom + mHeight - 1,
                                           mDepths.data());
  mProjection = renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(
      renderer.GetTiledAspectRatio(), 0.0, 1.0);
}

BrantVector FramePoints::project(const BrantVector& world) const
{
  const double in[4] = {world.x(), world.y(), world.z(), 1.0};
  double out[4];
  mProjection->MultiplyPoint(in, out);
  if (out[3] == 0.0) {
    return BrantVector(-1.0, -1.0, -1.0); // off the picture
  }
  return BrantVector((out[0] / out[3] + 1.0) * 0.5 * mWidth, (out[1] / out[3] + 1.0) * 0.5 * mHeight,
                     out[2] / out[3]);
}

bool FramePoints::is_visible(const BrantVector& projected) const
{
  if (!(projected.x() >= 0.0 && projected.x() < mWidth && projected.y() >= 0.0 && projected.y() < mHeight &&
        projected.z() >= 0.0)) {
    return false;
  }
  const auto column = static_cast<std::size_t>(projected.x());
  const auto row = static_cast<std::size_t>(projected.y());
  return projected.z() <= mDepths[row * static_cast<std::size_t>(mWidth) + column] + kDepthSlack;
}
