// Thousands of random keys and clicks on a dialog with fields of every type, in the Qt module.
// After each of them OK, the marks and all that is shown must agree with the tables, by a rule of
// its own for that agreement.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <regex>
#include <string>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStyleHints>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>

#include "tests/platform/qt_person.h"

namespace korvel::test {
namespace {

constexpr unsigned kSeed = 20261121;
constexpr int kEvents = 5200;

// ---- The dialog ----

enum { kShort, kMasked, kFree, kPopUp, kList, kTexts };
enum { kPlainInt, kMaskedInt, kInts };
enum { kMandatory, kOptional, kNums, kDates = kNums, kBools = kNums };

constexpr int kTextId = 100, kIntId = 200, kNumId = 300, kDateId = 400, kBoolId = 500,
              kPushId = 600;
constexpr int kFirstInt = 8, kFirstNum = 10, kFirstDate = 12, kFirstBool = 18, kItems = 20;

const char *const kWords[] = {"", "Anne", "No\xEBl", "un texte trop long", "12", "7,5"};
const char *const kChoiceTexts[] = {"Madame", "Ma\xEEtre", "No\xEBl", "Na\xEFve"};
const int kDateValues[] = {20000229, 18000101, 21001231, 19991105};

// The application's chances, and what its callbacks have seen.
struct Application {
  std::mt19937 random{kSeed};
  std::string maskedInt;       // what the masked integer's validation function was last given
  std::map<int, int> changes;  // accepted changes, by identifier

  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }
};
Application *application = nullptr;

int acceptMaskedInt(char *text, int *value) {
  application->maskedInt = text;
  return intcod_l_sup0(text, value);
}

void changeSomething() {
  Application &app = *application;
  std::strcpy(TDB_pszBuffer[kShort], kWords[app.below(6)]);
  std::strcpy(TDB_pszBuffer[kMasked], kWords[app.below(6)]);
  std::strcpy(TDB_pszBuffer[kPopUp], kChoiceTexts[app.below(4)]);
  IDB_iInts[kPlainInt] = app.below(100000) - 20;
  IDB_iInts[kMaskedInt] = app.below(10000);
  NDB_dNums[kMandatory] = app.below(100000) / 1000.0;
  DDB_lDates[kOptional] = kDateValues[app.below(4)];
  BDB_bFlags[0] = app.below(2);
}

int everythingShown(int *redisplay) {
  const int identifiers[] = {
      kTextId + kShort,    kTextId + kMasked,   kTextId + kPopUp,        kIntId + kPlainInt,
      kIntId + kMaskedInt, kNumId + kMandatory, kDateId + 3 * kOptional, kBoolId};
  std::copy(std::begin(identifiers), std::end(identifiers), redisplay);
  return static_cast<int>(std::size(identifiers));
}

int somethingCleared(int *redisplay) {
  const int identifiers[] = {kIntId + application->below(kInts), kNumId + application->below(kNums),
                             kDateId + 3 * application->below(kDates)};
  for (std::size_t n = 0; n < std::size(identifiers); ++n) redisplay[n] = -identifiers[n];
  return static_cast<int>(std::size(identifiers));
}

int onChange(int item, int, int, char **, int, int, int, int *, int, int, int, int *, int, int, int,
             double *, int, int, int, int *, int, int *redisplay, int) {
  ++application->changes[item];
  if (item == kPushId) return everythingShown(redisplay);
  if (item == kBoolId + 1) return somethingCleared(redisplay);
  return 0;
}

int onPush(WindowRef) {
  changeSomething();
  return 0;
}

int onOk(WindowRef, int, char **, int, int, int *, int, int, int *, int, int, double *, int, int,
         int *, int) {
  return application->oneIn(10) ? 1 : 0;
}

void placeFields() {
  constexpr int kLine = 12;
  int rank = 0;
  for (int i = 0; i < kPopUp; ++i) TexteDlgBox_set_geo(i, 60, 8 + 16 * i, 90, kLine, rank++);
  TexteDlgBox_set_geo(kPopUp, 60, 56, 60, kLine, rank++);
  TexteDlgBox_set_geo(kList, 160, 8, 60, 40, rank++);
  for (int i = 0; i < kInts; ++i) IntDlgBox_set_geo(i, 60 + 50 * i, 72, 40, kLine, rank++);
  for (int i = 0; i < kNums; ++i) NumDlgBox_set_geo(i, 60 + 50 * i, 88, 40, kLine, rank++);
  for (int i = 0; i < kDates; ++i) DateDlgBox_set_geo(i, 60 + 60 * i, 104, 50, kLine, rank++);
  BoolDlgBox_set_geo(0, "Vu", 60, 120, 40, kLine, rank++);
  BoolDlgBox_set_geo(1, "Vider", 110, 120, 40, kLine, rank++);
  PushDlgBox_set_geo(0, "Changer", 160, 120, 50, 15, rank++);
}

void describeDialog() {
  TailleDlgBox_set(230, 170);
  TexteDlgBox_param(kTexts, kTextId);
  IntDlgBox_param(kInts, kIntId);
  NumDlgBox_param(kNums, kNumId);
  DateDlgBox_param(kDates, kDateId);
  BoolDlgBox_param(kBools, kBoolId);
  PushDlgBox_param(1, kPushId);
  placeFields();
  for (int i = 0; i < kTexts; ++i) TexteDlgBox_set(i, "");
  TexteDlgBox_set_ncarac(kShort, 12);
  TexteDlgBox_password(kMasked, 1);
  TexteDlgBox_mandatory(kMasked, 0);
  TexteDlgBox_mandatory(kFree, 0);
  TexteDlgBox_set_liste(kPopUp, "Madame+Ma\xEEtre+No\xEBl+Na\xEFve");
  TexteDlgBox_set(kPopUp, "Ma\xEEtre");
  TexteDlgBox_set_liste(kList, "rouge$vert$bleu$No\xEBl$blanc$noir");
  TexteDlgBox_change_liste(kList);
  IntDlgBox_set_fvalid(kPlainInt, intcod_l_sup0);
  IntDlgBox_set(kMaskedInt, 1234, 2);
  IntDlgBox_set_fvalid(kMaskedInt, acceptMaskedInt);
  IntDlgBox_password(kMaskedInt, 1);
  NumDlgBox_set(kMandatory, 1.5, 2);
  for (int i = 0; i < kNums; ++i) NumDlgBox_set_fvalid(i, realcod_d);
  NumDlgBox_set_nchiff(kMandatory, 2);
  NumDlgBox_mandatory(kOptional, 0);
  DateDlgBox_set(kMandatory, 20000229, 1);
  DateDlgBox_set(kOptional, 0, 1);
  DDB_bInit[kOptional] = 0;
  DateDlgBox_mandatory(kOptional, 0);
  PushDlgBox_set_fvalid(0, onPush);
  DlgBoxGlobal_set(onChange);
  DlgBoxFinal_set(onOk);
}

// ---- What agreement is ----

// CP1252; of 0x80 to 0x9F only what has a key or a place in the tests' texts.
std::string stored(const QString &shown) {
  std::string bytes;
  for (const QChar c : shown) {
    switch (c.unicode()) {
      case u'€':
        bytes += '\x80';
        break;
      case u'Œ':
        bytes += '\x8C';
        break;
      case u'œ':
        bytes += '\x9C';
        break;
      default:
        bytes += static_cast<char>(c.unicode() < 0x100 ? c.unicode() : 1);
    }
  }
  return bytes;
}

std::string trimmed(const std::string &text) {
  const auto begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

struct Whole {
  bool isWhole = false;
  double value = 0;
};

Whole wholeNumber(const std::string &text) {
  static const std::regex kDigits("[+-]?[0-9]+");
  const std::string digits = trimmed(text);
  if (!std::regex_match(digits, kDigits)) return {};
  const double value = std::strtod(digits.c_str(), nullptr);
  return {std::fabs(value) <= 2147483647.0, value};
}

bool isDay(int value) {
  const int day = value % 100, month = value / 100 % 100, year = value / 10000 % 10000;
  if (value < 0 || year < 1800 || year > 2100 || month < 1 || month > 12 || day < 1) return false;
  const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const int days = month == 2                                              ? (isLeap ? 29 : 28)
                   : month == 4 || month == 6 || month == 9 || month == 11 ? 30
                                                                           : 31;
  return day <= days;
}

bool agree(double shown, double value) {
  if (std::isinf(shown) || std::fabs(shown) > 1e300) return std::fabs(value) > 1e299;
  return std::fabs(shown - value) <= 1e-9 * std::max(1e-280, std::fabs(shown));
}

// Compares what the items show with the tables. A field that holds no value now keeps its values
// from before the event.
class Agreement {
 public:
  explicit Agreement(const std::vector<QWidget *> &items) : items_(items) { remember(); }

  void remember() {
    std::copy_n(IDB_iInts, kInts, ints_);
    std::copy_n(NDB_dNums, kNums, nums_);
    std::copy_n(DDB_lDates, kDates, dates_);
  }

  void check(bool withPaint) {
    checkText(kShort, true, 12);
    checkText(kFree, false, 255);
    checkMaskedText();
    checkPopUp();
    checkList();
    checkInteger();
    checkMaskedInteger();
    for (int i = 0; i < kNums; ++i) checkNumber(i);
    for (int i = 0; i < kDates; ++i) checkDate(i);
    for (int i = 0; i < kBools; ++i) checkBox(i);
    checkOk();
    checkMarks(withPaint);
  }

 private:
  QWidget *at(int item) const { return items_[static_cast<std::size_t>(item) - 1]; }
  std::string shown(int item) const { return stored(dynamic_cast<QLineEdit &>(*at(item)).text()); }

  void checkText(int i, bool mandatory, std::size_t longest) {
    const std::string text = shown(3 + i);
    const std::size_t room = static_cast<std::size_t>(TDB_BUFFERSIZE) - 1;
    EXPECT_EQ(TDB_pszBuffer[i], text.substr(0, room)) << "text " << i;
    EXPECT_EQ(TDB_bOK[i], (!mandatory || !text.empty()) && text.size() <= longest) << "text " << i;
  }

  void checkMaskedText() {
    EXPECT_EQ(shown(3 + kMasked), std::string(std::strlen(TDB_pszBuffer[kMasked]), '*'));
    EXPECT_EQ(TDB_bOK[kMasked], std::strlen(TDB_pszBuffer[kMasked]) <= 255);
  }

  void checkPopUp() {
    const auto &popUp = dynamic_cast<QComboBox &>(*at(3 + kPopUp));
    EXPECT_EQ(stored(popUp.currentText()), TDB_pszBuffer[kPopUp]);
    EXPECT_EQ(TDB_bOK[kPopUp], TDB_pszBuffer[kPopUp][0] != '\0');
  }

  void checkList() {
    const auto &list = dynamic_cast<QListView &>(*at(3 + kList));
    const QModelIndexList rows = list.selectionModel()->selectedRows();
    ASSERT_LE(rows.size(), 1) << "selected rows";
    if (rows.size() == 1) {
      EXPECT_EQ(stored(rows.front().data().toString()), TDB_pszBuffer[kList]);
    }
    EXPECT_EQ(TDB_bOK[kList], TDB_pszBuffer[kList][0] != '\0');
  }

  void checkInteger() {
    const std::string text = shown(kFirstInt);
    const Whole number = wholeNumber(text);
    const bool isAccepted = number.isWhole && number.value >= 0;
    EXPECT_EQ(IDB_bOK[kPlainInt], isAccepted) << text;
    if (text.empty()) {
      EXPECT_EQ(IDB_iInts[kPlainInt], ints_[kPlainInt]);
    }
    if (isAccepted) {
      EXPECT_EQ(IDB_iInts[kPlainInt], number.value) << text;
    }
  }

  // Its digits are hidden; they went through the validation function.
  void checkMaskedInteger() {
    const std::string text = shown(kFirstInt + kMaskedInt);
    EXPECT_EQ(text.find_first_not_of('*'), std::string::npos) << text;
    if (text.empty()) {
      EXPECT_EQ(IDB_bOK[kMaskedInt], 0);
      EXPECT_EQ(IDB_iInts[kMaskedInt], ints_[kMaskedInt]);
      return;
    }
    const Whole number = wholeNumber(application->maskedInt);
    EXPECT_EQ(application->maskedInt.size(), text.size());
    EXPECT_EQ(IDB_bOK[kMaskedInt], number.isWhole && number.value >= 0) << application->maskedInt;
    if (IDB_bOK[kMaskedInt] == 1) {
      EXPECT_EQ(IDB_iInts[kMaskedInt], number.value);
    }
  }

  void checkNumber(int i) {
    const std::string text = shown(kFirstNum + i);
    if (text.empty()) {
      EXPECT_EQ(NDB_bOK[i], i == kOptional);
      EXPECT_EQ(NDB_dNums[i], nums_[i]);
      return;
    }
    static const std::regex kNumber("([+-]?)(?=.)([0-9]*)([.,][0-9]*)?([eE]( *[+-]?[0-9]+)?)?");
    std::smatch parts;
    std::string number = trimmed(text);
    const bool isNumber = std::regex_match(number, parts, kNumber) &&
                          (!parts[5].matched || wholeNumber(parts[5]).isWhole);
    EXPECT_EQ(NDB_bOK[i], isNumber) << text;
    if (!isNumber) return;
    std::string fraction = parts[3];
    if (!fraction.empty()) fraction[0] = '.';
    number = std::string(parts[1]) + "0" + std::string(parts[2]) + fraction +
             (parts[5].matched ? "e" + trimmed(parts[5]) : "");
    EXPECT_TRUE(agree(std::strtod(number.c_str(), nullptr), NDB_dNums[i]))
        << text << " against " << NDB_dNums[i];
  }

  void checkDate(int i) {
    bool hasError = false, hasAll = true, isEmpty = true;
    long long date = 0;
    for (const int factor : {1, 100, 10000}) {
      const std::string text = shown(kFirstDate + 3 * i +
                                     (factor == 1     ? 0
                                      : factor == 100 ? 1
                                                      : 2));
      const bool isBlank = trimmed(text).empty();
      const Whole part = wholeNumber(text);
      hasError |= isBlank ? i == kMandatory && text.empty() : !part.isWhole;
      hasAll &= !isBlank && part.value >= 1;
      isEmpty &= text.empty();
      date += factor * static_cast<long long>(part.value);
    }
    const bool isStored = !hasError && hasAll;
    const int value = static_cast<int>(date);  // wraps as the tables' arithmetic does
    EXPECT_EQ(DDB_bOK[i], !hasError && (!hasAll || isDay(value))) << "date " << i << ' ' << date;
    if (isStored && isDay(value)) {
      EXPECT_EQ(DDB_lDates[i], value);
    }
    if (isEmpty) {
      EXPECT_EQ(DDB_lDates[i], dates_[i]) << "date " << i;
    }
  }

  void checkBox(int i) {
    EXPECT_EQ(dynamic_cast<QCheckBox &>(*at(kFirstBool + i)).isChecked(), BDB_bFlags[i] != 0);
  }

  void checkOk() {
    bool isEnabled = true;
    for (int i = 0; i < kTexts; ++i) isEnabled &= TDB_bOK[i] == 1;
    for (int i = 0; i < kInts; ++i) isEnabled &= IDB_bOK[i] == 1;
    for (int i = 0; i < kNums; ++i) isEnabled &= NDB_bOK[i] == 1;
    for (int i = 0; i < kDates; ++i) isEnabled &= DDB_bOK[i] == 1;
    EXPECT_EQ(at(1)->isEnabled(), isEnabled);
    EXPECT_TRUE(at(2)->isEnabled());
  }

  void checkMarks(bool withPaint) {
    for (int i = 0; i < kTexts; ++i) checkMark(3 + i, TDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < kInts; ++i) checkMark(kFirstInt + i, IDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < kNums; ++i) checkMark(kFirstNum + i, NDB_bOK[i] != 1, withPaint);
    for (int i = 0; i < 3 * kDates; ++i) checkMark(kFirstDate + i, DDB_bOK[i / 3] != 1, withPaint);
  }

  void checkMark(int item, bool isMarked, bool withPaint) {
    QWidget *field = at(item);
    EXPECT_EQ(!field->accessibleDescription().isEmpty(), isMarked) << "item " << item;
    if (!withPaint) return;
    if (auto *area = qobject_cast<QAbstractScrollArea *>(field)) field = area->viewport();
    const QImage edge = field->grab({0, field->height() / 2, 1, 1}).toImage();
    EXPECT_EQ(edge.pixelColor(0, 0) == QColor(0xC2, 0x78, 0x03), isMarked) << "item " << item;
  }

  const std::vector<QWidget *> items_;
  int ints_[kInts];
  double nums_[kNums];
  int dates_[kDates];
};

// ---- The monkey ----

class Monkey {
 public:
  // A step is taken late enough for an ended dialog to be gone.
  Monkey() {
    next_.setSingleShot(true);
    next_.setInterval(1);
    QObject::connect(&next_, &QTimer::timeout, &next_, [this] { step(); });
  }

  // Plays with one dialog after another until it has had enough.
  void play() {
    while (events_ < kEvents && !testing::Test::HasFailure()) playWithOne();
  }
  int events() const { return events_; }
  int dialogs() const { return dialogs_; }

 private:
  int below(int n) { return application->below(n); }
  bool oneIn(int n) { return application->oneIn(n); }

  void playWithOne() {
    ++dialogs_;
    describeDialog();
    isFresh_ = true;
    next_.start();
    ZRVDlgBoxEx("Singe", nullptr);
    next_.stop();
    EXPECT_EQ(DlgBox_hDlg, nullptr);
    for (const QWidget *window : QApplication::topLevelWidgets())
      EXPECT_FALSE(window->isVisible()) << window->windowTitle().toStdString();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  }

  void step() {
    window_ = QApplication::activeModalWidget();
    if (window_ == nullptr) return;  // the dialog has ended
    if (isFresh_) {
      items_ = itemWidgets(window_);
      ASSERT_EQ(items_.size(), static_cast<std::size_t>(kItems));
      agreement_.emplace(items_);
      agreement_->check(true);
      isFresh_ = false;
    }
    agreement_->remember();
    act();
    ++events_;
    agreement_->check(events_ % 10 == 0);
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "at event " << events_ << " of seed " << kSeed << ", after:" << lately();
      std::_Exit(1);
    }
    if (events_ >= kEvents) leave();
    next_.start();
  }

  void leave() {
    while (QWidget *popUp = QApplication::activePopupWidget()) popUp->close();
    pressKey(window_, Qt::Key_Escape);
  }

  void act() {
    const int dice = below(100);
    if (dice < 40) {
      typeSomething();
    } else if (dice < 72) {
      pressSomething();
    } else if (dice < 78) {
      paste();
    } else if (dice < 80) {
      compose();
    } else {
      clickSomewhere();
    }
  }

  void did(std::string what) {
    done_.push_back(std::move(what));
    if (done_.size() > 12) done_.pop_front();
  }
  std::string lately() const {
    std::string all;
    for (const std::string &what : done_) all += "\n  " + what;
    return all;
  }

  QString someText(int longest) {
    static const QString kCharacters =
        QStringLiteral("abcdefxyzABEZ00112233445566778899 ..,,--++eE*éèàçùêîôûëïüœŒÉ°€Ž•中&'$");
    QString text;
    for (int n = 1 + below(longest); n > 0; --n)
      text += kCharacters.at(below(static_cast<int>(kCharacters.size())));
    return text;
  }

  // Mostly what the field with the focus can use.
  void typeSomething() {
    QString text = someText(1);
    if (!oneIn(3)) text = QString::number(below(10));
    did("type " + text.toStdString());
    typeText(window_, text);
  }

  void paste() {
    QString text = someText(oneIn(20) ? 3000 : 8);
    if (oneIn(3)) text = QString::number(below(3000));
    if (oneIn(5)) text += QLatin1Char('\n');
    did("paste " + text.toStdString());
    QGuiApplication::clipboard()->setText(text);
    pressKey(window_, Qt::Key_V, Qt::ControlModifier);
  }

  void compose() {
    const QString text = someText(2);
    did("compose " + text.toStdString());
    QObject *receiver = QGuiApplication::focusObject();
    if (receiver == nullptr || QApplication::activePopupWidget() != nullptr) return;
    QInputMethodEvent begins(text, {});
    QCoreApplication::sendEvent(receiver, &begins);
    QInputMethodEvent ends;
    if (!oneIn(3)) ends.setCommitString(text);
    QCoreApplication::sendEvent(receiver, &ends);
  }

  void pressSomething() {
    static constexpr struct {
      Qt::Key key;
      Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    } kKeys[] = {{Qt::Key_Backspace},
                 {Qt::Key_Backspace},
                 {Qt::Key_Backspace},
                 {Qt::Key_Backspace, Qt::ControlModifier},
                 {Qt::Key_Delete},
                 {Qt::Key_Delete},
                 {Qt::Key_Delete, Qt::ControlModifier},
                 {Qt::Key_Tab},
                 {Qt::Key_Tab},
                 {Qt::Key_Tab},
                 {Qt::Key_Tab},
                 {Qt::Key_Backtab, Qt::ShiftModifier},
                 {Qt::Key_Left},
                 {Qt::Key_Left, Qt::ShiftModifier},
                 {Qt::Key_Right},
                 {Qt::Key_Right, Qt::ControlModifier},
                 {Qt::Key_Up},
                 {Qt::Key_Down},
                 {Qt::Key_Down},
                 {Qt::Key_Home},
                 {Qt::Key_Home, Qt::ShiftModifier},
                 {Qt::Key_End},
                 {Qt::Key_End, Qt::ShiftModifier},
                 {Qt::Key_PageUp},
                 {Qt::Key_PageDown},
                 {Qt::Key_Space},
                 {Qt::Key_Space, Qt::ControlModifier},
                 {Qt::Key_Return},
                 {Qt::Key_F4},
                 {Qt::Key_A, Qt::ControlModifier},
                 {Qt::Key_A, Qt::ControlModifier},
                 {Qt::Key_X, Qt::ControlModifier},
                 {Qt::Key_C, Qt::ControlModifier},
                 {Qt::Key_Z, Qt::ControlModifier},
                 {Qt::Key_Z, Qt::ControlModifier},
                 {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
                 {Qt::Key_Menu}};
    if (oneIn(60)) {
      did("press Escape");
      pressKey(window_, Qt::Key_Escape);
      return;
    }
    const auto &[key, modifiers] = kKeys[below(static_cast<int>(std::size(kKeys)))];
    did("press " + QKeySequence(key | modifiers).toString().toStdString());
    pressKey(window_, key, modifiers);
  }

  void clickSomewhere() {
    QWidget *target = window_;
    if (QWidget *popUp = QApplication::activePopupWidget()) {
      target = popUp;
    } else if (!oneIn(4)) {
      target = items_[static_cast<std::size_t>(below(kItems))];
    }
    if (target == items_[1] && !oneIn(4)) return;  // "Annuler" would come too often
    const QPoint place(below(target->width()), below(target->height()));
    const Qt::MouseButton button = oneIn(12) ? Qt::RightButton : Qt::LeftButton;
    did("click " + std::string(target->metaObject()->className()) + " at " +
        std::to_string(place.x()) + "," + std::to_string(place.y()));
    const QPoint inWindow = target->mapTo(target->window(), place);
    if (button == Qt::LeftButton && oneIn(6)) {
      QTest::mouseDClick(target->window()->windowHandle(), button, Qt::NoModifier, inWindow);
    } else {
      QTest::mouseClick(target->window()->windowHandle(), button, Qt::NoModifier, inWindow);
    }
  }

  QTimer next_;
  QWidget *window_ = nullptr;
  std::vector<QWidget *> items_;
  std::optional<Agreement> agreement_;
  std::deque<std::string> done_;
  bool isFresh_ = true;
  int events_ = 0;
  int dialogs_ = 0;
};

TEST(Monkey, WhateverItDoesWhatIsShownAgreesWithTheTables) {
  std::printf("seed %u\n", kSeed);
  Application played;
  application = &played;
  qtDesktop();
  // Pop-ups that a click has opened take the next one only after this time.
  QGuiApplication::styleHints()->setMouseDoubleClickInterval(20);
  Monkey monkey;
  monkey.play();
  EXPECT_GE(monkey.events(), 5000);
  EXPECT_GE(monkey.dialogs(), 3) << "it has neither accepted nor cancelled";
  for (const int field :
       {kTextId + kShort, kTextId + kMasked, kTextId + kFree, kTextId + kPopUp, kTextId + kList,
        kIntId + kPlainInt, kIntId + kMaskedInt, kNumId + kMandatory, kNumId + kOptional, kDateId,
        kDateId + 3, kBoolId, kBoolId + 1, kPushId})
    EXPECT_GE(played.changes[field], 10) << "field " << field << " was hardly changed";
  std::printf("%d events on %d dialogs\n", monkey.events(), monkey.dialogs());
  application = nullptr;
}

}  // namespace
}  // namespace korvel::test
