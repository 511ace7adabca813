// SPDX-License-Identifier: MIT
// dialogs_program <folder> [dialogs]: opens dialogs and messages of every kind with the real
// desktop module, has a person type into them and end them, and compares the memory and the
// descriptors in use with those after the first few hundred.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QApplication>
#include <QWidget>

#include <korvel/korvel.h>

#include "tests/support/person_at_keys.h"
#include "tests/support/sanitizer.h"

namespace {

constexpr int kWarmUp = 400;

// Caches of the toolkit grow and shrink now and then; what dialogs leave behind grows in each
// stretch, and a block of memory for each dialog of one kind is more than this in one of 1,000. The
// sanitizer gives no address out again for long, and the desktop remembers those of windows that
// are gone; it finds each leak itself at the end.
constexpr int kStretches = 5;
constexpr long kHeapGrowth = korvel::test::kUnderSanitizer ? 4096 : 1024;  // bytes in a stretch
constexpr long kResidentGrowth = 1024;                                     // KB in all

// ---- What the process uses ----

struct Usage {
  long heap;      // bytes in use
  long resident;  // KB
  long descriptors;
  long widgets;
};

// Bytes that are allocated: the sanitizer knows it, where there is one.
long heapInUse() {
  static const auto counted = reinterpret_cast<std::size_t (*)()>(
      dlsym(RTLD_DEFAULT, "__sanitizer_get_current_allocated_bytes"));
  if (counted != nullptr) return static_cast<long>(counted());
  const struct mallinfo2 info = mallinfo2();
  return static_cast<long>(info.uordblks + info.hblkhd);
}

long residentKilobytes() {
  long all = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

long openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

Usage usage() {
  return {heapInUse(), residentKilobytes(), openDescriptors(), QApplication::allWidgets().size()};
}

// ---- The dialogs ----

int onChange(int item, int, int, char **, int, int, int, int *, int, int, int, int *ints, int, int,
             int, double *nums, int, int, int, int *, int, int *redisplay, int) {
  if (item != 200) return 0;
  nums[0] = ints[0] / 4.0;
  TexteDlgBox_set_liste(2, "Madame+Monsieur+Docteur");
  ZRVDlgBox_texte_set_liste(2);
  ZRVDlgBox_texte_set(2, "Docteur");
  ZRVDlgBox_num_set(1, "7,25");
  redisplay[0] = 300;
  return 1;
}

// Refuses with a message, and accepts with an answer to another.
int onOk(WindowRef window, int, char **texts, int, int, int *, int, int, int *, int, int, double *,
         int, int, int *, int) {
  if (std::strcmp(texts[0], "Durand") == 0) {
    DlgBoxFinal_MessageBox(window, "Pas encore", "Fiche", KorvelStopIcon);
    std::strcpy(texts[0], "Dupont");
    return 0;
  }
  return MessageBox(window, "Enregistrer ?", "Fiche", KorvelQuestion) == KorvelOuiAnswer;
}

// Draws into the dialog, and has no second one.
int onPush(WindowRef window) {
  CGrafPtr port = GetWindowPort(window);
  Line_Ex(port, 1, 1, 60, 40, 1, 2);
  ch_font_set(port, "Helvetica", 0, 15, 12);
  TextOut_0(port, 10, 20, "dessin", 6);
  return ZRVDlgBoxEx("Autre", nullptr);
}

void describeFields() {
  TexteDlgBox_param(4, 100);
  IntDlgBox_param(1, 200);
  NumDlgBox_param(2, 300);
  DateDlgBox_param(1, 400);
  BoolDlgBox_param(1, 500);
  PushDlgBox_param(1, 600);
  TailleDlgBox_set(230, 200);
  StaticDlgBox_param(2);
  StaticDlgBox_set(0, "Nom");
  StaticDlgBox_set_geo(0, 8, 8, 48, 12);
  StaticDlgBox_set_type(0, KorvelStaticText);
  StaticDlgBox_set(1, "Groupe");
  StaticDlgBox_set_geo(1, 160, 8, 60, 60);
  StaticDlgBox_set_type(1, KorvelGroupBox);
  const char *const texts[] = {"", "", "Madame", ""};
  for (int i = 0; i < 4; ++i) TexteDlgBox_set(i, texts[i]);
  TexteDlgBox_set_ncarac(0, 20);
  TexteDlgBox_mandatory(1, 0);
  TexteDlgBox_password(1, 1);
  TexteDlgBox_set_liste(2, "Madame+Monsieur");
  TexteDlgBox_set_liste(3, "rouge$vert$bleu$No\xEBl");
  TexteDlgBox_change_liste(3);
  TexteDlgBox_mandatory(3, 0);
  IntDlgBox_set(0, 12, KorvelPositive);
  NumDlgBox_set(0, 1.5, KorvelNotNegative);
  NumDlgBox_set(1, 2.5, KorvelAnyValue);
  DateDlgBox_set(0, 20000229, KorvelCalendarDate);
  PushDlgBox_set_fvalid(0, onPush);
  DlgBoxGlobal_set(onChange);
  for (int i = 0; i < 3; ++i)
    TexteDlgBox_set_geo(i, 60, static_cast<short>(8 + 16 * i), 90, 12, static_cast<short>(i));
  IntDlgBox_set_geo(0, 60, 56, 40, 12, 3);
  NumDlgBox_set_geo(0, 60, 72, 40, 12, 4);
  NumDlgBox_set_geo(1, 110, 72, 40, 12, 5);
  DateDlgBox_set_geo(0, 60, 88, 50, 12, 6);
  TexteDlgBox_set_geo(3, 60, 104, 60, 40, 7);
  BoolDlgBox_set_geo(0, "Coch\xE9", 60, 148, 80, 12, 8);
  PushDlgBox_set_geo(0, "Action", 60, 164, 60, 15, 9);
}

void describeTemplate() {
  TexteDlgBox_param(3, 10);
  NumDlgBox_param(1, 20);
  DateDlgBox_param(1, 30);
  BoolDlgBox_param(1, 40);
  PushDlgBox_param(1, 50);
  TexteDlgBox_set(0, "");
  TexteDlgBox_set_liste(1, "Madame+Monsieur");
  TexteDlgBox_set(1, "Monsieur");
  TexteDlgBox_set_liste(2, "un$deux");
  TexteDlgBox_change_liste(2);
  TexteDlgBox_set(2, "");
  TexteDlgBox_mandatory(2, 0);
  NumDlgBox_set(0, 1.5, KorvelAnyValue);
  DateDlgBox_set(0, 20000229, KorvelUncheckedDate);
}

int cancelledDialog() {
  describeFields();
  return ZRVDlgBoxEx("Fiche", nullptr);
}

// With the two messages of its callback.
int acceptedDialog() {
  describeFields();
  DlgBoxFinal_set(onOk);
  return ZRVDlgBoxEx("Fiche", nullptr);
}

int dialogFromTemplate() {
  describeTemplate();
  return ZRVDlgBox("visite");
}

int chooser() { return static_cast<int>(std::strlen(SelectMT(nullptr, nullptr, "Data:"))); }

int questionOfOneCall() {
  return MessageBox(nullptr, "Effacer la fiche ?\rElle est perdue.", "Fiche",
                    KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon);
}

int questionOfLines() {
  char caption[] = "Fiche";
  char text[] = "Imprimer\rla fiche ?";
  return QuestionDialog(nullptr, caption, text, 2, KorvelNoteIcon);
}

int note() {
  char caption[] = "Fiche";
  char text[] =
      "La fiche est imprim\xE9"
      "e.";
  return NoteDialog(nullptr, caption, text, 1, KorvelStopIcon);
}

// Whether a call opens a dialog or just a message, what is typed and what it answers.
struct Show {
  const char *name;
  int dialogs;
  const char *keys;
  int (*open)();
  int answer;
};

constexpr Show kShows[] = {
    {"accepted dialog", 1, "Durand\tabc\t\v\t4\t3,5\t\t07\t\t\t\v\v\t \t \r\r\r\r", acceptedDialog,
     1},
    {"cancelled dialog", 1, "No\xEBl\t12\t\t7\033", cancelledDialog, 0},
    {"accepted template", 1, "Anne\r", dialogFromTemplate, 1},
    {"cancelled template", 1, "Anne\t\v\t\v\t2,5\033", dialogFromTemplate, 0},
    {"chooser", 1, "DU\t\v\v\r", chooser, 12},
    {"cancelled chooser", 1, "A\033", chooser, 0},
    {"question", 0, "\r", questionOfOneCall, KorvelNonAnswer},
    {"question of lines", 0, "\t\r", questionOfLines, KorvelNonAnswer},
    {"note", 0, "\r", note, KorvelOkAnswer},
};

// Opens all in turns until so many dialogs have been there; returns how many have.
int play(int wanted) {
  int dialogs = 0;
  while (dialogs < wanted) {
    for (const Show &show : kShows) {
      pressKeys(show.keys);
      const int answer = show.open();
      if (answer != show.answer || keysLeft() != 0) {
        std::fprintf(stderr, "%s: answers %d instead of %d, %d keys are left\n", show.name, answer,
                     show.answer, keysLeft());
        std::exit(1);
      }
      dialogs += show.dialogs;
    }
  }
  return dialogs;
}

// ---- The program ----

void makeChooserTable(const std::filesystem::path &folder) {
  std::filesystem::create_directories(folder / "Data");
  std::ofstream(folder / "Data/MT.par")
      << "Praticiens\r\nVersion: 1\r\n#DEBUT\r\nDUB,Dr Dubois\r\nDUP,Dr Dupr\xE9\r\n"
         "AB,Dr Abel\r\n#FIN\r\n";
}

void tell(const std::string &when, const Usage &used) {
  std::printf("%s: %ld KB resident, %.1f KB of heap, %ld descriptors, %ld widgets\n", when.c_str(),
              used.resident, static_cast<double>(used.heap) / 1024, used.descriptors, used.widgets);
  std::fflush(stdout);
}

// The heap's growth in the middle one of the stretches, by growth.
long usualGrowth(const std::vector<Usage> &used) {
  std::vector<long> growths;
  for (std::size_t n = 1; n < used.size(); ++n) growths.push_back(used[n].heap - used[n - 1].heap);
  std::sort(growths.begin(), growths.end());
  return growths[growths.size() / 2];
}

bool isAsBefore(const std::vector<Usage> &used) {
  const Usage &before = used.front();
  const Usage &after = used.back();
  const bool isResident = after.resident <= before.resident + kResidentGrowth;
  return usualGrowth(used) <= kHeapGrowth && (isResident || korvel::test::kUnderSanitizer) &&
         after.descriptors == before.descriptors && after.widgets == before.widgets;
}

// Blocks that the allocator keeps ready for each thread would count as in use, and one large page
// as two thousand KB.
void startAgainWithPlainHeap(char **argv) {
  if (std::getenv("KORVEL_PLAIN_HEAP") != nullptr) return;
  setenv("KORVEL_PLAIN_HEAP", "1", 1);
  setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
  prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);
  execv("/proc/self/exe", argv);
  std::perror("/proc/self/exe");
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return 2;
  startAgainWithPlainHeap(argv);
  const int wanted = argc > 2 ? std::atoi(argv[2]) : 5000;
  makeChooserTable(argv[1]);
  std::snprintf(szVolumes, sizeof szVolumes, "%s", argv[1]);
  std::snprintf(szResources, sizeof szResources, "%s", KORVEL_TEST_TEMPLATES);
  startToolkit(argc, argv);

  tell("before the first dialog", usage());
  int dialogs = play(kWarmUp);
  std::vector<Usage> used = {usage()};
  tell("after " + std::to_string(dialogs), used.back());
  const auto start = std::chrono::steady_clock::now();
  for (int stretch = 0; stretch < kStretches; ++stretch) {
    dialogs += play(wanted / kStretches);
    used.push_back(usage());
    tell("after " + std::to_string(dialogs), used.back());
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  std::printf("%.1f s; in a stretch the heap grows by %ld bytes\n", took.count(),
              usualGrowth(used));
  if (isAsBefore(used)) return 0;
  std::fputs("that is more than before\n", stderr);
  return 1;
}
