// Every window in its telling states: what the pictures show, and what the tests walk over.
#pragma once

#include <span>

#include "shots/stage.h"

namespace orvane::shots {

// What a window stands on: a plain desktop, or a dark one with a font half as large again.
enum class Desktop { kPlain, kDarkAndLarge };

// One picture: its file name without language and ending, and what makes its window. The maker
// brings the program into the state to be shown and hands over the window, which is not shown yet.
struct Shot {
  const char* name;
  std::unique_ptr<QWidget> (*make)(Stage& stage);
  Desktop desktop = Desktop::kPlain;
};

std::span<const Shot> Shots();

// Windows made from now on stand on this desktop.
void Use(Desktop desktop);

}  // namespace orvane::shots
