#include "schedule/due_texts.h"

#include <gtest/gtest.h>

#include <map>

namespace orvane::test {
namespace {

using Forms = std::map<std::string, std::optional<std::string>>;  // of a text; none: does not read

TEST(DueTexts, Dates) {
  for (const auto& [typed, form] : Forms{{"2001-5-1", "2001-05-01"},
                                         {"2001/05/01", "2001-05-01"},
                                         {" 2001-5-01\t", "2001-05-01"},
                                         {"2001-12-31", "2001-12-31"},
                                         {"2000-02-29", "2000-02-29"},
                                         {"2004-2-29", "2004-02-29"}}) {
    EXPECT_EQ(ReadDate(typed), form) << typed;
  }
  for (const char* typed :
       {" ",         "2001-02-29", "1900-02-29", "2001-4-31", "2001-0-1",  "2004-2-30",
        "2001-13-1", "2001-1-0",   "2001-1-32",  "2001-5/1",  "2001/5-1",  "01-5-1",
        "12001-5-1", "2001-005-1", "2001-5",     "2001-5-",   "2001-5-1-", "2001-5-1 8:00",
        "2001 -5-1", "-2001-5-1",  "20010501"}) {
    EXPECT_EQ(ReadDate(typed), std::nullopt) << typed;
  }
}

TEST(DueTexts, Times) {
  for (const auto& [typed, form] : Forms{{"08:30", "8:30"},
                                         {"8:30:59", "8:30"},
                                         {" 8:30\t\r\n", "8:30"},
                                         {"00:05", "0:05"},
                                         {"23:59:59", "23:59"},
                                         {"8:30 AM", "8:30"},
                                         {"8:30PM", "20:30"},
                                         {"8:30:15 Pm", "20:30"},
                                         {"12:00 AM", "0:00"},
                                         {"12:00 PM", "12:00"},
                                         {"11:59 pm", "23:59"},
                                         {"8am", "8:00"},
                                         {"1AM", "1:00"}}) {
    EXPECT_EQ(ReadTime(typed), form) << typed;
  }
  for (const char* typed :
       {"",        "24:00",    "8:60",    "8:30:60", "8",        "8:",    "8:5",        "8:30:",
        "8:30:1",  "008:30",   "8:030",   ":30",     "-8:30",    "+8:30", "8.30",       "8 :30",
        "0:30 AM", "13:00 PM", "8:30 XM", "8:30 P",  "8:30 PM.", "AM",    "8:30 AM PM", "8：30"}) {
    EXPECT_EQ(ReadTime(typed), std::nullopt) << typed;
  }
}

TEST(DueTexts, ClockReadsInTheSameForm) {
  EXPECT_EQ(TimeForm({2001, 5, 1, 0, 5, 59}), "0:05");
}

}  // namespace
}  // namespace orvane::test
