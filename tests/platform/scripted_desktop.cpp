// SPDX-License-Identifier: MIT
// A desktop in memory and the person who uses it, as a test's script says.
#include "tests/platform/scripted_desktop.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "platform/loader.h"
#include "platform/screentext.h"

namespace korvel::test {

using platform::ItemKind;
using platform::Picture;
using platform::Port;
using platform::Rect;
using platform::Run;

namespace {

// For characters of the Basic Multilingual Plane: the screen set has no others.
void appendUtf8(std::string &text, char16_t c) {
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | (c >> 6));
    text += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | (c >> 12));
    text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (c & 0x3F));
  }
}

std::u16string charactersOf(std::string_view utf8) {
  std::u16string characters;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
    unsigned c = length == 1 ? lead : length == 2 ? lead & 0x1F : lead & 0x0F;
    for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k) {
      c = (c << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
    }
    characters += static_cast<char16_t>(c);
    i += length;
  }
  return characters;
}

bool isTypeable(std::u16string_view characters) {
  return std::all_of(characters.begin(), characters.end(),
                     [](char16_t c) { return platform::byteOf(c).has_value(); });
}

const char *nameOf(ItemKind kind) {
  switch (kind) {
    case ItemKind::PushButton:
      return "push button";
    case ItemKind::CheckBox:
      return "check box";
    case ItemKind::ListBox:
      return "list box";
    case ItemKind::PopUp:
      return "pop-up";
    case ItemKind::EditText:
      return "edit text";
    case ItemKind::None:
      break;
  }
  return "nothing";
}

const char *nameOf(platform::AlertIcon icon) {
  switch (icon) {
    case platform::AlertIcon::Stop:
      return "stop";
    case platform::AlertIcon::Note:
      return "note";
    case platform::AlertIcon::Caution:
      break;
  }
  return "caution";
}

bool hasTitle(ItemKind kind) { return kind == ItemKind::PushButton || kind == ItemKind::CheckBox; }

std::string printed(const Rect &rect) {
  std::ostringstream out;
  out << '(' << rect.left << ',' << rect.top << ")-(" << rect.right << ',' << rect.bottom << ')';
  return out.str();
}

std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

struct Item {
  ItemKind kind;
  Rect rect;
  std::string title;       // readable
  std::u16string text;     // edit text
  std::size_t cursor = 0;  // the selection is between anchor and cursor
  std::size_t anchor = 0;
  bool isSecret = false;
  bool isEnabled = true;
  bool isAcceptable = true;
  platform::Expected expected = platform::Expected::Text;
  int bound = 0;
  std::string part;  // of a date
  std::string name;  // given by the program; readable
  int value = 0;
  std::vector<std::u16string> entries;
  platform::ListClick lastClick;

  std::size_t selectionBegin() const { return std::min(cursor, anchor); }
  std::size_t selectionEnd() const { return std::max(cursor, anchor); }
  void selectAll() {
    anchor = 0;
    cursor = text.size();
  }
  void clampCursor() {
    cursor = std::min(cursor, text.size());
    anchor = std::min(anchor, text.size());
  }
};

std::string itemAndText(const char *verb, int item, std::string_view text) {
  return std::string(verb) + ' ' + std::to_string(item) + ' ' + inQuotes(text);
}

std::string itemAndNumber(const char *verb, int item, int number) {
  return std::string(verb) + ' ' + std::to_string(item) + ' ' + std::to_string(number);
}

std::string itemOnly(const char *verb, int item) {
  return std::string(verb) + ' ' + std::to_string(item);
}

}  // namespace

std::string readable(std::u16string_view characters) {
  std::string text;
  for (const char16_t c : characters) appendUtf8(text, c);
  return text;
}

std::string readable(std::string_view screenText) {
  return readable(platform::toCharacters(screenText));
}

struct ScriptedDesktop::Window {
  Rect bounds;
  bool isOpen = true;
  std::unique_ptr<ScriptedPort> port;
};

// The content of a dialog; outlives it, for tests to read.
struct ScriptedDesktop::Shown {
  std::string title;  // readable
  Rect bounds;
  std::string parent;
  std::map<int, Item> items;  // by number
  std::vector<int> tabOrder;
  std::vector<std::string> decoration;
  std::string message;  // readable
  std::string progress;
  int defaultItem = 0;
  std::vector<std::string> writes;
  std::vector<std::string> marks;
  int hits = 0;

  bool has(int item) const { return items.count(item) != 0; }
  Item &at(int item) { return items.at(item); }
  void add(int number, Item item) {
    items.emplace(number, std::move(item));
    tabOrder.push_back(number);
  }
  void note(int item, const std::string &what) {
    writes.push_back(std::to_string(item) + ' ' + what);
  }
};

// ---- The dialog ----

class ScriptedDialog final : public platform::Dialog {
 public:
  ScriptedDialog(ScriptedDesktop &desk, std::shared_ptr<ScriptedDesktop::Shown> shown,
                 WindowRef window)
      : desk_(desk), shown_(std::move(shown)), window_(window) {
    ++desk_.open_;
  }
  ~ScriptedDialog() override {
    if (script_ != nullptr && !script_->steps_.empty())
      unused(inQuotes(script_->steps_.front().description));
    desk_.closeWindow(window_);
    --desk_.open_;
  }

  WindowRef window() override { return window_; }
  void setTitle(std::string_view title) override { shown_->title = readable(title); }

  int addItem(ItemKind kind, const Rect &rect, std::string_view title) override {
    if (kind == ItemKind::None) return 0;
    Item item{};
    item.kind = kind;
    item.rect = rect;
    if (hasTitle(kind)) item.title = readable(title);
    const int number = static_cast<int>(shown_->items.size()) + 1;
    shown_->add(number, std::move(item));
    return number;
  }
  void addGroupBox(const Rect &rect, std::string_view title) override {
    shown_->decoration.push_back("group box " + printed(rect) + ' ' + inQuotes(readable(title)));
  }
  void addStaticText(const Rect &rect, std::string_view text) override {
    shown_->decoration.push_back("static text " + printed(rect) + ' ' + inQuotes(readable(text)));
  }
  void addIcon(const Rect &rect, const std::string &path) override {
    const std::string name = path.substr(path.find_last_of('/') + 1);
    shown_->decoration.push_back("icon " + printed(rect) + ' ' + inQuotes(name));
  }
  void addMessage(const Rect &pane, std::string_view text,
                  const platform::MessageStyle &style) override {
    shown_->message = readable(text);
    std::ostringstream line;
    line << "message " << printed(pane) << ' ' << inQuotes(style.fontName) << ' ' << style.fontSize
         << ", baselines " << style.firstBaseline << " + " << style.linePitch << " k";
    shown_->decoration.push_back(line.str());
  }
  void addAlertIcon(const Rect &rect, platform::AlertIcon icon) override {
    shown_->decoration.push_back("alert icon " + printed(rect) + ' ' + nameOf(icon));
  }
  void addProgressBar(const Rect &rect) override {
    shown_->decoration.push_back("progress bar " + printed(rect));
  }
  void setProgress(int done, int total) override {
    shown_->progress = std::to_string(done) + " of " + std::to_string(total);
  }
  void setDefaultItem(int item) override { shown_->defaultItem = item; }

  ItemKind kind(int item) const override {
    return shown_->has(item) ? shown_->at(item).kind : ItemKind::None;
  }

  std::string text(int item) const override {
    return is(item, ItemKind::EditText) ? platform::toBytes(shown_->at(item).text) : std::string();
  }
  void setText(int item, std::string_view text) override {
    if (!is(item, ItemKind::EditText)) return;
    Item &edit = shown_->at(item);
    edit.text = platform::toCharacters(text);
    edit.clampCursor();
    shown_->note(item, "text " + inQuotes(readable(edit.text)));
  }
  void selectText(int item) override {
    if (!is(item, ItemKind::EditText)) return;
    shown_->at(item).selectAll();
    shown_->note(item, "selected");
  }
  void setSecret(int item) override {
    if (!is(item, ItemKind::EditText)) return;
    shown_->at(item).isSecret = true;
    shown_->note(item, "secret");
  }

  int value(int item) const override { return hasValue(item) ? shown_->at(item).value : 0; }
  void setValue(int item, int value) override {
    if (!hasValue(item)) return;
    const int most = is(item, ItemKind::CheckBox) ? 1 : entryCount(item);
    if (value >= 0 && value <= most) shown_->at(item).value = value;
    shown_->note(item, "value " + std::to_string(value));
  }

  void setEntries(int item, const std::vector<std::string> &entries) override {
    if (!hasEntries(item)) return;
    Item &list = shown_->at(item);
    list.entries.clear();
    for (const std::string &entry : entries) list.entries.push_back(platform::toCharacters(entry));
    list.value = 0;
    list.lastClick = {};
    shown_->note(item, "entries " + std::to_string(entries.size()));
  }
  int entryCount(int item) const override {
    return hasEntries(item) ? static_cast<int>(shown_->at(item).entries.size()) : 0;
  }
  std::string entry(int item, int index) const override {
    return hasEntry(item, index) ? platform::toBytes(entryAt(item, index)) : std::string();
  }
  platform::ListClick lastClick(int item) const override {
    return is(item, ItemKind::ListBox) ? shown_->at(item).lastClick : platform::ListClick{};
  }

  void setEnabled(int item, bool enabled) override {
    if (!shown_->has(item)) return;
    shown_->at(item).isEnabled = enabled;
    shown_->note(item, enabled ? "enabled yes" : "enabled no");
  }
  void setAcceptable(int item, bool acceptable) override {
    if (!is(item, ItemKind::EditText) && !hasEntries(item)) return;
    shown_->at(item).isAcceptable = acceptable;
    shown_->marks.push_back(std::to_string(item) + (acceptable ? " acceptable" : " unacceptable"));
  }
  void setExpected(int item, platform::Expected expected, int bound) override {
    if (!is(item, ItemKind::EditText)) return;
    shown_->at(item).expected = expected;
    shown_->at(item).bound = bound;
  }
  void setDateParts(int day, int month, int year) override {
    if (is(day, ItemKind::EditText)) shown_->at(day).part = "day";
    if (is(month, ItemKind::EditText)) shown_->at(month).part = "month";
    if (is(year, ItemKind::EditText)) shown_->at(year).part = "year";
  }
  void setName(int item, std::string_view name) override {
    if (shown_->has(item)) shown_->at(item).name = readable(name);
  }

  void runModal(platform::HitHandler &handler) override;
  void runStep(platform::HitHandler &handler) override;

  void take(const Template &described) {
    for (const TemplateItem &each : described.items) {
      Item item{};
      item.kind = each.kind;
      if (hasTitle(each.kind)) item.title = each.text;
      if (each.kind == ItemKind::EditText) item.text = charactersOf(each.text);
      for (const std::string &entry : each.entries) item.entries.push_back(charactersOf(entry));
      item.value = each.value;
      shown_->add(each.number, std::move(item));
    }
    shown_->defaultItem = described.defaultItem;
  }

  // ---- What the person does ----

  void edit(int item, std::u16string_view characters) {
    if (!mustBe(item, ItemKind::EditText) || !isTypeable(characters)) return;
    Item &edit = shown_->at(item);
    const std::size_t begin = edit.selectionBegin();
    edit.text.replace(begin, edit.selectionEnd() - begin, characters);
    edit.cursor = edit.anchor = begin + characters.size();
    deliver(item);
  }
  void type(int item, std::u16string_view characters) {
    for (const char16_t c : characters) {
      if (hasStopped_) return unused("the rest of a typed text");
      edit(item, {&c, 1});
    }
  }
  void deleteBack(int item) { deleteFrom(item, Direction::Back); }
  void deleteForward(int item) { deleteFrom(item, Direction::Forward); }

  void select(int item, std::size_t from, std::size_t to) {
    if (!mustBe(item, ItemKind::EditText)) return;
    Item &edit = shown_->at(item);
    edit.anchor = from;
    edit.cursor = to;
    edit.clampCursor();
  }

  void choose(int item, std::string_view entry) {
    if (!mustBe(item, ItemKind::PopUp)) return;
    const auto &entries = shown_->at(item).entries;
    const auto found = std::find(entries.begin(), entries.end(), charactersOf(entry));
    if (found == entries.end()) return fail("the pop-up does not offer it");
    shown_->at(item).value = static_cast<int>(found - entries.begin()) + 1;
    deliver(item);
  }
  void clickRow(int item, int row, bool isDouble) {
    if (!mustBe(item, ItemKind::ListBox)) return;
    if (!hasEntry(item, row)) return fail("the list has no such row");
    shown_->at(item).lastClick = {row, isDouble};
    deliver(item);
  }
  void doubleClickRow(int item, int row) {
    clickRow(item, row, false);
    if (!hasStopped_) clickRow(item, row, true);
  }
  void click(int item) {
    if (!mustBe(item, ItemKind::CheckBox)) return;
    if (!shown_->at(item).isEnabled) return fail("the check box is disabled");
    deliver(item);
  }
  void press(int item) {
    if (!mustBe(item, ItemKind::PushButton)) return;
    if (!shown_->at(item).isEnabled) return fail("the button is disabled");
    deliver(item);
  }
  void pressReturn() {
    const int item = shown_->defaultItem;
    if (is(item, ItemKind::PushButton) && shown_->at(item).isEnabled) deliver(item);
  }
  void cancel() { deliver(platform::kCancelItem); }
  void goDown() { hasStopped_ = true; }

  void deliver(int item) {
    ++shown_->hits;
    if (ScriptedDesktop::handOver(*handler_, item) == Run::Stop) hasStopped_ = true;
  }

 private:
  enum class Direction { Back, Forward };

  bool is(int item, ItemKind kind) const { return this->kind(item) == kind; }
  bool hasValue(int item) const {
    return is(item, ItemKind::CheckBox) || is(item, ItemKind::PopUp);
  }
  bool hasEntries(int item) const {
    return is(item, ItemKind::PopUp) || is(item, ItemKind::ListBox);
  }
  bool hasEntry(int item, int index) const { return index >= 0 && index < entryCount(item); }
  const std::u16string &entryAt(int item, int index) const {
    return shown_->at(item).entries[static_cast<std::size_t>(index)];
  }

  void deleteFrom(int item, Direction direction) {
    if (!mustBe(item, ItemKind::EditText)) return;
    Item &edit = shown_->at(item);
    if (edit.cursor == edit.anchor) {
      const bool hasNone =
          direction == Direction::Back ? edit.cursor == 0 : edit.cursor == edit.text.size();
      if (hasNone) return;
      edit.anchor = direction == Direction::Back ? edit.cursor - 1 : edit.cursor + 1;
    }
    this->edit(item, u"");
  }

  bool mustBe(int item, ItemKind kind) {
    if (is(item, kind)) return true;
    fail(std::string("the item is not ") + nameOf(kind) + " but " + nameOf(this->kind(item)));
    return false;
  }
  void fail(const std::string &why) {
    ADD_FAILURE() << "dialog " << inQuotes(shown_->title) << ", step " << inQuotes(step_) << ": "
                  << why;
  }
  void unused(const std::string &what) {
    ADD_FAILURE() << "dialog " << inQuotes(shown_->title) << " ended before " << what;
  }

  DialogScript *comeUp(platform::HitHandler &handler);
  void act(DialogScript &script);

  ScriptedDesktop &desk_;
  std::shared_ptr<ScriptedDesktop::Shown> shown_;
  WindowRef window_;
  platform::HitHandler *handler_ = nullptr;
  DialogScript *script_ = nullptr;  // of a run in steps
  std::string step_;
  bool hasStopped_ = false;
};

// The script of this dialog, which comes up; null when none is expected.
DialogScript *ScriptedDialog::comeUp(platform::HitHandler &handler) {
  ++desk_.dialogsShown_;
  if (desk_.next_ == desk_.expected_.size()) {
    ADD_FAILURE() << "unexpected dialog " << inQuotes(shown_->title);
    return nullptr;
  }
  DialogScript &script = desk_.expected_[desk_.next_++];
  if (script.title_ != shown_->title) {
    ADD_FAILURE() << "expected dialog " << inQuotes(script.title_) << ", got "
                  << inQuotes(shown_->title);
  }
  handler_ = &handler;
  for (const int number : shown_->tabOrder) {
    if (!is(number, ItemKind::EditText)) continue;
    shown_->at(number).selectAll();  // where the focus is
    break;
  }
  return &script;
}

void ScriptedDialog::act(DialogScript &script) {
  const DialogScript::Step step = std::move(script.steps_.front());
  script.steps_.pop_front();
  step_ = step.description;
  step.act(*this);
}

// One step of the script for one of the run; a script that is used up waits.
void ScriptedDialog::runStep(platform::HitHandler &handler) {
  if (hasStopped_) return;
  if (script_ == nullptr) script_ = comeUp(handler);
  if (script_ != nullptr && !script_->steps_.empty()) act(*script_);
  if (hasStopped_) desk_.closeWindow(window_);
}

void ScriptedDialog::runModal(platform::HitHandler &handler) {
  DialogScript *found = comeUp(handler);
  if (found == nullptr) return;
  DialogScript &script = *found;
  while (!hasStopped_ && !script.steps_.empty()) act(script);
  if (!script.steps_.empty()) return unused(inQuotes(script.steps_.front().description));
  if (!hasStopped_) {
    ADD_FAILURE() << "dialog " << inQuotes(shown_->title) << " is still open after its last step";
  }
}

// ---- The script ----

DialogScript &DialogScript::add(std::string description,
                                std::function<void(ScriptedDialog &)> act) {
  steps_.push_back({std::move(description), std::move(act)});
  return *this;
}

DialogScript &DialogScript::type(int item, std::string_view text) {
  return add(itemAndText("type", item, text),
             [=, characters = charactersOf(text)](auto &d) { d.type(item, characters); });
}

DialogScript &DialogScript::deleteBack(int item, int times) {
  for (int n = 0; n < times; ++n) {
    add(itemOnly("delete back", item), [=](auto &d) { d.deleteBack(item); });
  }
  return *this;
}

DialogScript &DialogScript::deleteForward(int item, int times) {
  for (int n = 0; n < times; ++n) {
    add(itemOnly("delete forward", item), [=](auto &d) { d.deleteForward(item); });
  }
  return *this;
}

DialogScript &DialogScript::paste(int item, std::string_view text) {
  return add(itemAndText("paste", item, text),
             [=, characters = charactersOf(text)](auto &d) { d.edit(item, characters); });
}

DialogScript &DialogScript::replace(int item, std::string_view text) {
  selectAll(item);
  return text.empty() ? deleteBack(item) : paste(item, text);
}

DialogScript &DialogScript::moveTo(int item, int position) {
  return select(item, position, position);
}

DialogScript &DialogScript::moveToEnd(int item) {
  return add(itemOnly("move to end", item),
             [=](auto &d) { d.select(item, std::u16string::npos, std::u16string::npos); });
}

DialogScript &DialogScript::select(int item, int from, int to) {
  return add(itemAndNumber("select", item, from), [=](auto &d) {
    d.select(item, static_cast<std::size_t>(from), static_cast<std::size_t>(to));
  });
}

DialogScript &DialogScript::selectAll(int item) {
  return add(itemOnly("select all", item),
             [=](auto &d) { d.select(item, 0, std::u16string::npos); });
}

DialogScript &DialogScript::choose(int item, std::string_view entry) {
  return add(itemAndText("choose", item, entry),
             [=, wanted = std::string(entry)](auto &d) { d.choose(item, wanted); });
}

DialogScript &DialogScript::clickRow(int item, int row) {
  return add(itemAndNumber("click row", item, row), [=](auto &d) { d.clickRow(item, row, false); });
}

DialogScript &DialogScript::doubleClickRow(int item, int row) {
  return add(itemAndNumber("double click row", item, row),
             [=](auto &d) { d.doubleClickRow(item, row); });
}

DialogScript &DialogScript::click(int item) {
  return add(itemOnly("click", item), [=](auto &d) { d.click(item); });
}

DialogScript &DialogScript::press(int item) {
  return add(itemOnly("press", item), [=](auto &d) { d.press(item); });
}

DialogScript &DialogScript::pressReturn() {
  return add("Return", [](auto &d) { d.pressReturn(); });
}

DialogScript &DialogScript::pressEscape() {
  return add("Escape", [](auto &d) { d.cancel(); });
}

DialogScript &DialogScript::closeBox() {
  return add("close box", [](auto &d) { d.cancel(); });
}

DialogScript &DialogScript::hit(int item) {
  return add(itemOnly("hit", item), [=](auto &d) { d.deliver(item); });
}

DialogScript &DialogScript::check(std::function<void()> checks) {
  return add("check", [checks = std::move(checks)](auto &) { checks(); });
}

DialogScript &DialogScript::goDown() {
  return add("desktop goes down", [](auto &d) { d.goDown(); });
}

// ---- The desktop ----

ScriptedDesktop::ScriptedDesktop() : before_(platform::setDesktop(this)) {}

ScriptedDesktop::~ScriptedDesktop() {
  platform::setDesktop(before_);
  if (!hasFinished_) ADD_FAILURE() << "finish() was not called";
}

DialogScript &ScriptedDesktop::expectDialog(std::string_view title) {
  return expected_.emplace_back(std::string(title));
}

void ScriptedDesktop::finish() {
  hasFinished_ = true;
  for (; next_ < expected_.size(); ++next_) {
    ADD_FAILURE() << "dialog " << inQuotes(expected_[next_].title_) << " never came";
  }
  EXPECT_EQ(open_, 0) << "dialogs that were never taken off the screen";
}

void ScriptedDesktop::takeScreenAway(std::string problem) {
  hasScreen_ = false;
  problem_ = std::move(problem);
}

WindowRef ScriptedDesktop::refOf(Window &window) { return reinterpret_cast<WindowRef>(&window); }

WindowRef ScriptedDesktop::addWindow(const Rect &bounds) {
  windows_.push_back(std::make_unique<Window>(Window{bounds, true, nullptr}));
  return refOf(*windows_.back());
}

void ScriptedDesktop::closeWindow(WindowRef window) {
  for (const auto &each : windows_) {
    if (refOf(*each) != window) continue;
    each->isOpen = false;
    each->port.reset();
  }
}

std::optional<Rect> ScriptedDesktop::windowBounds(WindowRef window) {
  for (const auto &each : windows_) {
    if (refOf(*each) == window && each->isOpen) return each->bounds;
  }
  return std::nullopt;
}

bool ScriptedDesktop::hasScreen(std::string &problem) {
  if (!hasScreen_) problem = problem_;
  return hasScreen_;
}

std::unique_ptr<platform::Dialog> ScriptedDesktop::newDialog(const Rect &bounds, WindowRef parent,
                                                             std::string_view title) {
  return hasScreen_ ? makeDialog(bounds, parent, readable(title)) : nullptr;
}

std::unique_ptr<ScriptedDialog> ScriptedDesktop::makeDialog(const Rect &bounds, WindowRef parent,
                                                            std::string title) {
  EXPECT_TRUE(parent == nullptr || windowBounds(parent)) << "the parent is no open window";
  newest_ = std::make_shared<Shown>();
  newest_->title = std::move(title);
  newest_->bounds = bounds;
  newest_->parent = parent != nullptr ? "a window" : "everything";
  return std::make_unique<ScriptedDialog>(*this, newest_, addWindow(bounds));
}

void ScriptedDesktop::setTemplate(const std::string &name, Template described) {
  templates_[name + ".ui"] = std::move(described);
}

std::unique_ptr<platform::Dialog> ScriptedDesktop::newDialogFromTemplate(const std::string &path,
                                                                         WindowRef parent,
                                                                         std::string &problem) {
  const auto found = templates_.find(path.substr(path.find_last_of('/') + 1));
  problem = !hasScreen_ ? problem_ : found == templates_.end() ? "no form" : found->second.problem;
  if (!problem.empty()) return nullptr;
  const Template &described = found->second;
  std::set<int> numbers;
  for (const TemplateItem &item : described.items) {
    if (numbers.insert(item.number).second) continue;
    problem = "item " + std::to_string(item.number) + " is there twice";
    return nullptr;
  }
  auto dialog = makeDialog({0, 0, 400, 300}, parent, described.title);
  dialog->take(described);
  return dialog;
}

WindowRef ScriptedDesktop::hostWindow(void *) { return nullptr; }

std::unique_ptr<ScriptedPort> ScriptedDesktop::newPort(ScriptedPort::Surface surface, int width,
                                                       int height) {
  records_.push_back(std::make_shared<PortRecord>());
  return std::make_unique<ScriptedPort>(records_.back(), fonts_, surface, width, height);
}

std::unique_ptr<Port> ScriptedDesktop::newImage(int width, int height) {
  const bool canBeHad = std::min(width, height) >= 1 && std::max(width, height) <= 32767;
  return canBeHad ? newPort(ScriptedPort::Surface::Image, width, height) : nullptr;
}

std::unique_ptr<Port> ScriptedDesktop::painterPort(void *painter) {
  return painter == nullptr ? nullptr : newPort(ScriptedPort::Surface::Borrowed, 0, 0);
}

Port *ScriptedDesktop::windowPort(WindowRef window) {
  for (const auto &each : windows_) {
    if (refOf(*each) != window || !each->isOpen) continue;
    if (each->port == nullptr) {
      each->port =
          newPort(ScriptedPort::Surface::Window, each->bounds.width(), each->bounds.height());
    }
    return each->port.get();
  }
  return nullptr;
}

std::unique_ptr<Picture> ScriptedDesktop::loadPicture(const std::string &path) {
  picturesRead_.push_back(path);
  int width = 0;
  int height = 0;
  char by = 0;
  const bool isRead = static_cast<bool>(std::ifstream(path) >> width >> by >> height);
  if (!isRead) width = height = 0;
  return std::make_unique<ScriptedPicture>(std::filesystem::path(path).stem(), width, height);
}

std::string ScriptedDesktop::title() const { return newest_ ? newest_->title : ""; }

std::string ScriptedDesktop::message() const { return newest_ ? newest_->message : ""; }

std::string ScriptedDesktop::progress() const { return newest_ ? newest_->progress : ""; }

std::string ScriptedDesktop::text(int item) const {
  return newest_ && newest_->has(item) ? readable(newest_->at(item).text) : "";
}

std::string ScriptedDesktop::selectedText(int item) const {
  if (!newest_ || !newest_->has(item)) return "";
  const Item &edit = newest_->at(item);
  const std::u16string_view text = edit.text;
  return readable(text.substr(edit.selectionBegin(), edit.selectionEnd() - edit.selectionBegin()));
}

int ScriptedDesktop::cursor(int item) const {
  return newest_ && newest_->has(item) ? static_cast<int>(newest_->at(item).cursor) : -1;
}

int ScriptedDesktop::value(int item) const {
  return newest_ && newest_->has(item) ? newest_->at(item).value : 0;
}

bool ScriptedDesktop::isEnabled(int item) const {
  return newest_ && newest_->has(item) && newest_->at(item).isEnabled;
}

bool ScriptedDesktop::isAcceptable(int item) const {
  return newest_ && newest_->has(item) && newest_->at(item).isAcceptable;
}

std::string ScriptedDesktop::name(int item) const {
  return newest_->has(item) ? newest_->at(item).name : std::string();
}

platform::Expected ScriptedDesktop::expected(int item) const {
  return newest_ && newest_->has(item) ? newest_->at(item).expected : platform::Expected::Text;
}

int ScriptedDesktop::bound(int item) const {
  return newest_ && newest_->has(item) ? newest_->at(item).bound : 0;
}

std::string ScriptedDesktop::datePart(int item) const {
  return newest_ && newest_->has(item) ? newest_->at(item).part : "";
}

bool ScriptedDesktop::isSecret(int item) const {
  return newest_ && newest_->has(item) && newest_->at(item).isSecret;
}

std::vector<std::string> ScriptedDesktop::entries(int item) const {
  std::vector<std::string> entries;
  if (!newest_ || !newest_->has(item)) return entries;
  for (const std::u16string &entry : newest_->at(item).entries) entries.push_back(readable(entry));
  return entries;
}

std::string ScriptedDesktop::layout() const {
  if (!newest_) return "";
  std::ostringstream out;
  out << "dialog " << printed(newest_->bounds) << " in front of " << newest_->parent << ' '
      << inQuotes(newest_->title) << '\n';
  for (const auto &[number, item] : newest_->items) {
    out << number << ' ' << nameOf(item.kind) << ' ' << printed(item.rect);
    if (hasTitle(item.kind)) out << ' ' << inQuotes(item.title);
    if (number == newest_->defaultItem) out << " default";
    out << '\n';
  }
  for (const std::string &line : newest_->decoration) out << line << '\n';
  return out.str();
}

std::string ScriptedDesktop::takeWrites() {
  if (!newest_) return "";
  std::string lines;
  for (const std::string &line : std::exchange(newest_->writes, {})) lines += line + '\n';
  return lines;
}

std::string ScriptedDesktop::takeMarks() {
  if (!newest_) return "";
  std::string lines;
  for (const std::string &line : std::exchange(newest_->marks, {})) lines += line + '\n';
  return lines;
}

int ScriptedDesktop::hits() const { return newest_ ? newest_->hits : 0; }

}  // namespace korvel::test
