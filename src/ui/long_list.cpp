#include "ui/long_list.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>
#include <utility>

namespace orvane {
namespace {

constexpr int kRowPadding = 2;

QString RowText(const QString& text) {
  QString line;
  for (const QChar c : text) {
    if (line.size() == LineModel::kMostShown) return line + u'…';
    if (c == u'\n') continue;
    line += c.category() == QChar::Other_Control ? QChar(u' ') : c;
  }
  return line;
}

// A row has no room for a long line, whose shaping would take its time all the same.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    // No character that is to be seen is narrower than this.
    constexpr int kNarrowest = 2;
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->textElideMode == Qt::ElideRight) {
      option->text.truncate(option->rect.width() / kNarrowest);
    }
  }
};

}  // namespace

void LineModel::Fill(int lines, std::function<QString(int)> text) {
  beginResetModel();
  lines_ = lines;
  text_ = std::move(text);
  endResetModel();
}

int LineModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : lines_;
}

QVariant LineModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return RowText(text_(index.row()));
}

LongList::LongList(QWidget* parent) : QListView(parent) {
  setModel(&lines_);
  setItemDelegate(new RowDelegate(this));
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTextElideMode(Qt::ElideRight);
}

int LongList::RowHeight() const {
  return fontMetrics().height() + kRowPadding;
}

int LongList::RowsInView() const {
  return std::max(1, viewport()->height() / RowHeight());
}

QModelIndex LongList::Row(qint64 row) const {
  const qint64 last = lines_.rowCount() - 1;
  return last < 0 ? QModelIndex()
                  : lines_.index(static_cast<int>(std::clamp<qint64>(row, 0, last)));
}

QRect LongList::visualRect(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  // Rows far out of sight are all equally far.
  constexpr qint64 kFar = 1'000'000;
  const qint64 row =
      std::clamp<qint64>(qint64{index.row()} - verticalScrollBar()->value(), -kFar, kFar);
  return {0, static_cast<int>(row) * RowHeight(), viewport()->width(), RowHeight()};
}

QModelIndex LongList::indexAt(const QPoint& point) const {
  if (point.y() < 0) return {};
  const qint64 row = qint64{verticalScrollBar()->value()} + point.y() / RowHeight();
  return row < lines_.rowCount() ? Row(row) : QModelIndex();
}

void LongList::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid()) return;
  const int top = verticalScrollBar()->value();
  const int row = index.row();
  const int rows = RowsInView();
  const bool in_view = row >= top && row < top + rows;
  if (hint == PositionAtTop || (hint == EnsureVisible && row < top)) {
    verticalScrollBar()->setValue(row);
  } else if (hint == PositionAtBottom || (hint == EnsureVisible && !in_view)) {
    verticalScrollBar()->setValue(row - rows + 1);
  } else if (hint == PositionAtCenter) {
    verticalScrollBar()->setValue(row - rows / 2);
  }
}

// The rows need no layout: each stands where its number says. What is left is the work of every
// item view, and not that of QListView, which would look at every row.
void LongList::doItemsLayout() {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QListView's, as said above.
  QAbstractItemView::doItemsLayout();
}

void LongList::updateGeometries() {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QListView's, as said above.
  QAbstractItemView::updateGeometries();
  verticalScrollBar()->setPageStep(RowsInView());
  verticalScrollBar()->setSingleStep(1);
  verticalScrollBar()->setRange(0, std::max(0, lines_.rowCount() - RowsInView()));
}

void LongList::scrollContentsBy(int, int) {
  viewport()->update();
}

void LongList::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const QStyle::State state = option.state & ~QStyle::State_HasFocus;
  const qint64 top = verticalScrollBar()->value();
  for (qint64 row = top; row < lines_.rowCount(); ++row) {
    const QModelIndex index = Row(row);
    option.rect = visualRect(index);
    if (option.rect.top() >= viewport()->height()) break;
    option.state = state;
    if (selectionModel()->isSelected(index)) option.state |= QStyle::State_Selected;
    if (hasFocus() && index == currentIndex()) option.state |= QStyle::State_HasFocus;
    itemDelegate()->paint(&painter, option, index);
  }
}

void LongList::keyPressEvent(QKeyEvent* event) {
  if (event == QKeySequence::Copy) {
    if (currentIndex().isValid()) {
      QGuiApplication::clipboard()->setText(currentIndex().data().toString());
    }
    event->accept();
  } else {
    QListView::keyPressEvent(event);
  }
}

// A line that is too long for its row is shown whole in a tool tip.
bool LongList::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QListView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex index = indexAt(help->pos());
  const QString line = index.data().toString();
  const int margin = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
  if (fontMetrics().horizontalAdvance(line) > viewport()->width() - margin) {
    QToolTip::showText(help->globalPos(), "<p>" + line.toHtmlEscaped() + "</p>", this,
                       visualRect(index));
  } else {
    QToolTip::hideText();
  }
  return true;
}

// No line becomes the current one by itself: the first arrow key is to choose the first line, and
// not the one behind it.
void LongList::focusInEvent(QFocusEvent* event) {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QListView's, as said above.
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

QModelIndex LongList::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  if (!currentIndex().isValid()) return action == MoveEnd ? Row(lines_.rowCount() - 1) : Row(0);
  const qint64 row = currentIndex().row();
  switch (action) {
    case MoveUp:
    case MovePrevious:
      return Row(row - 1);
    case MoveDown:
    case MoveNext:
      return Row(row + 1);
    case MovePageUp:
      return Row(row - RowsInView());
    case MovePageDown:
      return Row(row + RowsInView());
    case MoveHome:
      return Row(0);
    case MoveEnd:
      return Row(lines_.rowCount() - 1);
    default:
      return currentIndex();
  }
}

void LongList::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
  const QModelIndex index = indexAt(rect.normalized().bottomRight());
  selectionModel()->select(index.isValid() ? QItemSelection(index, index) : QItemSelection(),
                           command);
}

QRegion LongList::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const QItemSelectionRange& range : selection) {
    region += visualRect(range.topLeft()) | visualRect(range.bottomRight());
  }
  return region & viewport()->rect();
}

// As in QListView, which would look for the places of its own layout.
void LongList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QListView's, as said above.
  QAbstractItemView::currentChanged(current, previous);
  if (!QAccessible::isActive() || !current.isValid() || !hasFocus()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(current.row());
  QAccessible::updateAccessibility(&event);
}

void LongList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): not QListView's, as said above.
  QAbstractItemView::selectionChanged(selected, deselected);
  if (!QAccessible::isActive() || selected.isEmpty()) return;
  QAccessibleEvent event(this, QAccessible::Selection);
  event.setChild(selected.indexes().first().row());
  QAccessible::updateAccessibility(&event);
}

}  // namespace orvane
