// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

class GView;

/// The camera of a view, saved: where it stands, where it looks and how much it sees. The view angle, the
/// projection and the window's size are not part of it. A state saved in one view can be restored in any
/// other.
///
/// Views save and restore states under names; see GView::save_view().
class MORROW_BASE_EXPORT GCameraState
{
public:
  /// Saves the camera of view. Null gives VTK's default camera, with auto-centre on.
  explicit GCameraState(GView* view);

  /// Overwrites this state with the view's main camera. Null does nothing.
  void save(GView* view);

  /// Puts the view's main camera into this state. When auto-centre was on, everything visible is then framed
  /// from the restored direction, see GView::reset_camera(); otherwise the camera is exactly as it was. Null
  /// does nothing. Renders nothing.
  void restore(GView* view) const;

private:
  bool mIsAutoCenter = true;
  double mClippingRange[2] = {0.01, 1000.01};
  double mFocalPoint[3] = {0.0, 0.0, 0.0};
  double mPosition[3] = {0.0, 0.0, 1.0};
  double mViewUp[3] = {0.0, 1.0, 0.0};
  double mParallelScale = 1.0;
};
