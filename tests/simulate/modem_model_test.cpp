#include "simulate/modem_model.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

TEST(ModemModelTest, AnswersAsItIsTold) {
  const struct {
    std::vector<const char*> orders;
    std::vector<const char*> bytes;                   // on the line, in pieces
    std::vector<std::pair<long, std::string>> heard;  // with the moments, in milliseconds
  } cases[] = {
      {{}, {"ATDT0, 1", "19;\r"}, {{0, "ATDT0, 119;\r"}, {3000, "\r\nOK\r\n"}}},
      {{"echo off", "answer busy"}, {"atdt1;\r"}, {{3000, "\r\nBUSY\r\n\r\nOK\r\n"}}},
      {{"echo off", "crlf off", "delay 0", "pieces 4", "answer no-carrier"},
       {"ATDT1;\r"},
       {{0, "NO C"}, {60, "ARRI"}, {120, "ER"}}},
      // Without the semicolon another modem would have to answer.
      {{"echo off", "crlf off"}, {"ATDT1\r"}, {{3000, "NO CARRIER"}}},
      // A command cuts an answer short.
      {{"echo off", "crlf off"}, {"ATDT1;\rAT", "H\r"}, {{0, "OK"}}},
      {{"echo off", "crlf off"}, {"\r\nat\r\nQ1\rATE1\r\n", "ATZ\r"}, {{0, "OKERROROK\nATZ\rOK"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.orders) + testing::PrintToString(c.bytes));
    ModemModel modem;
    OrderTable orders;
    AddModemOrders(orders, modem);
    for (const char* order : c.orders) ASSERT_EQ(orders.Run(order), "");
    for (const char* piece : c.bytes) modem.Receive(piece);
    auto heard = c.heard;
    heard.clear();
    for (Moment now{0};; modem.Advance(now)) {
      if (std::string bytes = modem.Take(); !bytes.empty()) heard.emplace_back(now.count(), bytes);
      const auto next = modem.Next();
      if (!next || *next > 60s) break;
      now = *next;
    }
    EXPECT_EQ(heard, c.heard);
  }
}

}  // namespace
}  // namespace orvane::test
