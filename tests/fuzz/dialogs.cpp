// SPDX-License-Identifier: MIT
// Dialogs from tables that hold anything, run by a person who does anything, with callbacks that
// change tables, rebuild lists, ask for anything to be shown and open further dialogs.
#include <cstring>
#include <string>
#include <vector>

#include <korvel/codecs.h>
#include <korvel/dialogs.h>
#include <korvel/messages.h>

#include "tests/dialogs/dialog_fixture.h"
#include "tests/fuzz/target.h"
#include "tests/support/failures_aside.h"

namespace korvel::test {
namespace {

using platform::ItemKind;

constexpr int kFirstId = 100;  // of the text fields: those of the other types follow by hundreds
constexpr int kMostItems = 130;

// One run: a description, what the person does, and what the callbacks do meanwhile.
class Run {
 public:
  explicit Run(Input &input)
      : input_(input), isHostile_(input.ConsumeBool()), isDrawn_(input.ConsumeBool()) {
    Callbacks::reset();
    Callbacks::onGlobal = [this](const GlobalCall &call) { return onGlobal(call); };
    Callbacks::onFinal = [this](const FinalCall &) { return onFinal(); };
    Callbacks::onAction = [this] { change(); };
  }
  ~Run() { Callbacks::reset(); }
  Run(const Run &) = delete;
  Run &operator=(const Run &) = delete;

  void describe() {
    TailleDlgBox_set(coordinate(), coordinate());
    place(TexteDlgBox_param, TexteDlgBox_set_geo, kFirstId, ItemKind::EditText);
    placeLabelled(BoolDlgBox_param, BoolDlgBox_set_geo, kFirstId + 100, ItemKind::CheckBox);
    place(IntDlgBox_param, IntDlgBox_set_geo, kFirstId + 200, ItemKind::EditText);
    place(NumDlgBox_param, NumDlgBox_set_geo, kFirstId + 300, ItemKind::EditText);
    place(DateDlgBox_param, DateDlgBox_set_geo, kFirstId + 400, ItemKind::EditText, 3);
    placeLabelled(PushDlgBox_param, PushDlgBox_set_geo, kFirstId + 500, ItemKind::PushButton);
    StaticDlgBox_param(4);
    StaticDlgBox_set(0, someText().c_str());
    StaticDlgBox_set_geo(0, coordinate(), coordinate(), coordinate(), coordinate());
    StaticDlgBox_set_type(0, input_.ConsumeIntegralInRange(-1, 1));
    for (int settings = input_.ConsumeIntegralInRange(0, 20); settings > 0; --settings) set();
    for (int i = 0; i < 10; ++i) PushDlgBox_set_fvalid(i, Callbacks::action);
    DlgBoxGlobal_set(Callbacks::global);
    DlgBoxFinal_set(Callbacks::final);
    for (Item &item : items_) {
      const int text = item.identifier - kFirstId;
      if (text >= 0 && text < 20 && TDBL[text] != 0) item.kind = ItemKind::ListBox;
      if (text >= 0 && text < 20 && TDBC[text] != 0) item.kind = ItemKind::PopUp;
    }
    if (!isHostile_) return;
    for (int pokes = input_.ConsumeIntegralInRange(0, 12); pokes > 0; --pokes) poke();
  }

  void run() {
    DialogScript &script = desk_.expectDialog("T");
    for (int steps = input_.ConsumeIntegralInRange(0, 30); steps > 0; --steps) {
      act(script);
      script.check([this] { look(); });
    }
    script.closeBox();
    for (int nested = 0; nested < 3; ++nested) desk_.expectDialog("M").pressReturn().closeBox();
    const int result = isDrawn_ ? runTemplate() : ZRVDlgBoxEx("T", nullptr);
    require(result == 0 || result == 1);
    require(DlgBox_hDlg == nullptr);
    require(TDB == 0 && BDB == 0 && IDB == 0 && NDB == 0 && DDB == 0 && PDB == 0 && SDB == 0);
    desk_.finish();
  }

 private:
  struct Item {
    int number;
    int identifier;
    ItemKind kind;
  };

  int coordinate() { return number(input_, -20, 400); }
  int index() { return isHostile_ ? number(input_, 0, 4) : input_.ConsumeIntegralInRange(0, 4); }
  std::string someText() {
    constexpr const char *kTexts[] = {"",  "12",  "-3",   "7,5",   "20000229",     "a", "\xE9t\xE9",
                                      "b", "1e3", " 04 ", "a+b+a", "a$b$\xE9t\xE9"};
    return input_.ConsumeBool() ? input_.PickValueInArray(kTexts) : text(input_, 40);
  }

  // Takes some fields of a type into use; `describe` says where one of them is.
  template <typename Describe>
  void takeIntoUse(int (*param)(int, int), int firstId, ItemKind kind, int itemsPerField,
                   Describe describe) {
    const int fields = input_.ConsumeIntegralInRange(0, 4);
    param(fields, firstId);
    for (int i = 0; i < fields; ++i) {
      const bool isOdd = isHostile_ && input_.ConsumeIntegralInRange(0, 9) == 0;
      describe(i, isOdd ? number(input_, -1, 130) : rank_++);
      for (int part = 0; part < itemsPerField; ++part) {
        const int identifier = firstId + itemsPerField * i + part;
        const int built = static_cast<int>(items_.size()) + 1;
        items_.push_back({isDrawn_ ? identifier : built, identifier, kind});
      }
    }
  }
  template <typename Geo>
  void place(int (*param)(int, int), Geo geo, int firstId, ItemKind kind, int itemsPerField = 1) {
    takeIntoUse(param, firstId, kind, itemsPerField, [&](int i, int rank) {
      geo(i, coordinate(), coordinate(), coordinate(), coordinate(), rank);
    });
  }
  template <typename Geo>
  void placeLabelled(int (*param)(int, int), Geo geo, int firstId, ItemKind kind) {
    takeIntoUse(param, firstId, kind, 1, [&](int i, int rank) {
      geo(i, someText().c_str(), coordinate(), coordinate(), coordinate(), coordinate(), rank);
    });
  }

  void set() {
    const int i = index();
    const std::string given = someText();
    const int stops[] = {10, 20, 0};
    switch (input_.ConsumeIntegralInRange(0, 18)) {
      case 0:
      case 1:
        TexteDlgBox_set(i, given.c_str());
        break;
      case 2:
        TexteDlgBox_set_ncarac(i, number(input_, 0, 40));
        break;
      case 3:
        TexteDlgBox_set_liste(i, given.c_str());
        break;
      case 4:
        TexteDlgBox_change_liste(i);
        break;
      case 5:
        TexteDlgBox_mandatory(i, input_.ConsumeBool());
        break;
      case 6:
        TexteDlgBox_password(i, input_.ConsumeBool());
        break;
      case 7:
        TexteDlgBox_set_tabstops(i, stops);
        break;
      case 8:
        BoolDlgBox_set(i, number(input_, 0, 1));
        break;
      case 9:
        IntDlgBox_set(i, number(input_, -9, 40000), input_.ConsumeIntegralInRange(-1, 3));
        break;
      case 10:
        IntDlgBox_mandatory(i, input_.ConsumeBool());
        break;
      case 11:
        IntDlgBox_password(i, input_.ConsumeBool());
        break;
      case 12:
        NumDlgBox_set(i, input_.ConsumeFloatingPoint<double>(),
                      input_.ConsumeIntegralInRange(-1, 3));
        break;
      case 13:
        NumDlgBox_set_nchiff(i, number(input_, 0, 12));
        break;
      case 14:
        NumDlgBox_mandatory(i, input_.ConsumeBool());
        break;
      case 15:
        DateDlgBox_set(i, number(input_, 0, 21001231), input_.ConsumeIntegralInRange(-1, 2));
        break;
      case 16:
        DateDlgBox_mandatory(i, input_.ConsumeBool());
        break;
      case 17:
        BOKDlgBox_textes(given.c_str(), given.c_str());
        break;
      default:
        BOKDlgBox_def(number(input_, 1, 2));
    }
  }

  // Writes into an exported table what no function would.
  void poke() {
    int *const numbers[] = {&TDB_N,
                            &TDB,
                            &BDB_N,
                            &BDB,
                            &IDB_N,
                            &IDB,
                            &NDB_N,
                            &NDB,
                            &DDB_N,
                            &DDB,
                            &PDB_N,
                            &PDB,
                            &SDB_N,
                            &SDB,
                            &TDB_ID_TEXTE,
                            &BDB_ID_FLAG,
                            &IDB_ID_INT,
                            &NDB_ID_NUM,
                            &DDB_ID_DATE,
                            &PDB_ID_PUSH,
                            &LDB,
                            &LDB_cx,
                            &LDB_cy,
                            &HDB,
                            &OK_def,
                            &TDB_bOK[0],
                            &TDB_iCarac[1],
                            &TDBC[1],
                            &TDBL[2],
                            &TDB_bPassw[0],
                            &IDB_bPassw[0],
                            &NDB_iChiff[0],
                            &BDB_bFlags[0],
                            &IDB_iInts[0],
                            &DDB_lDates[0],
                            &Dlg_itemOffset[3],
                            &Dlg_rkOffset[1]};
    short *const shorts[] = {&TDB_rk[0], &BDB_rk[0], &IDB_rk[0],  &NDB_rk[0],   &DDB_rk[0],
                             &PDB_rk[0], &TDB_cx[0], &IDB_cy[0],  &SDB_type[0], &IDB_lPassw[0],
                             &NDB_rk[1], &DDB_rk[1], &TDB_rk[19], &IDB_rk[127], &SDB_cy[0]};
    char **const texts[] = {&TDB_pszBuffer[0],  &TDB_pszBuffer[1], &TDB_PSZLBUFFER[0],
                            &TDB_PSZLBUFFER[1], &BDB_pszBuffer[0], &PDB_pszBuffer[0],
                            &SDB_pszBuffer[0]};
    switch (input_.ConsumeIntegralInRange(0, 5)) {
      case 0:
      case 1:
        *input_.PickValueInArray(numbers) = number(input_, -2, 140);
        break;
      case 2:
        *input_.PickValueInArray(shorts) = input_.ConsumeIntegral<short>();
        break;
      case 3:
        *input_.PickValueInArray(texts) = nullptr;
        break;
      case 4:
        if (input_.ConsumeBool())
          vi_tab[0] = nullptr;
        else
          vf_tab[0] = nullptr;
        break;
      default:
        vd_tab[0] = nullptr;
        vp_tab[0] = nullptr;
    }
  }

  void act(DialogScript &script) {
    const int kind = input_.ConsumeIntegralInRange(0, 31);
    if (kind == 0) return void(script.hit(number(input_, 0, kMostItems)));
    if (kind == 1) return void(script.pressReturn());
    if (kind == 2) return void(script.pressEscape());
    if (kind == 3) return void(script.goDown());
    const auto last = items_.size() - 1;
    const Item &item = items_[input_.ConsumeIntegralInRange<std::size_t>(0, last)];
    switch (item.kind) {
      case ItemKind::PushButton:
        script.press(item.number);
        break;
      case ItemKind::CheckBox:
        script.click(item.number);
        break;
      case ItemKind::PopUp:
        script.choose(item.number, someText());
        break;
      case ItemKind::ListBox:
        if (input_.ConsumeBool())
          script.clickRow(item.number, input_.ConsumeIntegralInRange(0, 3));
        else
          script.doubleClickRow(item.number, input_.ConsumeIntegralInRange(0, 3));
        break;
      default:
        edit(script, item.number);
    }
  }

  void edit(DialogScript &script, int item) {
    const int from = input_.ConsumeIntegralInRange(0, 9);
    switch (input_.ConsumeIntegralInRange(0, 6)) {
      case 0:
      case 1:
        script.type(item, someText());
        break;
      case 2:
        script.replace(item, someText());
        break;
      case 3:
        script.paste(item, text(input_, 300));
        break;
      case 4:
        script.deleteBack(item, input_.ConsumeIntegralInRange(1, 3));
        break;
      case 5:
        script.moveTo(item, from).deleteForward(item);
        break;
      default:
        script.select(item, from, input_.ConsumeIntegralInRange(0, 9)).moveToEnd(item);
    }
  }

  int onGlobal(const GlobalCall &call) {
    change();
    if (call.capacity == 0) return 0;
    require(call.capacity == 32);
    for (int i = 0; i < call.capacity; ++i) call.redisplay[i] = 0;
    const int named = input_.ConsumeIntegralInRange(0, 4);
    for (int i = 0; i < named; ++i) {
      const int identifier = number(input_, kFirstId, kFirstId + 510);
      call.redisplay[i] = input_.ConsumeBool() && identifier != INT_MIN ? -identifier : identifier;
    }
    return isHostile_ && input_.ConsumeBool() ? number(input_, 0, 40) : named;
  }

  int onFinal() {
    change();
    DlgBoxFinal_Erreur_set(someText().c_str());
    return input_.ConsumeIntegralInRange(0, 3) == 0;
  }

  // Something that a callback does.
  void change() {
    const int i = index();
    switch (input_.ConsumeIntegralInRange(0, 13)) {
      case 0:
        ZRVDlgBox_texte_set(i, someText().c_str());
        break;
      case 1:
        ZRVDlgBox_texte_set_liste(i);
        break;
      case 2:
        ZRVDlgBox_num_set(i, someText().c_str());
        break;
      case 3:
        set();
        break;
      case 4:
        require(ZRVDlgBoxEx("T", nullptr) == 0);
        break;
      case 5:
        MessageBox(nullptr, someText().c_str(), "M",
                   static_cast<unsigned>(input_.ConsumeIntegralInRange(0, 127)));
        break;
      case 6:
        require(DlgBoxFunc(DlgBox_hDlg) == 0);
        break;
      case 7:
        require(*SelectMT(nullptr, nullptr, "Data:none") == '\0');
        break;
      case 8:
        ZRVDlgBox_valid();
        break;
      case 9:
        if (depth_ > 2) break;
        ++depth_;
        TexteDlgBox_global(i);
        DateDlgBox_global(i);
        --depth_;
        break;
      case 10:
        require(ZRVDlgBox("none") == 0);
        break;
      case 11:
        if (isHostile_) poke();
        break;
      default:
        break;
    }
  }

  int runTemplate() {
    templates_.add(desk_, "T", isHostile_ ? Template{"T", drawnItems()} : describedTemplate("T"));
    return ZRVDlgBox("T");
  }

  std::vector<TemplateItem> drawnItems() {
    constexpr ItemKind kKinds[] = {ItemKind::PushButton, ItemKind::CheckBox, ItemKind::ListBox,
                                   ItemKind::PopUp, ItemKind::EditText};
    std::vector<TemplateItem> items{{1, ItemKind::PushButton, "OK"},
                                    {2, ItemKind::PushButton, "Annuler"}};
    for (int n = input_.ConsumeIntegralInRange(0, 8); n > 0; --n) {
      items.push_back({input_.ConsumeIntegralInRange(1, 30),
                       input_.PickValueInArray(kKinds),
                       someText(),
                       {"a", "b"}});
    }
    return items;
  }

  static bool allStand(int inUse, int count, int most, const int *flags) {
    if (inUse == 0) return true;
    return std::all_of(flags, flags + std::clamp(count, 0, most),
                       [](int flag) { return flag != 0; });
  }

  // What the person sees agrees with the tables. The desktop tells of the newest window only.
  void look() {
    if (isHostile_ || desk_.dialogsShown() != 1) return;
    const bool mayAccept = allStand(TDB, TDB_N, 20, TDB_bOK) &&
                           allStand(IDB, IDB_N, 128, IDB_bOK) &&
                           allStand(NDB, NDB_N, 128, NDB_bOK) && allStand(DDB, DDB_N, 20, DDB_bOK);
    require(desk_.isEnabled(1) == mayAccept);
    for (int i = 0; i < TDB_N; ++i) {
      require(std::strlen(TDB_pszBuffer[i]) < static_cast<std::size_t>(TDB_BUFFERSIZE));
    }
  }

  Input &input_;
  const bool isHostile_;
  const bool isDrawn_;
  std::vector<Item> items_{{1, 1, ItemKind::PushButton}, {2, 2, ItemKind::PushButton}};
  int rank_ = 0;
  int depth_ = 0;
  DialogGlobals globals_;
  ScriptedDesktop desk_;
  TemplateFolder templates_;
};

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  // A step that finds no item to act on is no failure here.
  const FailuresAside aside;
  Input input(data, size);
  Run run(input);
  run.describe();
  run.run();
  return 0;
}
