#include "tools/doctor/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using Doctor::Row;
using Doctor::State;
using Doctor::Table;
using Json = nlohmann::json;
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
    const Json page =
        Json::parse(Doctor::AsJson({row, MakeDetail("file", State::Ok), unseen, bad}));
    EXPECT_EQ(page.at("format"), 1);
    EXPECT_EQ(page.at("verdict"), "fail");
    EXPECT_EQ(page.at("sentence"), "Nimbrel cannot run here: broken.");
    EXPECT_EQ(page.at("advice"), Json({"repair it", "do this"}));
    ASSERT_EQ(page.at("rows").size(), 4u);
    EXPECT_EQ(page.at("rows").at(0), Json({{"id", "full"},
                                           {"title", "Title of full"},
                                           {"state", "warn"},
                                           {"finding", "a \"finding\"\n"},
                                           {"advice", "do this"},
                                           {"detail", false},
                                           {"values", {{"bytes", 12345678}, {"name", "17"}}}}));
    EXPECT_EQ(page.at("rows").at(1).at("detail"), true);
    EXPECT_EQ(page.at("rows").at(1).at("state"), "ok");
    EXPECT_EQ(page.at("rows").at(2).at("state"), "unknown");
}

TEST(Page, Json_is_indented_and_keeps_the_order_of_its_keys) {
    Row row = MakeRow("r", State::Ok, "fine");
    row.values = {Doctor::NumberValue("z", 2.5), Doctor::NumberValue("a", 21.0)};
    EXPECT_EQ(Doctor::AsJson({row}), R"({
  "format": 1,
  "verdict": "ok",
  "sentence": "Nimbrel can run here.",
  "advice": [],
  "rows": [
    {
      "id": "r",
      "title": "Title of r",
      "state": "ok",
      "finding": "fine",
      "advice": "",
      "detail": false,
      "values": {
        "z": 2.5,
        "a": 21
      }
    }
  ]
}
)");
}

TEST(Page, Json_is_whole_whatever_a_finding_holds) {
    // A control character; Latin-1; a character that was cut off. And U+10FFFF, the last there is.
    const Row row = MakeRow("odd", State::Ok, "\x01 caf\xE9! \xE2\x82 \xF4\x8F\xBF\xBF");
    const Json page = Json::parse(Doctor::AsJson({row}));
    EXPECT_EQ(page.at("rows").at(0).at("finding"), "\x01 caf\uFFFD! \uFFFD \U0010FFFF");
}

TEST(Page, Json_has_null_for_a_number_that_is_none) {
    Row row = MakeRow("odd", State::Ok, "");
    row.values = {{"fps", "inf", true}, {"ms", "", true}, {"none", "-nan", true}};
    const Json page = Json::parse(Doctor::AsJson({row}));
    EXPECT_EQ(page.at("rows").at(0).at("values"),
              Json({{"fps", nullptr}, {"ms", nullptr}, {"none", nullptr}}));
}

TEST(Page, Numbers_keep_whole_ones_whole_and_others_to_four_digits) {
    EXPECT_EQ(Doctor::NumberValue("n", 3786709.0).text, "3786709");
    EXPECT_EQ(Doctor::NumberValue("n", 21.04567).text, "21.05");
    EXPECT_EQ(Doctor::NumberValue("n", 0.0).text, "0");
}
