// Every window, in both languages and in all its telling states: all words are whole, and none
// stands on another.
#include <gtest/gtest.h>

#include <memory>

#include "shots/shots.h"
#include "ui/layout_faults.h"
#include "ui/pointer.h"
#include "ui/text_label.h"

namespace orvane::test {
namespace {

using Language = RunningProgram::Language;

// A device may say more about itself than there is room for; the rest is in the tool tip.
bool DeviceIsWordy(const QString& fault) {
  return fault.startsWith("Label7(") && fault.contains("cuts its text");
}

TEST(LayoutTest, WordsFitAndKeepApart) {
  for (const shots::Shot& shot : shots::Shots()) {
    for (const Language language : {Language::kEnglish, Language::kChinese}) {
      shots::Stage stage(language);
      const std::unique_ptr<QWidget> window = shot.make(stage);
      Present(*window);
      for (const QString& fault : LayoutFaults(*window)) {
        if (DeviceIsWordy(fault)) continue;
        ADD_FAILURE() << shot.name << (language == Language::kEnglish ? " en: " : " zh: ")
                      << fault.toStdString();
      }
    }
  }
}

// The walk itself has to see what is wrong.
TEST(LayoutFaults, AreSeen) {
  QWidget window;
  window.resize(300, 100);
  const TextLabel::Style style{.size = 12, .least = 12};
  TextLabel cut("cut", {0, 0, 300, 300}, style, &window);
  cut.Show(QString("far too long for twenty pixels"));
  TextLabel high("high", {600, 0, 1500, 60}, style, &window);
  high.Show(QString("Ag"));
  TextLabel lower("lower", {0, 600, 1500, 300}, style, &window);
  lower.Show(QString("one upon"));
  TextLabel upper("upper", {150, 600, 1500, 300}, style, &window);
  upper.Show(QString("the other"));
  TextLabel outside("outside", {4200, 0, 900, 300}, style, &window);
  outside.Show(QString("out"));
  window.show();
  const std::vector<QString> faults = LayoutFaults(window);
  const std::vector<QString> expected = {"cut cuts its text: far too long for twenty pixels",
                                         "high writes outside of its box: Ag",
                                         "outside leaves its container", "lower and upper overlap"};
  EXPECT_EQ(faults, expected);
}

}  // namespace
}  // namespace orvane::test
