// Texts that the splash and the about box share.
#pragma once

#include "ui/words.h"

namespace orvane {

inline constexpr Words kCopyright{
    "版权所有 (C) 2026 Orvane 开发者",
    "Copyright (C) 2026 the Orvane developers",
};

inline constexpr Words kNotice{
    "请注意：本程式能够关闭您的应用程式，并切断计算机及为其供电的UPS。"
    "本程式按现状提供，不附带任何担保，它在您的计算机上所做的一切由您自行负责。"
    "正式使用之前，请先试验各项设定。",
    "Please note: this program can close your applications and switch off your computer and the "
    "UPS that feeds it. It is supplied as it is, without warranty of any kind, and nobody but you "
    "answers for what it does on your machine. Try your settings out before you rely on them.",
};

}  // namespace orvane
