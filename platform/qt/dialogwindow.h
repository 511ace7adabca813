// SPDX-License-Identifier: MIT
// For platform/qt/: the window of a dialog, without its items.
#ifndef KORVEL_PLATFORM_QT_DIALOGWINDOW_H
#define KORVEL_PLATFORM_QT_DIALOGWINDOW_H

#include <functional>
#include <memory>
#include <vector>

#include <QDialog>
#include <QEvent>
#include <QPointer>
#include <QWindow>

#include "platform/qt/altletters.h"
#include "platform/qt/foot.h"
#include "platform/qt/scrolledbody.h"

namespace korvel::platform::qt {

// Blocks the application's other windows while it is shown, and so is minimised only together with
// the window behind it. It never closes by itself: Return, Escape and closing are reported, and the
// program decides.
class DialogWindow final : public QDialog {
 public:
  DialogWindow();

  // Places the content on the screen, moved into view, and fixes its size. What does not fit into
  // the free area of the screen scrolls from then on, and a person may change the window's size.
  void setContentRect(const QRect &rect);
  // What items and decorations lie on, in the places of the content.
  QWidget *ground();
  // In a window that scrolls, puts these buttons below the part that does. To be called when
  // everything lies in its place; at the first time only.
  void standBelow(const std::vector<QWidget *> &buttons);
  // Scrolls to the widget with the focus.
  void showFocus();
  // Keeps the window in front of this one, which may be destroyed first.
  void setFrontOf(QWidget *window);

  std::function<void()> onReturn;
  std::function<void()> onCancel;

  // Given to the buttons before the window is shown.
  AltLetters &letters() { return letters_; }

  // To be called when the window is shown out of a hit of `behind`, which holds its input: keys
  // still go there until this window has the focus.
  void leaveKeysTo(DialogWindow &behind);
  void blockBehind();

  // While held, keys, clicks and closing are queued; then they arrive in order, or are dropped.
  void holdInput();
  void releaseInput();
  void dropInput();

  void reject() override { onCancel(); }

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void closeEvent(QCloseEvent *event) override;
  void changeEvent(QEvent *event) override;
  bool eventFilter(QObject *object, QEvent *event) override;

 private:
  enum class Input { Taken, Held, KeysHeld, Dropped };

  void scroll(const QSize &size);
  void fitIntoView();
  void follow(const QWidget *focused);
  bool turnsPage(const QKeyEvent &event);
  void setInput(Input input);
  void adoptTheme();
  bool isUsedUp(const QEvent &event);
  void endHeldKeys();
  // A window manager gives the focus to a modal window. A Wayland compositor does not know which
  // one is modal: a window behind this one that was clicked on gets the focus, and uses no key.
  void takeFocusFrom(QWindow *window);
  // The list of a pop-up closes already when it is asked whether a key is meant for it. Where the
  // list has no keys of its own, as under Wayland, the key then comes to the dialog, which it was
  // never meant for.
  bool closedAPopUp(const QEvent &event);

  ScrolledBody *body_ = nullptr;  // both in a window that scrolls
  Foot *foot_ = nullptr;
  const QWidget *lastFocused_ = nullptr;  // only to be compared
  Qt::MouseButtons buttons_;              // of the click under way, which may have been held back
  QRect view_;                            // in which it is to fit
  QPoint middle_;                         // where it is to stand
  AltLetters letters_;
  QPalette theme_;  // the desktop's, before its colours were told apart
  Input input_ = Input::Taken;
  bool hadPopUp_ = false;  // when the last key came
  std::vector<std::unique_ptr<QEvent>> held_;
  int pressed_ = 0;  // the key last pressed here, but for modifiers, which end no other's repeats;
                     // by its place on the keyboard where that is known
  bool leavesKeys_ = false;  // to the window behind
  QPointer<DialogWindow> behind_;
  QPointer<QWindow> parent_;  // of its own, meanwhile
};

}  // namespace korvel::platform::qt

#endif
