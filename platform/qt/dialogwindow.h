// For platform/qt/ only: the window of a dialog, without its items.
#ifndef KORVEL_PLATFORM_QT_DIALOGWINDOW_H
#define KORVEL_PLATFORM_QT_DIALOGWINDOW_H

#include <functional>
#include <memory>
#include <vector>

#include <QDialog>
#include <QEvent>

namespace korvel::platform::qt {

// Blocks the application's other windows while it is shown, and so is never minimised but together
// with the window that it stands in front of. It never closes by itself: what a
// person does to it as a whole is told, and the program decides.
class DialogWindow final : public QDialog {
 public:
  DialogWindow();

  // Where the content lies on the screen; moved into view. The size is fixed from then on. Of a
  // content with far more pixels than any screen the window shows the upper part.
  void setContentRect(const QRect &rect);
  // The window stays in front of this one, which may go away first.
  void setFrontOf(QWidget *window);

  std::function<void()> onReturn;
  std::function<void()> onCancel;

  // Keys, clicks and closing, while held, wait; then they come in their order, or are dropped.
  void holdInput();
  void releaseInput();
  void dropInput();

  void reject() override { onCancel(); }

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void closeEvent(QCloseEvent *event) override;
  void changeEvent(QEvent *event) override;
  bool eventFilter(QObject *object, QEvent *event) override;

 private:
  enum class Input { Taken, Held, Dropped };

  void setInput(Input input);

  Input input_ = Input::Taken;
  std::vector<std::unique_ptr<QEvent>> held_;
};

}  // namespace korvel::platform::qt

#endif
