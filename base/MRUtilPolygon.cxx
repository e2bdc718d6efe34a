// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The polygons of MRUtil.
#include "MRUtil.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "RingCrossings.h"

#include <GL/glu.h>

namespace {

// Each crossing is a point, and GLU looks at many of them for each: so many take 15 seconds and 300
// megabytes.
constexpr double MaxCrossings = 500'000.0;
// Fewer points cannot have as many.
constexpr std::size_t MinCrowdedPoints = 1'000;

/// What GLU's callbacks fill. They are called from C, which no exception may cross: the first one waits here,
/// and nothing is collected after it.
struct Tessellation
{
  std::vector<int>& triangles;
  std::vector<int>& edges;
  std::vector<double>& coords;
  bool edge_need_close = false; // an edge has its start in edges and waits for its end
  bool edge_flag_state = false; // whether the edge that starts at the next vertex bounds the polygon
  std::vector<GLenum> errors = {};
  std::exception_ptr exception = nullptr;

  void add_vertex(int index);
  [[nodiscard]] int add_point(const double* point);
};

// Null except during a call. Only callbacks run in it, never code of the host.
Tessellation* gTessellation = nullptr;

class CurrentTessellation
{
public:
  explicit CurrentTessellation(Tessellation& tessellation) { gTessellation = &tessellation; }
  ~CurrentTessellation() { gTessellation = nullptr; }
  CurrentTessellation(const CurrentTessellation&) = delete;
  CurrentTessellation& operator=(const CurrentTessellation&) = delete;
};

// ---------------------------------------------------------------------------------------------------------
// Collecting. With an edge-flag callback GLU delivers plain triangles, three vertices each.

void Tessellation::add_vertex(int index)
{
  triangles.push_back(index);
  if (edge_need_close) {
    edges.push_back(index);
  }
  edge_need_close = false;
  if (!edge_flag_state) {
    return;
  }
  edges.push_back(index);
  if (triangles.size() % 3 != 0) {
    edge_need_close = true;
  } else {
    edges.push_back(triangles[triangles.size() - 3]); // from the last corner back to the first
  }
}

int Tessellation::add_point(const double* point)
{
  const std::size_t index = coords.size() / 3;
  coords.insert(coords.end(), point, point + 3);
  return static_cast<int>(index);
}

template<typename Call>
void collect(Call&& call)
{
  if (gTessellation->exception != nullptr) {
    return;
  }
  try {
    call(*gTessellation);
  } catch (...) {
    gTessellation->exception = std::current_exception();
  }
}

// An index travels through GLU as a pointer that is never followed.
void* to_vertex_data(int index)
{
  const std::intptr_t number = index;
  void* vertex_data = nullptr;
  std::memcpy(&vertex_data, &number, sizeof vertex_data);
  return vertex_data;
}

int to_index(void* vertex_data)
{
  return static_cast<int>(reinterpret_cast<std::intptr_t>(vertex_data));
}

// ---------------------------------------------------------------------------------------------------------
// Callbacks

void tess_begin(GLenum /*type*/) {}

void tess_end() {}

void tess_vertex(void* vertex_data)
{
  collect([=](Tessellation& tessellation) { tessellation.add_vertex(to_index(vertex_data)); });
}

// GLU takes null as "no vertex made", and ends: so a point that could not be kept gets the index of another.
void tess_combine(double coords[3], void* /*vertex_data*/[4], float /*weights*/[4], void** out_data)
{
  *out_data = to_vertex_data(1);
  collect([=](Tessellation& tessellation) { *out_data = to_vertex_data(tessellation.add_point(coords)); });
}

void tess_edge_flag(GLboolean flag)
{
  gTessellation->edge_flag_state = flag != 0;
}

void tess_error(GLenum error)
{
  collect([=](Tessellation& tessellation) { tessellation.errors.push_back(error); });
}

// ---------------------------------------------------------------------------------------------------------
// Steps

struct DeleteTessellator
{
  void operator()(GLUtesselator* tessellator) const { gluDeleteTess(tessellator); }
};
using Tessellator = std::unique_ptr<GLUtesselator, DeleteTessellator>;

template<typename Callback>
void register_callback(GLUtesselator* tessellator, GLenum which, Callback* callback)
{
  gluTessCallback(tessellator, which, reinterpret_cast<_GLUfuncptr>(callback));
}

Tessellator make_tessellator()
{
  Tessellator tessellator(gluNewTess());
  if (tessellator == nullptr) {
    throw std::bad_alloc();
  }
  register_callback(tessellator.get(), GLU_TESS_BEGIN, tess_begin);
  register_callback(tessellator.get(), GLU_TESS_END, tess_end);
  register_callback(tessellator.get(), GLU_TESS_VERTEX, tess_vertex);
  register_callback(tessellator.get(), GLU_TESS_COMBINE, tess_combine);
  register_callback(tessellator.get(), GLU_TESS_EDGE_FLAG, tess_edge_flag);
  register_callback(tessellator.get(), GLU_TESS_ERROR, tess_error);
  return tessellator;
}

// The default winding rule (odd), and no normal: GLU finds it.
void tessellate_ring(GLUtesselator* tessellator, const std::vector<double>& ring)
{
  gluTessBeginPolygon(tessellator, nullptr);
  gluTessBeginContour(tessellator);
  const int count = static_cast<int>(ring.size() / 3);
  for (int i = 0; i < count; ++i) {
    double point[3];
    std::copy_n(ring.begin() + std::ptrdiff_t{3} * i, 3, point);
    gluTessVertex(tessellator, point, to_vertex_data(i));
  }
  gluTessEndContour(tessellator);
  gluTessEndPolygon(tessellator);
}

void close_pending_edge(Tessellation& tessellation)
{
  const std::vector<int>& triangles = tessellation.triangles;
  if (tessellation.edge_need_close && triangles.size() >= 3) {
    tessellation.edges.push_back(triangles[triangles.size() - 3]);
  }
}

void print_tessellation_error(const char* text)
{
  MRUtil::print_error("Tesselation Error: %s\n", text);
}

const char* text_of(GLenum error)
{
  return reinterpret_cast<const char*>(gluErrorString(error));
}

// The tessellator crashes on NaN.
bool is_finite(const std::vector<double>& ring)
{
  return std::all_of(ring.begin(), ring.end(), [](double coordinate) { return std::isfinite(coordinate); });
}

bool is_too_crowded(const std::vector<double>& ring)
{
  return ring.size() / 3 > MinCrowdedPoints && morrow::estimate_crossings(ring) > MaxCrossings;
}

// Why the tessellator must not see the ring; null for a good one.
const char* error_in(const std::vector<double>& ring)
{
  if (!is_finite(ring)) {
    return "a coordinate is not finite";
  }
  return is_too_crowded(ring) ? "the polygon crosses itself too often" : nullptr;
}

} // namespace

void MRUtil::triangulate_polygon(int count, double points[][3], std::vector<int>& triangles,
                                 std::vector<int>& edges, std::vector<double>& coords)
{
  std::vector<double> ring;
  if (count > 0 && points != nullptr) {
    ring.assign(points[0], points[0] + 3 * static_cast<std::size_t>(count));
  }
  triangles.clear();
  edges.clear();
  coords = ring;
  if (const char* error = error_in(ring)) {
    print_tessellation_error(error);
    return;
  }
  Tessellation tessellation{triangles, edges, coords};
  {
    const Tessellator tessellator = make_tessellator();
    const CurrentTessellation current(tessellation);
    tessellate_ring(tessellator.get(), ring);
  }
  if (tessellation.exception != nullptr) {
    std::rethrow_exception(tessellation.exception);
  }
  close_pending_edge(tessellation);
  for (const GLenum error : tessellation.errors) {
    print_tessellation_error(text_of(error));
  }
}
