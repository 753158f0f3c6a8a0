#include "ui/episode_looks.h"

#include "ui/words.h"

namespace orvane {
namespace {

struct Look {
  Words words;
  QColor colour;
};

constexpr PerEpisodeKind<Look> kLooks = {
    std::array<Look, kEpisodeKinds>{Look{{"市电中断", "Mains failure"}, QColor(225, 60, 45, 95)},
                                    Look{{"电池低", "Battery low"}, QColor(235, 145, 20, 120)},
                                    Look{{"UPS故障", "UPS fault"}, QColor(165, 55, 180, 110)},
                                    Look{{"旁路", "Bypass"}, QColor(50, 130, 215, 95)},
                                    Look{{"过载", "Overload"}, QColor(205, 165, 0, 110)},
                                    Look{{"连接中断", "Link lost"}, QColor(128, 134, 142, 95)},
                                    Look{{"自检", "Self-test"}, QColor(30, 160, 115, 95)},
                                    Look{{"关机", "Way down"}, QColor(110, 115, 165, 140)}}};

}  // namespace

QString NameOf(const State& state, EpisodeKind kind) {
  return Pick(state, kLooks[kind].words);
}

QColor ColourOf(EpisodeKind kind) {
  return kLooks[kind].colour;
}

}  // namespace orvane
