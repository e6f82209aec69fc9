#include "tools/doctor/page.h"

#include "tests/doctor/json_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Doctor::Row;
using Doctor::State;
using Doctor::Table;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

Row MakeRow(const std::string& id, State state, const std::string& finding,
            const std::string& advice = "") {
    Row row(id, "Title of " + id);
    row.Set(state, finding, advice);
    return row;
}

Row MakeDetail(const std::string& id, State state) {
    Row row = MakeRow(id, state, "a detail");
    row.detail = true;
    return row;
}

const Row good = MakeRow("good", State::Ok, "fine");
const Row poor = MakeRow("poor", State::Warn, "slow", "buy a card");
const Row bad = MakeRow("bad", State::Fail, "broken", "repair it");
const Row unseen = MakeRow("unseen", State::Unknown, "not looked at");

} // namespace

TEST(Page, Says_in_one_sentence_whether_the_demo_can_run) {
    EXPECT_EQ(Doctor::Sentence({good, good}), "Nimbrel can run here.");
    EXPECT_EQ(Doctor::Sentence({good, poor, poor}), "Nimbrel runs here, but: slow; slow.");
    EXPECT_EQ(Doctor::Sentence({poor, bad, good}), "Nimbrel cannot run here: broken.");
}

TEST(Page, Verdict_is_the_worst_row_but_for_details_and_what_was_not_looked_at) {
    EXPECT_EQ(Doctor::Verdict({good, unseen}), State::Ok);
    EXPECT_EQ(Doctor::Verdict({good, MakeDetail("file", State::Warn)}), State::Ok);
    EXPECT_EQ(Doctor::Verdict({poor, unseen}), State::Warn);
    EXPECT_EQ(Doctor::Verdict({bad, poor}), State::Fail);
}

TEST(Page, Gives_each_advice_once_and_that_for_failures_first) {
    EXPECT_THAT(Doctor::AsText({poor, bad, poor}),
                HasSubstr("\nWhat to do:\n  - repair it.\n  - buy a card.\n"));
    EXPECT_THAT(Doctor::AsText({good}), Not(HasSubstr("What to do")));
}

TEST(Page, Has_one_line_for_each_row_and_none_for_details) {
    const std::string page = Doctor::AsText({good, poor, MakeDetail("file", State::Ok)});
    EXPECT_EQ(page, "ok    Title of good         fine\n"
                    "!     Title of poor         slow\n"
                    "\n"
                    "Nimbrel runs here, but: slow.\n"
                    "What to do:\n"
                    "  - buy a card.\n");
}

TEST(Page, Names_what_was_not_looked_at_on_one_line) {
    EXPECT_THAT(Doctor::AsText({bad, unseen, good, unseen}),
                HasSubstr("FAIL  Title of bad          broken\n"
                          "ok    Title of good         fine\n"
                          "?     Not looked at         Title of unseen, Title of unseen\n"));
}

TEST(Page, Json_has_every_row_with_all_that_is_in_it) {
    Row row = MakeRow("full", State::Warn, "a \"finding\"\n", "do this");
    row.values = {Doctor::NumberValue("bytes", 12345678.0), {"name", "17"}};
    const Json json =
        JsonReader::Read(Doctor::AsJson({row, MakeDetail("file", State::Ok), unseen, bad}));
    EXPECT_EQ(json["format"].number, 1.0);
    EXPECT_EQ(json["verdict"].text, "fail");
    EXPECT_EQ(json["sentence"].text, "Nimbrel cannot run here: broken.");
    ASSERT_EQ(json["advice"].items.size(), 2u);
    EXPECT_EQ(json["advice"].items[0].text, "repair it");
    EXPECT_EQ(json["advice"].items[1].text, "do this");
    ASSERT_EQ(json["rows"].items.size(), 4u);
    const Json& first = json["rows"].items[0];
    EXPECT_EQ(first["id"].text, "full");
    EXPECT_EQ(first["title"].text, "Title of full");
    EXPECT_EQ(first["state"].text, "warn");
    EXPECT_EQ(first["finding"].text, "a \"finding\"\n");
    EXPECT_EQ(first["advice"].text, "do this");
    EXPECT_EQ(first["detail"].kind, Json::Kind::Truth);
    EXPECT_FALSE(first["detail"].truth);
    EXPECT_EQ(first["values"]["bytes"].number, 12345678.0);
    EXPECT_EQ(first["values"]["name"].kind, Json::Kind::Text);
    EXPECT_TRUE(json["rows"].items[1]["detail"].truth);
    EXPECT_EQ(json["rows"].items[1]["state"].text, "ok");
    EXPECT_EQ(json["rows"].items[2]["state"].text, "unknown");
}

TEST(Page, Numbers_keep_whole_ones_whole_and_others_to_four_digits) {
    EXPECT_EQ(Doctor::NumberValue("n", 3786709.0).text, "3786709");
    EXPECT_EQ(Doctor::NumberValue("n", 21.04567).text, "21.05");
    EXPECT_EQ(Doctor::NumberValue("n", 0.0).text, "0");
}
