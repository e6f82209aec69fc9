# Found before CMake's own module: threads would need shared memory, which needs a server with special
# headers. What starts one is answered that none is to be had.
if(NOT TARGET Threads::Threads)
    add_library(Threads::Threads INTERFACE IMPORTED GLOBAL)
endif()
set(Threads_FOUND TRUE)
