// SPDX-License-Identifier: MIT
// The choice among as many practitioners as there may be, beside a dialog made by hand with the
// toolkit whose list has as many rows, in one process, on the toolkit's platform without a screen.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdlib.h>
#include <string>

#include <sys/stat.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include <korvel/desktop.h>
#include <korvel/dialogs.h>

#include "bench/dialogs/screen.h"

namespace {

using benchmark::State;
using korvel::bench::goal;
using korvel::bench::measureFirstFrame;
using korvel::bench::named;
using korvel::bench::OnFirstFrame;
using korvel::bench::PaintWatch;
using korvel::bench::pressKey;

// Codes run from P0000 on; one more initial behind "P" keeps some thousand of them.
std::string codeOf(int n) {
  char code[16];
  std::snprintf(code, sizeof code, "P%04d", n);
  return code;
}
std::string nameOf(int n) { return "Dr Praticien " + std::to_string(n); }

// ---- The table, in a volume of its own ----

class Table {
 public:
  Table() : folder_((std::filesystem::temp_directory_path() / "korvel-bench-XXXXXX").string()) {
    if (mkdtemp(folder_.data()) == nullptr) std::abort();
    std::snprintf(szVolumes, sizeof szVolumes, "%s", folder_.c_str());
    mkdir((folder_ + "/Data").c_str(), 0777);
    std::ofstream table(folder_ + "/Data/MT.par");
    table << "Praticiens\r\nVersion: 1\r\n#DEBUT\r\n";
    for (int n = 0; n < MAX_LIGNES; ++n) table << codeOf(n) << ',' << nameOf(n) << "\r\n";
    table << "#FIN\r\n";
  }
  ~Table() { std::filesystem::remove_all(folder_); }
  Table(const Table &) = delete;
  Table &operator=(const Table &) = delete;

 private:
  std::string folder_;
};

void runLibraryDialog() { SelectMT(nullptr, nullptr, "Data:"); }

// ---- The same by hand ----

QStringList rows(int first, int end) {
  QStringList all;
  for (int n = first; n < end; ++n) all << QString::fromStdString(codeOf(n) + '\t' + nameOf(n));
  return all;
}

const QStringList &allRows() {
  static const QStringList all = rows(0, MAX_LIGNES);
  return all;
}

const QStringList &narrowedRows() {
  static const QStringList some = rows(1000, 2000);
  return some;
}

void runToolkitDialog() {
  QDialog dialog;
  dialog.setWindowTitle(QStringLiteral("Choix"));
  dialog.setFixedSize(400, 262);
  QLabel label(QStringLiteral("Initiales :"), &dialog);
  label.setGeometry(20, 14, 68, 15);
  QLineEdit initials(&dialog);
  initials.setGeometry(17, 28, 66, 21);
  QListWidget list(&dialog);
  list.setGeometry(112, 17, 240, 187);
  list.addItems(allRows());
  QPushButton accept(QStringLiteral("OK"), &dialog);
  accept.setGeometry(110, 228, 80, 20);
  QPushButton cancel(QStringLiteral("Annuler"), &dialog);
  cancel.setGeometry(210, 228, 80, 20);
  QObject::connect(&initials, &QLineEdit::textChanged, &list, [&list](const QString &text) {
    list.clear();
    list.addItems(text.size() == 2 ? narrowedRows() : allRows());
  });
  initials.setFocus();
  dialog.exec();
}

// ---- What is measured ----

using RunDialog = void (*)();

// One initial more and one less in turns: a thousand rows, all rows.
void narrow(State &state) {
  auto *list = QApplication::activeModalWidget()->findChild<QAbstractItemView *>();
  PaintWatch painted(list->viewport());
  pressKey(Qt::Key_P, QStringLiteral("P"));
  painted.await();
  for (auto _ : state) {
    pressKey(Qt::Key_1, QStringLiteral("1"));
    painted.await();
    pressKey(Qt::Key_Backspace);
    painted.await();
  }
}

void narrowing(State &state, RunDialog run) {
  const OnFirstFrame shown([&] {
    narrow(state);
    pressKey(Qt::Key_Escape);
  });
  run();
}

const char *const kOpenWorkload = "4096 practitioners to first frame";
const char *const kNarrowWorkload = "an initial typed and taken back";

[[maybe_unused]] const bool kGoals[] = {
    goal(kOpenWorkload, "qt", 1.5),
    goal(kNarrowWorkload, "qt", 1.5),
};

void registerWorkloads() {
  const auto open = [](const char *who, RunDialog run) {
    benchmark::RegisterBenchmark(named(kOpenWorkload, who).c_str(),
                                 [run](State &state) { measureFirstFrame(state, run); })
        ->UseManualTime()
        ->MinTime(0.3);
  };
  open("korvel", runLibraryDialog);
  open("qt", runToolkitDialog);
  const auto narrowed = [](const char *who, RunDialog run) {
    benchmark::RegisterBenchmark(named(kNarrowWorkload, who).c_str(), narrowing, run)->MinTime(0.3);
  };
  narrowed("korvel", runLibraryDialog);
  narrowed("qt", runToolkitDialog);
}

}  // namespace

int main(int argc, char **argv) {
  const Table table;
  return korvel::bench::runOffScreen(argc, argv, registerWorkloads);
}
