// SPDX-License-Identifier: MIT
// List boxes that choose a row at the mouse's release, where the toolkit's view selects at the
// press.
#include "platform/qt/listitem.h"

#include <algorithm>

#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "platform/qt/contrast.h"
#include "platform/qt/fieldaccess.h"
#include "platform/qt/outline.h"
#include "platform/qt/scrollbar.h"
#include "platform/qt/text.h"

namespace korvel::platform::qt {
namespace {

constexpr int kClassicRowHeight = 14;
// Beside the text of a row, left and right together.
constexpr int kRowMargin = 8;

}  // namespace

ListRows::ListRows(QObject *parent) : QAbstractListModel(parent) {}

void ListRows::setLook(const QFont &font, int overhang) {
  metrics_ = QFontMetrics(font);
  rowHeight_ = std::max(kClassicRowHeight, metrics_.height() + 2 * overhang);
}

void ListRows::setRows(const std::vector<std::string> &rows) {
  beginResetModel();
  rows_.clear();
  rows_.reserve(static_cast<qsizetype>(rows.size()));
  for (const std::string &row : rows) rows_ << toQt(row);
  endResetModel();
}

int ListRows::rowCount(const QModelIndex &parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ListRows::data(const QModelIndex &index, int role) const {
  if (role == Qt::DisplayRole) return row(index.row());
  if (role == Qt::SizeHintRole)
    return QSize(metrics_.horizontalAdvance(row(index.row())) + kRowMargin, rowHeight_);
  return {};
}

ListItem::ListItem(QWidget *parent, HitSink &sink, int number)
    : QListView(parent), Item(sink, number, ItemKind::ListBox), rows_(new ListRows(this)) {
  rows_->setLook(font(), overhang_);
  setModel(rows_);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setHorizontalScrollMode(ScrollPerPixel);
  // Else a half-visible row scrolls at the first click, and the second misses it.
  setAutoScroll(false);
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { selectionChangedByOthers(); });
  setHorizontalScrollBar(new ScrollBar(Qt::Horizontal, this));
  setVerticalScrollBar(new ScrollBar(Qt::Vertical, this));
}

bool ListItem::hasOutline() const { return frameShape() != NoFrame && !isStyledByForm(*this); }

// No row tells the focus before one is chosen, and a chosen one may be out of view.
void ListItem::paintFocus(QWidget &surface, const QRect &outside) const {
  QPainter painter(&surface);
  PixelFrame frame(painter, outside);
  frame.fillSides(0, 2 * frame.line(), lineColors(palette(), QPalette::Base).focus, frame.line());
}

// The frame lies on the list, the rows on its viewport, which reaches into the frame of the focus.
bool ListItem::event(QEvent *event) {
  const bool isHandled = QListView::event(event);
  if (event->type() == QEvent::Paint && hasOutline()) {
    paintOutline(*this, rect(), QPalette::Base, hasFocus(), frameWidth());
    if (hasFocus()) paintFocus(*this, rect());
  }
  return isHandled;
}

void ListItem::paintEvent(QPaintEvent *event) {
  QListView::paintEvent(event);
  if (hasFocus() && hasOutline()) paintFocus(*viewport(), rect().translated(-viewport()->pos()));
  mark_.paint();
}

// Scrolling moves the painted pixels; the frames must not move with them.
void ListItem::scrollContentsBy(int dx, int dy) {
  QListView::scrollContentsBy(dx, dy);
  if (mark_.isShown() || hasFocus()) viewport()->update();
}

ListItem::ListItem(QWidget *window, HitSink &sink, int number, const Appearance &appearance,
                   const Rect &rect)
    : ListItem(window, sink, number) {
  overhang_ = appearance.overhang;
  rows_->setLook(appearance.font, overhang_);
  setGeometry(appearance.listBox(rect));
}

// A form may give a list a font of its own.
void ListItem::changeEvent(QEvent *event) {
  if (event->type() == QEvent::FontChange) rows_->setLook(font(), overhang_);
  QListView::changeEvent(event);
}

void ListItem::setEntries(const std::vector<std::string> &entries) {
  press_ = Press::None;
  click_ = {};
  rows_->setRows(entries);
}

std::string ListItem::entry(int index) const { return fromQt(rows_->row(index)); }

int ListItem::selectedRow() const {
  const QModelIndexList selected = selectionModel()->selectedRows();
  return selected.isEmpty() ? -1 : selected.front().row();
}

void ListItem::selectRow(int row) {
  isSelecting_ = true;
  selectionModel()->setCurrentIndex(rows_->index(row), QItemSelectionModel::ClearAndSelect);
  isSelecting_ = false;
}

void ListItem::selectionChangedByOthers() {
  if (!isSelecting_ && selectedRow() >= 0 && mayBeUsed(*this)) choose(selectedRow(), false);
}

void ListItem::choose(int row, bool isDouble) {
  selectRow(row);
  click_ = {row, isDouble};
  hit();
}

void ListItem::beginPress(QMouseEvent *event, Press press) {
  const QModelIndex row = indexAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || !row.isValid()) return;
  press_ = press;
  selectRow(row.row());
}

void ListItem::mousePressEvent(QMouseEvent *event) { beginPress(event, Press::Single); }

void ListItem::mouseDoubleClickEvent(QMouseEvent *event) { beginPress(event, Press::Double); }

// Outside the view it moves on row by row.
int ListItem::rowTowards(int y) const {
  const int selected = selectedRow();
  if (y < 0) return std::max(0, selected - 1);
  if (y >= viewport()->height()) return std::min(rowCount() - 1, selected + 1);
  const QModelIndex under = indexAt({0, y});
  return under.isValid() ? under.row() : selected;
}

void ListItem::mouseMoveEvent(QMouseEvent *event) {
  if (press_ == Press::None) return;
  const int row = rowTowards(event->position().toPoint().y());
  if (row == selectedRow()) return;
  press_ = Press::Single;
  selectRow(row);
  scrollTo(rows_->index(row));
}

void ListItem::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() != Qt::LeftButton || press_ == Press::None) return;
  const bool isDouble = press_ == Press::Double;
  press_ = Press::None;
  if (selectedRow() >= 0) choose(selectedRow(), isDouble);
}

int ListItem::rowsInView() const {
  return std::max(1, viewport()->height() / std::max(1, sizeHintForRow(0)));
}

int ListItem::rowAfter(const QKeyEvent &event) const {
  const int last = rowCount() - 1;
  const int selected = selectedRow();
  switch (event.key()) {
    case Qt::Key_Up:
      return selected < 0 ? last : std::max(0, selected - 1);
    case Qt::Key_Down:
      return std::min(last, selected + 1);
    case Qt::Key_PageUp:
      return std::max(0, selected - rowsInView());
    case Qt::Key_PageDown:
      return std::min(last, selected + rowsInView());
    case Qt::Key_Home:
      return 0;
    case Qt::Key_End:
      return last;
    default:
      return -1;
  }
}

void ListItem::keyPressEvent(QKeyEvent *event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isReturn && rowCount() == 0) {
    event->accept();
    return;
  }
  const int row = rowCount() == 0 ? -1 : rowAfter(*event);
  if (row < 0) {
    QListView::keyPressEvent(event);
    return;
  }
  event->accept();
  if (row == selectedRow()) return;
  scrollTo(rows_->index(row));
  choose(row, false);
}

void ListItem::keyboardSearch(const QString &typed) {
  const int before = selectedRow();
  isSelecting_ = true;
  QListView::keyboardSearch(typed);
  isSelecting_ = false;
  const int found = selectedRow();
  if (found < 0 || found == before) return;
  scrollTo(rows_->index(found));
  choose(found, false);
}

// Getting the focus selects nothing and makes no row the current one.
void ListItem::focusInEvent(QFocusEvent *event) {
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

}  // namespace korvel::platform::qt
