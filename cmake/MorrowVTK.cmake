# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# The parts of VTK in use, by name: asking for all of VTK would also ask for
# the development files of Qt, MPI and much else.

# What the library itself uses. Its public headers are VTK's neighbours, so all
# of these are part of its link interface and of the installed package.
set(MORROW_VTK_COMPONENTS
    CommonCore
    CommonDataModel
    CommonExecutionModel
    CommonMath
    CommonSystem
    CommonTransforms
    FiltersCore
    FiltersGeneral
    FiltersGeometry
    FiltersSources
    IOExport
    IOImage
    InteractionStyle
    InteractionWidgets
    RenderingAnnotation
    RenderingCore
    RenderingFreeType
    RenderingOpenGL2
    RenderingUI)

# Those among them that provide VTK's object factories. The library registers
# them itself, so a host need not.
set(MORROW_VTK_FACTORIES InteractionStyle RenderingFreeType RenderingOpenGL2 RenderingUI)

# What only the examples, the tests and the benchmarks use.
set(MORROW_VTK_EXTRA_COMPONENTS
    FiltersExtraction
    FiltersHybrid
    FiltersVerdict
    IOExodus
    IOGeometry
    IOImport
    IOLegacy
    IOPLY
    IOXML)

# VTK's targets are also for whoever adds this project as a subdirectory.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
set(morrow_vtk_wanted ${MORROW_VTK_COMPONENTS})
if(MORROW_BUILD_EXAMPLES
   OR MORROW_BUILD_TESTS
   OR MORROW_BUILD_BENCH)
  list(APPEND morrow_vtk_wanted ${MORROW_VTK_EXTRA_COMPONENTS})
endif()
find_package(VTK 9.1 REQUIRED COMPONENTS ${morrow_vtk_wanted})
find_package(OpenGL REQUIRED COMPONENTS OpenGL)
if(NOT OPENGL_GLU_FOUND)
  message(FATAL_ERROR "The GLU library is missing (Debian: libglu1-mesa-dev)")
endif()
