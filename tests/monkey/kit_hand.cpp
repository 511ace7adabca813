// SPDX-License-Identifier: MIT
// The hand that plays with the toolkit's test kit, without a screen.
#include <QApplication>
#include <QInputMethodEvent>
#include <QTest>
#include <QWindow>

#include "tests/monkey/hand.h"
#include "tests/platform/qt_person.h"

namespace korvel::test {
namespace {

class KitHand final : public Hand {
 public:
  bool reaches(const QWidget *) const override { return true; }

  QString characters() const override {
    return QStringLiteral("abcdefxyzABEZ00112233445566778899 ..,,--++eE*éèàçùêîôûëïüœŒÉ°€Ž•中&'$");
  }

  void type(QWidget *window, QChar character) override { typeText(window, character); }

  void press(QWidget *window, Qt::Key key, Qt::KeyboardModifiers modifiers) override {
    pressKey(window, key, modifiers);
  }

  void click(QWidget *target, QPoint place, Qt::MouseButton button, int times) override {
    const QPoint inWindow = target->mapTo(target->window(), place);
    QWindow *window = target->window()->windowHandle();
    if (times == 2) {
      QTest::mouseDClick(window, button, Qt::NoModifier, inWindow);
    } else {
      QTest::mouseClick(window, button, Qt::NoModifier, inWindow);
    }
  }

  void compose(const QString &text, bool isGivenUp) override {
    QObject *receiver = QGuiApplication::focusObject();
    if (receiver == nullptr || QApplication::activePopupWidget() != nullptr) return;
    QInputMethodEvent begins(text, {});
    QCoreApplication::sendEvent(receiver, &begins);
    QInputMethodEvent ends;
    if (!isGivenUp) ends.setCommitString(text);
    QCoreApplication::sendEvent(receiver, &ends);
  }

  void closeByFrame(QWidget *window) override { window->windowHandle()->close(); }
  void clickOnFrame(QWidget *window) override { window->activateWindow(); }
};

}  // namespace

std::unique_ptr<Hand> kitHand() { return std::make_unique<KitHand>(); }

}  // namespace korvel::test
