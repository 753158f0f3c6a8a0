#include "support/fake_system.h"

namespace orvane::test {

RunOutcome FakeHost::RunHidden(const std::string& path, std::chrono::milliseconds limit) {
  events_.push_back("RunHidden " + path + ' ' + std::to_string(limit.count()));
  if (OnRun) OnRun();
  return companion;
}

bool FakeHost::ExitWindowsEx(unsigned flags, unsigned reserved) {
  events_.push_back("ExitWindowsEx " + std::to_string(flags) + ' ' + std::to_string(reserved));
  return !refuse_shutdown;
}

void FakeDialogs::Box(const char* kind, std::string_view text, std::string_view title) {
  events_.push_back(std::string(kind) + " [" + std::string(title) + "] " + std::string(text));
  if (open_ == 0) dismissed_ = false;
  ++open_;
  if (OnBox) OnBox();
  --open_;
}

bool FakeDialogs::Ask(std::string_view text, std::string_view title) {
  Box("Ask", text, title);
  return answer && !dismissed_;
}

void FakeDialogs::Dismiss() {
  if (open_ == 0) return;
  events_.push_back("Dismiss");
  dismissed_ = true;
}

void FakeForms::Show(Form form) {
  events_.push_back(std::string("Show ") + FormName(form));
  open.insert(form);
  if (OnShow) OnShow(form);
}

void FakeForms::Hide(Form form) {
  events_.push_back(std::string("Hide ") + FormName(form));
}

void FakeForms::Unload(Form form) {
  if (open.erase(form) == 0) return;
  events_.push_back(std::string("Unload ") + FormName(form));
  if (OnUnload) OnUnload(form);
}

const char* FormName(Form form) {
  constexpr const char* kNames[] = {"frmMain",  "frmSplash", "frmAbout",   "frmAlert",
                                    "frmSetup", "frmWeek",   "frmSpecial", "frmSelfTest",
                                    "frmLog",   "frmDateRc", "frmShutRec"};
  return kNames[static_cast<std::size_t>(form)];
}

}  // namespace orvane::test
