// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkRenderer;
class vtkTextActor;

namespace morrow {

/// A line of text, or several, centred under the top edge of the window; see the members of GView for it.
class ViewTitle
{
public:
  /// The renderer is not owned.
  explicit ViewTitle(vtkRenderer& renderer);

  /// Makes the actor in the size that all titles have; nothing when there is one.
  void create();

  /// Shows a text; null or empty hides it. A byte that is not UTF-8 becomes a question mark.
  void set_text(const char* text);

  /// 3 doubles; from now on the colour follows no background.
  void set_color(const double* rgb);

  /// The colour until set_color() is called: 3 doubles.
  void follow_background(const double* rgb);

  /// Before each frame: where the window is only a pixel wide or high, the title is not drawn. VTK's text
  /// reports an error there.
  void fit();

  /// The size of this title and of all that are made from now on, in points. See GView.
  void set_font_size(int points);

  /// Null until it is made.
  [[nodiscard]] vtkTextActor* actor() const;

private:
  static int TitleSize; // of every title, in points

  vtkRenderer& mRenderer;
  vtkSmartPointer<vtkTextActor> mActor;
  bool mHasOwnColor = false;
};

} // namespace morrow
