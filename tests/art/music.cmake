# The music: the synthesiser's modules on known signals, and the track in Data/ as the demo hears
# it.
foreach(subject wavetable filter effects loudness score instrument beatpulse file piece)
    set(target art_music_${subject}_test)
    add_executable(${target} music_${subject}_test.cpp)
    target_link_libraries(${target}
        PRIVATE art_music test_support Vell::Sound GTest::gmock_main vell_options)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE NIMBREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES LABELS art TIMEOUT 300)
endforeach()
