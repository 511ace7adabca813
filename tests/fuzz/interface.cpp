// SPDX-License-Identifier: MIT
// Any function of the interface after any other, with any numbers, with null pointers, and with
// texts and buffers that end where memory that may be touched ends. Only what runs commands is left
// out, and paths stay on a volume of their own: a path is what a function may destroy.
#include <cstring>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <korvel/korvel.h>

#include "tests/files/volumes.h"
#include "tests/fuzz/target.h"
#include "tests/platform/scripted_desktop.h"
#include "tests/support/failures_aside.h"
#include "tests/support/page_end.h"

namespace korvel::test {
namespace {

// ---- Arguments ----

// Each makes one or two arguments of a call, and keeps alive what they point to.

class Number {
 public:
  explicit Number(Input &input) : value_(number(input, -2, 140)) {}
  auto arguments() { return std::tuple(value_); }

 private:
  int value_;
};

// Not so large that memory ends.
class Count {
 public:
  explicit Count(Input &input) : value_(input.ConsumeIntegralInRange(-2, 9000)) {}
  auto arguments() { return std::tuple(value_); }

 private:
  int value_;
};

class Real {
 public:
  explicit Real(Input &input) : value_(input.ConsumeFloatingPoint<double>()) {}
  auto arguments() { return std::tuple(value_); }

 private:
  double value_;
};

// Bytes at the end of a page, or null.
class Pages {
 public:
  Pages(Input &input, const std::string &bytes) : memory_(bytes) {
    isNull_ = input.ConsumeIntegralInRange(0, 19) == 0;
  }
  char *data() { return isNull_ ? nullptr : memory_.data(); }
  int size() const { return static_cast<int>(memory_.bytes().size()); }

 private:
  PageEnd memory_;
  bool isNull_;
};

std::string terminated(const std::string &text) { return {text.c_str(), text.size() + 1}; }

class Text {
 public:
  explicit Text(Input &input) : pages_(input, terminated(text(input, 300))) {}
  auto arguments() { return std::tuple(pages_.data()); }

 private:
  Pages pages_;
};

// A text with its length.
class Bytes {
 public:
  explicit Bytes(Input &input) : pages_(input, bytes(input, 300)) {}
  auto arguments() { return std::tuple(pages_.data(), pages_.size()); }

 private:
  Pages pages_;
};

// A buffer that holds a text, with its capacity.
class Room {
 public:
  explicit Room(Input &input) : pages_(input, filled(input)) {}
  auto arguments() { return std::tuple(pages_.data(), pages_.size()); }

 private:
  static std::string filled(Input &input) {
    const std::string given = text(input, 60);
    const auto room = input.ConsumeIntegralInRange<std::size_t>(0, 300);
    std::string bytes = terminated(given);
    bytes.resize(room, '\0');
    if (room > 0) bytes[room - 1] = '\0';
    return bytes;
  }
  Pages pages_;
};

// So many bytes of no meaning, after a capacity that the function knows.
template <std::size_t Size>
class Fixed {
 public:
  explicit Fixed(Input &input) : pages_(input, std::string(Size, '\0')) {}
  auto arguments() { return std::tuple(pages_.data()); }

 private:
  Pages pages_;
};

// A place for a value.
template <typename Value>
class Place {
 public:
  explicit Place(Input &input) : pages_(input, std::string(sizeof(Value), '\0')) {}
  auto arguments() { return std::tuple(reinterpret_cast<Value *>(pages_.data())); }

 private:
  Pages pages_;
};

// A list of strings.
class Strings {
 public:
  explicit Strings(Input &input) : pages_(input, doublyEnded(text(input, 100))) {}
  auto arguments() { return std::tuple(pages_.data()); }

 private:
  static std::string doublyEnded(std::string text) {
    std::replace(text.begin(), text.end(), '+', '\0');
    // Two in a row would end the list.
    for (std::size_t at; (at = text.find(std::string(2, '\0'))) != std::string::npos;)
      text.erase(at, 1);
    return text + std::string(2, '\0');
  }
  Pages pages_;
};

class Path {
 public:
  explicit Path(Input &input) : pages_(input, terminated(name(input))) {}
  auto arguments() { return std::tuple(pages_.data()); }

 private:
  static std::string name(Input &input) {
    constexpr const char *kNames[] = {"Data:a",  "Data:b.tab",  "Data:folder", "Data:folder:c",
                                      "Data:no", "Data:none:d", "Data:e'$-",   "Data:t.tab"};
    std::string name = input.PickValueInArray(kNames);
    if (input.ConsumeIntegralInRange(0, 9) == 0) name += std::string(300, 'x');
    return name;
  }
  Pages pages_;
};

class TableName {
 public:
  explicit TableName(Input &input) : pages_(input, terminated(name(input))) {}
  auto arguments() { return std::tuple(pages_.data()); }

 private:
  static std::string name(Input &input) {
    constexpr const char *kNames[] = {"t", "t", "u", "t.tab", "none", ""};
    return input.PickValueInArray(kNames);
  }
  Pages pages_;
};

CGrafPtr ports[2];

class Port {
 public:
  explicit Port(Input &input) : port_(ports[input.ConsumeIntegralInRange(0, 1)]) {}
  auto arguments() { return std::tuple(port_); }

 private:
  CGrafPtr port_;
};

class Window {
 public:
  explicit Window(Input &) {}
  auto arguments() { return std::tuple(WindowRef{}); }
};

class Dialog {
 public:
  explicit Dialog(Input &) {}
  auto arguments() { return std::tuple(DlgBox_hDlg); }
};

class Colour {
 public:
  explicit Colour(Input &input) : colour_{input.ConsumeIntegral<unsigned short>(), 0, 0xFFFF} {}
  auto arguments() { return std::tuple(colour_); }

 private:
  RGBColor colour_;
};

// ---- Functions ----

using Call = std::function<void(Input &)>;

// A call of a function with arguments of these kinds.
template <typename... Kinds, typename Function>
Call with(Function *function) {
  return [function]([[maybe_unused]] Input &input) {
    std::tuple<Kinds...> kinds{(static_cast<void>(sizeof(Kinds)), input)...};
    const auto all =
        std::apply([](auto &...kind) { return std::tuple_cat(kind.arguments()...); }, kinds);
    std::apply(function, all);
  };
}

std::vector<Call> strings() {
  return {
      with<>(KorvelVersion),
      with<Text>(chelibl_f),
      with<Text>(chelibl_d),
      with<Text, Number>(chelicar_f),
      with<Text, Number>(chelicar_d),
      with<Text, Text>(chcomp),
      with<Text, Text>(chcher),
      with<Number, Text>(chcher_c),
      with<Text, Number, Number>(chdelch),
      with<Room, Text, Number>(chinsch),
      with<Room, Number, Number>(chinsch_c),
      with<Bytes>(szcnum),
      with<Room, Bytes>(szcopy),
      with<Room, Bytes>(szcopy_overlap),
      with<Bytes, Bytes>(szcomp),
      with<Bytes, Bytes>(szcompex),
      with<Bytes, Bytes>(szcompex2),
      with<Bytes, Bytes>(szincl),
      with<Room, Bytes>(szcopy_0t),
      with<Room, Bytes>(szconcat_0t),
      with<Room, Text>(secure_lstrcpy),
      with<Room, Text>(secure_lstrcat),
      with<Text>(w2mstr),
      with<Text>(m2wstr),
      with<Text>(strupr),
      with<Text, Room>(KorvelFromUtf8),
      with<Text, Room>(KorvelToUtf8),
      with<Text>(Teste_liste),
      with<Text, Bytes>(Teste_item_liste),
      with<Bytes, Bytes>(Teste_item_szliste),
      with<Text, Number>(Get_item_liste),
      with<Room>(ChCh_Put_00),
      with<Strings>(ChCh_Is_00),
      with<Strings>(ChCh_Get_Next_Item),
      with<Strings>(ChCh_Count_Item),
      with<Strings>(ChCh_Cut),
      with<Strings, Number>(ChCh_Cut_sep),
      with<Strings>(ChCh_Bind),
      with<Strings, Number>(ChCh_Bind_sep),
      with<Strings>(ChCh_Delete_Item),
      with<Path, Strings, Place<char *>>(ChCh_Detect_Missing_File),
      with<Path, Strings>(ChCh_Remove_Missing_File),
  };
}

std::vector<Call> codecs() {
  return {
      with<Text, Place<int>>(intcod_i),
      with<Text, Place<int>>(intcod_l),
      with<Number, Room>(intdco_i),
      with<Number, Room>(intdco_l),
      with<Text, Place<int>>(intcod_i_sup0),
      with<Text, Place<int>>(intcod_i_ssup0),
      with<Text, Place<int>>(intcod_l_sup0),
      with<Text, Place<int>>(intcod_l_date),
      with<Text, Place<double>>(realcod_d),
      with<Text, Place<float>>(realcod_f),
      with<Real, Room, Count>(realdco_d),
      with<Real, Room, Count>(realdco_sd),
      with<Text, Place<double>>(realcod_d_sup0),
      with<Text, Place<double>>(realcod_d_ssup0),
      with<Place<double>, Place<double>, Place<double>>(utrealds),
      with<Place<float>, Place<float>, Place<float>>(utrealfs),
      with<Number, Bytes>(LongToNUM),
      with<Number, Bytes>(IntToNUM),
      with<Bytes, Place<int>>(NUMToLong),
      with<Bytes, Place<int>>(NUMToInt),
      with<Bytes, Place<int>>(NUMP100ToLong),
      with<Bytes, Place<int>, Place<int>>(NUMPInterToLong),
      with<Real, Bytes, Number>(DoubleToNUMD),
      with<Bytes, Place<double>>(NUMDToDouble),
      with<Text>(Teste_NUM_liste),
      with<Text, Number>(Get_NUM_liste),
  };
}

std::vector<Call> dates() {
  return {
      with<Text, Fixed<9>>(ZRV_Build_Date),
      with<Text, Fixed<9>>(ZRV_Build_Date_short),
      with<Text, Text, Fixed<13>>(ZRV_Build_Date_long),
      with<Text, Text, Fixed<15>>(ZRV_Build_Date_slong),
      with<Text, Fixed<13>>(ZRV_Build_Date_SV),
      with<Text, Fixed<11>>(ZRV_Inv_Date),
      with<Text, Fixed<9>>(ZRV_Inv_Date_2),
      with<Text, Fixed<20>>(ZRV_Inv_Date_Time),
      with<Text, Fixed<9>>(ZRV_Reduc_Date),
      with<Fixed<9>>(ZRV_Get_Date_short),
      with<Fixed<13>>(ZRV_Get_Date_long),
      with<Fixed<15>>(ZRV_Get_Date_slong),
      with<Number>(utdately),
      with<Number, Number>(utdatedm),
      with<Number, Number, Number>(utdatedw),
      with<Number>(Validate_Date),
      with<Number, Count>(Get_Date_Incr),
      with<Number, Count>(Get_Date_Diff),
      with<Number, Number, Number>(Min_depuis_org),
      with<Number>(utdatemy),
      with<Number>(utdatedn),
      with<Number>(utdatemm),
      with<Number>(utdatedd),
  };
}

std::vector<Call> files() {
  return {
      with<Path, Number, Number>(File_Open),
      with<Number>(File_Close),
      with<Number>(File_Size),
      with<Number>(File_GetPos),
      with<Number, Bytes>(File_Read),
      with<Number, Bytes>(File_Re_Read),
      with<Number, Bytes>(File_Write),
      with<Number, Count>(File_Lseek),
      with<Number, Count>(File_SetEOF),
      with<Path>(File_Is_Existing),
      with<Path>(Dir_Is_Existing),
      with<Path>(MakeDir),
      with<Path, Fixed<256>>(MAC2UNIX),
      with<Path, Fixed<256>>(BSDMAC2UNIX),
      with<Path>(MACRemove),
      with<Path, Path>(MACRename),
      with<Text, Count, Count>(MFil_Open),
      with<Number>(MFil_Close),
      with<Number, Bytes>(MFil_Read),
      with<Number, Bytes>(MFil_Re_Read),
      with<Number, Bytes>(MFil_Write),
      with<Number, Count>(MFil_Lseek),
      with<Number>(MFil_GetPos),
      with<Number>(MFil_Size),
      with<Number, Count>(MFil_LockPtr),
      with<Number>(MFil_UnLockPtr),
      with<Path>(BSDMACchmodrwx),
      with<Text, Text, Text, Room, Path>(GetPrivateProfileString),
      with<Text, Text, Number, Path>(GetPrivateProfileInt),
      with<Text, Text, Text, Path>(WritePrivateProfileString),
      with<Text, Text, Path>(WritePrivateProfileSection),
  };
}

std::vector<Call> tables() {
  return {
      with<Bytes, Number, TableName, Room>(ZRV_Libelle_NC),
      with<Number, Number, TableName, Room>(ZRV_Libelle_2),
      with<Bytes, Number, TableName, Room>(ZRV_Libelle_NC_idem),
      with<Bytes, Number, TableName, Room>(ZRV_Libelle_NC_idem_0),
      with<Bytes, Number, TableName, Room>(ZRV_Libelle_NC_next),
      with<Bytes, Number, TableName, Room, Number, Number>(ZRV_Libelle_NC_dates),
      with<>(ZRV_Libelle_NC_get_ligne),
      with<Number>(ZRV_Libelle_NC_set_ligne),
      with<Text, Number, TableName, Room>(ZRV_Code_NC),
      with<Text, Number, TableName, Room>(ZRV_CodeNCS_NC),
      with<Text, Number, TableName, Room>(ZRV_Code_NC_next),
      with<Bytes, Number, TableName, Text>(ZRV_Libelle_NC_idem_replace),
      with<Bytes, TableName, Count>(ZRV_Libelle_NC_idem_insert),
      with<Bytes, TableName>(ZRV_Libelle_NC_idem_delete),
      with<Bytes, Number, TableName, Text>(ZRV_Libelle_NC_set),
      with<Bytes, TableName>(ZRV_Libelle_NC_idem_flush),
      with<TableName, Text, Text>(ZRV_Table_create),
      with<TableName>(ZRV_Table_remove),
      with<TableName, Number>(ZRV_Table_sauvegarde),
      with<TableName, TableName, Text, Text>(ZRV_Table_modify),
      with<TableName, Room>(ZRV_Table_liste),
      with<TableName, Text, Text>(ZRV_Table_repair),
      with<>(getDirTables),
      with<>(KorvelForgetTables),
  };
}

std::vector<Call> dialogs() {
  return {
      with<Number, Number>(TexteDlgBox_param),
      with<Number, Text>(TexteDlgBox_set),
      with<Number, Number, Number, Number, Number, Number>(TexteDlgBox_set_geo),
      with<Number, Number>(TexteDlgBox_set_ncarac),
      with<Number, Text>(TexteDlgBox_set_liste),
      with<Number>(TexteDlgBox_change_liste),
      with<Number, Room>(TexteDlgBox_retrieve),
      with<Number, Fixed<8193>>(TexteDlgBox_retrieve_liste),
      with<Number, Number>(TexteDlgBox_mandatory),
      with<Number, Number>(TexteDlgBox_password),
      with<Number, Place<int>>(TexteDlgBox_set_tabstops),
      with<Number>(TexteDlgBox_get_valid),
      with<Number, Number>(BoolDlgBox_param),
      with<Number, Number>(BoolDlgBox_set),
      with<Number, Text, Number, Number, Number, Number, Number>(BoolDlgBox_set_geo),
      with<Number, Place<int>>(BoolDlgBox_retrieve),
      with<Number, Number>(IntDlgBox_param),
      with<Number, Number, Number>(IntDlgBox_set),
      with<Number, Number, Number, Number, Number, Number>(IntDlgBox_set_geo),
      with<Number, Place<int>>(IntDlgBox_retrieve),
      with<Number, Number>(IntDlgBox_mandatory),
      with<Number, Number>(IntDlgBox_password),
      with<Number>(IntDlgBox_get_valid),
      with<Number, Number>(NumDlgBox_param),
      with<Number, Real, Number>(NumDlgBox_set),
      with<Number, Number>(NumDlgBox_set_nchiff),
      with<Number, Number, Number, Number, Number, Number>(NumDlgBox_set_geo),
      with<Number, Place<double>>(NumDlgBox_retrieve),
      with<Number, Number>(NumDlgBox_mandatory),
      with<Number>(NumDlgBox_get_valid),
      with<Number, Number>(DateDlgBox_param),
      with<Number, Number, Number>(DateDlgBox_set),
      with<Number, Number, Number, Number, Number, Number>(DateDlgBox_set_geo),
      with<Number, Place<int>>(DateDlgBox_retrieve),
      with<Number, Number>(DateDlgBox_mandatory),
      with<Number>(DateDlgBox_get_valid),
      with<Number, Number>(PushDlgBox_param),
      with<Number, Text, Number, Number, Number, Number, Number>(PushDlgBox_set_geo),
      with<Number>(StaticDlgBox_param),
      with<Number, Text>(StaticDlgBox_set),
      with<Number, Number, Number, Number, Number>(StaticDlgBox_set_geo),
      with<Number, Number>(StaticDlgBox_set_type),
      with<Number, Text>(KorvelItemName),
      with<Text>(TitreDlgBox_set),
      with<Room>(TitreDlgBox_retrieve),
      with<Number, Number>(TailleDlgBox_set),
      with<Colour>(ColorDlgBox_bkg),
      with<Number, Number>(BOKDlgBox_set_geo),
      with<Number, Number>(BOKDlgBox_pos),
      with<Text, Text>(BOKDlgBox_textes),
      with<>(BOKDlgBox_textes_reset),
      with<Number>(BOKDlgBox_def),
      with<>(BOKDlgBox_def_reset),
      with<Number, Number, Colour>(BOKDlgBox_shadow),
      with<>(DlgBoxGlobal_nul),
      with<>(DlgBoxFinal_nul),
      with<Text>(DlgBoxFinal_Erreur_set),
      with<>(DlgBoxFinal_Erreur),
      with<Window, Text, Text, Number>(DlgBoxFinal_MessageBox),
      with<Number>(TexteDlgBox_global),
      with<Number>(BoolDlgBox_global),
      with<Number>(IntDlgBox_global),
      with<Number>(NumDlgBox_global),
      with<Number>(DateDlgBox_global),
      with<Number>(Dlg_CoefX),
      with<Number>(Dlg_CoefCX),
      with<Number>(Dlg_CoefY),
      with<Number>(Dlg_CoefCY),
      with<Text, Window>(ZRVDlgBoxEx),
      with<Text>(ZRVDlgBox),
      with<Dialog>(DlgBoxFunc),
      with<Number, Text>(ZRVDlgBox_texte_set),
      with<Number>(ZRVDlgBox_texte_set_liste),
      with<Number, Text>(ZRVDlgBox_num_set),
      with<Number, Number>(ZRVDlgBox_bool_set),
      with<Number, Number>(ZRVDlgBox_int_set),
      with<>(ZRVDlgBox_valid),
      with<Number>(ZRVDlgBox_end),
      with<Strings>(listeNoms),
      with<Window, Text, Text, Number>(MessageBox),
      with<Window, Text, Text, Number, Number>(QuestionDialog),
      with<Window, Text, Text, Number, Number>(NoteDialog),
      with<Text, Number, Number>(KorvelProgress),
      with<Dialog, Place<EventRecord>, Place<int>>(MessageBoxFilter),
  };
}

std::vector<Call> drawing() {
  return {
      with<Port, Text, Number, Number, Number, Number>(ch_font_set_ext),
      with<Port, Text, Number, Number, Number>(ch_font_set),
      with<Port, Place<int>, Place<int>, Place<int>>(ch_font_metrics),
      with<Port, Number, Number, Bytes>(TextOut_0),
      with<Port, Bytes, Place<int>, Place<int>>(GetTextExtent_0),
      with<Port, Number, Number, Number, Number, Bytes>(TextOut_Ext),
      with<Port, Number, Number, Bytes, Place<int>, Place<int>>(GetTextExtent_Ext),
      with<Port, Number, Number, Number, Number, Number, Number, Text>(ch_font_printstr),
      with<Place<RGBColor>, Number>(vga_col),
      with<Port, Number, Number, Number, Number, Number, Number>(Line_Ex),
      with<Port, Number, Number, Number, Number, Colour, Number>(LineC_Ex),
      with<Port, Number, Number, Number, Number, Number>(Rectangle_Ex),
      with<Text, Port, Number, Number>(BMP_affic_desfond0),
      with<Text, Place<int>, Place<int>>(BMP_affic_dimfond0),
      with<Port, Number, Number, Place<RGBColor>>(KorvelPortPixel),
      with<Port>(SetPort),
      with<Place<CGrafPtr>>(GetPort),
      with<Window>(GetWindowPort),
      with<>(MACOSVersion),
      with<>(RunningOnCarbonX),
      with<Text, Place<CFBundleRef>>(LoadFrameworkBundle),
      with<Text>(BSDDir_ProcessFiles_f),
  };
}

const std::vector<Call> &everything() {
  static const auto &all = *new std::vector<Call>([] {
    std::vector<Call> calls;
    for (const auto part : {strings, codecs, dates, files, tables, dialogs, drawing}) {
      for (Call &call : part()) calls.push_back(std::move(call));
    }
    return calls;
  }());
  return all;
}

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  // A dialog that nobody expected ends at once, and is no failure here.
  const FailuresAside aside;
  Input input(data, size);
  const Volumes volumes;
  KorvelForgetTables();
  volumes.file("t.tab", "Actes\r\nVersion: 2\r\n#DEBUT\r\n01,Garde\r\n02,Visite\r\n#FIN\r\n");
  volumes.file("a", "[A]\r\nx=1\r\n");
  std::strcpy(szDirTables, "Data:");
  ScriptedDesktop desk;
  ports[0] = KorvelImagePort(20, 20);
  for (int calls = 0; calls < 40 && input.remaining_bytes() > 0; ++calls) {
    const auto which = input.ConsumeIntegralInRange<std::size_t>(0, everything().size() - 1);
    everything()[which](input);
  }
  KorvelPortRelease(ports[0]);
  // The window of a work belongs to this desktop.
  KorvelProgress(nullptr, 1, 1);
  desk.finish();
  return 0;
}
