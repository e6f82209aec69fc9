# web_program(TARGET [FRAME function...]): TARGET, whose main() is compiled in, runs in the page's worker.
# A frame ends in SDL_GL_SwapBuffers(), from which the program has to come back to the browser. Only what
# stands between main() and that call is made able to: the functions of FRAME, as a linker names them, or
# with * for the rest of a name.
function(web_program TARGET)
    cmake_parse_arguments(PARSE_ARGV 1 WEB "" "" "FRAME")
    set(PLACE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/..)
    set(ABLE main __main_argc_argv __original_main SDL_GL_SwapBuffers ${WEB_FRAME})
    list(JOIN ABLE "," ABLE)
    target_sources(${TARGET} PRIVATE ${PLACE}/shell/program.cpp ${PLACE}/sound/decode.cpp)
    target_include_directories(${TARGET} PRIVATE ${PLACE}/..)
    target_link_libraries(${TARGET} PRIVATE web_sdl vell_web_gl Vell::Sound)
    target_link_options(${TARGET} PRIVATE
        --js-library ${PLACE}/shell/page.js
        -sASYNCIFY -sASYNCIFY_IMPORTS=[page_next_frame] "-sASYNCIFY_ONLY=[${ABLE}]"
        -sMODULARIZE -sEXPORT_NAME=createProgram -sENVIRONMENT=worker
        -sMIN_WEBGL_VERSION=2 -sMAX_WEBGL_VERSION=2 -sEXIT_RUNTIME -sINVOKE_RUN=0
        -sEXPORTED_RUNTIME_METHODS=[FS,ENV,callMain,ccall]
        -sINITIAL_MEMORY=134217728 -sALLOW_MEMORY_GROWTH -sFORCE_FILESYSTEM)
    set_target_properties(${TARGET} PROPERTIES LINK_DEPENDS ${PLACE}/shell/page.js)
endfunction()

# web_page(TARGET [TITLE text] [SIZE WxH] [MUSIC track] [FRAME function...] [ROOT folder]
#          DATA file-or-folder...):
# makes pages/TARGET.html of it, one file, where CMake builds. DATA are what it opens, named as it names them
# when it runs in ROOT, at first the folder of this call. SIZE is the window's, 640x360 at first. A track
# plays from the moment at which the program plays its sound, and has to be in DATA too.
function(web_page TARGET)
    cmake_parse_arguments(PARSE_ARGV 1 WEB "" "TITLE;SIZE;MUSIC;ROOT" "FRAME;DATA")
    web_program(${TARGET} FRAME ${WEB_FRAME})
    if(NOT WEB_ROOT)
        set(WEB_ROOT ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    cmake_path(ABSOLUTE_PATH WEB_ROOT)
    set(ASSEMBLE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../page/assemble_scene)
    file(GLOB PARTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../page/*.*)
    set(PAGE ${CMAKE_BINARY_DIR}/pages/${TARGET}.html)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/pages)
    add_custom_command(OUTPUT ${PAGE}
        COMMAND ${ASSEMBLE} $<TARGET_FILE_DIR:${TARGET}> ${TARGET} ${PAGE}
            "--title=${WEB_TITLE}" "--size=${WEB_SIZE}" "--music=${WEB_MUSIC}" ${WEB_DATA}
        WORKING_DIRECTORY ${WEB_ROOT}
        DEPENDS ${TARGET} ${ASSEMBLE} ${PARTS} VERBATIM)
    add_custom_target(${TARGET}_page DEPENDS ${PAGE})
endfunction()
