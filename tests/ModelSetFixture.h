// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GModelSet.h"
#include "ModelFixture.h"

/// What the tests of model sets share.
namespace morrow_test {

using Views = std::vector<GView*>;
using Models = std::vector<GModel*>;

/// Two models and two views, and a set that knows none of them. The names do not say whose address is lower.
class GModelSetTest : public ViewTest
{
protected:
  /// Everything into the set, and a part with one prop into each model.
  void fill()
  {
    mSet.add_model(&mOne);
    mSet.add_model(&mOther);
    mSet.add_view(mLeft.get());
    mSet.add_view(mRight.get());
    mOne.add_part(mData[0], mOfOne.function());
    mOther.add_part(mData[1], mOfOther.function());
  }

  ScriptedModel mOne;
  ScriptedModel mOther;
  std::shared_ptr<GView> mLeft = make_view();
  std::shared_ptr<GView> mRight = make_view();
  Maker mOfOne;
  Maker mOfOther;
  std::vector<vtkSmartPointer<vtkPolyData>> mData = sorted_data(2);
  GModelSet mSet;
};

} // namespace morrow_test
