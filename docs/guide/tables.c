/* SPDX-License-Identifier: MIT */
/* A table of acts: made if it is missing, shown and looked up while a code is typed, and edited. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <korvel/korvel.h>

#include "french.h"

static const char kTable[] = "actes";
enum { kCode, kName, kFee, kTexts };
enum { kNameColumn = 1, kFeeColumn = 2 };
enum { kFirstText = 100 };

/* A new line in front of the last one, which is "#FIN". */
static int addAct(const char *code, const char *name, const char *fee) {
  char line[256];
  snprintf(line, sizeof line, "%s,%s,%s\r\n#FIN", code, name, fee);
  return ZRV_Libelle_NC("#FIN", 4, 0, kTable, NULL, 0) &&
         ZRV_Libelle_NC_idem_replace("", 0, 0, kTable, line);
}

static int makeTable(void) {
  return ZRV_Table_create(kTable, "2026", french("Actes du cabinet")) &&
         addAct("C", "Consultation", "26.50") &&
         addAct("V", french("Visite à domicile"), "36.50") &&
         addAct("ECG", french("Tracé"), "14.26");
}

/* Shows the name and the fee of the code that is typed. */
static int changed(int item, int textInUse, int textFirstItem, char **texts, int textCount,
                   int boolInUse, int boolFirstItem, int *bools, int boolCount, int intInUse,
                   int intFirstItem, int *ints, int intCount, int numInUse, int numFirstItem,
                   double *nums, int numCount, int dateInUse, int dateFirstItem, int *dates,
                   int dateCount, int *redisplay, int capacity) {
  (void)textInUse, (void)textFirstItem, (void)textCount;
  (void)boolInUse, (void)boolFirstItem, (void)bools, (void)boolCount;
  (void)intInUse, (void)intFirstItem, (void)ints, (void)intCount;
  (void)numInUse, (void)numFirstItem, (void)nums, (void)numCount;
  (void)dateInUse, (void)dateFirstItem, (void)dates, (void)dateCount;
  if (item != kFirstText + kCode || capacity < 2) return 0;
  int length = (int)strlen(texts[kCode]);
  if (ZRV_Libelle_NC(texts[kCode], length, kNameColumn, kTable, texts[kName], TDB_BUFFERSIZE)) {
    ZRV_Libelle_NC_idem(texts[kCode], length, kFeeColumn, kTable, texts[kFee], TDB_BUFFERSIZE);
  } else {
    *texts[kName] = *texts[kFee] = '\0';
  }
  redisplay[0] = kFirstText + kName;
  redisplay[1] = kFirstText + kFee;
  return 2;
}

/* Refuses a fee that would be two columns. */
static int accepted(WindowRef window, int textInUse, char **texts, int textCount, int boolInUse,
                    int *bools, int boolCount, int intInUse, int *ints, int intCount, int numInUse,
                    double *nums, int numCount, int dateInUse, int *dates, int dateCount) {
  (void)textInUse, (void)textCount, (void)boolInUse, (void)bools, (void)boolCount;
  (void)intInUse, (void)ints, (void)intCount, (void)numInUse, (void)nums, (void)numCount;
  (void)dateInUse, (void)dates, (void)dateCount;
  if (!strpbrk(texts[kFee], ",+")) return 1;
  DlgBoxFinal_MessageBox(window, french("Écrivez le tarif avec un point."),
                         french("Saisie non acceptée"), KorvelCautionIcon);
  return 0;
}

static void field(int i, const char *label, int y, int cx) {
  StaticDlgBox_set(i, french(label));
  StaticDlgBox_set_geo(i, 10, y, 44, 12);
  TexteDlgBox_set_geo(i, 56, y, cx, 12, i);
  TexteDlgBox_set(i, "");
}

int main(void) {
  char codes[256] = "", found[16] = "", code[16] = "", name[128] = "";
  snprintf(szVolumes, sizeof szVolumes, "%s/volumes", getenv("HOME"));
  strcpy(szDirTables, "Cabinet:tables");
  if (!File_Is_Existing("Cabinet:tables:actes.tab") && !makeTable()) {
    puts("La table ne peut pas être créée.");
    return 1;
  }
  ZRV_Table_liste(kTable, codes, sizeof codes);
  printf("codes : %s\n", codes);
  if (ZRV_CodeNCS_NC("CONSULTATION", kNameColumn, kTable, found, sizeof found))
    printf("une consultation est %s\n", found);

  TailleDlgBox_set(190, 92);
  StaticDlgBox_param(kTexts);
  TexteDlgBox_param(kTexts, kFirstText);
  field(kCode, "Code", 12, 30);
  field(kName, "Acte", 30, 120);
  field(kFee, "Tarif (€)", 48, 40);
  TexteDlgBox_set_ncarac(kCode, sizeof code - 1);
  DlgBoxGlobal_set(changed);
  DlgBoxFinal_set(accepted);
  if (!ZRVDlgBoxEx("Tarif d'un acte", 0)) return 0;

  /* What was typed over the fee is the new fee of that line. A line without a name, such as the
     first and last ones of the file, is no act. */
  TexteDlgBox_retrieve(kCode, code, sizeof code);
  if (ZRV_Libelle_NC(code, (int)strlen(code), kNameColumn, kTable, name, sizeof name) && *name &&
      ZRV_Libelle_NC_idem_replace("", 0, kFeeColumn, kTable, TDB_pszBuffer[kFee]))
    printf("%s : %s\n", code, TDB_pszBuffer[kFee]);
  return 0;
}
