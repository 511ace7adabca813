// SPDX-License-Identifier: MIT
// Agreement of the small windows: the messages, and the choice of practitioners.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <sstream>

#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <gtest/gtest.h>

#include <korvel/dialogs.h>

#include "tests/monkey/agreement.h"
#include "tests/monkey/application.h"

namespace korvel::test {
namespace {

// The library breaks a text into lines of its own.
std::vector<std::string> wordsOf(const std::string &text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

// The newest message is the one in front, and has the buttons that answer it.
class MessageAgreement final : public Agreement {
 public:
  MessageAgreement(const QWidget *window, const std::vector<QWidget *> &items)
      : window_(window), items_(items), asked_(application->messages.back()) {}

  void check(bool) const override {
    EXPECT_EQ(wordsOf(stored(window_->accessibleDescription())), wordsOf(asked_.text));
    std::vector<std::string> titles;
    for (const QWidget *item : items_) {
      EXPECT_TRUE(item->isEnabled());
      titles.push_back(stored(item->accessibleName()));
    }
    std::sort(titles.begin(), titles.end());
    EXPECT_EQ(titles, asked_.isQuestion ? (std::vector<std::string>{"Non", "Oui"})
                                        : (std::vector<std::string>{"OK"}));
  }

 private:
  const QWidget *window_;
  const std::vector<QWidget *> items_;
  const Message asked_;
};

enum { kInitials = 2, kNames = 3 };

class ChooserAgreement final : public Agreement {
 public:
  explicit ChooserAgreement(const std::vector<QWidget *> &items) : items_(items) {}

  void check(bool) const override {
    const std::string initials = stored(dynamic_cast<QLineEdit &>(*items_[kInitials]).text());
    const std::vector<std::string> rows = rowsOf(items_[kNames]);
    EXPECT_EQ(initials, TDB_pszBuffer[0]);
    // All before the first letter, none where there is no letter any more.
    if (!initials.empty() || !rows.empty()) {
      EXPECT_EQ(rows, entriesThatBeginWith(initials));
    }
    checkChosenRow(items_[kNames], TDB_pszBuffer[1]);
    EXPECT_EQ(TDB_bOK[1], TDB_pszBuffer[1][0] != '\0');
    EXPECT_EQ(items_[0]->isEnabled(), TDB_bOK[0] == 1 && TDB_bOK[1] == 1);
    EXPECT_TRUE(items_[1]->isEnabled());
    application->chosenRow = TDB_pszBuffer[1];
  }

 private:
  static std::vector<std::string> entriesThatBeginWith(const std::string &initials) {
    std::vector<std::string> entries;
    for (int n = 0; n < nbase; ++n) {
      const std::string entry = liste_base + 80 * n;
      if (entry.starts_with(initials)) entries.push_back(entry);
    }
    return entries;
  }

  const std::vector<QWidget *> items_;
};

}  // namespace

std::vector<std::string> rowsOf(const QWidget *list) {
  std::vector<std::string> rows;
  const auto *model = dynamic_cast<const QListView &>(*list).model();
  for (int row = 0; row < model->rowCount(); ++row)
    rows.push_back(stored(model->index(row, 0).data().toString()));
  return rows;
}

void checkChosenRow(const QWidget *list, const char *text) {
  const auto *selection = dynamic_cast<const QListView &>(*list).selectionModel();
  const QModelIndexList chosen = selection->selectedRows();
  ASSERT_LE(chosen.size(), 1) << "selected rows";
  if (chosen.size() == 1) {
    EXPECT_EQ(stored(chosen.front().data().toString()), text);
  }
}

std::unique_ptr<Agreement> agreementOnMessage(const QWidget *window,
                                              const std::vector<QWidget *> &items) {
  return std::make_unique<MessageAgreement>(window, items);
}

std::unique_ptr<Agreement> agreementOnChooser(const std::vector<QWidget *> &items) {
  return std::make_unique<ChooserAgreement>(items);
}

std::unique_ptr<Agreement> agreementOn(const QWidget *window, const std::vector<QWidget *> &items) {
  const QString title = window->windowTitle();
  if (title == QLatin1String(kMessageTitle)) return agreementOnMessage(window, items);
  if (title == QString::fromUtf8(kChooserTitle)) return agreementOnChooser(items);
  EXPECT_EQ(title, QLatin1String(kFieldsTitle));
  return agreementOnFields(items);
}

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

}  // namespace korvel::test
