#include "bus/fields.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <cstring>

#include "app/panel_fields.h"
#include "app/settings.h"

namespace orvane {
namespace {

// The bytes of the UTF-8 character that `text` begins with; 0 where there is none (RFC 3629).
std::size_t CharacterLength(std::string_view text) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = at(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
  }
  // Longer than need be, a surrogate, or beyond the last character.
  const unsigned char second = at(1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return length;
}

int Take(sd_bus_message* message, Label& label) {
  const char* caption = nullptr;
  std::uint32_t colour = 0;
  int visible = 0;
  const int result = sd_bus_message_read(message, "(sub)", &caption, &colour, &visible);
  if (result <= 0) return result;
  // First what goes with the words: whoever observes them sees all of the new state.
  label.ForeColor(colour);
  label.Visible(visible != 0);
  label.Caption(caption);
  return result;
}

int Take(sd_bus_message* message, Caption& field) {
  const char* text = nullptr;
  const int result = sd_bus_message_read(message, "s", &text);
  if (result > 0) field.Text(text);
  return result;
}

// Which of its faces a window shows is its own to say.
int Take(sd_bus_message* message, Face& field) {
  const char* text = nullptr;
  const int result = sd_bus_message_read(message, "s", &text);
  if (result > 0) field.ToolTipText(text);
  return result;
}

int Take(sd_bus_message* message, Needle& field) {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  const int result = sd_bus_message_read(message, "(dddd)", &x1, &y1, &x2, &y2);
  if (result > 0) {
    field.Line({static_cast<float>(x1), static_cast<float>(y1), static_cast<float>(x2),
                static_cast<float>(y2)});
  }
  return result;
}

int Take(sd_bus_message* message, Bar& field) {
  double width = 0;
  const int result = sd_bus_message_read(message, "d", &width);
  if (result > 0) field.Width(static_cast<float>(width));
  return result;
}

int Take(sd_bus_message* message, Shield& field) {
  std::uint32_t worst = 0;
  std::int32_t points = 0;
  const char* summary = nullptr;
  const int result = sd_bus_message_read(message, "(uis)", &worst, &points, &summary);
  if (result <= 0 || worst > static_cast<std::uint32_t>(Grade::kNotReady)) return result;
  field.Show(static_cast<Grade>(worst), points, summary);
  return result;
}

int Take(sd_bus_message* message, Tray& field) {
  std::uint32_t face = 0;
  const char* tip = nullptr;
  const int result = sd_bus_message_read(message, "(us)", &face, &tip);
  if (result <= 0 || face > static_cast<std::uint32_t>(TrayFace::kSilent)) return result;
  field.Show(static_cast<TrayFace>(face), tip);
  return result;
}

// Takes the value if it has the type that `take` reads, and skips it otherwise.
void TakeOne(sd_bus_message* message, const TakeValue* take) {
  const char* type = nullptr;
  if (sd_bus_message_peek_type(message, nullptr, &type) <= 0) return;
  if (!take) {
    sd_bus_message_skip(message, "v");
    return;
  }
  sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, type);
  if ((*take)(message) < 0) sd_bus_message_skip(message, type);
  sd_bus_message_exit_container(message);
}

}  // namespace

std::string BusText(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0 || text.front() == '\0') {
      valid += '?';
    } else {
      valid += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return valid;
}

void AppendField(sd_bus_message* message, const std::string& name, const Label& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "(sub)", BusText(field.Caption()).c_str(),
                        field.ForeColor(), static_cast<int>(field.Visible()));
}

void AppendField(sd_bus_message* message, const std::string& name, const Caption& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "s", BusText(field.Text()).c_str());
}

void AppendField(sd_bus_message* message, const std::string& name, const Face& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "s", BusText(field.ToolTipText()).c_str());
}

void AppendField(sd_bus_message* message, const std::string& name, const Needle& field) {
  const Needle::Ends& line = field.Line();
  sd_bus_message_append(message, "{sv}", name.c_str(), "(dddd)", static_cast<double>(line.x1),
                        static_cast<double>(line.y1), static_cast<double>(line.x2),
                        static_cast<double>(line.y2));
}

void AppendField(sd_bus_message* message, const std::string& name, const Bar& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "d", static_cast<double>(field.Width()));
}

void AppendField(sd_bus_message* message, const std::string& name, const Shield& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "(uis)",
                        static_cast<std::uint32_t>(field.Worst()), field.Points(),
                        BusText(field.Summary()).c_str());
}

void AppendField(sd_bus_message* message, const std::string& name, const Tray& field) {
  sd_bus_message_append(message, "{sv}", name.c_str(), "(us)",
                        static_cast<std::uint32_t>(field.Face()), BusText(field.Tip()).c_str());
}

void AppendRows(sd_bus_message* message, const std::vector<CheckRow>& rows) {
  sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv");
  sd_bus_message_append(message, "s", "check");
  sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, "a(uussu)");
  sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "(uussu)");
  for (const CheckRow& row : rows) {
    sd_bus_message_append(message, "(uussu)", static_cast<std::uint32_t>(row.point),
                          static_cast<std::uint32_t>(row.grade), BusText(row.finding).c_str(),
                          BusText(row.remedy).c_str(), static_cast<std::uint32_t>(row.action));
  }
  sd_bus_message_close_container(message);
  sd_bus_message_close_container(message);
  sd_bus_message_close_container(message);
}

int TakeRows(sd_bus_message* message, const State& state, std::vector<CheckRow>& rows) {
  const int result = sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "(uussu)");
  if (result < 0) return result;
  rows.clear();
  std::uint32_t point = 0, grade = 0, action = 0;
  const char *finding = nullptr, *remedy = nullptr;
  while (sd_bus_message_read(message, "(uussu)", &point, &grade, &finding, &remedy, &action) > 0) {
    if (point >= kCheckPoints || grade > static_cast<std::uint32_t>(Grade::kNotReady) ||
        action > static_cast<std::uint32_t>(CheckAction::kAutostart)) {
      continue;
    }
    const auto which = static_cast<CheckPoint>(point);
    rows.push_back({which, static_cast<Grade>(grade), std::string(NameOf(state, which)), finding,
                    remedy, static_cast<CheckAction>(action)});
  }
  return sd_bus_message_exit_container(message);
}

void AppendState(sd_bus_message* message, const State& state) {
  const auto& slots = state.Settings;
  sd_bus_message_open_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv");
  sd_bus_message_append(message, "s", "settings");
  sd_bus_message_open_container(message, SD_BUS_TYPE_VARIANT, "an");
  sd_bus_message_append_array(message, 'n', slots.data(), sizeof slots);
  sd_bus_message_close_container(message);
  sd_bus_message_close_container(message);
  sd_bus_message_append(message, "{sv}", "countdown", "i", state.ShutdownCountdown);
}

int TakeSettings(sd_bus_message* message, State& state) {
  const void* slots = nullptr;
  std::size_t size = 0;
  const int result = sd_bus_message_read_array(message, 'n', &slots, &size);
  if (result < 0 || size != sizeof state.Settings) return result;
  std::memcpy(state.Settings.data(), slots, size);
  state.language = DeriveLanguage(state);
  return result;
}

FieldReaders ReadersOf(Panel& panel) {
  FieldReaders readers;
  ForEachField(panel, [&](const std::string& name, auto& field) {
    readers[name] = [&field](sd_bus_message* message) { return Take(message, field); };
  });
  return readers;
}

void TakeFields(sd_bus_message* message, const FieldReaders& readers) {
  if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}") < 0) return;
  while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(message, "s", &name) <= 0) break;
    const auto reader = readers.find(name);
    TakeOne(message, reader == readers.end() ? nullptr : &reader->second);
    if (sd_bus_message_exit_container(message) < 0) break;
  }
  sd_bus_message_exit_container(message);
}

}  // namespace orvane
