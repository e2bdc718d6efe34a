// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <vtkActor2D.h>
#include <vtkCoordinate.h>
#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>
#include <vtkOpenGLTextMapper.h>
#include <vtkSmartPointer.h>
#include <vtkTextProperty.h>
#include <vtkVersion.h>

#include <cstring>
#include <string>
#include <vector>

/// Which labels a label mapper draws, in which order and how: exactly, where pixels could only hint at it.
namespace morrow_test {

/// One text as it was handed to VTK to be drawn.
struct DrawnLabel
{
  std::string text;
  BrantVector anchor;                     ///< value of the actor's position coordinate
  vtkSmartPointer<vtkTextProperty> style; ///< a copy of the label's
  vtkViewport* viewport;
  vtkActor2D* actor;
};

/// Writes down the texts drawn by the vtkTextMappers that VTK makes while it lives. One at a time; mappers
/// that outlive it only draw.
class LabelRecorder
{
public:
  enum class Drawing
  {
    Real, ///< written down and drawn
    None  ///< written down only: needs no display and takes no time
  };

  explicit LabelRecorder(Drawing drawing = Drawing::Real) : mDrawing(drawing)
  {
    gActive = this;
    mFactory = vtkSmartPointer<Factory>::Take(Factory::make());
    vtkObjectFactory::RegisterFactory(mFactory);
    // Before VTK's own, which would be asked first.
    vtkObjectFactoryCollection* all = vtkObjectFactory::GetRegisteredFactories();
    all->RemoveItem(mFactory);
    all->vtkCollection::InsertItem(-1, mFactory);
  }
  ~LabelRecorder()
  {
    vtkObjectFactory::UnRegisterFactory(mFactory);
    gActive = nullptr;
  }
  LabelRecorder(const LabelRecorder&) = delete;
  LabelRecorder& operator=(const LabelRecorder&) = delete;

  [[nodiscard]] const std::vector<DrawnLabel>& drawn() const noexcept { return mDrawn; }
  /// The texts in the order in which they were drawn.
  [[nodiscard]] std::vector<std::string> texts() const
  {
    std::vector<std::string> all;
    for (const DrawnLabel& label : mDrawn) {
      all.push_back(label.text);
    }
    return all;
  }
  void clear() noexcept { mDrawn.clear(); }

private:
  class Mapper : public vtkOpenGLTextMapper
  {
  public:
    static Mapper* make() { return new Mapper; }
    Mapper(const Mapper&) = delete;
    Mapper& operator=(const Mapper&) = delete;

    void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override
    {
      if (gActive != nullptr) {
        gActive->record(*this, viewport, actor);
      }
      if (gActive == nullptr || gActive->mDrawing == Drawing::Real) {
        vtkOpenGLTextMapper::RenderOverlay(viewport, actor);
      }
    }

  protected:
    Mapper() = default;
    ~Mapper() override = default;
  };

  class Factory : public vtkObjectFactory
  {
  public:
    static Factory* make()
    {
      auto* factory = new Factory;
      factory->InitializeObjectBase();
      return factory;
    }
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;

    const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
    const char* GetDescription() override { return "text mappers that write down what they draw"; }

  protected:
    Factory() = default;
    ~Factory() override = default;

    vtkObject* CreateObject(const char* name) override
    {
      return std::strcmp(name, "vtkTextMapper") == 0 ? Mapper::make() : nullptr;
    }
  };

  void record(vtkTextMapper& mapper, vtkViewport* viewport, vtkActor2D* actor)
  {
    auto style = vtkSmartPointer<vtkTextProperty>::New();
    style->ShallowCopy(mapper.GetTextProperty());
    const char* text = mapper.GetInput();
    mDrawn.push_back({text != nullptr ? text : "", BrantVector(actor->GetPositionCoordinate()->GetValue()),
                      style, viewport, actor});
  }

  inline static LabelRecorder* gActive = nullptr; // VTK makes the mappers, so they cannot be told

  Drawing mDrawing;
  vtkSmartPointer<Factory> mFactory;
  std::vector<DrawnLabel> mDrawn;
};

} // namespace morrow_test
