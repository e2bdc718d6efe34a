// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Pictures that a view writes, read back.
#include "ExportFixture.h"

#include <vtkBMPReader.h>
#include <vtkImageData.h>
#include <vtkJPEGReader.h>
#include <vtkPNGReader.h>
#include <vtkPNMReader.h>
#include <vtkRendererCollection.h>
#include <vtkTIFFReader.h>

#include <string>
#include <vector>

namespace {

using namespace morrow_test;

constexpr GView::ImageFileType kImageFileTypes[] = {GView::JPEG, GView::PNG,  GView::BMP,
                                                    GView::PNM,  GView::TIFF, GView::POSTSCRIPT};

template<typename Reader>
Image read_with(const std::string& path)
{
  const vtkNew<Reader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkImageData* data = reader->GetOutput();
  const int* size = data->GetDimensions();
  EXPECT_EQ(data->GetNumberOfScalarComponents(), 3);
  Image image(size[0], size[1]);
  for (int y = 0; y < size[1]; ++y) {
    for (int x = 0; x < size[0]; ++x) {
      const auto channel = [&](int i) {
        return static_cast<std::uint8_t>(data->GetScalarComponentAsDouble(x, y, 0, i));
      };
      image.set(x, y, {channel(0), channel(1), channel(2)});
    }
  }
  return image;
}

/// VTK's reader takes the first row of a TIFF file, which is marked as the top one, for the bottom one.
Image upside_down(const Image& image)
{
  Image out(image.width(), image.height());
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      out.set(x, y, image.at(x, image.height() - 1 - y));
    }
  }
  return out;
}

/// VTK has no reader for what it writes: rows from the top, each as hexadecimal reds, greens and blues.
Image read_postscript(const std::string& path)
{
  const std::string text = read_text(path);
  EXPECT_EQ(text.rfind("%!PS-Adobe", 0), 0U);
  int width = 0;
  int height = 0;
  const auto head = text.find(" scale\n");
  std::istringstream(text.substr(head + 7)) >> width >> height;
  std::string digits;
  const auto begin = text.find("colorimage\n") + 11;
  for (auto i = begin; i < text.find("grestore"); ++i) {
    if (std::isxdigit(static_cast<unsigned char>(text[i])) != 0) {
      digits += text[i];
    }
  }
  Image image(width, height);
  EXPECT_EQ(digits.size(), 6U * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const auto byte = [&](int x, int y, int channel) {
    const auto at = 2U * static_cast<std::size_t>((3 * (height - 1 - y) + channel) * width + x);
    return static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16));
  };
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      image.set(x, y, {byte(x, y, 0), byte(x, y, 1), byte(x, y, 2)});
    }
  }
  return image;
}

Image read_image(const std::string& path, int type)
{
  switch (type) {
  case GView::JPEG:
    return read_with<vtkJPEGReader>(path);
  case GView::PNG:
    return read_with<vtkPNGReader>(path);
  case GView::BMP:
    return read_with<vtkBMPReader>(path);
  case GView::PNM:
    return read_with<vtkPNMReader>(path);
  case GView::TIFF:
    return upside_down(read_with<vtkTIFFReader>(path));
  default:
    return read_postscript(path);
  }
}

// --- Pictures --------------------------------------------------------------------------------------------

class WriteImageTest : public ViewRenderTest
{
protected:
  TemporaryFolder mFolder;

  [[nodiscard]] std::string path() const { return mFolder.file("picture"); }

  /// The picture that the view writes as PNG.
  [[nodiscard]] Image written(GView& view) const
  {
    EXPECT_TRUE(view.write_image(this->path().c_str(), GView::PNG, 0, 0));
    return read_png(this->path());
  }

  [[nodiscard]] bool is_written() const { return mFolder.num_files() != 0; }
};

TEST_F(WriteImageTest, EveryFormatHasThePixelsOfTheWindow)
{
  FullViewStage stage; // with translucent geometry, before a window with alpha planes
  const Image shown = picture(*stage.view);
  ASSERT_GT(count_pixels(shown, colour_is(kRed)), 1000);
  ASSERT_GT(count_pixels(shown, colour_is({0, 0, 128}, 2)), 100);
  for (const auto type : kImageFileTypes) {
    EXPECT_TRUE(stage.view->write_image(this->path().c_str(), type, 0, 0));
    const Image read = read_image(this->path(), type);
    if (type == GView::JPEG) {
      ASSERT_EQ(read.width(), 100);
      EXPECT_GT(compare(read, shown).psnr, 25.0);
    } else {
      const ImageDifference difference = compare(read, shown);
      EXPECT_TRUE(difference.same_size) << type;
      EXPECT_EQ(difference.max_channel, 0) << "type " << type;
    }
  }
}

TEST_F(WriteImageTest, TypesAreTheirNumbers)
{
  EXPECT_EQ(GView::JPEG, 5);
  EXPECT_EQ(GView::PNG, 6);
  EXPECT_EQ(GView::BMP, 7);
  EXPECT_EQ(GView::PNM, 8);
  EXPECT_EQ(GView::TIFF, 9);
  EXPECT_EQ(GView::POSTSCRIPT, 10);
  const auto view = make_view();
  show(*view, flat_square());
  const int code = 6;
  EXPECT_TRUE(view->write_image(this->path().c_str(), static_cast<GView::ImageFileType>(code), 0, 0));
  EXPECT_EQ(read_png(this->path()).width(), 100);
}

TEST_F(WriteImageTest, OtherTypesDoNothing)
{
  ViewStage stage;
  const PrintCapture prints;
  const FrameCounter frames(stage.window());
  for (const int type : {-1, 0, 4, 11, 100, 103, 1000}) {
    EXPECT_FALSE(
        stage.view->write_image(this->path().c_str(), static_cast<GView::ImageFileType>(type), 50, 50));
  }
  EXPECT_FALSE(this->is_written());
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_EQ(stage.model.updates, 0);
  EXPECT_TRUE(prints.calls().empty());
}

TEST_F(WriteImageTest, NamesThatAreNoneDoNothing)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  EXPECT_FALSE(stage.view->write_image(nullptr, GView::PNG, 0, 0));
  EXPECT_FALSE(stage.view->write_image("", GView::PNG, 0, 0));
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(WriteImageTest, WithoutAWindowDoesNothing)
{
  ViewStage stage;
  stage.view->set_render_window(nullptr);
  EXPECT_FALSE(stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0));
  EXPECT_FALSE(this->is_written());
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(WriteImageTest, WidthAndHeightAreIgnored)
{
  const auto view = make_view(120, 80);
  show(*view, flat_square());
  const Image shown = picture(*view);
  for (const auto& [width, height] : {std::pair{50, 40}, {0, 0}, {-1, -1}, {100000, 100000}}) {
    EXPECT_TRUE(view->write_image(this->path().c_str(), GView::PNG, width, height));
    EXPECT_TRUE(read_png(this->path()) == shown);
    EXPECT_EQ(view->get_render_window()->GetSize()[0], 120);
  }
}

TEST_F(WriteImageTest, RendersOneFrameWithTheModelsUpToDate)
{
  ViewStage stage;
  stage.model.on_update = [&] {
    if (stage.model.updates == 1) {
      stage.model.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kGreen));
    }
  };
  const FrameCounter frames(stage.window());
  EXPECT_EQ(count_pixels(this->written(*stage.view), colour_is(kGreen)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(WriteImageTest, TheWindowDrawsOnTheScreenAgain)
{
  const auto view = make_view();
  vtkRenderWindow* window = view->get_render_window();
  show(*view, flat_square());
  const Image shown = picture(*view);
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(this->written(*view) == shown);
    EXPECT_FALSE(window->GetUseOffScreenBuffers());
    EXPECT_TRUE(window->GetShowWindow());
    EXPECT_NE(window->GetSwapBuffers(), 0);
    EXPECT_TRUE(read_pixels(window) == shown);
    EXPECT_TRUE(picture(*view) == shown);
  }
}

TEST_F(WriteImageTest, TheWindowMayNeverHaveBeenRendered)
{
  const auto written_first = make_view();
  const auto rendered_first = make_view();
  show(*written_first, flat_square());
  show(*rendered_first, flat_square());
  EXPECT_TRUE(this->written(*written_first) == picture(*rendered_first));
  EXPECT_TRUE(picture(*written_first) == picture(*rendered_first));
}

TEST_F(WriteImageTest, SizesMayBeSmallAndLargerThanTheScreen)
{
  for (const auto& [width, height] : {std::pair{1, 1}, {2, 3}, {31, 1}, {2000, 1500}}) {
    const auto view = make_view(width, height);
    show(*view, flat_actor(quad(-99, -99, 99, 99), kRed));
    const Image read = this->written(*view);
    EXPECT_EQ(read.width(), width);
    EXPECT_EQ(read.height(), height);
    EXPECT_EQ(count_pixels(read, colour_is(kRed)), width * height);
    EXPECT_EQ(view->get_render_window()->GetSize()[0], width);
    EXPECT_EQ(view->get_render_window()->GetSize()[1], height);
  }
}

TEST_F(WriteImageTest, FollowsAWindowThatChangesItsSize)
{
  const auto view = make_view(100, 100);
  show(*view, flat_actor(quad(-9, -9, 9, 9), kRed));
  view->render();
  view->get_render_window()->SetSize(160, 90);
  EXPECT_EQ(count_pixels(this->written(*view), colour_is(kRed)), 160 * 90);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 160 * 90);
}

TEST_F(WriteImageTest, OffScreenWindowsStayOffTheScreenAndKeepDrawing)
{
  GView::set_offscreen(true);
  const auto view = make_view();
  vtkRenderWindow* window = view->get_render_window();
  const auto square = flat_square();
  show(*view, square);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(count_pixels(this->written(*view), colour_is(kRed)), 50 * 50);
    EXPECT_EQ(window->GetMapped(), 0);
    EXPECT_NE(window->GetOffScreenRendering(), 0);
    EXPECT_FALSE(window->GetUseOffScreenBuffers());
  }
  square->SetScale(0.5);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 25 * 25);
  window->SetSize(200, 200);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(window->GetMapped(), 0);
}

TEST_F(WriteImageTest, WorksInStereo)
{
  const auto view = make_view();
  GView::add_global_view(view);
  show(*view, flat_square());
  GView::set_stereo_mode(true);
  const Image shown = picture(*view);
  EXPECT_TRUE(this->written(*view) == shown);
  EXPECT_TRUE(picture(*view) == shown);
}

TEST_F(WriteImageTest, HasTheOverlayAndOtherRenderersOfTheWindow)
{
  const auto view = make_view();
  show(*view, flat_square());
  view->enable_overlay();
  vtkRenderer* overlay = view->get_overlay_renderer();
  overlay->SetActiveCamera(view->get_renderer()->GetActiveCamera());
  overlay->AddActor(flat_actor(quad(-1, -1, 0, 0), kGreen));
  const vtkNew<vtkRenderer> corner;
  corner->SetViewport(0.75, 0.75, 1.0, 1.0);
  corner->SetBackground(0.0, 0.0, 1.0);
  view->get_render_window()->AddRenderer(corner);
  const Image shown = picture(*view);
  EXPECT_EQ(count_pixels(shown, colour_is(kGreen)), 50 * 50);
  EXPECT_EQ(count_pixels(shown, colour_is(kBlue)), 25 * 25);
  EXPECT_TRUE(this->written(*view) == shown);
  EXPECT_EQ(view->get_render_window()->GetRenderers()->GetNumberOfItems(), 3);
}

TEST_F(WriteImageTest, ViewsWriteInTurn)
{
  const auto red = make_view();
  const auto green = make_view(80, 60);
  show(*red, flat_square(kRed));
  show(*green, flat_square(kGreen));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(count_pixels(this->written(*red), colour_is(kRed)), 50 * 50);
    EXPECT_EQ(count_pixels(this->written(*green), colour_is(kGreen)), 30 * 30);
  }
}

TEST_F(WriteImageTest, KeepsTheCamera)
{
  const auto view = make_view();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  show(*view, flat_square());
  static_cast<void>(this->written(*view));
  EXPECT_EQ(view->get_renderer()->GetActiveCamera(), camera);
  EXPECT_EQ(camera->GetPosition()[2], 10.0);
  EXPECT_EQ(camera->GetParallelScale(), 1.0);
  EXPECT_EQ(camera->GetViewAngle(), 30.0);
}

TEST_F(WriteImageTest, APathThatCannotBeWrittenLeavesEverythingAsItWas)
{
  const LeaksIgnored ignored; // VTK's PNG writer forgets its buffers when it fails
  const auto view = make_view();
  show(*view, flat_square());
  const Image shown = picture(*view);
  for (const auto type : kImageFileTypes) {
    vtkObject::GlobalWarningDisplayOff(); // as in a process with models
    EXPECT_TRUE(view->write_image(mFolder.file("absent/picture").c_str(), type, 0, 0));
    EXPECT_TRUE(view->write_image(mFolder.path().c_str(), type, 0, 0));
    vtkObject::GlobalWarningDisplayOn();
    EXPECT_FALSE(this->is_written());
    EXPECT_FALSE(view->get_render_window()->GetUseOffScreenBuffers());
    EXPECT_EQ(view->get_render_window()->GetSize()[0], 100);
    EXPECT_TRUE(read_pixels(view->get_render_window()) == shown);
    EXPECT_TRUE(picture(*view) == shown);
  }
}

TEST_F(WriteImageTest, FilesMayHaveAnyName)
{
  const auto view = make_view();
  show(*view, flat_square());
  for (const char* name : {"Z\xc3\xbcrich \xe6\xa8\xa1", "100%d %s", "a.b.c"}) {
    EXPECT_TRUE(view->write_image(mFolder.file(name).c_str(), GView::PNG, 0, 0));
    EXPECT_EQ(read_png(mFolder.file(name)).width(), 100) << name;
  }
}

TEST_F(WriteImageTest, OverwritesTheFileOfBefore)
{
  const auto view = make_view();
  show(*view, flat_square());
  static_cast<void>(this->written(*view));
  show(*view, flat_actor(quad(-9, -9, 9, 9, 1.0), kGreen));
  EXPECT_EQ(count_pixels(this->written(*view), colour_is(kGreen)), 100 * 100);
}

TEST_F(WriteImageTest, NumbersAreWrittenAsTheFormatHasThemWhateverTheHostsLocale)
{
  const auto view = make_view(1200, 4); // a stream of the host's writes 1.200
  show(*view, flat_square());
  const Image shown = picture(*view);
  const CommaLocale host;
  for (const auto type : {GView::PNM, GView::POSTSCRIPT}) {
    EXPECT_TRUE(view->write_image(this->path().c_str(), type, 0, 0));
    EXPECT_TRUE(read_image(this->path(), type) == shown);
  }
  EXPECT_EQ(CommaLocale::streamed(), "1.234.567");
}

// Other programs' TIFF readers go by the mark: entry 274 of the directory of tags, 1 for "from the top".
TEST_F(WriteImageTest, TiffFilesSayThatTheirFirstRowIsTheTopOne)
{
  const auto view = make_view(8, 4);
  show(*view, flat_actor(quad(-9, 0.5, 9, 9), kRed)); // the top row
  EXPECT_TRUE(view->write_image(this->path().c_str(), GView::TIFF, 0, 0));
  const std::string bytes = read_text(this->path());
  const std::string mark("\x12\x01\x03\x00\x01\x00\x00\x00\x01\x00\x00\x00", 12);
  EXPECT_EQ(count_text(bytes, mark), 1);
  const std::string first_pixels = bytes.substr(8, 6); // packed bytes: runs or a literal
  EXPECT_NE(first_pixels.find('\xff'), std::string::npos);
}

// --- Pictures while rendering is off ---------------------------------------------------------------------

TEST_F(WriteImageTest, WhileRenderingIsOffThePictureIsTheLastFrames)
{
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    ViewStage stage;
    show(*stage.view, flat_square());
    const Image shown = picture(*stage.view);
    show(*stage.view, flat_actor(quad(-9, -9, 9, 9, 1.0), kGreen));
    const int updates = stage.model.updates;
    const FrameCounter frames(stage.window());
    MRUtil::set_graphics_status(status);
    EXPECT_TRUE(this->written(*stage.view) == shown);
    EXPECT_EQ(frames.starts(), 0);
    EXPECT_EQ(stage.model.updates, updates);
    EXPECT_FALSE(stage.window()->GetUseOffScreenBuffers());
    MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
    EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kGreen)), 100 * 100);
  }
}

TEST_F(WriteImageTest, WhileRenderingIsOffAWindowThatWasNeverRenderedHasNoPicture)
{
  ViewStage stage;
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  EXPECT_FALSE(stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0));
  EXPECT_FALSE(this->is_written());
  EXPECT_EQ(stage.window()->GetMapped(), 0);
  EXPECT_FALSE(stage.window()->GetUseOffScreenBuffers());
}

// --- Pictures and host code ------------------------------------------------------------------------------

TEST_F(WriteImageTest, FromInsideAFrameDoesNothing)
{
  ViewStage stage;
  const auto prop = CallingProp::make();
  show(*stage.view, prop);
  show(*stage.view, flat_square());
  int calls = 0;
  const auto write = [&] {
    ++calls;
    EXPECT_FALSE(stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0));
    EXPECT_FALSE(stage.view->write_model(this->path().c_str(), GView::VRML));
  };
  stage.model.on_update = [&] {
    if (stage.window()->CheckInRenderStatus() != 0) {
      write();
    }
  };
  prop->on_opaque = prop->on_overlay = write;
  const EventHook start(stage.window(), vtkCommand::StartEvent, write);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
  const int in_own_frame = calls;
  EXPECT_GE(in_own_frame, 4);
  EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kRed)), 50 * 50);
  EXPECT_GT(calls, in_own_frame);
  EXPECT_FALSE(this->is_written());
  EXPECT_FALSE(stage.window()->GetUseOffScreenBuffers());
}

TEST_F(WriteImageTest, AnExceptionOfAnUpdateComesOut)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const Image shown = picture(*stage.view);
  stage.model.on_update = [] { throw HostError("update"); };
  EXPECT_EQ(thrown_by([&] { stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0); }), "update");
  EXPECT_FALSE(this->is_written());
  EXPECT_FALSE(stage.window()->GetUseOffScreenBuffers());
  stage.model.on_update = nullptr;
  EXPECT_TRUE(picture(*stage.view) == shown);
  EXPECT_TRUE(this->written(*stage.view) == shown);
}

TEST_F(WriteImageTest, AnExceptionOfAPropOrAnObserverComesOut)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const auto prop = CallingProp::make();
  show(*stage.view, prop);
  prop->on_opaque = [] { throw HostError("prop"); };
  const auto write = [&] { stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0); };
  EXPECT_EQ(thrown_by(write), "prop");
  prop->on_opaque = nullptr;
  {
    const EventHook hook(stage.window(), vtkCommand::StartEvent, [] { throw HostError("observer"); });
    EXPECT_EQ(thrown_through_vtk_by(write), "observer");
  }
  EXPECT_FALSE(this->is_written());
  EXPECT_FALSE(stage.window()->GetUseOffScreenBuffers());
  EXPECT_EQ(count_pixels(this->written(*stage.view), colour_is(kRed)), 50 * 50);
}

TEST_F(WriteImageTest, TheViewMayBeDestroyedInTheFrame)
{
  for (const bool in_update : {true, false}) {
    auto view = make_view();
    const vtkSmartPointer<vtkRenderWindow> window = view->get_render_window();
    GModelSet set;
    ScriptedModel model;
    set.add_model(&model);
    view->set_model_set(&set);
    show(*view, flat_square());
    const auto prop = CallingProp::make();
    show(*view, prop);
    GView* raw = view.get();
    (in_update ? model.on_update : prop->on_opaque) = [&] { view.reset(); };
    const std::string file = mFolder.file(in_update ? "update" : "prop");
    // Gone before there was a frame, or in the midst of one, which ends.
    EXPECT_EQ(raw->write_image(file.c_str(), GView::PNG, 0, 0), !in_update);
    EXPECT_EQ(view, nullptr);
    EXPECT_FALSE(window->GetUseOffScreenBuffers());
  }
  EXPECT_EQ(count_pixels(read_png(mFolder.file("prop")), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(mFolder.num_files(), 1);
}

TEST_F(WriteImageTest, TheViewMayBeDestroyedByAnObserverOfTheFrame)
{
  for (const unsigned long event : {vtkCommand::StartEvent, vtkCommand::EndEvent}) {
    for (const bool is_windows : {true, false}) {
      auto view = make_view();
      const vtkSmartPointer<vtkRenderWindow> window = view->get_render_window();
      const vtkSmartPointer<vtkRenderer> renderer = view->get_renderer();
      show(*view, flat_square());
      GView* raw = view.get();
      vtkObject* observed = renderer;
      if (is_windows) {
        observed = window;
      }
      const EventHook hook(observed, event, [&] { view.reset(); });
      EXPECT_TRUE(raw->write_image(this->path().c_str(), GView::PNG, 0, 0));
      EXPECT_EQ(view, nullptr);
      EXPECT_FALSE(window->GetUseOffScreenBuffers());
      EXPECT_EQ(read_png(this->path()).width(), 100);
    }
  }
}

TEST_F(WriteImageTest, TheViewMayBeDestroyedWhenTheWindowGetsItsBuffers)
{
  auto view = make_view();
  view->render();
  const vtkSmartPointer<vtkRenderWindow> window = view->get_render_window();
  GView* raw = view.get();
  const EventHook hook(window, vtkCommand::ModifiedEvent, [&] { view.reset(); });
  EXPECT_FALSE(raw->write_image(this->path().c_str(), GView::PNG, 0, 0));
  EXPECT_EQ(view, nullptr);
  EXPECT_FALSE(window->GetUseOffScreenBuffers());
  EXPECT_FALSE(this->is_written());
}

TEST_F(WriteImageTest, AnotherViewMayWriteInTheFrame)
{
  const auto red = make_view();
  const auto green = make_view(80, 60);
  show(*green, flat_square(kGreen));
  const auto prop = CallingProp::make();
  show(*red, prop);
  show(*red, flat_square(kRed));
  prop->on_opaque = [&] {
    EXPECT_EQ(count_pixels(this->written(*green), colour_is(kGreen)), 30 * 30);
    EXPECT_TRUE(green->write_model(mFolder.file("scene").c_str(), GView::IV));
  };
  EXPECT_EQ(count_pixels(picture(*red), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(mFolder.num_files(), 2);
}

TEST_F(WriteImageTest, AFileThatCannotBeWrittenIsReportedByVtk)
{
  const LeaksIgnored ignored; // as above
  const auto view = make_view();
  const std::string path = mFolder.file("absent/picture");
  for (const auto type : kImageFileTypes) {
    const ExpectedVtkErrors expected{"ile"};
    EXPECT_TRUE(view->write_image(path.c_str(), type, 0, 0));
  }
}

TEST_F(WriteImageTest, TheViewMayGetAnotherWindowBeforeTheFrame)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  stage.view->render();
  const vtkSmartPointer<vtkRenderWindow> before = stage.window();
  const auto other = make_window(60, 60);
  stage.model.on_update = [&] { stage.view->set_render_window(other); };
  EXPECT_FALSE(stage.view->write_image(this->path().c_str(), GView::PNG, 0, 0));
  EXPECT_FALSE(this->is_written());
  EXPECT_FALSE(before->GetUseOffScreenBuffers());
  EXPECT_FALSE(other->GetUseOffScreenBuffers());
}

TEST_F(WriteImageTest, TheNameMayBeGoneAfterTheFrame)
{
  ViewStage stage;
  auto name = std::make_unique<std::string>(this->path());
  stage.model.on_update = [&] { name.reset(); };
  EXPECT_TRUE(stage.view->write_image(name->c_str(), GView::PNG, 0, 0));
  EXPECT_EQ(read_png(this->path()).width(), 100);
}

} // namespace
