// The UPS as upsd sees it: variables from the panel, and what is said to peers and by them.
#include "share/ups_share.h"

#include <gtest/gtest.h>

#include "app/settings.h"
#include "support/watched_ups.h"

namespace orvane::test {
namespace {

using Peer = LocalServer::Peer;

struct SharedUps : WatchedComputer {
  SharedUps() {
    share_server.named = true;
    host.stays_up = false;
    Start(kTenMinutes);
    peer = share_server.Call();
  }

  std::string Variable(std::string_view name) {
    const std::string dump = share_server.Say(peer, "DUMPALL\n");
    const std::string begin = "SETINFO " + std::string(name) + " \"";
    const auto at = dump.find(begin);
    if (at == std::string::npos) return "none";
    return dump.substr(at + begin.size(), dump.find("\"\n", at) - at - begin.size());
  }
  std::string UpsStatus() { return Variable("ups.status"); }
  std::string Say(std::string_view line) { return share_server.Say(peer, line); }
  std::size_t Sent(const std::string& text) {
    return static_cast<std::size_t>(std::count(ups_port.sent.begin(), ups_port.sent.end(), text));
  }

  Peer peer = 0;
};

TEST(UpsShareTest, VariablesArePanelsValuesAndWhatTheUpsHasTold) {
  SharedUps ups;
  EXPECT_EQ(ups.Variable("input.voltage"), "none");
  ups.status = {"219.5", "230.1", "042", "49.9", "2.20", "31.5", "0000", "0000"};
  ups.information = "Aur\"ora\x01 \\,700,V2.14,220,0,3,36,0,0\r";
  ups.Polls(3);
  const struct {
    const char* name;
    const char* value;
  } rows[] = {
      {"device.type", "ups"},
      {"device.mfr", "none"},
      {"device.model", "Aur\\\"ora? \\\\"},
      {"ups.model", "Aur\\\"ora? \\\\"},
      {"ups.firmware", "V2.14"},
      {"driver.name", "orvane"},
      {"input.voltage", "219.5"},
      {"input.frequency", "49.9"},
      {"output.voltage", "230.1"},
      {"output.voltage.nominal", "220"},
      {"ups.load", "42"},
      {"ups.realpower.nominal", "700"},
      {"ups.power.nominal", "none"},
      {"battery.charge", "87"},
      {"battery.voltage", "none"},
      {"battery.voltage.nominal", "36"},
      {"ups.temperature", "31.5"},
      {"ups.delay.shutdown", "60"},
      {"ups.alarm", "none"},
      {"ups.status", "OL"},
  };
  for (const auto& row : rows) EXPECT_EQ(ups.Variable(row.name), row.value) << row.name;
  // The cells of a battery are known where its nominal voltage is.
  ups.state.BatteryVoltage = 36.0F;
  EXPECT_EQ(ups.Variable("battery.voltage"), "39.6");
  ups.status.battery = "41.8";
  ups.Poll();
  EXPECT_EQ(ups.Variable("battery.voltage"), "41.8");
  ups.state.Settings[kShutdownDelay] = 0;
  EXPECT_EQ(ups.Variable("ups.delay.shutdown"), "30");
}

TEST(UpsShareTest, StatusWordsAreTheBitsOfTheReply) {
  SharedUps ups;
  const struct {
    const char* bits;
    const char* more_bits;
    const char* load;
    const char* status;
    const char* alarm;
    const char* beeper;
  } rows[] = {
      {"0000", "0000", "035", "OL", "none", "disabled"},
      {"1000", "0001", "035", "OB", "none", "enabled"},
      {"1100", "0001", "035", "OB LB", "none", "enabled"},
      {"0010", "000-", "100", "OL BYPASS OVER", "none", "none"},
      {"1001", "0000", "035", "ALARM OB", "UPS fault", "disabled"},
      {"0000", "0101", "035", "OL TEST", "none", "enabled"},
  };
  for (const auto& row : rows) {
    ups.status.load = row.load;
    ups.status.more_bits = row.more_bits;
    ups.NextReply(row.bits);
    EXPECT_EQ(ups.UpsStatus(), row.status) << row.bits;
    EXPECT_EQ(ups.Variable("ups.alarm"), row.alarm) << row.bits;
    EXPECT_EQ(ups.Variable("ups.beeper.status"), row.beeper) << row.bits;
  }
}

TEST(UpsShareTest, ChangesAreToldAsTheyComeAndSilenceIsStale) {
  SharedUps ups;
  EXPECT_TRUE(ups.Say("DUMPALL\n").ends_with("DATASTALE\nDUMPDONE\n"));
  const Peer quiet = ups.share_server.Call();
  ups.share_server.Say(quiet, "NOBROADCAST\n");
  ups.Poll();
  const std::string first = ups.share_server.Heard(ups.peer);
  EXPECT_NE(first.find("SETINFO ups.status \"OL\"\nDATAOK\n"), std::string::npos);
  ups.Polls(2);
  static_cast<void>(ups.share_server.Heard(ups.peer));
  ups.NextReply(kMainsFailed);
  EXPECT_EQ(ups.share_server.Heard(ups.peer), "SETINFO ups.status \"OB\"\n");
  ups.silent = true;
  ups.Polls(5);
  const std::string lost = ups.share_server.Heard(ups.peer);
  EXPECT_TRUE(lost.starts_with("DATASTALE\n"));
  EXPECT_NE(lost.find("DELINFO ups.status\n"), std::string::npos);
  EXPECT_TRUE(ups.Say("DUMPALL\n").ends_with("DATASTALE\nDUMPDONE\n"));
  ups.silent = false;
  ups.Poll();
  EXPECT_NE(ups.share_server.Heard(ups.peer).find("\"OB\"\nDATAOK\n"), std::string::npos);
  EXPECT_EQ(ups.share_server.Heard(quiet), "");
  ups.share_server.Say(quiet, "BROADCAST 1\n");
  ups.NextReply(kAllWell);
  EXPECT_EQ(ups.share_server.Heard(quiet), "SETINFO ups.status \"OL\"\n");
}

TEST(UpsShareTest, OrdersHaveTheirAnswers) {
  SharedUps ups;
  ups.Poll();
  const std::string long_word(513, 'a');
  const struct {
    std::string says;
    std::string hears;
  } rows[] = {
      {"PING\n", "PONG\n"},
      {"PI", ""},
      {"NG\nPING\n", "PONG\nPONG\n"},
      {"\n  \n\"PING\"\n", "PONG\n"},
      {"GETPID\n", "PID 4711\n"},
      {"SET ups.id \"a b\"\n", ""},
      {"SET ups.id \"a b\" TRACKING 5-a\n", "TRACKING 5-a 1\n"},
      {"INSTCMD load.off TRACKING x\n", "TRACKING x 1\n"},
      {"INSTCMD beeper.toggle 5 TRACKING x\n", "TRACKING x 2\n"},
      {"INSTCMD beeper.toggle 5\nINSTCMD\nping\nNONSENSE a b\n", ""},
      {long_word + "\nPING " + long_word + "\nPING\n", "PONG\n"},
  };
  for (const auto& row : rows) EXPECT_EQ(ups.Say(row.says), row.hears) << row.says;
  std::string many = "PING";
  for (int i = 0; i < 32; ++i) many += " a";
  EXPECT_EQ(ups.Say(many + "\n"), "");
  EXPECT_EQ(ups.Sent("Q\r"), 0U);
  EXPECT_EQ(ups.host.reports, std::vector<std::string>());
  EXPECT_EQ(ups.Say("LOGOUT\nPING\n"), "");
  EXPECT_FALSE(ups.share_server.Connected(ups.peer));
}

TEST(UpsShareTest, CommandsGoTheWayOfTheMenu) {
  SharedUps ups;
  const std::pair<const char*, const char*> rows[] = {{"test.battery.start.quick", "T\r"},
                                                      {"test.battery.start.deep", "TL\r"},
                                                      {"test.battery.stop", "CT\r"},
                                                      {"beeper.toggle", "Q\r"}};
  for (const auto& [name, text] : rows) {
    EXPECT_EQ(ups.Say("INSTCMD " + std::string(name) + " TRACKING 7\n"), "TRACKING 7 0\n");
    EXPECT_EQ(ups.Sent(text), 1U) << name;
    EXPECT_EQ(ups.host.reports.back(), "a client of upsd asks for " + std::string(name));
    EXPECT_NE(ups.Say("DUMPALL\n").find("ADDCMD " + std::string(name) + '\n'), std::string::npos);
  }
  EXPECT_EQ(ups.Say("INSTCMD beeper.toggle TRACKING 8\n"), "TRACKING 8 3\n") << "too many at once";
  ups.Seconds(1);
  ups.ups_port.refuse_writes = true;
  EXPECT_EQ(ups.Say("INSTCMD beeper.toggle TRACKING 9\n"), "TRACKING 9 3\n");
  EXPECT_EQ(ups.Sent("Q\r"), 1U);
}

TEST(UpsShareTest, OthersGoDownBeforeTheUpsIsTold) {
  for (const bool silent : {false, true}) {
    SharedUps ups;
    ups.Polls(2);
    ups.NextReply(kMainsFailedBatteryLow);
    if (silent) {
      ups.silent = true;
      ups.Polls(5);
    }
    ups.events.clear();
    // With the link lost the count stands; the menu still takes the computer down.
    ups.dialogs.answer = true;
    ups.ups_port.OnSent = [&](const std::string& text) { ups.events.push_back("Sent " + text); };
    ups.form.AskForShutdown();
    std::erase_if(ups.events, [](const std::string& event) {
      return !event.starts_with("Tell") && !event.starts_with("Sent") &&
             !event.starts_with("Serve") && event != "TakeDown";
    });
    const Events expected =
        silent ? Events{"Tell SETINFO ups.status \"FSD\"", "Sent S01\r", "Serve 7000", "TakeDown"}
               : Events{"Tell SETINFO ups.status \"FSD OB LB\"", "Sent S01\r", "Serve 7000",
                        "TakeDown"};
    EXPECT_EQ(ups.events, expected);
    EXPECT_TRUE(ups.Say("DUMPALL\n").ends_with("DATAOK\nDUMPDONE\n"));
    EXPECT_EQ(ups.Say("INSTCMD test.battery.start.quick TRACKING 1\n"), "TRACKING 1 3\n");
  }
}

TEST(UpsShareTest, TrialNeverTakesOthersDown) {
  SharedUps ups;
  ups.host.stays_up = true;
  ups.dialogs.answer = true;
  ups.NextReply(kMainsFailed);
  ups.form.AskForShutdown();
  EXPECT_EQ(ups.UpsStatus(), "OB");
  ASSERT_EQ(ups.host.reports.size(), 1U);
  EXPECT_NE(ups.host.reports[0].find("(FSD OB)"), std::string::npos);
  EXPECT_EQ(std::count(ups.events.begin(), ups.events.end(), "Serve 7000"), 0);
  EXPECT_EQ(ups.Say("INSTCMD beeper.toggle TRACKING 1\n"), "TRACKING 1 3\n");
}

TEST(UpsShareTest, PeersThatMisbehaveAreCutOffAndTheOthersStay) {
  SharedUps ups;
  ups.Poll();
  EXPECT_EQ(ups.Say("PING\n"), "PONG\n");
  // The one that never reads goes with the first news that it does not take.
  const Peer stuck = ups.share_server.Call();
  ups.share_server.stuck.insert(stuck);
  ups.NextReply(kMainsFailed);
  EXPECT_FALSE(ups.share_server.Connected(stuck));
  const Peer flood = ups.share_server.Call();
  for (int i = 0; i < 5; ++i) ups.share_server.Say(flood, std::string(4096, 'x'));
  EXPECT_FALSE(ups.share_server.Connected(flood));
  EXPECT_EQ(ups.host.reports.size(), 1U);
  // As much over a longer time is no flood.
  for (int i = 0; i < 5; ++i) {
    ups.Seconds(1);
    ups.Say(std::string(4096, 'x'));
  }
  EXPECT_EQ(ups.Say("\nPING\n"), "PONG\n");
  for (int i = 0; i < 1000; ++i) ups.share_server.Call();
  EXPECT_EQ(ups.share_server.Peers(), 16U);
  EXPECT_EQ(ups.Say("PING\n"), "PONG\n");
  EXPECT_EQ(ups.UpsStatus(), "OB");
}

TEST(UpsShareTest, SocketIsAskedForAgainAndGoesWithTheProgram) {
  SharedUps ups;
  ups.share_server.available = false;
  ups.Polls(16);
  EXPECT_EQ(ups.share_server.tries, 2);
  EXPECT_EQ(ups.share_server.Peers(), 0U);
  ups.share_server.available = true;
  ups.Polls(15);
  ASSERT_TRUE(ups.share_server.IsOpen());
  ups.peer = ups.share_server.Call();
  EXPECT_EQ(ups.UpsStatus(), "OL");
  ups.form.Unload();
  EXPECT_FALSE(ups.share_server.IsOpen());
}

}  // namespace
}  // namespace orvane::test
