# Found before CMake's own module, whose packages are those of the machine that builds.
macro(pkg_check_modules NAME)
    if(NOT TARGET PkgConfig::${NAME})
        string(TOLOWER ${NAME} WEB_LIBRARY)
        add_library(PkgConfig::${NAME} ALIAS web_${WEB_LIBRARY})
    endif()
    set(${NAME}_FOUND TRUE)
endmacro()
set(PkgConfig_FOUND TRUE)
