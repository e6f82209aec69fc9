#include "tools/doctor/sha256.h"

#include <gtest/gtest.h>

#include <sstream>

using Doctor::SumOf;

namespace {

std::string SumOfText(const std::string& text) {
    std::istringstream in(text);
    return SumOf(in);
}

} // namespace

// The examples that the standard's publishers give for it, and what sha256sum prints.
TEST(Sha256, Of_the_standards_examples) {
    EXPECT_EQ(SumOfText(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(SumOfText("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(SumOfText("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(SumOfText(std::string(1000000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, Is_of_what_the_stream_still_holds) {
    std::istringstream in("xabc");
    in.get();
    EXPECT_EQ(SumOf(in), SumOfText("abc"));
}
