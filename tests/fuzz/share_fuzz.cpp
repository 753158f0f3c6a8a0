// Bytes on the socket for upsd, from several peers, in arbitrary pieces: words are those of the
// whole, and nothing but a menu's command reaches the UPS.
#include <set>

#include "fuzz/fuzz_input.h"
#include "share/ups_share.h"
#include "support/world.h"

namespace {

using namespace orvane;
using orvane::test::Require;

void Words(test::FuzzInput input) {
  std::string_view whole = input.Rest();
  WordReader at_once, in_pieces;
  while (!input.Empty()) {
    std::string_view piece = input.Take(3);
    while (in_pieces.Next(piece)) {
      Require(at_once.Next(whole) && in_pieces.Words() == at_once.Words(),
              "pieces make the same words");
      std::string quoted;
      for (const std::string& word : at_once.Words()) {
        AppendQuoted(quoted, word);
        quoted += ' ';
      }
      std::string_view text = quoted += '\n';
      WordReader again;
      Require(again.Next(text) && again.Words().size() == at_once.Words().size(),
              "what is quoted is one word again");
    }
  }
}

void Peers(test::FuzzInput input) {
  test::World world;
  world.share_server.named = true;
  UpsShare share(world.state, world.panel, world.seams);
  Require(world.ups_port.Open(), "the port");
  share.Start();
  std::vector<LocalServer::Peer> peers = {world.share_server.Call()};
  while (!input.Empty()) {
    const std::size_t choice = input.Choice(8);
    const auto peer = peers[input.Choice(peers.size())];
    if (choice == 0) {
      peers.push_back(world.share_server.Call());
    } else if (choice == 1) {
      world.time.Advance(std::chrono::seconds(1));
    } else if (choice == 2) {
      world.panel.link.ForeColor(input.Choice(2) == 0 ? kRed : kBlue);
      world.panel.information[UpsDatum::kModel].Caption(input.Take(input.Choice(64)));
      share.Update();
    } else if (choice == 3) {
      world.share_server.stuck.insert(peer);
    } else {
      const std::string answer = world.share_server.Say(peer, input.Take(input.Choice(256)));
      Require(answer.empty() || answer.back() == '\n', "answers are whole lines");
    }
  }
  const std::set<std::string> commands = {"T\r", "TL\r", "CT\r", "Q\r"};
  for (const std::string& text : world.ups_port.sent) {
    Require(commands.contains(text), "no other command reaches the UPS");
  }
  Require(world.share_server.Peers() <= 16, "no more peers than there may be");
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
