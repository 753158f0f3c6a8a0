#include "schedule/due_texts.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

struct Case {
  const char* typed;
  const char* form;  // null: does not read
};

TEST(DueTexts, Dates) {
  const Case cases[] = {
      {"2001-05-01", "2001-05-01"},
      {"2001-5-1", "2001-05-01"},
      {"2001/5/1", "2001-05-01"},
      {"2001/05/01", "2001-05-01"},
      {" 2001-5-01\t", "2001-05-01"},
      {"2001-12-31", "2001-12-31"},
      {"2000-02-29", "2000-02-29"},
      {"2004-2-29", "2004-02-29"},
      {"", nullptr},
      {" ", nullptr},
      {"2001-02-29", nullptr},
      {"1900-02-29", nullptr},
      {"2001-02-30", nullptr},
      {"2001-4-31", nullptr},
      {"2001-0-1", nullptr},
      {"2001-13-1", nullptr},
      {"2001-1-0", nullptr},
      {"2001-1-32", nullptr},
      {"2001-5/1", nullptr},
      {"2001/5-1", nullptr},
      {"01-5-1", nullptr},
      {"12001-5-1", nullptr},
      {"2001-005-1", nullptr},
      {"2001-5", nullptr},
      {"2001-5-", nullptr},
      {"2001-5-1-", nullptr},
      {"2001-5-1 8:00", nullptr},
      {"2001 -5-1", nullptr},
      {"-2001-5-1", nullptr},
      {"2001.5.1", nullptr},
      {"20010501", nullptr},
      {"五月一日", nullptr},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.typed);
    EXPECT_EQ(ReadDate(row.typed), row.form ? std::optional<std::string>(row.form) : std::nullopt);
  }
}

TEST(DueTexts, Times) {
  const Case cases[] = {
      {"8:30", "8:30"},        {"08:30", "8:30"},       {"8:30:15", "8:30"},
      {"08:30:59", "8:30"},    {" 8:30\t", "8:30"},     {"8:30\r\n", "8:30"},
      {"0:00", "0:00"},        {"00:05", "0:05"},       {"23:59:59", "23:59"},
      {"8:30 AM", "8:30"},     {"8:30PM", "20:30"},     {"08:30 pm", "20:30"},
      {"8:30:15 Pm", "20:30"}, {"12:00 AM", "0:00"},    {"12:00 PM", "12:00"},
      {"12:59am", "0:59"},     {"11:59 pm", "23:59"},   {"8 PM", "20:00"},
      {"8am", "8:00"},         {"", nullptr},           {" ", nullptr},
      {"24:00", nullptr},      {"25:00", nullptr},      {"8:60", nullptr},
      {"8:30:60", nullptr},    {"8", nullptr},          {"8:", nullptr},
      {"8:5", nullptr},        {"8:30:", nullptr},      {"8:30:1", nullptr},
      {"008:30", nullptr},     {"8:030", nullptr},      {":30", nullptr},
      {"-8:30", nullptr},      {"+8:30", nullptr},      {"8.30", nullptr},
      {"8 :30", nullptr},      {"0:30 AM", nullptr},    {"13:00 PM", nullptr},
      {"8:30 XM", nullptr},    {"8:30 P", nullptr},     {"8:30 PM.", nullptr},
      {"AM", nullptr},         {"8:30 AM PM", nullptr}, {"八点", nullptr},
      {"8：30", nullptr},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.typed);
    EXPECT_EQ(ReadTime(row.typed), row.form ? std::optional<std::string>(row.form) : std::nullopt);
  }
}

TEST(DueTexts, ClockReadsInTheSameForms) {
  const LocalTime early{2001, 5, 1, 8, 5, 59};
  EXPECT_EQ(DateForm(early), "2001-05-01");
  EXPECT_EQ(TimeForm(early), "8:05");
  EXPECT_EQ(TimeForm({2001, 5, 1, 0, 0, 0}), "0:00");
  EXPECT_EQ(TimeForm({2001, 5, 1, 23, 59, 1}), "23:59");
}

}  // namespace
}  // namespace orvane::test
