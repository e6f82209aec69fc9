# Read by cpack before each kind of package: the archive is the demo, and it is made portable.
if(CPACK_GENERATOR STREQUAL "TXZ")
    list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 build)
    set(CPACK_INSTALL_CMAKE_PROJECTS "${build};Nimbrel;Demo;/;${build};Nimbrel;Portable;/")
endif()
