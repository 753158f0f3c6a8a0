#include "link/reply_decoder.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "app/gauges.h"
#include "link/battery_scale.h"
#include "link/numbers.h"
#include "platform/text.h"

namespace orvane {
namespace {

// The shortest texts that are taken for a reply.
constexpr std::size_t kLeastInformation = 30;
constexpr std::size_t kLeastStatus = 47;

constexpr float kVoltsPerCell = 2;
constexpr float kVoltsPerBattery = 12;

using Commas = std::array<std::size_t, 8>;

// Places of the eight commas of an information reply; nothing when the text is no such reply.
std::optional<Commas> FindInformation(std::string_view text) {
  if (text.size() < kLeastInformation) return std::nullopt;
  Commas commas{};
  std::size_t cursor = 0;
  for (std::size_t& comma : commas) {
    comma = text.find(',', cursor);
    if (comma == std::string_view::npos) return std::nullopt;
    cursor = comma + 1;
  }
  if (text.find(',', cursor) != std::string_view::npos) return std::nullopt;
  return commas;
}

// One field of the information reply and the place where it is shown.
struct InformationField {
  std::size_t field;  // 0 stands before the first comma
  UpsDatum datum;
  std::string_view unit;
};

constexpr InformationField kInformation[] = {
    {0, UpsDatum::kModel, ""},        {1, UpsDatum::kRatedPower, "W"},
    {2, UpsDatum::kVersion, ""},      {3, UpsDatum::kRatedVoltage, "V"},
    {5, UpsDatum::kBatteryCount, ""}, {6, UpsDatum::kBatteryVoltage, "V"},
};

// Columns of the status reply, counted from 1.
struct Columns {
  std::size_t first;
  std::size_t width;
};

constexpr Columns kInputVoltage{2, 5};
constexpr Columns kOutputVoltage{14, 5};
constexpr Columns kLoadPercent{20, 3};
constexpr Columns kFrequencyHertz{24, 4};
constexpr Columns kBatteryVoltage{29, 4};
constexpr Columns kTemperatureCelsius{34, 4};
constexpr std::size_t kFirstBit = 39;
constexpr std::size_t kTestBit = 44;
constexpr std::size_t kBeeperBit = 46;

std::string_view Cut(std::string_view text, Columns columns) {
  return text.substr(columns.first - 1, columns.width);
}

// A failed assignment leaves its target as it was.
void Show(Label& label, std::optional<float> value) {
  if (value) label.Caption(NumberText(*value));
}

// The value's place on a scale, both ends included. What is no number stands at the upper end.
template <class T>
std::int16_t OnScale(std::optional<T> value, int low, int high) {
  const auto figure = static_cast<double>(value.value_or(static_cast<T>(high)));
  return static_cast<std::int16_t>(RoundHalfEven(std::clamp<double>(figure, low, high)));
}

// Nothing also when the double is beyond a 32-bit float.
std::optional<float> Doubled(std::optional<float> value) {
  if (!value || !std::isfinite(2 * *value)) return std::nullopt;
  return 2 * *value;
}

}  // namespace

bool IsStatusReply(std::string_view text) {
  return text.size() >= kLeastStatus && text.front() == '(';
}

Reply ReplyDecoder::Decode() {
  const std::string& text = state_.Main.RxText;
  if (const auto commas = FindInformation(text)) {
    DecodeInformation(*commas);
    return Reply::kInformation;
  }
  if (IsStatusReply(text)) {
    DecodeStatus();
    return Reply::kStatus;
  }
  return text.ends_with('\r') ? DecodeDataReply() : Reply::kNone;
}

void ReplyDecoder::DecodeInformation(const Commas& commas) {
  const std::string_view text = state_.Main.RxText;
  for (const InformationField& row : kInformation) {
    const std::size_t start = row.field == 0 ? 0 : commas[row.field - 1] + 1;
    ShowDatum(row.datum, Trimmed(text.substr(start, commas[row.field] - start)), row.unit);
  }
  state_.Main.Data.informed = true;
  Consume();
}

void ReplyDecoder::DecodeStatus() {
  const std::string_view text = state_.Main.RxText;
  auto& value = panel_.read_outs;
  const auto set_gauge = [&](Gauge gauge, std::int16_t figure) {
    SetGauge(state_.Main, panel_, gauge, figure);
  };
  {
    const ValueMirror::Batch batch(mirror_);

    const auto input = ReadSingle(Cut(text, kInputVoltage));
    const auto output = ReadSingle(Cut(text, kOutputVoltage));
    const bool doubled = !output || *output < 150.0F;
    Show(value[Gauge::kInput], doubled ? Doubled(input) : input);
    set_gauge(Gauge::kInput, OnScale(ReadNumber(value[Gauge::kInput].Caption()), 200, 250));

    Show(value[Gauge::kOutput], doubled ? Doubled(output) : output);
    set_gauge(Gauge::kOutput, OnScale(output, 200, 250));

    const auto load = ReadInteger(Cut(text, kLoadPercent));
    if (load) value[Gauge::kLoad].Caption(NumberText(int{*load}));
    set_gauge(Gauge::kLoad, std::min<std::int16_t>(load.value_or(125), 125));
    evaluation_.Overload(load);

    const auto figure = ReadSingle(Cut(text, kBatteryVoltage));
    state_.Main.Data.battery_figure = figure;
    const int battery = BatteryPercent(CellVolts(figure));
    value[Gauge::kBattery].Caption(NumberText(battery));
    set_gauge(Gauge::kBattery, static_cast<std::int16_t>(battery));

    const auto frequency = ReadSingle(Cut(text, kFrequencyHertz));
    Show(value[Gauge::kFrequency], frequency);
    set_gauge(Gauge::kFrequency, OnScale(frequency, 30, 80));

    const auto temperature = ReadSingle(Cut(text, kTemperatureCelsius));
    Show(value[Gauge::kTemperature], temperature);
    set_gauge(Gauge::kTemperature, OnScale(temperature, 0, 75));
  }
  state_.Main.Data.test_bit = text[kTestBit - 1];
  state_.Main.Data.beeper_bit = text[kBeeperBit - 1];
  evaluation_.Evaluate(text.substr(kFirstBit - 1, 4));
  Consume();
}

// Of a whole battery the cells are counted once while the link lives, as its voltage falls in use.
std::optional<float> ReplyDecoder::CellVolts(std::optional<float> figure) {
  if (!figure || !IsWholeBattery(*figure)) return figure;
  UpsData& data = state_.Main.Data;
  if (data.usual_battery == 0) data.usual_battery = UsualBattery(*figure);
  const auto cell_volts = [figure](float nominal) { return *figure / (nominal / kVoltsPerCell); };
  if (state_.BatteryVoltage) return cell_volts(*state_.BatteryVoltage);
  // Some rate one block of several, which would read as full until it is empty.
  if (data.rated_battery && IsCell(cell_volts(*data.rated_battery))) {
    return cell_volts(*data.rated_battery);
  }
  return cell_volts(data.usual_battery);
}

Reply ReplyDecoder::DecodeDataReply() {
  UpsData& data = state_.Main.Data;
  const std::string_view line =
      std::string_view(state_.Main.RxText).substr(0, state_.Main.RxText.size() - 1);
  if (data.rating == Question::kAsked) {
    if (const auto rating = ReadRatingReply(line)) {
      data.rating = Question::kAnswered;
      ShowRating(*rating);
      Consume();
      return Reply::kRating;
    }
  }
  if (data.name == Question::kAsked) {
    if (const auto name = ReadNameReply(line)) {
      data.name = Question::kAnswered;
      ShowName(*name);
      Consume();
      return Reply::kName;
    }
  }
  return Reply::kNone;
}

void ReplyDecoder::ShowRating(const RatingReply& rating) {
  if (rating.volts) ShowDatum(UpsDatum::kRatedVoltage, NumberText(*rating.volts), "V");
  if (rating.volts && rating.amperes) {
    ShowDatum(UpsDatum::kRatedPower, NumberText(std::round(*rating.volts * *rating.amperes)), "VA");
  }
  state_.Main.Data.rated_battery = rating.battery_volts;
  if (!rating.battery_volts) return;
  ShowDatum(UpsDatum::kBatteryVoltage, NumberText(*rating.battery_volts), "V");
  const float batteries = *rating.battery_volts / kVoltsPerBattery;
  if (batteries == std::floor(batteries)) {
    ShowDatum(UpsDatum::kBatteryCount, NumberText(batteries), "");
  }
}

void ReplyDecoder::ShowName(const NameReply& name) {
  state_.Main.Data.company = name.company;
  const std::string_view model = name.model.empty() ? name.company : name.model;
  if (!model.empty()) ShowDatum(UpsDatum::kModel, model, "");
  if (!name.version.empty()) ShowDatum(UpsDatum::kVersion, name.version, "");
}

void ReplyDecoder::ShowDatum(UpsDatum datum, std::string_view value, std::string_view unit) {
  datum_text_.assign(value);
  datum_text_ += unit;
  panel_.information[datum].Caption(datum_text_);
}

void ReplyDecoder::Consume() {
  state_.Main.RxText.clear();
  state_.Main.PollsAnswered = state_.Main.PollsSent;
}

}  // namespace orvane
