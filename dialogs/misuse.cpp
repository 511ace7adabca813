// SPDX-License-Identifier: MIT
// Misuse of dialogs: indexes, counts, places, texts, and descriptions whose fields get in each
// other's way.
#include "dialogs/misuse.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <utility>

#include "dialogs/layout.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/static_texts.h"
#include "dialogs/text_fields.h"
#include "messages/misuse.h"
#include "platform/desktop.h"
#include "tables/misuse.h"

namespace korvel::dialogs {

namespace {

int countOf(const FieldType &type) { return std::clamp(*type.use.count, 0, type.capacity); }

bool isShort(int number) { return number == static_cast<short>(number); }

// Whether field j of b has an identifier of field i of a, of three if it is a date.
bool shareIdentifier(const FieldType &a, int i, const FieldType &b, int j) {
  const long long firstOfA = identifierOf(a, i), firstOfB = identifierOf(b, j);
  return firstOfA < firstOfB + b.itemsPerField && firstOfB < firstOfA + a.itemsPerField;
}

bool shareRank(const FieldType &a, int i, const FieldType &b, int j) {
  return a.place.rank[i] >= 0 && a.place.rank[i] == b.place.rank[j];
}

// Calls `visit` with each pair of fields in use.
template <typename Visit>
void forEachPair(Visit visit) {
  forEachField([&](const FieldType &a, int i) {
    bool isBehind = false;
    forEachField([&](const FieldType &b, int j) {
      if (isBehind) visit(a, i, b, j);
      isBehind = isBehind || (&a == &b && i == j);
    });
  });
}

// Only the first pair of two kinds: where they overlap, they do so in many places.
template <typename MakeCall>
void tellOfIdentifiers(MakeCall makeCall) {
  constexpr std::size_t kKinds = std::size(kFieldTypes);
  std::array<std::pair<const FieldType *, const FieldType *>, kKinds *kKinds> told = {};
  auto *end = told.begin();
  forEachPair([&](const FieldType &a, int i, const FieldType &b, int j) {
    const std::pair kinds(&a, &b);
    const bool isTold = std::find(told.begin(), end, kinds) != end;
    if (&a == &b || isTold || !shareIdentifier(a, i, b, j)) return;
    *end++ = kinds;
    const Call &call = makeCall();
    call.misused({a.name, " ", i, " and ", b.name, " ", j, " both have the identifier ",
                  std::max(identifierOf(a, i), identifierOf(b, j)), ": ", a.definedBy, " and ",
                  b.definedBy, " need identifiers that do not overlap"});
  });
}

// The two identifiers in front of the first date's are that date's, too.
template <typename MakeCall>
void tellOfDatesNeighbours(MakeCall makeCall) {
  forEachField([&](const FieldType &type, int i) {
    const long long distance = *kDateFields.use.firstItem - identifierOf(type, i);
    if (&type != &kPushButtons || !isInUse(kDateFields, 0) || distance < 1 || distance > 2) return;
    makeCall().misused({type.name, " ", i, " has the identifier ", identifierOf(type, i),
                        ", which counts as date field 0: its first identifier is ",
                        *kDateFields.use.firstItem});
  });
}

// Items of a form that identifiers that overlap do not explain.
template <typename MakeCall>
void tellOfItems(MakeCall makeCall) {
  forEachPair([&](const FieldType &a, int i, const FieldType &b, int j) {
    const int item = std::max(itemOf(a, i), itemOf(b, j));
    const bool isShared =
        item < itemOf(a, i) + a.itemsPerField && item < itemOf(b, j) + b.itemsPerField;
    if (item < 1 || !isShared || shareIdentifier(a, i, b, j)) return;
    makeCall().misused({a.name, " ", i, " and ", b.name, " ", j, " both lead to item ", item,
                        " of the form: a rank is the number of an item there"});
  });
}

bool hasPlace(const FieldType &type, int i) {
  return type.place.x[i] != 0 || type.place.y[i] != 0 || type.place.cx[i] != 0 ||
         type.place.cy[i] != 0;
}

// What would keep a field of a built dialog from the screen, or in a corner of it.
void tellOfPlace(const Call &call, const FieldType &type, int i) {
  call.misusedIf(type.place.rank != nullptr && type.place.rank[i] < 0,
                 {type.name, " ", i, " has no rank, and so is not shown: give it one from 0 on"});
  call.misusedIf(!hasPlace(type, i), {type.name, " ", i, " has no place and no size"});
  call.misusedIf(type.place.cx[i] == 0 && type.place.cy[i] == 0,
                 {type.name, " ", i, " has no size"});
}

// Told here and not where they are set: a field whose choices do not fit into its slice may be
// given a buffer of the application's before it is shown.
template <typename MakeCall>
void tellOfChoices(MakeCall makeCall) {
  for (int i = 0; isInUse(kTextFields, i); ++i) {
    const Call &call = makeCall();
    const auto length = static_cast<int>(storedText(kChoices, i).size());
    const bool isOwn = TDB_PSZLBUFFER[i] == TDB_SZLBUFFER + i * TDB_BUFFERSIZE;
    call.misusedIf(isOwn && areCutChoices(i) && length == TDB_BUFFERSIZE - 1,
                   {"the choices of text field ", i, " are cut to ", length,
                    " characters: TexteDlgBox_set_liste_buffer takes more"});
    // Those of the application may be filled in until now.
    if (!isOwn && (TDBC[i] != 0 || TDBL[i] != 0))
      needsCp1252(call, "a choice", storedText(kChoices, i));
  }
}

bool isCovered(int item) {
  bool found = false;
  forEachField([&](const FieldType &type, int i) {
    const int first = itemOf(type, i);
    found = found || (item >= first && item < first + type.itemsPerField);
  });
  return found;
}

void tellOfForm(const char *name, const platform::Dialog &dialog) {
  for (int item = kFirstFieldItem; item <= std::numeric_limits<short>::max(); ++item) {
    if (dialog.kind(item) == platform::ItemKind::None || isCovered(item)) continue;
    Call("ZRVDlgBox", {name})
        .misused({"item ", item, " of the form belongs to no field: no _param covers it"});
  }
}

// Of mandatory ones the library always tells.
void tellOfOptionalFields(const char *name, const platform::Dialog &dialog) {
  forEachField([&](const FieldType &type, int i) {
    if (type.flags.mandatory != nullptr && type.flags.mandatory[i] != 0) return;
    if (const auto item = missingItem(dialog, type, i)) {
      Call("ZRVDlgBox", {name})
          .misused({type.name, " ", i, " is not in the form: there is no item ", *item});
    }
  });
}

}  // namespace

void needsCount(const Call &call, const FieldType &type, int n, int least) {
  call.misusedIf(n < least || n > type.capacity, {"a count of ", n, " is out of range: ", least,
                                                  " to ", type.capacity, " are possible"});
}

void needsField(const Call &call, const FieldType &type, int i) {
  const int count = countOf(type);
  call.misusedIf(count == 0,
                 {"there is no ", type.name, " at all: ", type.definedBy, " comes first"});
  call.misusedIf(!hasField(type, i), {"there is no ", type.name, " ", i, ": ", count,
                                      " are in use, from 0 to ", count - 1});
  call.needsAll();
}

void needsFieldInUse(const Call &call, const FieldType &type, int i) {
  call.misusedIf(*type.use.inUse == 0, {"no ", type.name, " is in use: ", type.definedBy,
                                        " comes first, and clears what was set before it"});
  needsField(call, type, i);
}

void needsFieldOnScreen(const Call &call, const FieldType &type, int i) {
  call.misusedIf(runningScreen() == nullptr,
                 {"no dialog runs: this is for its callbacks and actions"});
  needsFieldInUse(call, type, i);
}

void needsText(const Call &call, const FieldType &type, int i, const char *text, int longest) {
  needsFieldInUse(call, type, i);
  needsText(call, text, static_cast<std::size_t>(std::max(longest, 0)));
}

void needsText(const Call &call, const char *text, std::size_t longest) {
  call.needsAll();
  const std::string_view given = base::textOf(text);
  needsCp1252(call, "the text", given);
  needsFit(call, "the text", given.size(), longest);
}

void needsPlace(const Call &call, const FieldType &type, int i,
                std::initializer_list<int> placeAndSize, int rank) {
  needsFieldInUse(call, type, i);
  for (const int number : placeAndSize) {
    call.misusedIf(!isShort(number), {number, " is not from -32768 to 32767, and is kept as ",
                                      static_cast<int>(static_cast<short>(number))});
  }
  call.misusedIf(rank >= kNumberedItems,
                 {"there is no rank ", rank, ": ranks are from 0 to ", kNumberedItems - 1});
}

void needsMode(const Call &call, const FieldType &type, int i, int mode, int modes) {
  needsFieldInUse(call, type, i);
  call.misusedIf(mode < KorvelKeepValidation || mode >= modes,
                 {"there is no mode ", mode, ": 0 to ", modes - 1, ", or ", KorvelKeepValidation,
                  " to keep the validation function"});
}

void needsRoomFor(const Call &call, std::size_t length, int size) {
  call.needsAll();
  const long long needed = static_cast<long long>(length) + 1;
  call.misusedIf(size < needed,
                 {"nothing is copied into ", size, " bytes: the text needs ", needed});
}

void needsRoomForText(const Call &call, int i, int size) {
  needsField(call, kTextFields, i);
  if (call) needsRoomFor(call, storedText(kFieldTexts, i).size(), size);
}

void needsLabel(const Call &call, const FieldType &type, int i, const char *label, int labelSize,
                std::initializer_list<int> placeAndSize, int rank) {
  needsPlace(call, type, i, placeAndSize, rank);
  if (label != nullptr) needsText(call, label, static_cast<std::size_t>(labelSize - 1));
}

void needsLowerLimit(const Call &call, int i, int n) {
  needsFieldInUse(call, kTextFields, i);
  call.misusedIf(n < 0, {"a limit of ", n, " characters counts as 0"});
  if (!call) return;
  call.misusedIf(n > TDB_iCarac[i],
                 {"the limit is never raised: it stays at ", TDB_iCarac[i], " characters"});
}

void needsTabStops(const Call &call, int i) {
  needsFieldInUse(call, kTextFields, i);
  call.misusedIf(
      call && TDB_PITABSTOPS[i] == nullptr,
      {"text field ", i, " has no tab stops: fields 0 to ", std::size(TDB_ITABSTOPS) - 1, " have"});
}

void needsChoices(const Call &call, int i) {
  needsFieldInUse(call, kTextFields, i);
  call.misusedIf(
      call && TDBC[i] == 0 && TDBL[i] == 0,
      {"text field ", i, " is neither a pop-up nor a list: TexteDlgBox_set_liste comes first"});
}

void needsDecimals(const Call &call, int i, int n) {
  needsFieldInUse(call, kNumberFields, i);
  call.misusedIf(n < 0, {n, " decimals count as 0"});
}

void needsTextOnScreen(const Call &call, int i, const char *text) {
  needsFieldOnScreen(call, kTextFields, i);
  needsText(call, kTextFields, i, text, TDB_BUFFERSIZE - 1);
}

void needsChoicesOnScreen(const Call &call, int i) {
  needsFieldOnScreen(call, kTextFields, i);
  needsChoices(call, i);
}

void needsNumberOnScreen(const Call &call, int i, const char *text) {
  constexpr std::size_t kLongestEntry = 255;
  needsFieldOnScreen(call, kNumberFields, i);
  needsText(call, text, kLongestEntry);
}

void needsAnotherWay(const Call &call) {
  call.misused(
      {"this changes nothing: write the value into its table and name the field in "
       "redisplay, in the global callback"});
}

void needsSize(const Call &call, int cx, int cy) {
  const Size shown = shownSize(cx, cy, false);
  call.misusedIf(cx < 0 || cy < 0, {"a size below 0 shows room for the button pair"});
  call.misusedIf(shown.width == kLargestSide || shown.height == kLargestSide,
                 {"no side is shown longer than ", kLargestSide, " pixels"});
}

void needsButtonTexts(const Call &call, const char *text1, const char *text2) {
  for (const char *text : {text1, text2}) needsText(call, text, std::size(OK_sz1) - 1);
}

void needsButton(const Call &call, int n) {
  call.misusedIf(n != KorvelAcceptItem && n != KorvelCancelItem,
                 {"there is no button ", n, ": 1 accepts and 2 cancels"});
}

void needsOwner(const Call &call, const char *text, const char *caption) {
  call.needsAll();
  messages::needsMessage(call, base::textOf(text), base::textOf(caption));
}

void needsNameable(const Call &call, int identifier, const char *text) {
  call.needsAll();
  call.misusedIf(runningScreen() != nullptr, {"a dialog runs: fields are named before"});
  bool isThere = false;
  forEachField([&](const FieldType &type, int i) {
    const long long distance = identifier - identifierOf(type, i);
    isThere = isThere || (distance >= 0 && distance < type.itemsPerField);
  });
  call.misusedIf(!isThere, {"no field in use has the identifier ", identifier});
  needsCp1252(call, "the text", base::textOf(text));
}

void needsNoDialog(const Call &call) {
  call.misusedIf(runningScreen() != nullptr, {"a dialog is up already, and one runs at a time"});
}

void needsTemplate(const Call &call) {
  call.needsAll();
  needsNoDialog(call);
}

void needsNobody(const Call &call) {
  call.misused({"this is for the library: ZRVDlgBoxEx and ZRVDlgBox run dialogs"});
}

void needsChooser(const Call &call) {
  call.needsAll();
  call.misusedIf(liste_base == nullptr, {"no call of SelectMT reads its table"});
}

void needsPractitioners(const Call &call, const char *directory) {
  needsNoDialog(call);
  tables::needsDirectory(call, directory);
  tables::needsTable(call, "MT.par");
}

void tellOfDescription(const char *title, WindowRef parent) {
  constexpr std::size_t kLongestTitle = 255;
  const auto call = [=] { return Call("ZRVDlgBoxEx", {orNull(title), orNull(parent)}); };
  if (runningScreen() != nullptr) return needsNoDialog(call());
  if (title != nullptr) needsText(call(), title, kLongestTitle);
  tellOfIdentifiers(call);
  tellOfDatesNeighbours(call);
  tellOfChoices(call);
  forEachPair([&](const FieldType &a, int i, const FieldType &b, int j) {
    call().misusedIf(shareRank(a, i, b, j),
                     {a.name, " ", i, " and ", b.name, " ", j, " both have the rank ",
                      a.place.rank[i], ": each field needs one of its own"});
  });
  forEachField([&](const FieldType &type, int i) { tellOfPlace(call(), type, i); });
  for (int i = 0; isInUse(kStaticTexts, i); ++i) tellOfPlace(call(), kStaticTexts, i);
}

void tellOfTemplate(const char *name, const platform::Dialog &dialog) {
  const auto call = [=] { return Call("ZRVDlgBox", {name}); };
  tellOfIdentifiers(call);
  tellOfDatesNeighbours(call);
  tellOfItems(call);
  tellOfChoices(call);
  tellOfForm(name, dialog);
  tellOfOptionalFields(name, dialog);
}

}  // namespace korvel::dialogs
