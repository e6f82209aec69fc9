# The tools that the makers share, the baker of light, and the city: its plan, its mesh, its
# textures and its material.
foreach(subject meshwriter picture noise packing baker plan mesh textures material)
    set(target art_city_${subject}_test)
    add_executable(${target} city_${subject}_test.cpp)
    target_link_libraries(${target}
        PRIVATE art_city art_textures test_support GTest::gmock_main vell_options)
    target_compile_definitions(${target} PRIVATE NIMBREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES LABELS art TIMEOUT 300)
endforeach()
