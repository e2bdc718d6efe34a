// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GfxDebug.h"

#include <utility>

namespace {

// Not owned; null while no back end is installed.
GfxDebug* gInstalled = nullptr;

} // namespace

GfxDebug::~GfxDebug()
{
  if (gInstalled == this) {
    gInstalled = nullptr;
  }
}

GfxDebug* GfxDebug::instance() noexcept
{
  return gInstalled;
}

GfxDebug* GfxDebug::set_instance(GfxDebug* instance) noexcept
{
  return std::exchange(gInstalled, instance);
}

void GfxDebug::clear()
{
  if (gInstalled) {
    gInstalled->p_clear();
  }
}

void GfxDebug::display_all(bool first_flag, bool second_flag)
{
  if (gInstalled) {
    gInstalled->p_display_all(first_flag, second_flag);
  }
}

void GfxDebug::flush()
{
  if (gInstalled) {
    gInstalled->p_flush();
  }
}

void GfxDebug::clear_highlight()
{
  if (gInstalled) {
    gInstalled->p_clear_highlight();
  }
}

void GfxDebug::drawing_mode(int mode)
{
  if (gInstalled) {
    gInstalled->p_drawing_mode(mode);
  }
}

void GfxDebug::draw_mref_entity_mesh(MRefEntity* entity, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_mref_entity_mesh(entity, color);
  }
}

void GfxDebug::draw_facet(BrantFacet* facet, int color, int option)
{
  if (gInstalled) {
    gInstalled->p_draw_facet(facet, color, option);
  }
}

void GfxDebug::draw_facet_edge(BrantFacetEdge* edge, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_facet_edge(edge, color);
  }
}

void GfxDebug::draw_box(BrantBox& box, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_box(box, color);
  }
}

void GfxDebug::draw_point(const BrantVector& point, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_point(point, color);
  }
}

void GfxDebug::draw_point(float x, float y, float z, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_point(x, y, z, color);
  }
}

void GfxDebug::draw_line(const BrantVector& from, const BrantVector& to, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_line(from, to, color);
  }
}

void GfxDebug::draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_line(x1, y1, z1, x2, y2, z2, color);
  }
}

void GfxDebug::draw_polyline(const BrantVector* points, int count, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_polyline(points, count, color);
  }
}

void GfxDebug::draw_polygon(const BrantVector* points, int count, int color, int option, bool filled)
{
  if (gInstalled) {
    gInstalled->p_draw_polygon(points, count, color, option, filled);
  }
}

void GfxDebug::draw_quad(const BrantVector* points, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_quad(points, color);
  }
}

void GfxDebug::draw_tri(const BrantVector* points, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_tri(points, color);
  }
}

void GfxDebug::draw_vector(const BrantVector& tail, const BrantVector& head, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_vector(tail, head, color);
  }
}

void GfxDebug::draw_shell(int num_points, const BrantVector* points, int face_list_length,
                          const int* face_list, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_shell(num_points, points, face_list_length, face_list, color);
  }
}

void GfxDebug::draw_shell(int num_points, const BrantVector* points, int face_list_length,
                          const int* face_list, const BrantColor* colors)
{
  if (gInstalled) {
    gInstalled->p_draw_shell(num_points, points, face_list_length, face_list, colors);
  }
}

void GfxDebug::draw_label(const char* text, float x, float y, float z, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_label(text, x, y, z, color);
  }
}

void GfxDebug::draw_label(int number, float x, float y, float z, int color)
{
  if (gInstalled) {
    gInstalled->p_draw_label(number, x, y, z, color);
  }
}

void GfxDebug::zoom(BrantBox& box)
{
  if (gInstalled) {
    gInstalled->p_zoom(box);
  }
}

void GfxDebug::display_to_world_length(double pixels, double& length)
{
  length = 1.0;
  if (gInstalled) {
    gInstalled->p_display_to_world_length(pixels, length);
  }
}

void GfxDebug::mouse_xforms()
{
  if (gInstalled) {
    gInstalled->p_mouse_xforms();
  }
}

void GfxDebug::highlight_points(int count, const BrantVector* points)
{
  if (gInstalled) {
    gInstalled->p_highlight_points(count, points);
  }
}

void GfxDebug::highlight_polylines(int num_points, const BrantVector* points, int list_length,
                                   const int* list)
{
  if (gInstalled) {
    gInstalled->p_highlight_polylines(num_points, points, list_length, list);
  }
}

void GfxDebug::highlight_polygons(int num_points, const BrantVector* points, int list_length, const int* list)
{
  if (gInstalled) {
    gInstalled->p_highlight_polygons(num_points, points, list_length, list);
  }
}
