// Bytes on the socket for upsd, from several peers, in arbitrary pieces: words are those of the
// whole, every answer is one that there is, and nothing but a menu's command reaches the UPS.
#include <set>

#include "fuzz/fuzz_input.h"
#include "share/ups_share.h"
#include "support/world.h"

namespace {

using namespace orvane;
using orvane::test::Require;

void Words(test::FuzzInput input) {
  const std::string_view whole = input.Rest();
  WordReader at_once, in_pieces;
  std::string_view rest = whole;
  while (at_once.Next(rest)) {
    const std::size_t end = whole.size() - rest.size();
    const std::size_t begin = whole.size() - input.Rest().size();
    bool ended = false;
    for (std::size_t left = end - begin; left > 0;) {
      std::string_view piece = input.Take(std::min<std::size_t>(left, 3));
      left -= piece.size();
      Require(!ended, "a line ends once");
      ended = in_pieces.Next(piece);
    }
    Require(ended && in_pieces.Words() == at_once.Words(), "pieces make the same words");
    Require(at_once.Words().size() <= WordReader::kMostWords, "no more words than there may be");
    for (const std::string& word : at_once.Words()) {
      Require(word.size() <= WordReader::kMostLetters, "no longer words than there may be");
      std::string quoted;
      AppendQuoted(quoted, word);
      WordReader again;
      std::string_view text = quoted += '\n';
      Require(
          again.Next(text) && again.Words().size() == 1 && again.Words()[0].size() == word.size(),
          "what is quoted is one word again");
    }
  }
}

void Peers(test::FuzzInput input) {
  test::World world;
  world.share_server.named = true;
  UpsShare share(world.state, world.panel, world.seams);
  static_cast<void>(world.ups_port.Open());
  share.Start();
  std::vector<LocalServer::Peer> peers;
  std::set<std::string> asked;
  while (!input.Empty()) {
    switch (input.Choice(8)) {
      case 0:
        peers.push_back(world.share_server.Call());
        break;
      case 1:
        world.time.Advance(std::chrono::seconds(1));
        break;
      case 2:
        world.panel.link.ForeColor(input.Choice(2) == 0 ? kRed : kBlue);
        world.panel.information[UpsDatum::kModel].Caption(input.Take(input.Choice(64)));
        share.Update();
        break;
      case 3:
        if (!peers.empty()) {
          world.share_server.stuck.insert(peers[input.Choice(peers.size())]);
        }
        break;
      default:
        if (peers.empty()) break;
        const auto peer = peers[input.Choice(peers.size())];
        const std::string answer = world.share_server.Say(peer, input.Take(input.Choice(256)));
        std::string_view rest = answer;
        WordReader reader;
        while (reader.Next(rest)) {
          static const std::set<std::string> kAnswers = {"SETINFO", "DELINFO",   "ADDCMD",
                                                         "DATAOK",  "DATASTALE", "PONG",
                                                         "PID",     "TRACKING",  "DUMPDONE"};
          Require(!reader.Words().empty() && kAnswers.contains(reader.Words()[0]),
                  "every line is an answer");
        }
        Require(answer.empty() || answer.back() == '\n', "answers are whole lines");
    }
  }
  const std::set<std::string> commands = {"T\r", "TL\r", "CT\r", "Q\r"};
  for (const std::string& text : world.ups_port.sent) {
    Require(commands.contains(text), "no other command reaches the UPS");
  }
  Require(world.share_server.Peers() <= 16, "no more peers than there may be");
  world.time.Advance(std::chrono::seconds(1));
  Require(world.share_server.Say(world.share_server.Call(), "PING\n") == "PONG\n",
          "one more is always answered");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzInput input(data, size);
  if (input.Choice(2) == 0) {
    Words(input);
  } else {
    Peers(input);
  }
  return 0;
}
