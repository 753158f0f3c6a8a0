#include "simulate/simulator.h"

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>

#include "platform/hid_reports.h"
#include "simulate/hid_line.h"
#include "simulate/line_pacer.h"
#include "simulate/pseudo_terminal.h"

namespace orvane {
namespace {

struct Options {
  std::string link;
  std::string script;
  bool replies = false;
  bool hid = false;
  bool help = false;
};

// Nothing when the program was called wrongly.
std::optional<Options> ReadOptions(int argc, char** argv, const SimulatorKind& kind) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    const bool takes_path = word == "--link" || word == "--script";
    const auto own =
        std::find_if(kind.options.begin(), kind.options.end(),
                     [&](const SimulatorOption& option) { return option.name == word; });
    if (own != kind.options.end()) {
      if (i + 1 == argc || !own->take(argv[++i])) return std::nullopt;
    } else if (takes_path && i + 1 < argc) {
      (word == "--link" ? options.link : options.script) = argv[++i];
    } else if (word == "--replies") {
      options.replies = true;
    } else if (kind.hid && word == "--hid") {
      options.hid = true;
    } else if (word == "--help" || word == "-h") {
      options.help = true;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

volatile sig_atomic_t stop_asked = 0;

// Signals that end the program are served while it waits, and at no other time.
sigset_t HoldSignals() {
  struct sigaction action {};
  action.sa_handler = [](int) { stop_asked = 1; };
  sigset_t held, before;
  sigemptyset(&held);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    sigaction(signal, &action, nullptr);
    sigaddset(&held, signal);
  }
  sigprocmask(SIG_BLOCK, &held, &before);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigdelset(&before, signal);
  signal(SIGPIPE, SIG_IGN);
  return before;
}

// Of a longer text the rest is left out: a line has to fit into a page, which a pipe that is not
// full takes at once.
constexpr std::size_t kLongestShown = 500;

// Text on standard output, without ever waiting for a reader: what a full pipe does not take is
// lost.
void PrintText(std::string_view text) {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  if (poll(&output, 1, 0) == 1 && (output.revents & POLLOUT)) {
    (void)!write(STDOUT_FILENO, text.data(), text.size());
  }
}

// A terminal, pipe or socket. A file or /dev/null is just read to its end.
bool SomebodyHolds(int input) {
  struct stat status {};
  if (fstat(input, &status) != 0) return false;
  return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) || isatty(input);
}

// What cannot be seen is written as \xNN.
std::string Visible(std::string_view text) {
  std::string visible;
  for (const char c : text) {
    if (c >= ' ' && c <= '~' && c != '\\') {
      visible += c;
      continue;
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\x%02X", static_cast<unsigned char>(c));
    visible += code.data();
  }
  return visible;
}

class Simulator {
 public:
  Simulator(const SimulatorKind& kind, const Options& options, Device& device, OrderTable& orders)
      : kind_(kind),
        options_(options),
        device_(device),
        orders_(orders),
        terminal_(options.link),
        pacer_(kind.baud, options.hid ? kReportBytes : LinePacer::kFifo),
        start_(std::chrono::steady_clock::now()) {
    device_.OnTrace = [this](Trace trace, std::string_view text) {
      if (trace == Trace::kCommand) Print('>', text);
      if (trace == Trace::kReply && options_.replies) Print('<', text);
      if (trace == Trace::kEvent) Print('*', text);
    };
    orders_.AddText("plug", "", "connects the line again",
                    [this](std::string_view) { return Plug(); });
    orders_.Add("unplug", "takes the line away, as when the adapter is pulled", [this] {
      terminal_.Close();
      pacer_.Clear();
    });
    orders_.Add("help", "lists the orders", [this] { PrintText(orders_.Help()); });
    orders_.Add("quit", "ends the simulator", [this] { quit_ = true; });
  }
  ~Simulator() { device_.OnTrace = nullptr; }
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;

  int Run() {
    const sigset_t while_waiting = HoldSignals();
    if (!LoadScript()) return 1;
    if (const std::string reason = Plug(); !reason.empty()) {
      Complain(reason);
      return 1;
    }
    while (!quit_ && !stop_asked) {
      now_ = Now();
      device_.Advance(now_);
      while (const auto order = script_.Take(now_)) Give(*order);
      const std::string heard = terminal_.Read();
      device_.Receive(options_.hid ? hid_line_.Receive(heard) : heard);
      Deliver();
      if (!quit_) Wait(while_waiting);
    }
    return 0;
  }

 private:
  Moment Now() const {
    return std::chrono::duration_cast<Moment>(std::chrono::steady_clock::now() - start_);
  }

  bool LoadScript() {
    if (options_.script.empty()) return true;
    std::ifstream file(options_.script, std::ios::binary);
    std::string text;
    std::array<char, 4096> bytes;
    while (file.read(bytes.data(), bytes.size()) || file.gcount() > 0) {
      text.append(bytes.data(), static_cast<std::size_t>(file.gcount()));
    }
    // A folder opens, but comes to no end.
    const std::string reason = file.eof() ? script_.Read(text) : "cannot be read";
    if (!reason.empty()) Complain(options_.script + ": " + reason);
    return reason.empty();
  }

  std::string Plug() {
    if (terminal_.IsOpen()) return {};
    std::string reason = terminal_.Open();
    if (reason.empty()) {
      Print('*', "line on " + terminal_.Name() +
                     (options_.link.empty() ? "" : ", linked as " + options_.link));
    }
    return reason;
  }

  void Give(std::string_view order) {
    if (order.find_first_not_of(" \t\r") == std::string_view::npos) return;
    Print('=', order);
    if (const std::string complaint = orders_.Run(order); !complaint.empty()) Complain(complaint);
  }

  void Deliver() {
    const std::string said = device_.Take();
    if (!terminal_.IsOpen()) return;
    pacer_.Put(said, now_);
    for (std::string chunk = pacer_.Take(now_); !chunk.empty(); chunk = pacer_.Take(now_)) {
      terminal_.Write(options_.hid ? HidLine::Report(chunk) : chunk);
    }
  }

  // Until a command or an order arrives or something falls due; takes the orders.
  void Wait(const sigset_t& while_waiting) {
    std::optional<Moment> due;
    for (const auto next : {script_.Next(), device_.Next(), pacer_.Next()}) {
      if (next && (!due || *next < *due)) due = next;
    }
    timespec timeout{};
    if (due) {
      // From the present moment, not from that of the last look at the clock.
      const auto rest = std::max<std::chrono::nanoseconds>(
          start_ + *due - std::chrono::steady_clock::now(), std::chrono::nanoseconds(0));
      const auto seconds = std::chrono::floor<std::chrono::seconds>(rest);
      timeout = {static_cast<time_t>(seconds.count()), static_cast<long>((rest - seconds).count())};
    }
    std::array<pollfd, 2> ends{{{terminal_.Descriptor(), POLLIN, 0}, {input_, POLLIN, 0}}};
    if (ppoll(ends.data(), ends.size(), due ? &timeout : nullptr, &while_waiting) <= 0) return;
    if (ends[1].revents == 0) return;
    now_ = Now();
    device_.Advance(now_);
    TakeOrders();
  }

  void TakeOrders() {
    std::array<char, 4096> bytes;
    const ssize_t count = read(input_, bytes.data(), bytes.size());
    if (count > 0) {
      reader_.Put({bytes.data(), static_cast<std::size_t>(count)});
    } else {
      input_ = -1;
      reader_.Put("\n");  // the last line may lack its end
    }
    while (const auto order = reader_.Take()) Give(*order);
    if (input_ < 0 && ends_with_input_) quit_ = true;
  }

  void Print(char mark, std::string_view text) {
    std::array<char, 32> time{};
    std::snprintf(time.data(), time.size(), "%.3f %c ", static_cast<double>(now_.count()) / 1000,
                  mark);
    PrintText(time.data() + Visible(text.substr(0, kLongestShown)) + "\n");
  }

  void Complain(const std::string& text) {
    std::fprintf(stderr, "%s: %s\n", std::string(kind_.program).c_str(), text.c_str());
  }

  const SimulatorKind& kind_;
  const Options& options_;
  Device& device_;
  OrderTable& orders_;
  PseudoTerminal terminal_;
  LinePacer pacer_;
  HidLine hid_line_;
  Script script_;
  LineReader reader_;
  std::chrono::steady_clock::time_point start_;
  Moment now_{0};
  int input_ = STDIN_FILENO;  // -1 from its end on
  // Without a script, whoever holds the other end of the input keeps the simulator alive: a test
  // that was killed leaves none behind.
  bool ends_with_input_ = options_.script.empty() && SomebodyHolds(STDIN_FILENO);
  bool quit_ = false;
};

std::string Usage(const SimulatorKind& kind) {
  std::string usage(kind.program);
  usage += " [--link PATH] [--script FILE] [--replies]";
  if (kind.hid) usage += " [--hid]";
  for (const SimulatorOption& option : kind.options) {
    usage.append(" [").append(option.name).append(" ").append(option.argument).append("]");
  }
  return usage + " [--help]";
}

// Its name in a column, its help behind it.
std::string OptionHelp(std::string name, std::string_view help) {
  name.resize(std::max<std::size_t>(name.size() + 1, 20), ' ');
  return "  " + name + std::string(help) + '\n';
}

void PrintHelp(const SimulatorKind& kind, const OrderTable& orders) {
  std::string own = kind.hid ? OptionHelp("--hid",
                                          "speaks in HID reports, as a USB chip does; "
                                          "name the line hidrawN then")
                             : "";
  for (const SimulatorOption& option : kind.options) {
    own += OptionHelp(std::string(option.name) + ' ' + std::string(option.argument), option.help);
  }
  std::printf(
      "Usage: %s\n\n%s\n\n"
      "  --link PATH         names the line by a symbolic link, removed at the end\n"
      "  --script FILE       gives timed orders, one a line: SECONDS ORDER\n"
      "  --replies           prints the replies too\n"
      "%s"
      "  --help              prints this text\n\n"
      "Prints a line for all that happens, with the seconds since the start:\n"
      "  12.345 > Q1         a command has arrived\n"
      "  12.345 < text       the device has replied (--replies)\n"
      "  12.345 = mains off  an order was given\n"
      "  12.345 * text       something happened by itself\n\n"
      "Orders, one a line, on standard input and in the script:\n%s\n"
      "The end of a pipe or terminal that gives the orders ends the simulator, unless there is a\n"
      "script.\n",
      Usage(kind).c_str(), std::string(kind.about).c_str(), own.c_str(), orders.Help().c_str());
}

}  // namespace

int RunSimulator(int argc, char** argv, const SimulatorKind& kind, Device& device,
                 OrderTable& orders) {
  const auto options = ReadOptions(argc, argv, kind);
  if (!options) {
    std::fprintf(stderr, "Usage: %s\n", Usage(kind).c_str());
    return 2;
  }
  Simulator simulator(kind, *options, device, orders);
  if (options->help) {
    PrintHelp(kind, orders);
    return 0;
  }
  if (const auto code = kind.instead ? kind.instead() : std::nullopt) return *code;
  return simulator.Run();
}

}  // namespace orvane
