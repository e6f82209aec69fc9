# What `cmake --install` puts where, in two components: Runtime is what a program needs to run,
# Development what it needs to be built. Included by the engine's CMakeLists.txt.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(VELL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/Vell)
set(VELL_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/Vell)
target_include_directories(vell INTERFACE $<INSTALL_INTERFACE:${VELL_HEADERS}>)

install(TARGETS vell EXPORT VellTargets
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development)
# Under the same names as in the tree, <engine/scene/scenemanager.h>. Two serve the engine alone.
install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/ DESTINATION ${VELL_HEADERS}/engine
    COMPONENT Development
    FILES_MATCHING PATTERN "*.h"
    PATTERN "errorguard.h" EXCLUDE
    PATTERN "trust.h" EXCLUDE
    PATTERN "package" EXCLUDE)

install(EXPORT VellTargets NAMESPACE Vell:: DESTINATION ${VELL_PACKAGE} COMPONENT Development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/VellConfig.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/VellConfig.cmake
    INSTALL_DESTINATION ${VELL_PACKAGE}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/VellConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/VellConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/VellConfigVersion.cmake
    DESTINATION ${VELL_PACKAGE} COMPONENT Development)

# pkg-config: whoever links the static library links what it stands on as well. The folder is told
# from where the file lies, so that the installation can be moved.
if(VELL_SHARED)
    set(VELL_PRIVATE_REQUIRES "libjpeg, libpng")
    set(VELL_DEFINITION " -DVELL_SHARED")
else()
    set(VELL_PUBLIC_REQUIRES ", libjpeg, libpng")
endif()
file(RELATIVE_PATH VELL_PREFIX
    /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_CURRENT_LIST_DIR}/vell.pc.in ${CMAKE_CURRENT_BINARY_DIR}/vell.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vell.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
