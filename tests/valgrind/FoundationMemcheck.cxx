// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Messages, back-pointers, polygons.
#include "GDataGroup.h"
#include "MRUtil.h"
#include "Memcheck.h"

#include <vtkNew.h>
#include <vtkPolyData.h>

#include <cmath>
#include <string>
#include <vector>

using morrow_memcheck::expect;

namespace {

int gNumMessages = 0;

void count_message(const char* /*text*/, int /*kind*/, bool /*has_text*/)
{
  ++gNumMessages;
}

void send_messages()
{
  MRUtil::set_print_function(count_message);
  const std::string text(5000, 'x');
  MRUtil::print_info("%s", text.c_str());
  MRUtil::print_warning("%s", text.c_str());
  MRUtil::print_error("%d\n", 1);
  MRUtil::print_no_more();
  expect(gNumMessages == 4, "each message comes");
}

void tie_data_sets()
{
  GDataGroupEntity entity;
  vtkNew<vtkPolyData> data;
  vtkNew<vtkPolyData> deep;
  vtkNew<vtkPolyData> shallow;
  MRUtil::set_back_pointer(data, &entity);
  deep->DeepCopy(data);
  shallow->ShallowCopy(data);
  expect(MRUtil::get_back_pointer(deep) == &entity, "a copy is tied as well");
  for (vtkPolyData* tied : {deep.Get(), shallow.Get(), data.Get()}) {
    MRUtil::set_back_pointer(tied, nullptr);
  }
}

void split_polygons()
{
  std::vector<int> triangles;
  std::vector<int> edges;
  std::vector<double> coords;
  double star[25][3] = {};
  for (int i = 0; i < 25; ++i) {
    star[i][0] = std::cos(i * 3.0);
    star[i][1] = std::sin(i * 3.0);
  }
  MRUtil::triangulate_polygon(25, star, triangles, edges, coords);
  expect(triangles.size() > 25 && coords.size() > 75, "a star has crossings");
  star[3][1] = std::nan("");
  MRUtil::triangulate_polygon(25, star, triangles, edges, coords);
  expect(triangles.empty(), "a coordinate that is not finite is refused");
}

} // namespace

int main()
{
  return morrow_memcheck::run([] {
    send_messages();
    tie_data_sets();
    split_polygons();
  });
}
