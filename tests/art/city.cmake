# The tools that the makers share, the baker of light, and the city: its plan, its mesh, its
# textures, its material and how that knows the flights.
foreach(subject foldertofill meshwriter picture noise packing baker plan mesh textures material views marks steps
        nearwalls quarter)
    set(target art_city_${subject}_test)
    add_executable(${target} city_${subject}_test.cpp)
    target_link_libraries(${target}
        PRIVATE art_city art_textures test_support GTest::gmock_main vell_options)
    target_precompile_headers(${target} REUSE_FROM test_support)
    target_compile_definitions(${target} PRIVATE NIMBREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES LABELS art TIMEOUT 300)
endforeach()

# What the material knows of the flights must be what they are. The programs are built first, which
# must not happen twice at once in one folder.
add_test(NAME art_city_views_are_made
    COMMAND ${PROJECT_SOURCE_DIR}/art/make --check --build ${PROJECT_BINARY_DIR} views)
set_tests_properties(art_city_views_are_made
    PROPERTIES LABELS art TIMEOUT 600 RESOURCE_LOCK build_folder)
