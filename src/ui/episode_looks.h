// How the episodes of the history are named and coloured.
#pragma once

#include <QColor>
#include <QString>

#include "app/state.h"
#include "history/history.h"

namespace orvane {

// In the language of this moment.
QString NameOf(const State& state, EpisodeKind kind);

// Lets the curves shine through.
QColor ColourOf(EpisodeKind kind);

}  // namespace orvane
