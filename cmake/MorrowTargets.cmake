# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# What every target of this project has in common.
include(CheckLinkerFlag)

# Not -Wduplicated-branches: together with the sanitizers it takes g++ 12 minutes
# for one file.
set(MORROW_WARNINGS
    -Wall
    -Wextra
    -Wpedantic
    -Wcast-align
    -Wcast-qual
    -Wconversion
    -Wextra-semi
    -Wformat=2
    -Wimplicit-fallthrough
    -Wmissing-declarations
    -Wnon-virtual-dtor
    -Wold-style-cast
    -Woverloaded-virtual
    -Wredundant-decls
    -Wshadow
    -Wsign-conversion
    -Wundef
    -Wunused
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
    $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
    $<$<BOOL:${MORROW_WERROR}>:-Werror>)

# -fno-sanitize-recover makes every finding of the undefined-behaviour
# sanitizer end the program, so that a test cannot pass over one.
# g++ no longer sees through what it has instrumented when it warns of
# uninitialised values.
set(MORROW_SANITIZER_OPTIONS -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                             -fno-omit-frame-pointer $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)

# Headers of VTK and the standard library that most files include in the end.
# The large targets precompile them. Every file includes what it uses all the
# same: the preset "sanitize" and scripts/style.sh compile without.
set(MORROW_PRECOMPILED_HEADERS
    <algorithm>
    <array>
    <cmath>
    <functional>
    <limits>
    <map>
    <memory>
    <sstream>
    <string>
    <vector>
    <vtkActor.h>
    <vtkCamera.h>
    <vtkCellArray.h>
    <vtkNew.h>
    <vtkPolyData.h>
    <vtkRenderWindow.h>
    <vtkRenderer.h>
    <vtkSmartPointer.h>)

# Linking a program with all of VTK takes GNU ld most of a second, and these a
# third of that or less.
foreach(linker IN ITEMS lld gold)
  check_linker_flag(CXX -fuse-ld=${linker} MORROW_HAS_LINKER_${linker})
  if(MORROW_HAS_LINKER_${linker})
    set(MORROW_LINKER_OPTION -fuse-ld=${linker})
    break()
  endif()
endforeach()

# morrow_configure_target(<target>)
#
# Language level, warnings and instrumentation. No contraction of a*b+c: the
# answers of geometric tests must not depend on the compiler's choice of
# instructions.
function(morrow_configure_target target)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_compile_options(${target} PRIVATE ${MORROW_WARNINGS} -ffp-contract=off)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    target_link_options(${target} PRIVATE ${MORROW_LINKER_OPTION})
  endif()
  if(MORROW_SANITIZE)
    target_compile_options(${target} PRIVATE ${MORROW_SANITIZER_OPTIONS})
    target_link_options(${target} PRIVATE ${MORROW_SANITIZER_OPTIONS})
    if(type STREQUAL EXECUTABLE)
      target_link_libraries(${target} PRIVATE morrow_sanitizer_defaults)
    endif()
  else()
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  if(MORROW_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage)
    target_link_options(${target} PRIVATE --coverage)
  endif()
endfunction()

# morrow_configure_program(<target>)
#
# The same for a program that opens windows. Installed programs find the
# libraries beside them.
function(morrow_configure_program target)
  morrow_configure_target(${target})
  file(RELATIVE_PATH to_libraries "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  if(MORROW_SANITIZE)
    target_sources(${target} PRIVATE ${morrow_base_SOURCE_DIR}/cmake/KeepDriverLoaded.cxx)
    set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
  endif()
endfunction()

if(MORROW_SANITIZE)
  add_library(morrow_sanitizer_defaults OBJECT ${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cxx)
  morrow_configure_target(morrow_sanitizer_defaults)
  target_compile_definitions(morrow_sanitizer_defaults
                             PRIVATE MORROW_SUPPRESSIONS="${CMAKE_CURRENT_LIST_DIR}/sanitizer.supp")
endif()
