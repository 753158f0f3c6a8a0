// The UPS as upsd sees it: what peers are told of the panel, and what they may ask for.
#include "share/ups_share.h"

#include <gtest/gtest.h>

#include "support/watched_ups.h"

namespace orvane::test {
namespace {

using Peer = LocalServer::Peer;

struct SharedUps : WatchedComputer {
  SharedUps() {
    share_server.named = true;
    Start(kTenMinutes);
    peer = share_server.Call();
  }

  std::string Say(std::string_view line) { return share_server.Say(peer, line); }
  std::string Heard() { return share_server.Heard(peer); }
  std::string Variable(std::string_view name) {
    const std::string dump = Say("DUMPALL\n");
    const auto at = dump.find("SETINFO " + std::string(name) + " \"");
    return at == std::string::npos
               ? "none"
               : dump.substr(at + 9 + name.size(), dump.find('\n', at) - at - 9 - name.size());
  }

  Peer peer = 0;
};

TEST(UpsShareTest, TellsWhatIsKnownAndNoMore) {
  SharedUps ups;
  EXPECT_TRUE(ups.Say("DUMPALL\n").ends_with("DATASTALE\nDUMPDONE\n"));
  EXPECT_EQ(ups.Variable("input.voltage"), "none");
  ups.status.battery = "2.20";
  ups.status.more_bits = "000-";
  ups.information = "Aur\"ora\x01 \\,700,V2.14,220,0,3,36,0,0\r";
  ups.Polls(3);
  EXPECT_EQ(ups.Variable("ups.model"), R"("Aur\"ora? \\")");
  for (const char* name :
       {"ups.mfr", "ups.power.nominal", "battery.voltage", "ups.alarm", "ups.beeper.status"}) {
    EXPECT_EQ(ups.Variable(name), "none") << name;
  }
  // The cells of a battery are known where its nominal voltage is.
  ups.state.BatteryVoltage = 36.0F;
  EXPECT_EQ(ups.Variable("battery.voltage"), "\"39.6\"");
  ups.status.battery = "41.8";
  ups.Poll();
  EXPECT_EQ(ups.Variable("battery.voltage"), "\"41.8\"");
  ups.panel.information[UpsDatum::kRatedPower].Caption("1000VA");
  EXPECT_EQ(ups.Variable("ups.power.nominal"), "\"1000\"");
  EXPECT_EQ(ups.Variable("ups.realpower.nominal"), "none");
  ups.silent = true;
  ups.Polls(5);
  EXPECT_EQ(ups.Variable("battery.voltage"), "none");
}

TEST(UpsShareTest, ChangesAreToldAsTheyComeAndSilenceIsStale) {
  SharedUps ups;
  const Peer quiet = ups.share_server.Call();
  ups.share_server.Say(quiet, "NOBROADCAST\n");
  const Peer off = ups.share_server.Call();
  ups.share_server.Say(off, "BROADCAST 0\n");
  ups.Poll();
  EXPECT_NE(ups.Heard().find("SETINFO ups.status \"OL\"\nDATAOK\n"), std::string::npos);
  ups.Polls(2);
  ups.Heard();
  ups.NextReply(kMainsFailed);
  EXPECT_EQ(ups.Heard(), "SETINFO ups.status \"OB\"\n");
  ups.silent = true;
  ups.Polls(5);
  const std::string lost = ups.Heard();
  EXPECT_TRUE(lost.starts_with("DATASTALE\n"));
  EXPECT_NE(lost.find("DELINFO ups.status\n"), std::string::npos);
  ups.silent = false;
  ups.Poll();
  EXPECT_NE(ups.Heard().find("\"OB\"\nDATAOK\n"), std::string::npos);
  EXPECT_EQ(ups.share_server.Heard(quiet) + ups.share_server.Heard(off), "");
  ups.share_server.Say(quiet, "BROADCAST 1\n");
  ups.NextReply(kAllWell);
  EXPECT_EQ(ups.share_server.Heard(quiet), "SETINFO ups.status \"OL\"\n");
}

TEST(UpsShareTest, OrdersHaveTheirAnswers) {
  SharedUps ups;
  const std::string long_word(513, 'a');
  const std::pair<std::string, std::string> rows[] = {
      {"PI", ""},
      {"NG\n  \n\"PING\"\n", "PONG\nPONG\n"},
      {"GETPID\n", "PID 4711\n"},
      {"SET ups.id \"a b\"\nSET ups.id \"a b\" TRACKING 5-a\n", "TRACKING 5-a 1\n"},
      {"INSTCMD load.off TRACKING x\n", "TRACKING x 1\n"},
      {"INSTCMD beeper.toggle 5 TRACKING x\n", "TRACKING x 2\n"},
      {"INSTCMD load.off TRACKING \"a b\"\nINSTCMD beeper.toggle 5 6\n", ""},
      {"INSTCMD beeper.toggle 5\nINSTCMD\nINSTCMD TRACKING x\nping\nNONSENSE a b\n", ""},
      {long_word + "\nPING " + long_word + "\nPING\n", "PONG\n"},
      {"PING a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a\n", ""},
  };
  for (const auto& [says, hears] : rows) EXPECT_EQ(ups.Say(says), hears) << says;
  EXPECT_EQ(ups.ups_port.Wire(), "");
  // A command more than four in a second, and one that the port does not take.
  for (const char outcome : {'0', '0', '0', '0', '3'}) {
    EXPECT_EQ(ups.Say("INSTCMD beeper.toggle TRACKING 7\n"),
              std::string("TRACKING 7 ") + outcome + '\n');
  }
  EXPECT_EQ(ups.ups_port.Wire(), "Q\rQ\rQ\rQ\r");
  ups.Seconds(1);
  ups.ups_port.refuse_writes = true;
  EXPECT_EQ(ups.Say("INSTCMD beeper.toggle TRACKING 8\n"), "TRACKING 8 3\n");
  EXPECT_EQ(ups.Say("LOGOUT\nPING\n"), "");
  EXPECT_FALSE(ups.share_server.Connected(ups.peer));
}

TEST(UpsShareTest, OthersGoDownBeforeTheUpsIsTold) {
  // With the link lost the count stands; the menu still takes the computer down.
  for (const bool silent : {false, true}) {
    SharedUps ups;
    ups.NextReply(kMainsFailedBatteryLow);
    ups.silent = silent;
    ups.Polls(5);
    ups.events.clear();
    ups.dialogs.answer = true;
    ups.ups_port.OnSent = [&](const std::string& text) { ups.events.push_back("Tell " + text); };
    ups.host.OnRun = [&] { ups.time.Jump(std::chrono::seconds(silent ? 7 : 0)); };
    ups.form.AskForShutdown();
    std::erase_if(ups.events, [](const std::string& event) {
      return !event.starts_with("Tell") && !event.starts_with("Serve") && event != "TakeDown";
    });
    Events expected = {
        std::string("Tell SETINFO ups.status ") + (silent ? "\"FSD\"" : "\"FSD OB LB\""),
        "Tell S01\r", "TakeDown"};
    // What is left of their time when the companion has ended.
    if (!silent) expected.insert(expected.end() - 1, "Serve 7000");
    EXPECT_EQ(ups.events, expected);
    EXPECT_TRUE(ups.Say("DUMPALL\n").ends_with("DATAOK\nDUMPDONE\n"));
    EXPECT_EQ(ups.Say("INSTCMD test.battery.start.quick TRACKING 1\n"), "TRACKING 1 3\n");
  }
}

TEST(UpsShareTest, PeersThatMisbehaveAreCutOffAndTheOthersStay) {
  SharedUps ups;
  EXPECT_EQ(ups.Say("PING\n"), "PONG\n");
  const Peer stuck = ups.share_server.Call();
  const Peer flood = ups.share_server.Call();
  const Peer gone = ups.share_server.Call();
  ups.share_server.stuck = {stuck, gone};
  ups.share_server.Say(gone, "PING\nINSTCMD beeper.toggle\n");
  EXPECT_EQ(ups.ups_port.Wire().find("Q\r"), std::string::npos) << "what follows no longer counts";
  ups.NextReply(kMainsFailed);
  for (int i = 0; i < 5; ++i) ups.share_server.Say(flood, std::string(4096, 'x'));
  EXPECT_EQ(ups.share_server.Peers(), 1U);
  EXPECT_EQ(ups.host.reports.size(), 1U);
  // As much over a longer time is no flood.
  for (int i = 0; i < 5; ++i) {
    ups.Seconds(1);
    ups.Say(std::string(4096, 'x'));
  }
  for (int i = 0; i < 1000; ++i) ups.share_server.Call();
  EXPECT_EQ(ups.share_server.Peers(), 16U);
  EXPECT_EQ(ups.Say("\nPING\n"), "PONG\n");
}

TEST(UpsShareTest, SocketIsAskedForAgainAndGoesWithTheProgram) {
  SharedUps ups;
  ups.share_server.available = false;
  ups.Polls(16);
  EXPECT_EQ(ups.share_server.tries, 2);
  ups.share_server.available = true;
  ups.Polls(15);
  EXPECT_TRUE(ups.share_server.IsOpen());
  ups.form.Unload();
  EXPECT_FALSE(ups.share_server.IsOpen());
}

}  // namespace
}  // namespace orvane::test
