// SPDX-License-Identifier: MIT
// The hand that plays on a real screen: a program beside the application sends keys and clicks to
// the server, which gives them to whatever window has the focus or lies under the mouse.
#include <cstdio>
#include <map>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QEvent>
#include <QGuiApplication>
#include <QWindow>
#include <gtest/gtest.h>

#include "tests/monkey/hand.h"

namespace korvel::test {
namespace {

// The names of keys and characters as the server has them.
const std::map<int, std::string> kKeys = {{Qt::Key_Backspace, "BackSpace"},
                                          {Qt::Key_Delete, "Delete"},
                                          {Qt::Key_Tab, "Tab"},
                                          {Qt::Key_Backtab, "Tab"},
                                          {Qt::Key_Left, "Left"},
                                          {Qt::Key_Right, "Right"},
                                          {Qt::Key_Up, "Up"},
                                          {Qt::Key_Down, "Down"},
                                          {Qt::Key_Home, "Home"},
                                          {Qt::Key_End, "End"},
                                          {Qt::Key_PageUp, "Prior"},
                                          {Qt::Key_PageDown, "Next"},
                                          {Qt::Key_Space, "space"},
                                          {Qt::Key_Return, "Return"},
                                          {Qt::Key_F4, "F4"},
                                          {Qt::Key_Menu, "Menu"},
                                          {Qt::Key_Escape, "Escape"},
                                          {Qt::Key_A, "a"},
                                          {Qt::Key_C, "c"},
                                          {Qt::Key_V, "v"},
                                          {Qt::Key_X, "x"},
                                          {Qt::Key_Z, "z"}};
const std::map<char16_t, std::string> kCharacters = {
    {u' ', "space"},       {u'.', "period"},      {u',', "comma"},       {u'-', "minus"},
    {u'+', "plus"},        {u'*', "asterisk"},    {u'&', "ampersand"},   {u'\'', "apostrophe"},
    {u'$', "dollar"},      {u'é', "eacute"},      {u'è', "egrave"},      {u'à', "agrave"},
    {u'ç', "ccedilla"},    {u'ù', "ugrave"},      {u'ê', "ecircumflex"}, {u'î', "icircumflex"},
    {u'ô', "ocircumflex"}, {u'û', "ucircumflex"}, {u'ë', "ediaeresis"},  {u'ï', "idiaeresis"},
    {u'ü', "udiaeresis"},  {u'œ', "oe"},          {u'Œ', "OE"},          {u'É', "Eacute"},
    {u'°', "degree"},      {u'€', "EuroSign"}};

class ScreenHand final : public Hand, private QObject {
 public:
  ScreenHand() {
    int commands[2], answers[2];
    EXPECT_EQ(pipe(commands), 0);
    EXPECT_EQ(pipe(answers), 0);
    program_ = fork();
    if (program_ == 0) {
      dup2(commands[0], STDIN_FILENO);
      dup2(answers[1], STDOUT_FILENO);
      for (const int end : {commands[0], commands[1], answers[0], answers[1]}) close(end);
      // Each answer comes at once.
      execlp("stdbuf", "stdbuf", "-oL", "xdotool", "-", nullptr);
      _exit(127);
    }
    close(commands[0]);
    close(answers[1]);
    commands_ = fdopen(commands[1], "w");
    answers_ = fdopen(answers[0], "r");
    qGuiApp->installEventFilter(this);
  }
  ~ScreenHand() override {
    std::fclose(commands_);
    std::fclose(answers_);
    waitpid(program_, nullptr, 0);
  }
  ScreenHand(const ScreenHand &) = delete;
  ScreenHand &operator=(const ScreenHand &) = delete;

  bool reaches(const QWidget *window) const override { return window->isActiveWindow(); }

  QString characters() const override {
    return QStringLiteral("abcdefxyzABEZ00112233445566778899 ..,,--++eE*éèàçùêîôûëïüœŒÉ°€&'$");
  }

  void type(QWidget *, QChar character) override {
    const auto found = kCharacters.find(character.unicode());
    pressNamed(found != kCharacters.end() ? found->second : QString(character).toStdString());
  }

  void press(QWidget *, Qt::Key key, Qt::KeyboardModifiers modifiers) override {
    std::string name;
    if (modifiers.testFlag(Qt::ControlModifier)) name += "ctrl+";
    if (modifiers.testFlag(Qt::ShiftModifier)) name += "shift+";
    pressNamed(name + kKeys.at(key));
  }

  // The window manager looks at a click first, and hands it on by and by.
  void click(QWidget *target, QPoint place, Qt::MouseButton button, int times) override {
    const QPoint onScreen = target->mapToGlobal(place);
    const int before = releases_;
    const std::string number = button == Qt::LeftButton ? "1" : "3";
    std::string command =
        "mousemove " + std::to_string(onScreen.x()) + " " + std::to_string(onScreen.y());
    for (int n = 0; n < times; ++n) command += " mousedown " + number + " mouseup " + number;
    send(command);
    constexpr int kMostMilliseconds = 100;
    QElapsedTimer sinceThen;
    for (sinceThen.start(); releases_ < before + times;) {
      if (sinceThen.elapsed() > kMostMilliseconds) return;
      usleep(300);
      QGuiApplication::sync();
    }
  }

  // A dead key, and the letter that belongs to it, or another one.
  void compose(const QString &, bool isGivenUp) override {
    pressNamed("dead_circumflex");
    pressNamed(isGivenUp ? "1" : "e");
  }

  void closeByFrame(QWidget *window) override {
    click(window, {window->width() - 8, -11}, Qt::LeftButton, 1);
  }
  void clickOnFrame(QWidget *window) override {
    click(window, {window->width() / 2, -11}, Qt::LeftButton, 1);
  }

 private:
  void pressNamed(const std::string &name) { send("key --delay 0 " + name); }

  // The server has done what was sent when it answers how large it is. To say where the mouse is,
  // the program would look at a window, which may be gone by then.
  void send(const std::string &command) {
    std::fprintf(commands_, "%s\ngetdisplaygeometry\n", command.c_str());
    std::fflush(commands_);
    char answer[256];
    EXPECT_NE(std::fgets(answer, sizeof answer, answers_), nullptr) << command;
    QGuiApplication::sync();
  }

  bool eventFilter(QObject *object, QEvent *event) override {
    if (event->type() == QEvent::MouseButtonRelease && qobject_cast<QWindow *>(object) != nullptr)
      ++releases_;
    return false;
  }

  pid_t program_ = -1;
  std::FILE *commands_;
  std::FILE *answers_;
  int releases_ = 0;
};

}  // namespace

std::unique_ptr<Hand> screenHand() { return std::make_unique<ScreenHand>(); }

}  // namespace korvel::test
