# Installs the sound library beside the engine's package, as its component "sound". Included by the
# CMakeLists.txt of this folder.
include(GNUInstallDirs)

set(VELL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/Vell/sound)
set(VELL_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/Vell)
target_include_directories(vell_sound INTERFACE $<INSTALL_INTERFACE:${VELL_HEADERS}>)
set_target_properties(vell_sound PROPERTIES EXPORT_NAME Sound)

install(TARGETS vell_sound EXPORT VellSoundTargets ARCHIVE COMPONENT Development)
install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/fmod.h
    DESTINATION ${VELL_HEADERS} COMPONENT Development)
install(EXPORT VellSoundTargets NAMESPACE Vell::
    DESTINATION ${VELL_PACKAGE} COMPONENT Development)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/VellSound.cmake
    DESTINATION ${VELL_PACKAGE} COMPONENT Development)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/dependencies.cmake
    DESTINATION ${VELL_PACKAGE} COMPONENT Development RENAME VellSoundDependencies.cmake)
