// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewTitle.h"

#include "FrameHold.h"

#include <vtkCoordinate.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace morrow {

namespace {

constexpr int LargestSize = 500; // VTK needs more than 100 MB for a single line of this size
constexpr double Position[2] = {0.5, 0.99};

bool is_between(char byte, int low, int high)
{
  const auto value = static_cast<unsigned char>(byte);
  return value >= low && value <= high;
}

/// How many bytes the first one says that its UTF-8 character has; 0 for a byte that begins none.
std::size_t length_of(char first)
{
  const bool is_two = is_between(first, 0xC2, 0xDF);
  const bool is_three = is_between(first, 0xE0, 0xEF);
  const bool is_four = is_between(first, 0xF0, 0xF4);
  return is_between(first, 0x00, 0x7F) ? 1 : is_two ? 2 : is_three ? 3 : is_four ? 4 : 0;
}

/// Whether a second byte may follow the first: neither too long a form, nor a surrogate, nor above U+10FFFF.
bool may_follow(char first, char second)
{
  const int low = first == '\xE0' ? 0xA0 : first == '\xF0' ? 0x90 : 0x80;
  const int high = first == '\xED' ? 0x9F : first == '\xF4' ? 0x8F : 0xBF;
  return is_between(second, low, high);
}

bool is_character(const char* text, std::size_t length)
{
  if (length < 2) {
    return length == 1;
  }
  return may_follow(text[0], text[1]) && (length < 3 || is_between(text[2], 0x80, 0xBF)) &&
         (length < 4 || is_between(text[3], 0x80, 0xBF));
}

/// VTK draws no text that is not UTF-8, and uses OpenGL wrongly then.
std::string as_utf8(const char* text)
{
  std::string result;
  while (*text != '\0') {
    const std::size_t length = length_of(*text);
    const bool is_good = is_character(text, length);
    result += is_good ? std::string(text, length) : "?";
    text += is_good ? length : 1;
  }
  return result;
}

} // namespace

int ViewTitle::TitleSize = 12;

ViewTitle::ViewTitle(vtkRenderer& renderer) : mRenderer(renderer) {}

vtkTextActor* ViewTitle::actor() const
{
  return mActor;
}

void ViewTitle::create()
{
  if (mActor != nullptr) {
    return;
  }
  mActor = vtkSmartPointer<vtkTextActor>::New();
  vtkTextProperty* style = mActor->GetTextProperty();
  style->SetJustificationToCentered();
  style->SetVerticalJustificationToTop();
  style->SetFontSize(TitleSize);
  mActor->GetPositionCoordinate()->SetCoordinateSystemToNormalizedDisplay();
  mActor->GetPositionCoordinate()->SetValue(Position[0], Position[1]);
}

void ViewTitle::set_text(const char* text)
{
  this->create();
  const bool is_shown = text != nullptr && *text != '\0';
  mActor->SetInput(is_shown ? as_utf8(text).c_str() : "");
  if (is_shown) {
    mRenderer.AddViewProp(mActor);
  } else {
    remove_prop(mRenderer, mActor);
  }
}

void ViewTitle::set_color(const double* rgb)
{
  this->create();
  mHasOwnColor = true;
  mActor->GetTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
}

void ViewTitle::follow_background(const double* rgb)
{
  if (mActor != nullptr && !mHasOwnColor) {
    mActor->GetTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
  }
}

void ViewTitle::fit()
{
  if (mActor != nullptr) {
    const int* size = mRenderer.GetSize();
    mActor->SetVisibility(size[0] > 1 && size[1] > 1);
  }
}

void ViewTitle::set_font_size(int points)
{
  if (points <= 0) {
    return;
  }
  TitleSize = std::min(points, LargestSize);
  if (mActor != nullptr) {
    mActor->GetTextProperty()->SetFontSize(TitleSize);
  }
}

} // namespace morrow
