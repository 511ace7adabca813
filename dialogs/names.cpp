// SPDX-License-Identifier: MIT
// Names of fields for screen readers, where no text stands beside a field. They are kept here, not
// in an exported table: they concern one run.
#include "dialogs/names.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/guard.h"
#include "dialogs/misuse.h"
#include "dialogs/numbering.h"
#include "dialogs/run.h"
#include "dialogs/screen.h"

namespace korvel::dialogs {

namespace {

struct Name {
  const FieldType *type;
  int index;
  std::string text;
};

// Null while no field has a name.
constinit std::vector<Name> *names = nullptr;

bool nameIdentified(int identifier, std::string_view text) {
  if (runningScreen() != nullptr) return false;
  for (const FieldType *type : kFieldTypes) {
    if (identifier < *type->use.firstItem) continue;  // see fieldOf()
    const auto i = fieldOf(*type, identifier);
    if (!i) continue;
    nameField(*type, *i, text);
    return true;
  }
  return false;
}

void show(Screen &screen, const Name &name) {
  const int first = itemOf(*name.type, name.index);
  for (int item = first; item < first + name.type->itemsPerField; ++item)
    screen.setName(item, name.text);
}

}  // namespace

void nameField(const FieldType &type, int i, std::string_view name) {
  Name given{&type, i, std::string(name)};
  if (names == nullptr) names = new std::vector<Name>;
  names->reserve(names->size() + 1);
  std::erase_if(*names, [&](const Name &each) { return each.type == &type && each.index == i; });
  if (!name.empty()) names->push_back(std::move(given));
}

void showNames(Screen &screen) {
  if (names == nullptr) return;
  for (const Name &name : *names)
    if (isInUse(*name.type, name.index)) show(screen, name);
}

void forgetNames() {
  delete names;
  names = nullptr;
}

void forgetNames(const FieldType &type) noexcept {
  if (names == nullptr) return;
  std::erase_if(*names, [&](const Name &name) { return name.type == &type; });
}

}  // namespace korvel::dialogs

using namespace korvel::dialogs;

int KorvelItemName(int identifier, const char *text) {
  lookForMisuse([=] {
    needsNameable(Call("KorvelItemName", {identifier, text}), identifier, text);
  });
  const auto name = [=] { return nameIdentified(identifier, text); };
  return text != nullptr && korvel::base::guarded(false, name) ? 1 : 0;
}
