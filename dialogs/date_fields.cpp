// Date fields: their tables, how an application describes them, and the validation of a calendar
// date. A date is the number yyyymmdd.
#include <korvel/codecs.h>
#include <korvel/dates.h>

#include "dialogs/families.h"

using namespace korvel::dialogs;

constinit int DDB = 0;
constinit int DDB_N = 0;
constinit int DDB_ID_DATE = 0;
constinit short DDB_x[20] = {};
constinit short DDB_y[20] = {};
constinit short DDB_cx[20] = {};
constinit short DDB_cy[20] = {};
constinit short DDB_rk[20] = {};
constinit int DDB_bInit[20] = {};
constinit int DDB_bMand[20] = {};
constinit int DDB_bOK[20] = {};
constinit int DDB_lDates[20] = {};
constinit ValidInt_t vd_tab[20] = {};
constinit ValidInt_t *vd = vd_tab;

namespace {

constexpr int kNegative = 1;
constexpr int kNoCalendarDate = 2;

bool isCalendarDate(int yyyymmdd) {
  const int day = yyyymmdd % 100;
  const int month = yyyymmdd / 100 % 100;
  const int year = yyyymmdd / 10000 % 10000;
  return year >= 1800 && year <= 2100 && month >= 1 && month <= 12 && day >= 1 &&
         day <= utdatedm(year, month);
}

}  // namespace

int DateDlgBox_param(int n, int idFirst) {
  if (!define(kDates, n, idFirst)) return kRefused;
  for (int i = 0; i < n; ++i) {
    DDB_lDates[i] = 0;
    if (vd != nullptr) vd[i] = intcod_l;
  }
  return 0;
}

int DateDlgBox_set(int i, int yyyymmdd, int mode) {
  // Indexed by mode.
  static constexpr ValidInt_t kValidators[] = {intcod_l_sup0, intcod_l_date};
  if (!hasField(kDates, i)) return 0;
  DDB_lDates[i] = yyyymmdd;
  DDB_bInit[i] = 1;
  if (mode >= 0 && mode <= 1) DateDlgBox_set_fvalid(i, kValidators[mode]);
  return 0;
}

int DateDlgBox_set_geo(int i, int x, int y, int cx, int cy, int rk) {
  place(kDates, i, x, y, cx, cy, rk);
  return 0;
}

int DateDlgBox_set_fvalid(int i, ValidInt_t function) {
  if (hasField(kDates, i) && vd != nullptr) vd[i] = function;
  return 0;
}

int DateDlgBox_retrieve(int i, int *out) {
  if (hasField(kDates, i) && out != nullptr) *out = DDB_lDates[i];
  return 0;
}

int DateDlgBox_mandatory(int i, int on) {
  setMandatory(kDates, i, on);
  return 0;
}

int DateDlgBox_get_valid(int i) { return validFlag(kDates, i); }

int intcod_l_date(char *text, int *value) {
  const int status = intcod_l(text, value);
  if (status != 0) return status;
  if (*value < 0) return kNegative;
  return isCalendarDate(*value) ? 0 : kNoCalendarDate;
}
