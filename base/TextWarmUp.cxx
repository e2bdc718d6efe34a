// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TextWarmUp.h"

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkStdString.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>

namespace morrow {

namespace {

bool rasterise_one_character()
{
  constexpr int any_resolution = 72; // dots per inch
  vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
  vtkNew<vtkTextProperty> property;
  vtkNew<vtkImageData> image;
  int size[2] = {0, 0};
  return renderer != nullptr &&
         renderer->RenderString(property, vtkStdString("x"), image, size, any_resolution);
}

} // namespace

void warm_up_text()
{
  static const bool done = rasterise_one_character();
  static_cast<void>(done);
}

} // namespace morrow
