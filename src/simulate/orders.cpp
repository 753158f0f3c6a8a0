#include "simulate/orders.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace orvane {
namespace {

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The first word and what stands behind it.
std::pair<std::string_view, std::string_view> FirstWord(std::string_view text) {
  const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
  return {text.substr(0, end), Trimmed(text.substr(end))};
}

std::optional<double> Number(std::string_view text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (error != std::errc() || rest != end) return std::nullopt;
  return value;
}

std::string Text(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

}  // namespace

void OrderTable::Add(std::string name, std::string help, std::function<void()> run) {
  AddText(std::move(name), "", std::move(help),
          [run = std::move(run)](std::string_view argument) -> std::string {
            if (!argument.empty()) return "takes no argument";
            run();
            return {};
          });
}

void OrderTable::AddSwitch(std::string name, std::string help, std::function<void(bool)> run) {
  AddText(std::move(name), "on|off", std::move(help),
          [run = std::move(run)](std::string_view argument) -> std::string {
            const bool off = argument == "off";
            if (!off && !argument.empty() && argument != "on") return "takes \"on\" or \"off\"";
            run(!off);
            return {};
          });
}

void OrderTable::AddNumber(std::string name, double low, double high, std::string help,
                           std::function<void(double)> run) {
  AddText(std::move(name), "NUMBER", std::move(help),
          [run = std::move(run), low, high](std::string_view argument) -> std::string {
            const auto value = Number(argument);
            // Written so that a "nan" fails too.
            if (!value || !(*value >= low && *value <= high)) {
              return "takes a number from " + Text(low) + " to " + Text(high);
            }
            run(*value);
            return {};
          });
}

void OrderTable::AddText(std::string name, std::string argument, std::string help,
                         std::function<std::string(std::string_view)> run) {
  orders_.push_back({std::move(name), std::move(argument), std::move(help), std::move(run)});
}

std::string OrderTable::Run(std::string_view line) const {
  line = Trimmed(line);
  if (line.empty() || line.starts_with('#')) return {};
  const auto [name, argument] = FirstWord(line);
  for (const Order& order : orders_) {
    if (order.name != name) continue;
    const std::string complaint = order.run(argument);
    return complaint.empty() ? complaint : "\"" + order.name + "\" " + complaint;
  }
  return "unknown order \"" + std::string(name) + "\"; \"help\" lists the orders";
}

std::string OrderTable::Help() const {
  constexpr std::size_t kColumn = 22;
  std::string text;
  for (const Order& order : orders_) {
    std::string line = "  " + order.name + " " + order.argument;
    line.resize(std::max(kColumn, line.size() + 1), ' ');
    text += line + order.help + "\n";
  }
  return text;
}

void LineReader::Put(std::string_view bytes) {
  for (const char byte : bytes) {
    if (byte != end_) {
      if (line_.size() < kLongest) line_ += byte;
      continue;
    }
    if (end_ == '\n' && line_.ends_with('\r')) line_.pop_back();
    lines_.push_back(std::exchange(line_, {}));
  }
}

std::optional<std::string> LineReader::Take() {
  if (lines_.empty()) return std::nullopt;
  std::string line = std::move(lines_.front());
  lines_.pop_front();
  return line;
}

std::string Script::Read(std::string_view text) {
  LineReader reader;
  reader.Put(text);
  reader.Put("\n");
  for (int number = 1; auto line = reader.Take(); ++number) {
    const std::string_view trimmed = Trimmed(*line);
    if (trimmed.empty() || trimmed.starts_with('#')) continue;
    const auto [time, order] = FirstWord(trimmed);
    const auto seconds = Number(time);
    constexpr double kLongest = 1e9;
    if (!seconds || !(*seconds >= 0 && *seconds <= kLongest) || order.empty()) {
      return "line " + std::to_string(number) + ": expected \"SECONDS ORDER\"";
    }
    entries_.push_back(
        {std::chrono::round<Moment>(std::chrono::duration<double>(*seconds)), std::string(order)});
  }
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const Entry& a, const Entry& b) { return a.due < b.due; });
  return {};
}

std::optional<std::string> Script::Take(Moment now) {
  if (next_ == entries_.size() || now < entries_[next_].due) return std::nullopt;
  return entries_[next_++].order;
}

std::optional<Moment> Script::Next() const {
  if (next_ == entries_.size()) return std::nullopt;
  return entries_[next_].due;
}

}  // namespace orvane
