# Vell::Sound, for find_package(Vell COMPONENTS sound).
include("${CMAKE_CURRENT_LIST_DIR}/VellSoundDependencies.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/VellSoundTargets.cmake")
