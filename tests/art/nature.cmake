# The sky, the sea, the title, the fish and the wisps: what the makers draw, and the files in
# Data/ as the engine sees them.
foreach(subject sky water logo fish wisp)
    set(target art_nature_${subject}_test)
    add_executable(${target} nature_${subject}_test.cpp)
    target_link_libraries(${target}
        PRIVATE art_${subject} test_support GTest::gmock_main vell_options)
    target_precompile_headers(${target} REUSE_FROM test_support)
    target_compile_definitions(${target} PRIVATE NIMBREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES LABELS art TIMEOUT 300)
endforeach()

# The quickly made files must come out of their programs byte for byte as they lie in Data/.
add_test(NAME art_make_check
    COMMAND ${PROJECT_SOURCE_DIR}/art/make --check --build ${PROJECT_BINARY_DIR}
        water logo fish wisps)
add_test(NAME art_make_notices_a_change
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/make_notices_a_change.sh
        ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
# Both build the programs first, which must not happen twice at once in one folder.
set_tests_properties(art_make_check art_make_notices_a_change
    PROPERTIES LABELS art TIMEOUT 600 RESOURCE_LOCK build_folder)
