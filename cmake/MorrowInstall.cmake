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
set(morrow_pc_vtk_cflags "-isystem $<JOIN:$<TARGET_PROPERTY:VTK::CommonCore,INTERFACE_INCLUDE_DIRECTORIES>, -isystem >")
set(morrow_pc_vtk_libs "-L$<TARGET_LINKER_FILE_DIR:VTK::CommonCore>")
foreach(component IN LISTS MORROW_VTK_COMPONENTS)
  string(APPEND morrow_pc_vtk_libs " -l$<TARGET_LINKER_FILE_BASE_NAME:VTK::${component}>")
endforeach()

set(morrow_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH morrow_pc_prefix "/${morrow_pc_dir}" /)
string(REGEX REPLACE "/$" "" morrow_pc_prefix "${morrow_pc_prefix}")
foreach(module IN ITEMS brant_util morrow_base)
  configure_file(cmake/${module}.pc.in ${module}.pc.generate @ONLY)
  file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc
       INPUT ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc.generate)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc DESTINATION ${morrow_pc_dir})
endforeach()
