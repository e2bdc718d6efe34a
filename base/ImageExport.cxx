// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ImageExport.h"

#include <algorithm>
#include <iterator>

#include "GView.h"
#include "PlainNumbers.h"

#include <vtkBMPWriter.h>
#include <vtkJPEGWriter.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkPNMWriter.h>
#include <vtkPostScriptWriter.h>
#include <vtkRenderWindow.h>
#include <vtkTIFFWriter.h>
#include <vtkWindowToImageFilter.h>

namespace morrow {

namespace {

struct ImageFormat
{
  int type;
  vtkSmartPointer<vtkImageWriter> (*make_writer)();
};

template<typename Writer>
vtkSmartPointer<vtkImageWriter> make()
{
  return vtkSmartPointer<Writer>::New();
}

constexpr ImageFormat Formats[] = {
    {GView::JPEG, &make<vtkJPEGWriter>}, {GView::PNG, &make<vtkPNGWriter>},
    {GView::BMP, &make<vtkBMPWriter>},   {GView::PNM, &make<vtkPNMWriter>},
    {GView::TIFF, &make<vtkTIFFWriter>}, {GView::POSTSCRIPT, &make<vtkPostScriptWriter>},
};

} // namespace

vtkSmartPointer<vtkImageWriter> make_image_writer(int type)
{
  const auto* format = std::find_if(std::begin(Formats), std::end(Formats),
                                    [type](const ImageFormat& each) { return each.type == type; });
  return format != std::end(Formats) ? format->make_writer() : nullptr;
}

OffScreenBuffers::OffScreenBuffers(vtkRenderWindow& window) : mWindow(&window)
{
  window.GetSize(); // takes over the size on the screen, which is not asked for with these buffers
  window.UseOffScreenBuffersOn();
}

OffScreenBuffers::~OffScreenBuffers()
{
  mWindow->UseOffScreenBuffersOff();
}

void write_picture(vtkRenderWindow& window, vtkImageWriter& writer, const char* filename)
{
  const vtkNew<vtkWindowToImageFilter> picture;
  picture->SetInput(&window);
  picture->ShouldRerenderOff();
  picture->Update();
  writer.SetInputConnection(picture->GetOutputPort());
  writer.SetFileName(filename);
  const PlainNumbers numbers;
  writer.Write();
}

} // namespace morrow
