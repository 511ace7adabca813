/* SPDX-License-Identifier: MIT */
/* own_names_program <part> <folder>: an application that calls the library's functions by what
   dlsym finds for them in the library, and writes what they answer. It is built twice, once with
   functions of its own under the library's names (own_names.py): what it writes has to be the same.

   Parts: texts, files, profiles, tables, drawing, messages, dialog, template, chooser. The folder
   is empty at first, and has everything that a part makes. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <dlfcn.h>

#include <korvel/korvel.h>

#include "tests/support/person_at_keys.h"

static void *theirs(const char *name) {
  static void *library = 0;
  if (!library) library = dlopen("libkorvel.so.1", RTLD_NOW | RTLD_NOLOAD);
  void *address = library ? dlsym(library, name) : 0;
  if (!address) {
    fprintf(stderr, "the library has no %s\n", name);
    exit(2);
  }
  return address;
}

/* The library's function of this name, whatever the program itself calls so. */
#define LIB(name) (__extension__(__typeof__(&name)) theirs(#name))

static void show(const char *what, const char *text) {
  printf("%s \"", what);
  for (; text && *text; text++) {
    unsigned char byte = (unsigned char)*text;
    if (byte >= 0x20 && byte < 0x7F)
      putchar(byte);
    else
      printf("\\x%02X", byte);
  }
  puts("\"");
  fflush(stdout);
}

static void told(const char *what, double number) {
  printf("%s %.17g\n", what, number);
  fflush(stdout);
}

/* Writes a call and what it answers. */
#define TELL(name, ...) told(#name, LIB(name)(__VA_ARGS__))
#define SHOW(name, ...) show(#name, LIB(name)(__VA_ARGS__))

/* ---- Texts, numbers, dates ---- */

static void playStrings(void) {
  char text[64] = "  bonjour  ", list[64] = "a+b,c", *item = 0, *grown = 0;
  int capacity = 0;
  SHOW(KorvelVersion, );
  TELL(chelibl_f, text);
  TELL(chelibl_d, text);
  TELL(chelicar_f, text, 'r');
  TELL(chelicar_d, text, 'b');
  TELL(chcomp, text, "onjou");
  TELL(chcher, "jo", text);
  TELL(chcher_c, 'j', text);
  LIB(chdelch)(text, 1, 1);
  TELL(chinsch, text, sizeof text, "n ", 1);
  TELL(chinsch_c, text, sizeof text, 'x', 3);
  TELL(szcnum, text, 4);
  TELL(szcopy, text, sizeof text, "abcdef", 3);
  TELL(szcopy_overlap, text + 1, 20, text, 5);
  TELL(szcomp, "AB", 2, "AB", 2);
  TELL(szcompex, "A?C", 3, "ABC", 3);
  TELL(szcompex2, "AB*", 3, "ABCD", 4);
  TELL(szincl, "bc", 2, "abcd", 4);
  TELL(szcopy_0t, text, sizeof text, "abcdef", 4);
  TELL(szconcat_0t, text, sizeof text, "\xE9t\xE9", 3);
  TELL(szcopyex, &grown, &capacity, 0, "abcdef", 6);
  told("capacity", capacity);
  free(grown);
  LIB(secure_lstrcat)(text, sizeof text, " \xE9t\xE9");
  LIB(w2mstr)(text);
  LIB(m2wstr)(text);
  show("text", LIB(strupr)(text));
  TELL(KorvelToUtf8, "\xE9t\xE9", text, sizeof text);
  TELL(KorvelFromUtf8, text, text, sizeof text);
  show("text", text);
  LIB(secure_lstrcpy)(text, sizeof text, list);
  TELL(Teste_liste, list);
  TELL(Teste_item_liste, list, "b", 1);
  TELL(Teste_item_szliste, list, 3, "b", 1);
  SHOW(Get_item_liste, list, 2);
  LIB(ChCh_Put_00)(list, sizeof list);
  LIB(ChCh_Cut)(list);
  TELL(ChCh_Count_Item, list);
  TELL(ChCh_Is_00, list);
  item = LIB(ChCh_Get_Next_Item)(list);
  LIB(ChCh_Delete_Item)(item);
  LIB(ChCh_Bind_sep)(list, ';');
  LIB(ChCh_Cut_sep)(list, ';');
  LIB(ChCh_Bind)(list);
  show("list", list);
}

static void playNumbers(void) {
  char text[64] = " +12 ", out[64];
  int value = 0, high = 0;
  double number = 0, rest = 0;
  float small = 0, part = 0;
  TELL(intcod_i, text, &value);
  TELL(intcod_l, text, &value);
  TELL(intcod_i_sup0, text, &value);
  TELL(intcod_i_ssup0, text, &value);
  TELL(intcod_l_sup0, text, &value);
  TELL(intdco_i, value, out, sizeof out);
  TELL(intdco_l, value, out, sizeof out);
  show("out", out);
  TELL(realcod_d, strcpy(text, " -1,5e1 "), &number);
  TELL(realcod_f, text, &small);
  TELL(realcod_d_sup0, text, &number);
  TELL(realcod_d_ssup0, text, &number);
  TELL(realdco_d, number, out, sizeof out, 2);
  show("out", out);
  TELL(realdco_sd, number, out, sizeof out, 2);
  show("out", out);
  LIB(utrealds)(&number, &number, &rest);
  LIB(utrealfs)(&small, &small, &part);
  told("rest", rest + part);
  TELL(LongToNUM, 7, out, 2);
  TELL(IntToNUM, 2004, out, 4);
  TELL(NUMToLong, " 042", 4, &value);
  TELL(NUMToInt, " 042", 4, &value);
  TELL(NUMP100ToLong, "25 %", 4, &value);
  TELL(NUMPInterToLong, "[10-20]", 7, &value, &high);
  TELL(DoubleToNUMD, 2.5, out, 4, 1);
  TELL(NUMDToDouble, "12,5%", 5, &number);
  TELL(Teste_NUM_liste, "1+2,3");
  TELL(Get_NUM_liste, "1+2,3", 1);
  told("value", value + high + number);
}

static void playDates(void) {
  char out[32], again[32];
  LIB(ZRV_Build_Date)("07/03/2004", out);
  TELL(ZRV_Build_Date_short, "07/03/04", out);
  TELL(ZRV_Build_Date_long, "07/03/04", "09:05", out);
  TELL(ZRV_Build_Date_slong, "07/03/04", "09:05:30", out);
  TELL(ZRV_Build_Date_SV, "07/03/04", again);
  show("stored", out);
  LIB(ZRV_Inv_Date_2)(out, again);
  LIB(ZRV_Inv_Date_Time)(out, again);
  LIB(ZRV_Inv_Date)(out, again);
  TELL(ZRV_Reduc_Date, again, out);
  show("shown", out);
  TELL(ZRV_Get_Date_short, out);
  TELL(ZRV_Get_Date_long, out);
  TELL(ZRV_Get_Date_slong, out);
  TELL(utdately, 2000);
  TELL(utdatedm, 2004, 2);
  TELL(utdatedw, 2000, 1, 1);
  TELL(Validate_Date, 20000229);
  TELL(Get_Date_Incr, 20001231, 400);
  TELL(Get_Date_Diff, 20010301, 400);
  TELL(Min_depuis_org, 19990102, 905, 1999);
  TELL(intcod_l_date, strcpy(out, "20230228"), &(int){0});
  SHOW(utdatemy, 2);
  SHOW(utdatedn, 6);
  SHOW(utdatemm, 2);
  SHOW(utdatedd, 0);
}

static void playTexts(void) {
  playStrings();
  playNumbers();
  playDates();
}

/* ---- Files, profiles, tables ---- */

static int showName(const char *name) {
  show("visited", name);
  return 0;
}

static int showLine(char *line) {
  show("line", line);
  return 0;
}

static void playHandles(void) {
  char text[64] = "";
  int file = LIB(File_Open)("Data:un", 1, 0);
  told("missing", file);
  file = LIB(File_Open)("Data:un", 0, 1);
  TELL(File_Write, file, "bonjour", 7);
  TELL(File_SetEOF, file, 6);
  TELL(File_Close, file);
  file = LIB(File_Open)("Data:un", 1, 1);
  TELL(File_Read, file, text, 3);
  TELL(File_Re_Read, file, text + 3, 3);
  TELL(File_Lseek, file, 2);
  TELL(File_GetPos, file);
  TELL(File_Size, file);
  TELL(File_Close, file);
  show("read", text);

  file = LIB(xFile_Open)("Data:deux", 0, 1);
  TELL(xFile_Write, file, "salut", 5);
  TELL(xFile_Lseek, file, 1);
  TELL(xFile_GetPos, file);
  TELL(xFile_SetEOF, file, 3);
  TELL(xFile_Close, file);
  file = LIB(xFile_Open)("Data:deux", 1, 0);
  TELL(xFile_Size, file);
  TELL(xFile_Read, file, text, 10);
  TELL(xFile_Close, file);

  file = LIB(MFil_Open)("", 0, 0);
  TELL(MFil_Write, file, "memoire", 8); /* with its end, as it is shown as a text */
  TELL(MFil_Lseek, file, 2);
  TELL(MFil_Read, file, text, 3);
  TELL(MFil_Re_Read, file, text, 3);
  TELL(MFil_GetPos, file);
  TELL(MFil_Size, file);
  SHOW(MFil_LockPtr, file, 5);
  TELL(MFil_UnLockPtr, file);
  TELL(MFil_Close, file);
  void *block = LIB(GlobalAlloc)(0, 10);
  block = LIB(GlobalReAlloc)(block, 20);
  told("locked", LIB(GlobalLock)(block) == block);
  TELL(GlobalUnlock, block);
  TELL(GlobalFree, block);
}

static void playFolders(void) {
  char rows[4][256] = {"", "", "", ""}, list[64] = "un+deux+trois", *item = 0, out[256];
  TELL(MakeDir, "Data:dossier");
  TELL(File_Is_Existing, "Data:un");
  TELL(Dir_Is_Existing, "Data:dossier");
  told("MAC2UNIX", LIB(MAC2UNIX)("Data:un", out) > 0);
  told("BSDMAC2UNIX", LIB(BSDMAC2UNIX)("Data:un", out) > 0);
  TELL(BSDIsExisting, out);
  TELL(BSDMACchmodrwx, "Data:un");
  TELL(MACRename, "Data:deux", "Data:trois");
  TELL(Dir_FindFiles, rows[0], "Data", 4, "*");
  TELL(Dir_SortFiles, rows[0], 2);
  TELL(Dir_SortSizeFiles, rows[0], 2);
  show("first", rows[0]);
  TELL(Dir_ProcessFiles, "Data", "*", showName);
  LIB(ChCh_Put_00)(list, sizeof list);
  LIB(ChCh_Cut)(list);
  TELL(ChCh_Detect_Missing_File, "Data", list, &item);
  TELL(ChCh_Remove_Missing_File, "Data", list);
  show("missing", item);
  TELL(MACRemove, "Data:trois");
}

static void playShell(const char *folder) {
  char out[256] = "", from[512], to[512];
  CFBundleRef bundle = 0;
  snprintf(from, sizeof from, "%s/Data/un", folder);
  snprintf(to, sizeof to, "%s/Data/dossier", folder);
  TELL(BSDInvokeTool, "echo bonjour", out, sizeof out);
  show("out", out);
  TELL(BSDInvokeToolWr, "cat >/dev/null",
       "entr\xE9"
       "e");
  TELL(BSDInvokeToolPr, "echo un; echo deux", showLine);
  TELL(BSDCopy, from, to);
  TELL(BSDSCopy, from, to);
  TELL(BSDDir_FindFiles, out, to, 1, "u");
  TELL(BSDDir_ProcessFiles, to, "u", showName);
  TELL(BSDDir_ProcessFiles_f, strcpy(out, "a/b*"));
  TELL(BSDRemove, to);
  TELL(BSDtestProcess, "no.process.is.called.so");
  TELL(BSDprocesst, out);
  TELL(BSDkill, "no.process.is.called.so");
  TELL(LoadFrameworkBundle, "System.framework", &bundle);
  TELL(LoadFrameworkBundleSystem, "no.framework", &bundle);
  told("MACOSVersion", LIB(MACOSVersion)());
  told("RunningOnCarbonX", LIB(RunningOnCarbonX)());
}

static void playFiles(const char *folder) {
  playHandles();
  playFolders();
  playShell(folder);
}

static void playProfiles(void) {
  const char *path = "Data:reglages";
  char out[64] = "";
  TELL(WritePrivateProfileString, "Fenetre", "largeur", "640", path);
  TELL(WritePrivateProfileString, "Fenetre", "titre", "Fiche", path);
  TELL(WritePrivateProfileSection, "Autre", "a=1\r\nb=2", path);
  TELL(WritePrivateProfileString, "Autre", "a", 0, path);
  TELL(GetPrivateProfileInt, "Fenetre", "largeur", 5, path);
  TELL(GetPrivateProfileInt, "Fenetre", "hauteur", 5, path);
  TELL(GetPrivateProfileString, "Fenetre", "titre", "?", out, sizeof out, path);
  show("title", out);
  TELL(GetPrivateProfileString, "Autre", "a", "?", out, sizeof out, path);
  show("removed", out);
}

static void showFields(char *fields) { show("fields", fields); }

/* A table of three lines, made by edits alone. */
static void makeTable(void) {
  static const char *const lines[] = {("01,S\xE9"
                                       "ance,01/01/00,31/12/09"),
                                      "02,Visite+domicile", "01,Consultation,01/01/10,31/12/19"};
  TELL(ZRV_Table_create, "actes", "1", "Actes");
  for (int i = 0; i < 3; i++) {
    LIB(ZRV_Libelle_NC_set_ligne)(3 + i);
    TELL(ZRV_Libelle_NC_idem_insert, "", 0, "actes", 1);
    LIB(ZRV_Libelle_NC_set_ligne)(4 + i);
    TELL(ZRV_Libelle_NC_idem_replace, "", 0, 0, "actes", lines[i]);
  }
}

static void playLookups(void) {
  char out[64] = "";
  const char *labels[] = {"Visite", 0};
  const int columns[] = {1, -1};
  TELL(ZRV_Libelle_NC, "02", 2, 1, "actes", out, sizeof out);
  TELL(ZRV_Libelle_NC_idem, "02", 2, 2, "actes", out, sizeof out);
  TELL(ZRV_Libelle_NC_idem_0, "02", 2, 1, "actes", out, sizeof out);
  show("label", out);
  TELL(ZRV_Libelle_2, 1, 1, "actes", out, sizeof out);
  TELL(ZRV_Libelle_NC_next, "01", 2, 1, "actes", out, sizeof out);
  show("label", out);
  TELL(ZRV_Libelle_NC_dates, "01", 2, 1, "actes", out, sizeof out, 2, 20150101);
  show("label", out);
  told("line", LIB(ZRV_Libelle_NC_get_ligne)());
  TELL(ZRV_Code_NC, "Consultation", 1, "actes", out, sizeof out);
  TELL(ZRV_Code_NC_next, "Consultation", 1, "actes", out, sizeof out);
  TELL(ZRV_CodeNCS_NC, "visite", 1, "actes", out, sizeof out);
  TELL(ZRV_Code_NC_ex, labels, columns, "actes", out, sizeof out);
  show("code", out);
  TELL(ZRV_Code_NC_ex_next, labels, columns, "actes", out, sizeof out);
}

static void playTables(void) {
  char out[64] = "";
  int first = 0, last = 0;
  SHOW(setDirTables, "");
  strcpy(szDirTables, "Data:");
  makeTable();
  playLookups();
  TELL(ZRV_Libelle_NC, "02", 2, 1, "actes", out, sizeof out);
  TELL(ZRV_Libelle_NC_set, "02", 2, 1, "actes", "Visites");
  TELL(ZRV_Libelle_NC_idem_flush, "02", 2, "actes");
  TELL(ZRV_Table_liste, "actes", out, sizeof out);
  show("codes", out);
  TELL(ZRV_Table_scan, "actes", &first, &last, showFields);
  TELL(ZRV_Table_sauvegarde, "actes", 1);
  LIB(ZRV_Libelle_NC_set_ligne)(4);
  TELL(ZRV_Libelle_NC_idem_delete, "", 0, "actes");
  TELL(ZRV_Table_modify, "actes", "soins", "2", "Soins");
  TELL(ZRV_Table_repair, "soins", "3", "Autres");
  TELL(ZRV_Table_scan, "soins", &first, &last, showFields);
  SHOW(setDirTables, "Data:");
  SHOW(getDirTables, );
  TELL(ZRV_Libelle_NC, "02", 2, 1, "soins.tab", out, sizeof out);
  show("label", out);
  LIB(KorvelForgetTables)();
  TELL(ZRV_Table_remove, "soins.tab");
  told("lines", first + last);
}

/* ---- Drawing, messages ---- */

static unsigned long inkOf(CGrafPtr image, int width, int height) {
  unsigned long sum = 0;
  RGBColor colour;
  for (int y = 0; y < height; y++)
    for (int x = 0; x < width; x++)
      if (LIB(KorvelPortPixel)(image, x, y, &colour))
        sum = sum * 31 + colour.red + 3ul * colour.green + 7ul * colour.blue;
  return sum;
}

static void playDrawing(const char *folder) {
  char path[512];
  int a = 0, b = 0, c = 0;
  RGBColor colour;
  CGrafPtr image = LIB(KorvelImagePort)(200, 100), current = 0;
  LIB(SetPort)(image);
  LIB(GetPort)(&current);
  told("current", current == image && image != 0);
  TELL(ch_font_set, image, "Arial", KorvelBlack, KorvelTransparent, 12);
  TELL(ch_font_set_ext, image, "Arial", KorvelBlue, KorvelTransparent, 14, KorvelBold);
  TELL(ch_font_metrics, image, &a, &b, &c);
  TELL(TextOut_0, image, 2, 2, "Fiche", 5);
  TELL(GetTextExtent_0, image, "Fiche", 5, &a, &b);
  /* A tab, a bullet, a run, a folder, a pen, a line and a frame. */
  const char rich[] = "\xFF\x80$\xFF\x8Aun \xFF\x94 dossier\xFF\xC8!!\xFF\xCA,&\xFF\xD5.(";
  TELL(TextOut_Ext, image, 2, 20, 2, 0, rich, sizeof rich - 1);
  TELL(GetTextExtent_Ext, image, 2, 20, rich, sizeof rich - 1, &a, &b);
  TELL(ch_font_printstr, image, 2, 40, 150, KorvelRed, KorvelTransparent, 16, "\xFF\x8A Milieu");
  LIB(vga_col)(&colour, KorvelTeal);
  LIB(Line_Ex)(image, 2, 60, 90, 70, KorvelGreen, 2);
  LIB(LineC_Ex)(image, 2, 65, 90, 75, colour, 3);
  LIB(Rectangle_Ex)(image, 100, 60, 40, 20, KorvelSilver);
  TELL(BMP_affic_desfond0, "puceb", image, 150, 60);
  TELL(BMP_affic_dimfond0, "puceb", &a, &b);
  told("sizes", a + b + c);
  told("ink", (double)inkOf(image, 200, 100));
  snprintf(path, sizeof path, "%s/image.png", folder);
  TELL(KorvelPortSave, image, path);
  LIB(KorvelPortRelease)(image);
  told("none", LIB(KorvelPainterPort)(0) == 0 && LIB(KorvelWidgetWindow)(0) == 0);
}

static void playMessages(void) {
  char caption[] = "Fiche", text[] = "Enregistrer ?\r";
  EventRecord event = {KorvelKeyEvent, KorvelReturnKey, 0, 0};
  int hit = 0;
  pressKeys("\r\r\r\r");
  TELL(MessageBox, 0, "Enregistrer la fiche du patient, et tout ce qui la suit ?", "Fiche",
       KorvelQuestion | KorvelCautionIcon);
  TELL(MessageBox, 0, "Fait", "", KorvelNoteIcon);
  TELL(QuestionDialog, 0, caption, text, 1, KorvelDefaultNon);
  TELL(NoteDialog, 0, caption, text, 1, KorvelStopIcon);
  TELL(KorvelProgress, caption, 1, 2);
  TELL(MessageBoxFilter, 0, &event, &hit);
  told("hit", hit);
}

/* ---- Dialogs ---- */

enum { kName, kSecret, kChoice, kTexts };

static int changeOthers(int item, int t, int t0, char **texts, int tn, int b, int b0, int *bools,
                        int bn, int in, int i0, int *ints, int intn, int n, int n0, double *nums,
                        int nn, int d, int d0, int *dates, int dn, int *redisplay, int capacity) {
  (void)t, (void)t0, (void)tn, (void)b, (void)b0, (void)bools, (void)bn, (void)in, (void)i0;
  (void)intn, (void)n, (void)n0, (void)nn, (void)d, (void)d0, (void)dates, (void)dn;
  printf("hit %d\n", item);
  show("name", texts[kName]);
  if (capacity < 2 || item != 200) return 0;
  nums[0] = ints[0] / 4.0;
  LIB(TexteDlgBox_set_liste)(kChoice, "Madame+Monsieur+Docteur");
  LIB(ZRVDlgBox_texte_set_liste)(kChoice);
  LIB(ZRVDlgBox_texte_set)(kChoice, "Docteur");
  LIB(ZRVDlgBox_num_set)(1, "7,25");
  redisplay[0] = 300;
  return 1;
}

static int refusals = 0;

static int askAtEnd(WindowRef window, int t, char **texts, int tn, int b, int *bools, int bn, int i,
                    int *ints, int in, int n, double *nums, int nn, int d, int *dates, int dn) {
  (void)t, (void)texts, (void)tn, (void)b, (void)bools, (void)bn, (void)i, (void)ints, (void)in;
  (void)n, (void)nums, (void)nn, (void)d, (void)dates, (void)dn;
  if (refusals++ == 0) {
    TELL(DlgBoxFinal_MessageBox, window, "Pas encore", "Fiche", KorvelStopIcon);
    SHOW(DlgBoxFinal_Erreur, );
    return 0;
  }
  return LIB(MessageBox)(window, "Enregistrer ?", "Fiche", KorvelQuestion) == KorvelOuiAnswer;
}

static int act(WindowRef window) {
  told("action", LIB(GetWindowPort)(window) != 0);
  return 0;
}

/* Fields of every kind, validated by the library's own functions. */
static void define(void) {
  RGBColor grey = {0x8000, 0x8000, 0x8000};
  LIB(TexteDlgBox_param)(kTexts, 100);
  LIB(IntDlgBox_param)(1, 200);
  LIB(NumDlgBox_param)(2, 300);
  LIB(DateDlgBox_param)(1, 400);
  LIB(BoolDlgBox_param)(1, 500);
  LIB(PushDlgBox_param)(1, 600);
  LIB(StaticDlgBox_param)(1);
  LIB(StaticDlgBox_set)(0, "Nom");
  LIB(StaticDlgBox_set_geo)(0, 8, 8, 48, 12);
  LIB(StaticDlgBox_set_type)(0, KorvelStaticText);
  told("named", LIB(KorvelItemName)(100, "Nom") + LIB(KorvelItemName)(400, "Visite"));
  LIB(TailleDlgBox_set)(200, 200);
  LIB(ColorDlgBox_bkg)(grey);
  LIB(BOKDlgBox_textes)("Valider", "Annuler");
  LIB(BOKDlgBox_def)(KorvelAcceptItem);
  LIB(TexteDlgBox_set)(kName, "");
  LIB(TexteDlgBox_set_ncarac)(kName, 20);
  LIB(TexteDlgBox_set)(kSecret, "");
  LIB(TexteDlgBox_mandatory)(kSecret, 0);
  LIB(TexteDlgBox_password)(kSecret, 1);
  LIB(TexteDlgBox_set_liste)(kChoice, "Madame+Monsieur");
  LIB(TexteDlgBox_set)(kChoice, "Madame");
  LIB(IntDlgBox_set)(0, 12, KorvelPositive);
  LIB(NumDlgBox_set)(0, 1.5, KorvelNotNegative);
  LIB(NumDlgBox_set_nchiff)(0, 2);
  LIB(NumDlgBox_set)(1, 2.5, KorvelAnyValue);
  LIB(DateDlgBox_set)(0, 20000229, KorvelCalendarDate);
  LIB(PushDlgBox_set_fvalid)(0, act);
  LIB(DlgBoxGlobal_set)(changeOthers);
  LIB(DlgBoxFinal_set)(askAtEnd);
  LIB(TexteDlgBox_set_geo)(kName, 60, 8, 100, 12, 0);
  LIB(TexteDlgBox_set_geo)(kSecret, 60, 24, 100, 12, 1);
  LIB(IntDlgBox_set_geo)(0, 60, 40, 40, 12, 2);
  LIB(NumDlgBox_set_geo)(0, 60, 56, 40, 12, 3);
  LIB(NumDlgBox_set_geo)(1, 110, 56, 40, 12, 4);
  LIB(DateDlgBox_set_geo)(0, 60, 72, 50, 12, 5);
  LIB(TexteDlgBox_set_geo)(kChoice, 60, 88, 60, 12, 6);
  LIB(BoolDlgBox_set_geo)(0, "Coch\xE9", 60, 104, 80, 12, 7);
  LIB(PushDlgBox_set_geo)(0, "Action", 60, 120, 60, 15, 8);
}

static void showFieldValues(void) {
  char text[64] = "";
  int value = 0;
  double number = 0;
  for (int i = 0; i < kTexts; i++) {
    LIB(TexteDlgBox_retrieve)(i, text, sizeof text);
    show("text", text);
  }
  LIB(IntDlgBox_retrieve)(0, &value);
  told("integer", value);
  LIB(NumDlgBox_retrieve)(0, &number);
  told("number", number);
  LIB(NumDlgBox_retrieve)(1, &number);
  told("number", number);
  LIB(DateDlgBox_retrieve)(0, &value);
  told("date", value);
  LIB(BoolDlgBox_retrieve)(0, &value);
  told("box", value);
  told("valid", LIB(TexteDlgBox_get_valid)(kName) + LIB(IntDlgBox_get_valid)(0) +
                    LIB(NumDlgBox_get_valid)(0) + LIB(DateDlgBox_get_valid)(0));
}

static void playDialog(void) {
  define();
  told("valid", LIB(ZRVDlgBox_valid)());
  /* The name, the secret, the integer, numbers, the date's day; the choice and the box; the action;
     then OK, which is refused with a message at first. */
  pressKeys("Durand\tabc\t4\t3,5\t\t07\t\t\t\t \t \r\r\r\r");
  TELL(ZRVDlgBoxEx, "Fiche", 0);
  showFieldValues();
  told("left", keysLeft());
}

/* A layout drawn beforehand, whose items have these numbers. */
static void playTemplate(void) {
  snprintf(szResources, sizeof szResources, "%s", KORVEL_TEST_TEMPLATES);
  LIB(TexteDlgBox_param)(kTexts, 10);
  LIB(NumDlgBox_param)(1, 20);
  LIB(DateDlgBox_param)(1, 30);
  LIB(BoolDlgBox_param)(1, 40);
  LIB(PushDlgBox_param)(1, 50);
  LIB(TexteDlgBox_set)(0, "");
  LIB(TexteDlgBox_set_liste)(1, "Madame+Monsieur");
  LIB(TexteDlgBox_set)(1, "Monsieur");
  LIB(TexteDlgBox_set_liste)(2, "un$deux");
  LIB(TexteDlgBox_change_liste)(2);
  LIB(TexteDlgBox_set)(2, "");
  LIB(TexteDlgBox_mandatory)(2, 0);
  LIB(NumDlgBox_set)(0, 1.5, KorvelAnyValue);
  LIB(DateDlgBox_set)(0, 20000229, KorvelUncheckedDate);
  LIB(DlgBoxGlobal_set)(changeOthers);
  pressKeys("Anne\r");
  TELL(ZRVDlgBox, "visite");
  show("name", TDB_pszBuffer[0]);
  told("left", keysLeft());
}

/* What else is said about a dialog, none being shown. */
static void playSettings(void) {
  char text[64] = "", choices[] = "un+deux";
  const int stops[] = {10, 20, 0};
  define();
  TELL(TexteDlgBox_set_liste_buffer, kChoice, choices);
  TELL(TexteDlgBox_retrieve_liste, kChoice, text);
  show("choices", text);
  TELL(TexteDlgBox_change_liste, kChoice);
  TELL(TexteDlgBox_set_tabstops, kChoice, stops);
  TELL(BoolDlgBox_set, 0, 1);
  TELL(IntDlgBox_mandatory, 0, 0);
  TELL(IntDlgBox_password, 0, 1);
  TELL(NumDlgBox_mandatory, 0, 0);
  TELL(DateDlgBox_mandatory, 0, 0);
  TELL(IntDlgBox_set_fvalid, 0, LIB(intcod_i));
  TELL(NumDlgBox_set_fvalid, 0, LIB(realcod_d));
  TELL(DateDlgBox_set_fvalid, 0, LIB(intcod_l));
  TELL(TitreDlgBox_set, "Fiche");
  TELL(TitreDlgBox_retrieve, text, sizeof text);
  show("title", text);
  TELL(BOKDlgBox_set_geo, 1, 2);
  TELL(BOKDlgBox_pos, 3, 4);
  TELL(BOKDlgBox_textes_reset, );
  TELL(BOKDlgBox_def_reset, );
  TELL(BOKDlgBox_shadow, 1, 1, OK_shadow_c);
  TELL(TexteDlgBox_global, kName);
  TELL(TexteDlgBox_global_ex, kName, changeOthers);
  TELL(BoolDlgBox_global, 0);
  TELL(IntDlgBox_global, 0);
  TELL(NumDlgBox_global, 0);
  TELL(DateDlgBox_global, 0);
  TELL(ZRVDlgBox_bool_set, 0, 1);
  TELL(ZRVDlgBox_int_set, 0, 1);
  TELL(Dlg_CoefX, 3);
  TELL(Dlg_CoefCX, 3);
  TELL(Dlg_CoefY, 3);
  TELL(Dlg_CoefCY, 3);
  SHOW(DlgBoxFinal_Erreur_set, "non");
  TELL(DlgBoxFunc, 0);
  LIB(DlgBoxFinal_set)(0);
  TELL(ZRVDlgBox_end, 0);
  TELL(DlgBoxGlobal_nul, );
  TELL(DlgBoxFinal_nul, );
}

/* As in the chooser of an application that finds a practitioner by initials. */
static void playChooser(const char *folder) {
  char path[512];
  snprintf(path, sizeof path, "%s/Data/MT.par", folder);
  FILE *table = fopen(path, "w");
  if (!table) exit(2);
  fputs(
      "Praticiens\r\nVersion: 1\r\n#DEBUT\r\nDUB,Dr Dubois\r\nDUP,Dr Ana\xEFs Dupr\xE9\r\n"
      "AB,Dr Abel\r\n#FIN\r\n",
      table);
  fclose(table);
  pressKeys("DU\t\v\v\r");
  SHOW(SelectMT, 0, 0, "Data:");
  LIB(listeNoms)(path);
  told("left", keysLeft());
}

int main(int argc, char **argv) {
  if (argc != 3) return 2;
  const char *part = argv[1], *folder = argv[2];
  snprintf(szVolumes, sizeof szVolumes, "%s", folder);
  startToolkit(argc, argv);
  if (strcmp(part, "texts") == 0) playTexts();
  if (strcmp(part, "files") == 0) playFiles(folder);
  if (strcmp(part, "profiles") == 0) playProfiles();
  if (strcmp(part, "tables") == 0) playTables();
  if (strcmp(part, "drawing") == 0) playDrawing(folder);
  if (strcmp(part, "messages") == 0) playMessages();
  if (strcmp(part, "settings") == 0) playSettings();
  if (strcmp(part, "template") == 0) playTemplate();
  if (strcmp(part, "dialog") == 0) playDialog();
  if (strcmp(part, "chooser") == 0) playChooser(folder);
  puts("played");
  return 0;
}
