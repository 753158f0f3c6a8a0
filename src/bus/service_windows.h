// Forms and boxes of an engine without a screen: they become lines for the journal and messages to
// the windows that are attached. Nothing here waits for a person, and a question is answered No.
#pragma once

#include <functional>
#include <string>

#include "frame/main_form.h"
#include "platform/dialogs.h"
#include "platform/forms.h"

namespace orvane {

struct ServiceWindows : Forms, Dialogs {
  MainForm* form = nullptr;

  std::function<void(const std::string&)> Report;
  std::function<void(const char* verb, Form form)> TellForm;
  std::function<void(std::string_view text, std::string_view title)> TellBox;

  // Forms. Those that a user opens are not here.
  void Show(Form which) override;
  void Hide(Form which) override;
  void Unload(Form which) override;
  void Dismiss() override;
  void DoEvents() override {}

  void Exclamation(std::string_view text, std::string_view title) override;
  void Plain(std::string_view text, std::string_view title) override { Exclamation(text, title); }
  bool Ask(std::string_view, std::string_view) override { return false; }

 private:
  void Tell(const char* verb, Form which) {
    if (TellForm) TellForm(verb, which);
  }

  bool alert_told_ = false;  // the windows may show the alert
};

// The state of the UPS in a few plain words, for whoever asks the service manager.
std::string StatusInWords(const State& state, const Panel& panel);

}  // namespace orvane
