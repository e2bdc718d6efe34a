// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string> // returned by value
#include <vector> // filled for the caller

#include "morrow_base_export.h"

class GDataGroupEntity;
class vtkDataSet;
class vtkInformationIntegerKey;

/// Enumerations, messages and process-wide switches shared by the whole library.
///
/// Everything here is for the host's user-interface thread; nothing is locked.
namespace MRUtil {

// ---------------------------------------------------------------------------------------------------------
// Enumerations. The numeric values are fixed: they index tables and are stored in information keys.

/// Whether the library updates models and renders; see set_graphics_status().
enum GraphicsStatus : int
{
  GRAPHICS_NORMAL = 0,    ///< models are updated, views render
  GRAPHICS_DISABLED = 1,  ///< nothing renders until another status is set explicitly; resuming does not help
  GRAPHICS_SUSPENDED = 2, ///< nothing renders until a resume request or another status
  GRAPHICS_RESUME = 3     ///< a request, never a stored status: back to normal unless disabled
};

/// The form of an axis triad.
enum AxisType : int
{
  AXIS_3D = 0,
  AXIS_2D = 1,
  AXIS_1D = 2
};

/// The drawing style of loose primitives.
enum DrawMode : int
{
  DRAW_DEFAULT = 0,
  DRAW_OUTLINE = 1,
  DRAW_FILLED = 2,
  DRAW_HIGHLIGHT = 3, ///< the highlight colour and the highlight line width
  DRAW_OVERLAY = 4
};

/// How a model, or a single prop through the RENDER_MODE() key, wants to be drawn.
///
/// The view's render pass reads the mode of actors whose property has surface representation; wireframe and
/// point actors are drawn in every mode. What a mode means beyond that is the host's choice.
enum RenderMode : int
{
  RENDER_WIREFRAME = 0,        ///< surfaces are not drawn; labels show through everything
  RENDER_HIDDEN_LINE = 1,      ///< surfaces fill the depth buffer only: they hide and are not seen
  RENDER_HIDDEN_LINE_DASH = 2, ///< as RENDER_HIDDEN_LINE, for hosts that draw hidden lines in another style
  RENDER_FLAT = 3,             ///< surfaces are drawn
  RENDER_SMOOTH = 4,           ///< surfaces are drawn
  RENDER_TRANSPARENT = 5,      ///< surfaces are drawn
  RENDER_DEFAULT = 6,          ///< what a prop without a mode has; the same as RENDER_FLAT
  RENDER_NO_SURFACES = 7       ///< surfaces are not drawn
};

/// Mouse-function codes: indices into MouseFuncNames.
enum MouseFunction : int
{
  MOUSE_ROTATE = 0,
  MOUSE_ROTATE_XY = 1,
  MOUSE_ROTATE_Z = 2,
  MOUSE_ROTATE_CAMERA = 3,
  MOUSE_ZOOM = 4,
  MOUSE_ZOOM_TELEPHOTO = 5,
  MOUSE_ZOOM_NAVIGATE = 6,
  MOUSE_ZOOM_BOX = 7,
  MOUSE_PAN = 8,
  MOUSE_CENTER_ON_CLICK = 9,
  MOUSE_ZOOM_IN_CLICK = 10,
  MOUSE_ZOOM_OUT_CLICK = 11,
  MOUSE_SELECT = 12,
  MOUSE_ADD_SELECT = 13,
  MOUSE_ECHO_SELECTION = 14,
  MOUSE_SELECT_BOX = 15,
  MOUSE_SELECT_CIRCLE = 16,
  MOUSE_SELECT_AND_ECHO = 17,
  MOUSE_POPUP_MENU = 18,
  MOUSE_DO_NOTHING = 19,
  MOUSE_SELECT_POLYGON = 20,
  MOUSE_ROTATE_ABOUT_CURSOR = 21,
  MOUSE_NONE = 22
};

/// Number of mouse functions, and so of entries in MouseFuncNames.
inline constexpr int NumMouseFunctions = 23;

/// Display name of each mouse function, by code. For the host's menus and settings; the library never reads
/// it.
extern MORROW_BASE_EXPORT const char* const MouseFuncNames[NumMouseFunctions];

// ---------------------------------------------------------------------------------------------------------
// Property keys. The host sets them on a prop with
//   prop->GetPropertyKeys()->Set(MRUtil::RENDER_MODE(), MRUtil::RENDER_HIDDEN_LINE);
// (after prop->SetPropertyKeys(...) if it has none); the view's render pass reads them.

/// Key whose value is the RenderMode of one prop. Name "RENDER_MODE", location "MRUtil". Never null.
MORROW_BASE_EXPORT vtkInformationIntegerKey* RENDER_MODE();

/// Key whose presence, whatever its value, makes a prop follow the view's vertex visibility.
/// Name "VERTEX_VISIBILITY", location "MRUtil". Never null.
MORROW_BASE_EXPORT vtkInformationIntegerKey* VERTEX_VISIBILITY();

// ---------------------------------------------------------------------------------------------------------
// Messages. Every message of the library leaves through one replaceable print function.

/// Receives every message. It may call any function of the library, these messages included; an exception
/// that it throws passes on to whoever has sent the message.
///
/// @param text      the formatted message with its own line end; null when has_text is false. Valid during
///                  the call only.
/// @param kind      0 information, 1 warning, 2 error
/// @param has_text  false for the end-of-output signal
using PrintFunction = void (*)(const char* text, int kind, bool has_text);

/// Format with printf rules and hand the text to the print function, with kind 0, 1 or 2.
///
/// A text longer than 1023 bytes is cut to its first 1023 bytes. No memory is allocated. A null string
/// argument prints as "(null)". A null format: print_info does nothing; the other two call the print function
/// with (null, kind, false). An empty format: print_info signals the end of output, (null, 0, false); the
/// other two send an empty text.
[[gnu::format(printf, 1, 2)]] MORROW_BASE_EXPORT void print_info(const char* format, ...);
[[gnu::format(printf, 1, 2)]] MORROW_BASE_EXPORT void print_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] MORROW_BASE_EXPORT void print_error(const char* format, ...);

/// Signals the end of output: calls the print function with (null, 0, false).
MORROW_BASE_EXPORT void print_no_more();

/// Installs f for the whole process; null installs NoPrint. Initially DefaultPrintFunction.
MORROW_BASE_EXPORT void set_print_function(PrintFunction f);

/// Stores the current print function in f; it is never null.
MORROW_BASE_EXPORT void get_print_function(PrintFunction& f);

/// True when messages are silenced, so that costly ones need not be built.
[[nodiscard]] MORROW_BASE_EXPORT bool is_print_function_NoPrint();

/// A print function that does nothing.
MORROW_BASE_EXPORT void NoPrint(const char* text, int kind, bool has_text);

/// A print function that writes to standard output: warnings after "Warning: ", errors after "Error: ", all
/// other kinds as they are. A null text prints nothing; has_text is not read.
MORROW_BASE_EXPORT void DefaultPrintFunction(const char* text, int kind, bool has_text);

/// Sends VTK's own messages to standard output, unchanged: installs a MorrowVTKOutputWindow as VTK's output
/// window, which VTK then owns.
MORROW_BASE_EXPORT void setup_vtk_output_window_to_stdout();

// ---------------------------------------------------------------------------------------------------------
// Graphics status and queries

/// The status, initially GRAPHICS_NORMAL; never GRAPHICS_RESUME.
[[nodiscard]] MORROW_BASE_EXPORT GraphicsStatus get_graphics_status();

/// Sets the status for the whole process. GRAPHICS_RESUME sets GRAPHICS_NORMAL, but does nothing while the
/// status is GRAPHICS_DISABLED.
MORROW_BASE_EXPORT void set_graphics_status(GraphicsStatus s);

/// The graphics version the host reports to its users: "VTK Version 8.0.1". For the library that is loaded,
/// see get_vtk_version().
[[nodiscard]] MORROW_BASE_EXPORT std::string get_graphics_version();

/// Version of the VTK that is loaded, for example "9.1.0".
[[nodiscard]] MORROW_BASE_EXPORT std::string get_vtk_version();

/// Vendor, renderer and version of the OpenGL driver, one line each after "Displaying using:\n". Describes
/// the context that is current on this thread, so call it after a render; without a context the three lines
/// are missing.
[[nodiscard]] MORROW_BASE_EXPORT std::string get_gl_info();

/// Makes the preferred size of new windows a square of half the screen's height, in pixels; see
/// GView::set_preferred_window_size. Asks the windowing system: a display must be reachable, or VTK ends the
/// process.
MORROW_BASE_EXPORT void setup_preferred_window_size();

// ---------------------------------------------------------------------------------------------------------
// Back-pointers from data sets to the host's entities

/// Ties a data set to the entity that it shows, replaces the entity, or with a null entity ends the tie. A
/// null data set does nothing.
///
/// The entity's address is the one value of a vtkTypeUInt64Array named "BackPointer" in the data set's field
/// data. An array of that name and another type is replaced, but left alone by a null entity. The library
/// does not own the entity: end the tie, or let the data set go, before the entity dies.
///
/// The array travels with the data set. A shallow copy shares it: what is set for one is set for both, and
/// when one of the two ties is ended the other data set has none either. A deep copy has an array of its own.
///
/// The library holds a reference on each array that it has made until the tie is ended, on whatever data set;
/// a data set that goes before that leaves its array, some hundred bytes, behind.
MORROW_BASE_EXPORT void set_back_pointer(vtkDataSet* data_set, GDataGroupEntity* entity);

/// The entity that the data set is tied to; null for none, and for a null data set. It is the address that
/// was set: whether the entity still lives is for the host to know.
[[nodiscard]] MORROW_BASE_EXPORT GDataGroupEntity* get_back_pointer(vtkDataSet* data_set);

// ---------------------------------------------------------------------------------------------------------
// Polygons

/// Splits a planar polygon into triangles. The polygon may be concave, cross itself, and run either way
/// round; what an odd number of windings surrounds is inside.
///
/// @param count      number of points; 0 or less is an empty polygon, and so is a null points
/// @param points     count points in the order of the ring: x, y, z. The last is joined with the first.
/// @param triangles  replaced by three indices of points for each triangle
/// @param edges      replaced by two indices, start and end, for each side of a triangle that bounds the
///                   polygon
/// @param coords     replaced by x, y, z of each point that an index may name: first the count points given,
///                   then those where the ring crosses or touches itself, which are exact to about 1e-7 of
///                   the sides' lengths. points may lie in it.
///
/// A coordinate that is not finite gives the error message "Tesselation Error: ..." and no triangles. So does
/// a polygon of more than about 500,000 crossings, which would take minutes and gigabytes: such as one of
/// 2,100 random points, or of 1,300 on one line, as sides that overlap count as well. Errors of the
/// tessellator are messages as well, and the vectors then hold what it has delivered: it takes a coordinate
/// beyond 1e150 in size as 1e150, with a message for each such point. std::bad_alloc passes on to the caller.
///
/// A smooth outline of 100,000 points takes a tenth of a second, a jagged one half a minute.
MORROW_BASE_EXPORT void triangulate_polygon(int count, double points[][3], std::vector<int>& triangles,
                                            std::vector<int>& edges, std::vector<double>& coords);

} // namespace MRUtil
