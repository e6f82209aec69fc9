// What the programs that a viewer runs are built with against faults, read from the files as they
// are: a flag that no longer reaches the compiler or the linker changes nothing else.

#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const char* const demo = NIMBREL_BINARY_DIR "/demo/nimbrel";
const char* const film = NIMBREL_BINARY_DIR "/tools/movie/nimbrel_film";
const char* const doctor = NIMBREL_BINARY_DIR "/tools/doctor/nimbrel_doctor";
const char* const probe = NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so";

std::string Readelf(const std::string& options, const std::string& file) {
    const Tools::Ending end =
        Tools::Run({.arguments = {"readelf", options, file}, .added = {{"LC_ALL", "C"}}}, 60.0);
    EXPECT_TRUE(end.InOrder()) << file << ' ' << end.InWords();
    return end.output;
}

/// Of the four: what has a main() of its own, and what is loaded into another program.
class Hardened : public ::testing::TestWithParam<const char*> {};
class HardenedProgram : public Hardened {};

std::string Name(const ::testing::TestParamInfo<const char*>& file) {
    const std::string path = file.param;
    return path.substr(path.rfind('/') + 1, path.rfind('.') - path.rfind('/') - 1);
}

} // namespace

TEST_P(Hardened, Has_every_function_of_other_libraries_before_it_begins) {
    EXPECT_THAT(Readelf("-dW", GetParam()), ContainsRegex("FLAGS_1.* NOW"));
}

TEST_P(Hardened, Cannot_write_the_table_of_them_afterwards_nor_run_its_stack) {
    const std::string segments = Readelf("-lW", GetParam());
    EXPECT_THAT(segments, HasSubstr("GNU_RELRO"));
    EXPECT_THAT(segments, ContainsRegex("GNU_STACK .* RW  0x"));
    EXPECT_THAT(segments, Not(HasSubstr("RWE")));
}

TEST_P(Hardened, Watches_its_stack) {
    EXPECT_THAT(Readelf("-sW", GetParam()), HasSubstr(" __stack_chk_fail@"));
}

TEST_P(HardenedProgram, Lies_at_another_address_in_every_run) {
    EXPECT_THAT(Readelf("-hW", GetParam()),
                HasSubstr("DYN (Position-Independent Executable file)"));
}

TEST_P(HardenedProgram, Lets_the_C_library_check_lengths) {
    EXPECT_THAT(Readelf("-sW", GetParam()),
                ContainsRegex(" __s?n?v?printf_chk@| __mem(cpy|set)_chk@| __snprintf_chk@"));
}

INSTANTIATE_TEST_SUITE_P(Each, Hardened, ::testing::Values(demo, film, doctor, probe), Name);
INSTANTIATE_TEST_SUITE_P(Each, HardenedProgram, ::testing::Values(demo, film, doctor), Name);
