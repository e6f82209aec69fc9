#include "tools/verify/reference.h"

#include "tests/support/scratch.h"

#include <gmock/gmock.h>

#include <stdexcept>

using Passes::Pass;
using namespace Verify;
using ::testing::HasSubstr;

namespace {

/// 16 x 8 pixels of one colour.
Pass Plain(const std::string& name, unsigned char red, unsigned char green, unsigned char blue) {
    Pass pass;
    pass.name = name;
    pass.width = 16;
    pass.height = 8;
    for (int i = 0; i < 16 * 8; ++i)
        pass.pixels.insert(pass.pixels.end(), {red, green, blue, 255});
    return pass;
}

std::string Complaint(const std::string& folder) {
    try {
        ReadReferences(folder);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}

} // namespace

// Worked out by hand from the algorithm's published offset and prime; the third is of "foobar".
TEST(Fingerprint, Is_that_of_fnv_1a) {
    EXPECT_EQ(Fingerprint({}), 0xcbf29ce484222325u);
    const unsigned char a[] = {'a'};
    EXPECT_EQ(Fingerprint(a), 0xaf63dc4c8601ec8cu);
    const unsigned char foobar[] = {'f', 'o', 'o', 'b', 'a', 'r'};
    EXPECT_EQ(Fingerprint(foobar), 0x85944171f73967e8u);
}

TEST(PassTrace, Holds_the_mean_colours_of_a_grid) {
    Pass pass = Plain("water reflection", 10, 20, 30);
    // The field at the bottom left is 2 x 2 pixels: one of them is 44 brighter in red.
    pass.pixels[0] = 54;
    const PassTrace trace = TraceOf(pass);
    EXPECT_EQ(trace.name, "water-reflection");
    EXPECT_EQ(trace.means[0], 21); // (54 + 3 * 10) / 4
    EXPECT_EQ(trace.means[1], 20);
    EXPECT_EQ(trace.means[2], 30);
    EXPECT_EQ(trace.means[3], 10);
    EXPECT_EQ(Distance(trace, TraceOf(Plain("water reflection", 10, 20, 30))), 11);
    EXPECT_NE(trace.fingerprint, TraceOf(Plain("water reflection", 10, 20, 30)).fingerprint);
}

TEST(PassTrace, Is_far_from_one_of_another_name_or_size) {
    const PassTrace trace = TraceOf(Plain("scene", 1, 2, 3));
    EXPECT_EQ(Distance(trace, TraceOf(Plain("scene", 1, 2, 3))), 0);
    EXPECT_EQ(Distance(trace, TraceOf(Plain("sky", 1, 2, 3))), 255);
    PassTrace wider = trace;
    wider.width = 17;
    EXPECT_EQ(Distance(trace, wider), 255);
}

TEST(PassTrace, Can_be_of_a_target_smaller_than_its_grid) {
    Pass pass = Plain("dot", 0, 0, 0);
    pass.width = 1;
    pass.height = 1;
    pass.pixels = {40, 50, 60, 255};
    const PassTrace trace = TraceOf(pass);
    EXPECT_EQ(trace.means[trace.means.size() - 3], 40); // the last field holds the pixel
    EXPECT_EQ(trace.means[0], 0);                       // the others hold none
}

TEST(References, Are_read_as_they_were_written) {
    const ScratchDir scratch;
    Picture picture(4, 2);
    picture.At(3, 1)[2] = 200;
    const std::vector<Reference> written = {
        ReferenceOf(7, picture, {Plain("scene", 1, 2, 3), Plain("blur, step 1", 200, 255, 0)}),
        ReferenceOf(90, Picture(4, 2), {}),
    };
    WriteReferences(written, "some/folder");
    const std::vector<Reference> read = ReadReferences("some/folder");
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].frame, 7);
    EXPECT_EQ(read[0].fingerprint, written[0].fingerprint);
    EXPECT_TRUE(read[0].half == written[0].half);
    ASSERT_EQ(read[0].passes.size(), 2u);
    EXPECT_EQ(read[0].passes[1].name, "blur,-step-1");
    EXPECT_EQ(read[0].passes[1].fingerprint, written[0].passes[1].fingerprint);
    EXPECT_EQ(Distance(read[0].passes[1], written[0].passes[1]), 0);
    EXPECT_EQ(read[1].frame, 90);
    EXPECT_TRUE(read[1].passes.empty());
}

TEST(References, Say_what_is_wrong_with_them) {
    const ScratchDir scratch;
    EXPECT_THAT(Complaint("nowhere"), HasSubstr("cannot read nowhere/passes.txt"));
    WriteReferences({ReferenceOf(7, Picture(4, 2), {Plain("scene", 1, 2, 3)})}, "folder");
    const std::string good = ReadFile("folder/passes.txt");
    const struct {
        std::string text;
        const char* complaint;
    } files[] = {
        {"frames 7 0\n", "passes.txt, line 1: not understood: frames 7 0"},
        {"frame seven 0\n", "line 1: not understood"},
        {good.substr(good.find('\n') + 1), "line 1: not understood: pass scene"},
        {good.substr(0, good.size() - 2) + "\n", "line 2: not understood: pass scene"},
        {good.substr(0, good.size() - 2) + "x\n", "line 2: not understood: pass scene"},
        {"", "not of the same frames"},
        {good + good, "not of the same frames"},
    };
    for (const auto& file : files) {
        WriteFile("folder/passes.txt", file.text);
        EXPECT_THAT(Complaint("folder"), HasSubstr(file.complaint)) << file.text.substr(0, 20);
    }
    WriteFile("folder/passes.txt", good);
    WriteFile("folder/frames.png", "no picture");
    EXPECT_THAT(Complaint("folder"), HasSubstr("cannot read folder/frames.png"));
}
