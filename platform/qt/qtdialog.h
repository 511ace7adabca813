// SPDX-License-Identifier: MIT
// For platform/qt/: a dialog of the seam on Qt Widgets.
#ifndef KORVEL_PLATFORM_QT_QTDIALOG_H
#define KORVEL_PLATFORM_QT_QTDIALOG_H

#include <deque>
#include <vector>

#include <QEventLoop>
#include <QPointer>

#include "platform/desktop.h"
#include "platform/qt/appearance.h"
#include "platform/qt/dialogwindow.h"
#include "platform/qt/fieldnames.h"
#include "platform/qt/item.h"
#include "platform/qt/messagepane.h"
#include "platform/qt/progressbar.h"

namespace korvel::platform::qt {

class QtDialog final : public Dialog, private HitSink {
 public:
  QtDialog(const Rect &bounds, QWidget *parent, std::string_view title);
  ~QtDialog() override { leaveScreen(); }
  // From a form; null when there is something wrong with it.
  static std::unique_ptr<QtDialog> fromTemplate(const std::string &path, QWidget *parent,
                                                std::string &problem);

  WindowRef window() override;
  void setTitle(std::string_view title) override;
  int addItem(ItemKind kind, const Rect &rect, std::string_view title) override;
  void addGroupBox(const Rect &rect, std::string_view title) override;
  void addStaticText(const Rect &rect, std::string_view text) override;
  void addIcon(const Rect &rect, const std::string &path) override;
  void addMessage(const Rect &pane, std::string_view text, const MessageStyle &style) override;
  void addAlertIcon(const Rect &rect, AlertIcon icon) override;
  void addProgressBar(const Rect &rect) override;
  void setProgress(int done, int total) override;
  void setDefaultItem(int item) override;
  ItemKind kind(int item) const override;
  std::string text(int item) const override;
  void setText(int item, std::string_view text) override;
  void selectText(int item) override;
  void setSecret(int item) override;
  int value(int item) const override;
  void setValue(int item, int value) override;
  void setEntries(int item, const std::vector<std::string> &entries) override;
  int entryCount(int item) const override;
  std::string entry(int item, int index) const override;
  ListClick lastClick(int item) const override;
  void setEnabled(int item, bool enabled) override;
  void setAcceptable(int item, bool acceptable) override;
  void setExpected(int item, Expected expected, int bound) override;
  void setDateParts(int day, int month, int year) override;
  void setName(int item, std::string_view name) override;
  void runModal(HitHandler &handler) override;
  void runStep(HitHandler &handler) override;

 private:
  QtDialog();

  bool itemHit(int item) override;
  void showTitle(QString title);
  void place(QSize designed, QWidget *parent);
  void followTabOrder();

  struct DateItems {
    int day, month, year;
  };

  Item *makeItem(ItemKind kind, int number, const Rect &rect, std::string_view title);
  // Null for a number that does not exist.
  Item *find(int item) const;
  // The first enabled item of the kind in the order of the Tab key; null when there is none.
  Item *firstEnabled(ItemKind kind) const;
  Item *firstField() const;
  Item *itemForInitialFocus() const;
  // Null for an item that is no field.
  QWidget *fieldWidget(int item) const;
  void giveNames();
  void giveLetters();
  void giveInitialFocus();
  void actAsMessageBox();
  void comeUp(HitHandler &handler);
  void leaveScreen();
  void goDown();
  // The item that Return stands for.
  int returnItem() const;
  std::vector<QWidget *> buttonsInReach() const;
  void keepFocusFrom(QWidget *disabled);
  Mark *markOf(int item) const;
  QString nameOf(Item &field) const;
  QString whyOkIsGrey() const;
  void explainOk();
  void tell(int item);
  void pressDefault();
  void pressCancel();

  const Appearance appearance_;
  DialogWindow window_;
  std::vector<Item *> items_;     // item n at n - 1, null where there is none; of the window
  std::vector<Item *> tabOrder_;  // the same in the order of the Tab key, without gaps
  int default_ = 0;
  MessagePane *message_ = nullptr;  // of a message box; belongs to the window
  ProgressBar *bar_ = nullptr;      // of a work that goes on; belongs to the window
  std::vector<DateItems> dates_;
  FieldNames names_;

  HitHandler *handler_ = nullptr;  // while running
  QEventLoop *loop_ = nullptr;
  bool hasStopped_ = false;
  QPointer<QWidget> before_;  // the active window when this one came up
  bool isInHit_ = false;
  std::deque<int> waiting_;  // hits not yet told
};

}  // namespace korvel::platform::qt

#endif
