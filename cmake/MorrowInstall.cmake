# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# The CMake package and the pkg-config files. Both may be moved together with
# the tree that they were installed into.
include(CMakePackageConfigHelpers)

set(morrow_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/morrow_base)
configure_package_config_file(cmake/morrow_baseConfig.cmake.in morrow_baseConfig.cmake
                              INSTALL_DESTINATION ${morrow_package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/morrow_baseConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/morrow_baseConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/morrow_baseConfigVersion.cmake DESTINATION ${morrow_package_dir})
install(EXPORT brant_utilTargets NAMESPACE Brant:: DESTINATION ${morrow_package_dir})
install(EXPORT morrow_baseTargets NAMESPACE Morrow:: DESTINATION ${morrow_package_dir})

# VTK has no pkg-config file of its own, so ours names its headers and libraries.
get_target_property(morrow_vtk_include_dirs VTK::CommonCore INTERFACE_INCLUDE_DIRECTORIES)
list(TRANSFORM morrow_vtk_include_dirs PREPEND "-isystem ")
list(JOIN morrow_vtk_include_dirs " " morrow_pc_vtk_cflags)
set(morrow_pc_vtk_libs)
foreach(component IN LISTS MORROW_VTK_COMPONENTS)
  get_target_property(configurations VTK::${component} IMPORTED_CONFIGURATIONS)
  list(GET configurations 0 configuration)
  get_target_property(library VTK::${component} IMPORTED_LOCATION_${configuration})
  if(NOT morrow_pc_vtk_libs)
    get_filename_component(morrow_vtk_library_dir ${library} DIRECTORY)
    set(morrow_pc_vtk_libs "-L${morrow_vtk_library_dir}")
  endif()
  string(REGEX REPLACE "^.*/lib([^/]+)\\.(so|dylib|a).*$" "\\1" library ${library})
  string(APPEND morrow_pc_vtk_libs " -l${library}")
endforeach()

set(morrow_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH morrow_pc_prefix "/${morrow_pc_dir}" /)
string(REGEX REPLACE "/$" "" morrow_pc_prefix "${morrow_pc_prefix}")
foreach(module IN ITEMS brant_util morrow_base)
  configure_file(cmake/${module}.pc.in ${module}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc DESTINATION ${morrow_pc_dir})
endforeach()
