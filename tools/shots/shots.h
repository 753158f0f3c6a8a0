// Every window in its telling states: what the pictures show, and what the tests walk over.
#pragma once

#include <span>

#include "shots/stage.h"

namespace orvane::shots {

std::span<const Shot> Shots();

}  // namespace orvane::shots
