// A list box for any number of lines: it asks for those alone that are to be seen, so that a
// million lines cost what a screenful costs.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>

namespace orvane {

// Lines by number, from wherever they come.
class LineModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  // From now on the model has `lines` lines. `text` is asked for one whenever it is to be shown,
  // and need not give more of it than kMostShown characters.
  void Fill(int lines, std::function<QString(int)> text);

  int rowCount(const QModelIndex& parent = {}) const override;

  // As one line to show: without line feeds, with a blank for other control characters, and no more
  // than kMostShown characters of it.
  QVariant data(const QModelIndex& index, int role) const override;

  // Far more than fits on the widest screen.
  static constexpr qsizetype kMostShown = 1000;

 private:
  int lines_ = 0;
  std::function<QString(int)> text_;
};

// Shows a LineModel, one line in one row. Ctrl+C copies the selected line as it is shown.
class LongList : public QListView {
  Q_OBJECT

 public:
  explicit LongList(QWidget* parent);

  LineModel& Lines() { return lines_; }

  QRect visualRect(const QModelIndex& index) const override;
  QModelIndex indexAt(const QPoint& point) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  void doItemsLayout() override;
  // There is no search by typing: it would have to read every line.
  void keyboardSearch(const QString&) override {}

 protected:
  void paintEvent(QPaintEvent* event) override;
  void updateGeometries() override;
  void scrollContentsBy(int dx, int dy) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  int horizontalOffset() const override { return 0; }
  int verticalOffset() const override { return 0; }
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  int RowHeight() const;
  int RowsInView() const;  // whole ones, at least 1
  QModelIndex Row(qint64 row) const;

  LineModel lines_;
};

}  // namespace orvane
