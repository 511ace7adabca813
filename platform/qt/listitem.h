// SPDX-License-Identifier: MIT
// For platform/qt/: list boxes.
#ifndef KORVEL_PLATFORM_QT_LISTITEM_H
#define KORVEL_PLATFORM_QT_LISTITEM_H

#include <QAbstractListModel>
#include <QListView>

#include "platform/qt/appearance.h"
#include "platform/qt/item.h"
#include "platform/qt/mark.h"

namespace korvel::platform::qt {

// The rows of a list box, all of one height.
class ListRows final : public QAbstractListModel {
 public:
  explicit ListRows(QObject *parent);

  // Makes rows high enough for a line of the font with `overhang` above and below it. Only before
  // there are rows, or while the view lays them out anew.
  void setLook(const QFont &font, int overhang);
  void setRows(const std::vector<std::string> &rows);
  QString row(int index) const { return rows_.value(index); }

  int rowCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role) const override;

 private:
  QFontMetrics metrics_{QFont()};
  int rowHeight_ = 0;
  QStringList rows_;
};

// Selecting a row is a hit also when it had been selected before. At most one row is selected.
class ListItem final : public QListView, public Item {
 public:
  ListItem(QWidget *parent, HitSink &sink, int number);
  ListItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
           const Rect &rect);

  QWidget *widget() override { return this; }
  Mark *mark() override { return &mark_; }
  void setEntries(const std::vector<std::string> &entries) override;
  int entryCount() const override { return rowCount(); }
  std::string entry(int index) const override;
  ListClick lastClick() const override { return click_; }

 protected:
  bool event(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;
  void scrollContentsBy(int dx, int dy) override;
  // A row is chosen when the mouse button is released; until then the selection follows the mouse.
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;

  void keyPressEvent(QKeyEvent *event) override;
  void keyboardSearch(const QString &typed) override;
  void focusInEvent(QFocusEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  enum class Press { None, Single, Double };

  int rowCount() const { return rows_->rowCount(); }
  int selectedRow() const;
  void selectRow(int row);
  void choose(int row, bool isDouble);
  // A screen reader selects a row itself, where a mouse would click on it.
  void selectionChangedByOthers();
  void beginPress(QMouseEvent *event, Press press);
  // The row that the mouse selects at this height of the view.
  int rowTowards(int y) const;
  // The row that a key moves to, -1 for a key that does not move.
  int rowAfter(const QKeyEvent &event) const;
  int rowsInView() const;
  bool hasOutline() const;
  void paintFocus(QWidget &surface, const QRect &outside) const;

  ListRows *const rows_;
  Mark mark_{*this, *viewport()};
  int overhang_ = 1;
  ListClick click_;
  Press press_ = Press::None;
  bool isSelecting_ = false;
};

}  // namespace korvel::platform::qt

#endif
