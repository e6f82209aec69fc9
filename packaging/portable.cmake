# Makes the demo that was just installed one that starts wherever it lies: the libraries that not every
# distribution has in these versions lie beside the program, with their licences, and are looked for
# there. Run by cpack for the archive.
set(root $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX})
set(programs ${root}/libexec/nimbrel)
set(licences ${root}/share/doc/nimbrel/libraries)

# Left to the machine is what something else of the machine's own is loaded into, beside, or below: a
# driver that wants a newer zlib or C++ library would meet our older copy.
set(of_the_machine
    "^ld-linux" "^lib(c|m|dl|rt|pthread|resolv)\\.so" "^lib(stdc\\+\\+|gcc_s)\\.so"
    "^lib(GL|GLX|OpenGL|GLdispatch)\\.so" # its driver
    "^lib(X11|Xext|Xrandr)\\.so"          # the driver talks to the server through them too
    "^lib(asound|pulse|pulse-simple)\\.so" # they load plugins of the machine, and talk to its servers
    "^libz\\.so")

find_program(PATCHELF patchelf REQUIRED)
find_program(DPKG_QUERY dpkg-query REQUIRED)

# said NAME COMMAND...: what the command says, as ${NAME}; it must not fail.
function(said name)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    set(${name} "${output}" PARENT_SCOPE)
endfunction()

# search_beside FILE: its libraries are looked for where it lies.
function(search_beside file)
    said(nothing ${PATCHELF} --set-rpath $ORIGIN ${file})
endfunction()

# copy_licence LIBRARY: as its package has it, with the texts that it refers to.
function(copy_licence library)
    cmake_path(GET library FILENAME name)
    said(owner ${DPKG_QUERY} -S */${name})
    string(REGEX REPLACE ":.*" "" package "${owner}")
    file(COPY_FILE /usr/share/doc/${package}/copyright ${licences}/${package} ONLY_IF_DIFFERENT)
    file(READ ${licences}/${package} text)
    string(REGEX MATCHALL "/usr/share/common-licenses/[A-Za-z]+(-[0-9.]*[0-9])?" texts "${text}")
    file(COPY ${texts} DESTINATION ${licences}/common-licenses FOLLOW_SYMLINK_CHAIN)
endfunction()

# copy_library LIBRARY: under the name by which it is asked for.
function(copy_library library)
    cmake_path(GET library FILENAME name)
    file(REAL_PATH ${library} file)
    file(COPY_FILE ${file} ${programs}/${name})
    file(CHMOD ${programs}/${name} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    search_beside(${programs}/${name})
    copy_licence(${file})
endfunction()

file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${programs}/nimbrel ${programs}/nimbrel_escape
    PRE_EXCLUDE_REGEXES ${of_the_machine} RESOLVED_DEPENDENCIES_VAR libraries)
file(MAKE_DIRECTORY ${licences}/common-licenses)
foreach(library IN LISTS libraries)
    copy_library(${library})
endforeach()
search_beside(${programs}/nimbrel)

# What one sees first.
file(CREATE_LINK bin/nimbrel ${root}/nimbrel SYMBOLIC)
file(COPY_FILE ${root}/share/doc/nimbrel/nimbrel.nfo ${root}/nimbrel.nfo)
