# The music: the synthesiser's modules on known signals, and the track in Data/ as the demo hears
# it.
foreach(subject IN ITEMS powerspectrum wavetable filter effects loudness score instrument
        beatpulse file piece stems grammar)
    set(target art_music_${subject}_test)
    add_executable(${target} music_${subject}_test.cpp)
    target_link_libraries(${target}
        PRIVATE art_music sound_test_support test_support Vell::Sound GTest::gmock_main vell_options)
    target_precompile_headers(${target} REUSE_FROM test_support)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE NIMBREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES LABELS art TIMEOUT 300)
endforeach()

# The programs refuse what they cannot use, and say why.
add_test(NAME art_music_make_refuses
    COMMAND make_music ${PROJECT_SOURCE_DIR}/.clang-format refused.wav)
set_tests_properties(art_music_make_refuses PROPERTIES LABELS art
    PASS_REGULAR_EXPRESSION "clang-format:1: unknown word 'BasedOnStyle:'")
add_test(NAME art_music_measure_refuses
    COMMAND measure_music ${PROJECT_SOURCE_DIR}/art/music/quorrel.score
        ${PROJECT_SOURCE_DIR}/.clang-format)
add_test(NAME art_music_chart_refuses
    COMMAND chart_music ${PROJECT_SOURCE_DIR}/art/music/quorrel.score
        ${PROJECT_SOURCE_DIR}/.clang-format .)
set_tests_properties(art_music_measure_refuses art_music_chart_refuses PROPERTIES LABELS art
    PASS_REGULAR_EXPRESSION "clang-format: no stereo WAV")
