// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GLabelMapper.h"
#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkSphereSource.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

/// What the tests of models and model sets share.
namespace morrow_test {

using Props = std::vector<vtkSmartPointer<vtkProp>>;
using PropPointers = std::vector<vtkProp*>;

// --- Hosts and their data
// --------------------------------------------------------------------------------------------

/// A model that tells, and may have its own mind, when parts are removed.
class RemovalModel : public ScriptedModel
{
public:
  void remove_part(vtkDataObject* data) override
  {
    removed.push_back(data);
    if (on_remove) {
      on_remove(data);
    }
    if (passes_on) {
      ScriptedModel::remove_part(data);
    }
  }

  std::vector<vtkDataObject*> removed;
  std::function<void(vtkDataObject*)> on_remove;
  bool passes_on = true;
};

/// Any pointers in ascending order of the addresses of what they point to: the order in which models keep
/// views and parts.
template<typename Pointers>
Pointers sorted(Pointers all)
{
  std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return std::less<>()(&*a, &*b); });
  return all;
}

/// n empty data objects in ascending order of their addresses.
inline std::vector<vtkSmartPointer<vtkPolyData>> sorted_data(std::size_t n)
{
  std::vector<vtkSmartPointer<vtkPolyData>> all(n);
  std::generate(all.begin(), all.end(), [] { return vtkSmartPointer<vtkPolyData>::New(); });
  return sorted(std::move(all));
}

/// n views with windows of size × size pixels, in ascending order of their addresses; see make_view.
inline std::vector<std::shared_ptr<GView>> sorted_views(std::size_t n, int size = 100)
{
  std::vector<std::shared_ptr<GView>> all(n);
  std::generate(all.begin(), all.end(), [=] { return make_view(size, size); });
  return sorted(std::move(all));
}

// --- Prop functions
// --------------------------------------------------------------------------------------------------

/// One call of a prop function.
struct Call
{
  vtkDataObject* data;
  GView* view;
};

inline bool operator==(Call a, Call b)
{
  return a.data == b.data && a.view == b.view;
}

/// Prop functions that make `count` new props and note each call. The props are not kept alive here.
class Maker
{
public:
  explicit Maker(std::size_t count = 1) : mCount(count) {}
  Maker(const Maker&) = delete;
  Maker& operator=(const Maker&) = delete;

  /// The function; it must not be called when this object is gone.
  [[nodiscard]] PartPropFunction function()
  {
    return [this](vtkDataObject* data, GView* view) {
      calls.push_back({data, view});
      Props props(mCount);
      for (auto& prop : props) {
        prop = vtkSmartPointer<vtkActor>::New();
        made.emplace_back(prop);
      }
      return props;
    };
  }

  std::vector<Call> calls;
  std::vector<vtkWeakPointer<vtkProp>> made; ///< in the order of their making; null once they are gone

private:
  std::size_t mCount;
};

/// Shows the same prop in every view.
inline PartPropFunction always(vtkProp* prop)
{
  return [kept = vtkSmartPointer<vtkProp>(prop)](vtkDataObject*, GView*) { return Props{kept}; };
}

/// Shows nothing.
inline PartPropFunction nothing()
{
  return [](vtkDataObject*, GView*) { return Props(); };
}

/// Throws a HostError.
inline PartPropFunction throwing()
{
  return [](vtkDataObject*, GView*) -> Props { throw HostError("host"); };
}

/// Calls `act` in the first call, and shows one new prop always.
inline PartPropFunction acting_once(std::function<void(vtkDataObject*, GView*)> act)
{
  auto done = std::make_shared<bool>(false);
  return [done, act = std::move(act)](vtkDataObject* data, GView* view) {
    if (!*done) {
      *done = true;
      act(data, view);
    }
    return Props{vtkSmartPointer<vtkActor>::New()};
  };
}

/// Shows one new prop.
inline PartPropFunction one_prop()
{
  return [](vtkDataObject*, GView*) { return Props{vtkSmartPointer<vtkActor>::New()}; };
}

// --- What is where
// ---------------------------------------------------------------------------------------------------

[[nodiscard]] inline bool is_label_actor(vtkProp* prop)
{
  auto* actor = vtkActor2D::SafeDownCast(prop);
  return actor != nullptr && GLabelMapper::SafeDownCast(actor->GetMapper()) != nullptr;
}

/// The props of a view's main renderer, in order.
[[nodiscard]] inline PropPointers shown(const GView& view)
{
  return props_of(view.get_renderer());
}

[[nodiscard]] inline bool shows(const GView& view, vtkProp* prop)
{
  const PropPointers all = shown(view);
  return std::find(all.begin(), all.end(), prop) != all.end();
}

/// The label actors of all models that are shown in a view.
[[nodiscard]] inline std::vector<vtkActor2D*> label_actors(const GView& view)
{
  std::vector<vtkActor2D*> found;
  for (vtkProp* prop : shown(view)) {
    if (is_label_actor(prop)) {
      found.push_back(vtkActor2D::SafeDownCast(prop));
    }
  }
  return found;
}

/// How many props a view shows besides labels.
[[nodiscard]] inline std::ptrdiff_t num_part_props(const GView& view)
{
  const PropPointers all = shown(view);
  return std::count_if(all.begin(), all.end(), [](vtkProp* prop) { return !is_label_actor(prop); });
}

/// The label actor of a hooked model, found by way of a view of its own; null when there is not exactly one.
/// Makes the props of all parts once more.
[[nodiscard]] inline vtkSmartPointer<vtkActor2D> label_actor(GModel& model)
{
  PlainView view;
  model.add_view(&view);
  const auto actors = label_actors(view);
  vtkSmartPointer<vtkActor2D> actor;
  if (actors.size() == 1) {
    actor = actors[0];
  }
  model.remove_view(&view);
  return actor;
}

/// Its mapper.
[[nodiscard]] inline vtkSmartPointer<GLabelMapper> label_mapper(GModel& model)
{
  const auto actor = label_actor(model);
  return actor != nullptr ? GLabelMapper::SafeDownCast(actor->GetMapper()) : nullptr;
}

// --- Garbage collection
// ----------------------------------------------------------------------------------------------

/// An object whose end only VTK's garbage collector can bring about, since it is part of a reference cycle.
[[nodiscard]] inline vtkWeakPointer<vtkObject> drop_a_cycle()
{
  const vtkNew<vtkSphereSource> source;
  return vtkWeakPointer<vtkObject>(source);
}

/// Does VTK collect at once? Not while a bracket of deferred collection is open.
[[nodiscard]] inline bool is_collecting()
{
  return drop_a_cycle() == nullptr;
}

// --- The fixture
// -----------------------------------------------------------------------------------------------------

/// A model and a view that do not know each other yet, and three data objects in ascending order of their
/// addresses. The view goes before the model.
class ModelTest : public ViewTest
{
protected:
  /// Adds the views and then a part for each data object.
  void show_all(const std::vector<std::shared_ptr<GView>>& views, Maker& maker)
  {
    for (const auto& view : views) {
      mModel.add_view(view.get());
    }
    for (const auto& each : mData) {
      mModel.add_part(each, maker.function());
    }
  }

  RemovalModel mModel;
  PlainView mView;
  Maker mMaker;
  std::vector<vtkSmartPointer<vtkPolyData>> mData = sorted_data(3);
};

/// The virtual slot of an operation, counted from the table's beginning, where the destructor takes two. By
/// the C++ ABI of every platform we know, a pointer to a virtual member begins with the offset into the
/// table, plus one where the lowest bit says "virtual".
template<typename Function>
std::size_t slot_of(Function function)
{
  static_assert(std::is_member_function_pointer_v<Function>);
  std::size_t word = 0;
  std::memcpy(&word, &function, sizeof(word));
  return word / sizeof(void*);
}

} // namespace morrow_test
