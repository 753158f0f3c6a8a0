// Fields of the panel and texts as values of the bus.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/panel.h"
#include "app/state.h"
#include "check/check_rows.h"

struct sd_bus_message;

namespace orvane {

// `text` as the bus takes it: without zero bytes, and with a question mark for each byte that is no
// UTF-8.
std::string BusText(std::string_view text);

// Appends name and value of a field to a message, as an entry of a{sv}.
void AppendField(sd_bus_message* message, const std::string& name, const Label& field);
void AppendField(sd_bus_message* message, const std::string& name, const Caption& field);
void AppendField(sd_bus_message* message, const std::string& name, const Face& field);
void AppendField(sd_bus_message* message, const std::string& name, const Needle& field);
void AppendField(sd_bus_message* message, const std::string& name, const Bar& field);
void AppendField(sd_bus_message* message, const std::string& name, const Shield& field);
void AppendField(sd_bus_message* message, const std::string& name, const Tray& field);

// The rows of the protection check, as the entry "check": a(uussu), without their names.
void AppendRows(sd_bus_message* message, const std::vector<CheckRow>& rows);

// Negative where the value has another type. Rows of points that are not known are passed over.
int TakeRows(sd_bus_message* message, const State& state, std::vector<CheckRow>& rows);

// What goes along with the panel: the settings' numbers and the count.
void AppendState(sd_bus_message* message, const State& state);

// The settings' numbers, and the language that they choose.
int TakeSettings(sd_bus_message* message, State& state);

// What takes the value of an entry; negative when it has another type.
using TakeValue = std::function<int(sd_bus_message*)>;
using FieldReaders = std::map<std::string, TakeValue, std::less<>>;

// One for each field of the panel, which outlives them.
FieldReaders ReadersOf(Panel& panel);

// Takes an a{sv} over. Names without a reader, and values of another type, are passed over.
void TakeFields(sd_bus_message* message, const FieldReaders& readers);

}  // namespace orvane
