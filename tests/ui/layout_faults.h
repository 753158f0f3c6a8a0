// What is wrong with the words on a window: a text that its box cuts, a label outside of its
// container, two labels that write over each other.
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

namespace orvane::test {

// One sentence for each fault among the labels and buttons that can be seen in `window`.
std::vector<QString> LayoutFaults(const QWidget& window);

}  // namespace orvane::test
