# What `cmake --install` puts where: the library, its headers, a CMake package and a pkg-config file.
# The tree may be moved to another place afterwards.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# Shared and static libraries may be installed to one place, each by a build of its own.
get_target_property(kind kxmaths5 TYPE)
string(REGEX REPLACE "_LIBRARY" "" kind ${kind})
string(TOLOWER ${kind} kind)

install(TARGETS kxmaths5 EXPORT kxmaths5-${kind}-targets
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/kxmaths5)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kxmaths5-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(EXPORT kxmaths5-${kind}-targets NAMESPACE kxmaths5:: DESTINATION ${package_directory})
install(FILES
    ${CMAKE_CURRENT_LIST_DIR}/kxmaths5-config.cmake
    ${PROJECT_BINARY_DIR}/kxmaths5-config-version.cmake
    DESTINATION ${package_directory})

# pkg-config knows where it has found the file; all else is relative to that.
set(pkgconfig_directory ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${pkgconfig_directory} OUTPUT_VARIABLE path_to_prefix)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR
    BASE_DIRECTORY ${pkgconfig_directory} OUTPUT_VARIABLE path_to_headers)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kxmaths5.pc.in ${PROJECT_BINARY_DIR}/kxmaths5.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kxmaths5.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# gdb loads this with the module that it is named for, once it trusts the directory.
if(kind STREQUAL shared AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
    install(FILES ${PROJECT_SOURCE_DIR}/debugger/kxmaths5-gdb.py DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RENAME $<TARGET_FILE_NAME:kxmaths5>-gdb.py)
endif()
