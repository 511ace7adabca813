// SPDX-License-Identifier: MIT
// Reads dialogs over the accessibility bus, as a screen reader does.
#include "tests/desktop/screen_reader.h"

#include <memory>

#include <atspi/atspi.h>

namespace korvel::test {

namespace {

constexpr int kDeadline = 60'000;  // milliseconds
// The time between two looks while the application sends no event.
constexpr int kPatience = 100;

struct Release {
  void operator()(void *object) const { g_object_unref(object); }
};
using Accessible = std::unique_ptr<AtspiAccessible, Release>;

struct Reader {
  AtspiEventListener *listener = nullptr;
  std::string title;
  std::vector<std::string> toldTexts;
};
constinit Reader *reader = nullptr;

constexpr const char *kEvents[] = {"object:children-changed",  "object:property-change",
                                   "object:state-changed",     "object:text-changed",
                                   "object:selection-changed", "window:activate"};

std::string taken(gchar *text) {
  const std::string copy = text != nullptr ? text : "";
  g_free(text);
  return copy;
}

void noteEvent(AtspiEvent *event, void *) {
  if (std::string(event->type).starts_with("object:text-changed") &&
      G_VALUE_HOLDS_STRING(&event->any_data)) {
    const gchar *text = g_value_get_string(&event->any_data);
    reader->toldTexts.emplace_back(text != nullptr ? text : "");
  }
  g_boxed_free(ATSPI_TYPE_EVENT, event);
}

// ---- The tree ----

std::string nameOf(const Accessible &object) {
  return taken(atspi_accessible_get_name(object.get(), nullptr));
}

std::string described(const Accessible &object) {
  return taken(atspi_accessible_get_role_name(object.get(), nullptr)) + " " + nameOf(object);
}

std::vector<Accessible> childrenOf(const Accessible &parent) {
  std::vector<Accessible> children;
  const int count = atspi_accessible_get_child_count(parent.get(), nullptr);
  for (int i = 0; i < count; ++i)
    if (AtspiAccessible *child = atspi_accessible_get_child_at_index(parent.get(), i, nullptr))
      children.emplace_back(child);
  return children;
}

bool hasState(const Accessible &object, AtspiStateType state) {
  AtspiStateSet *states = atspi_accessible_get_state_set(object.get());
  const bool has = states != nullptr && atspi_state_set_contains(states, state);
  if (states != nullptr) g_object_unref(states);
  return has;
}

// Null while there is none.
Accessible findDialog() {
  const Accessible desktop(atspi_get_desktop(0));
  for (const Accessible &application : childrenOf(desktop)) {
    atspi_accessible_clear_cache(application.get());
    for (Accessible &window : childrenOf(application))
      if (described(window) == "dialog " + reader->title) return std::move(window);
  }
  return nullptr;
}

Accessible find(const std::string &field) {
  const Accessible dialog = findDialog();
  if (dialog == nullptr) return nullptr;
  for (Accessible &child : childrenOf(dialog))
    if (described(child) == field) return std::move(child);
  return nullptr;
}

// The rows of a list; a pop-up has its list as a child.
std::vector<Accessible> rowsOf(const std::string &field) {
  const Accessible found = find(field);
  if (found == nullptr) return {};
  std::vector<Accessible> children = childrenOf(found);
  const bool isPopUp = children.size() == 1 && described(children.front()).starts_with("list ") &&
                       field.starts_with("combo box ");
  return isPopUp ? childrenOf(children.front()) : std::move(children);
}

bool actOn(const Accessible &object, const std::string &action) {
  if (object == nullptr) return false;
  AtspiAction *actions = atspi_accessible_get_action_iface(object.get());
  if (actions == nullptr) return false;
  bool isDone = false;
  const int count = atspi_action_get_n_actions(actions, nullptr);
  for (int i = 0; i < count && !isDone; ++i)
    if (taken(atspi_action_get_action_name(actions, i, nullptr)) == action)
      isDone = atspi_action_do_action(actions, i, nullptr);
  g_object_unref(actions);
  return isDone;
}

using Change = std::function<bool(AtspiEditableText *)>;

bool changed(const std::string &field, const Change &change) {
  const Accessible found = find(field);
  AtspiEditableText *text =
      found != nullptr ? atspi_accessible_get_editable_text_iface(found.get()) : nullptr;
  if (text == nullptr) return false;
  const bool isDone = change(text);
  g_object_unref(text);
  return isDone;
}

gboolean wakeUp(void *) { return G_SOURCE_CONTINUE; }

}  // namespace

ScreenReader::ScreenReader() {
  reader = new Reader;
  atspi_init();
  atspi_accessible_set_cache_mask(Accessible(atspi_get_desktop(0)).get(), ATSPI_CACHE_NONE);
  reader->listener = atspi_event_listener_new(noteEvent, nullptr, nullptr);
  for (const char *event : kEvents) atspi_event_listener_register(reader->listener, event, nullptr);
}

ScreenReader::~ScreenReader() {
  for (const char *event : kEvents)
    atspi_event_listener_deregister(reader->listener, event, nullptr);
  g_object_unref(reader->listener);
  atspi_exit();
  delete reader;
  reader = nullptr;
}

bool ScreenReader::waitUntil(const std::function<bool()> &condition) {
  const gint64 end = g_get_monotonic_time() + 1000LL * kDeadline;
  const guint alarm = g_timeout_add(kPatience, wakeUp, nullptr);
  bool holds = condition();
  while (!holds && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(alarm);
  return holds;
}

bool ScreenReader::finds(const std::string &title) {
  reader->title = title;
  return waitUntil([] {
    const Accessible dialog = findDialog();
    return dialog != nullptr && hasState(dialog, ATSPI_STATE_ACTIVE);
  });
}

std::string ScreenReader::message() const {
  const Accessible dialog = findDialog();
  if (dialog == nullptr) return "no dialog";
  return taken(atspi_accessible_get_description(dialog.get(), nullptr));
}

std::vector<std::string> ScreenReader::fields() const {
  std::vector<std::string> lines;
  if (const Accessible dialog = findDialog())
    for (const Accessible &child : childrenOf(dialog))
      if (hasState(child, ATSPI_STATE_FOCUSABLE)) lines.push_back(described(child));
  return lines;
}

std::string ScreenReader::text(const std::string &field) const {
  const Accessible found = find(field);
  AtspiText *text = found != nullptr ? atspi_accessible_get_text_iface(found.get()) : nullptr;
  if (text == nullptr) return "no text";
  const int length = atspi_text_get_character_count(text, nullptr);
  const std::string content = taken(atspi_text_get_text(text, 0, length, nullptr));
  g_object_unref(text);
  return content;
}

std::string ScreenReader::description(const std::string &field) const {
  const Accessible found = find(field);
  if (found == nullptr) return "no field";
  return taken(atspi_accessible_get_description(found.get(), nullptr));
}

bool ScreenReader::isEnabled(const std::string &field) const {
  const Accessible found = find(field);
  return found != nullptr && hasState(found, ATSPI_STATE_ENABLED);
}

bool ScreenReader::isChecked(const std::string &field) const {
  const Accessible found = find(field);
  return found != nullptr && hasState(found, ATSPI_STATE_CHECKED);
}

std::vector<std::string> ScreenReader::rows(const std::string &field) const {
  std::vector<std::string> names;
  for (const Accessible &row : rowsOf(field)) names.push_back(nameOf(row));
  return names;
}

bool ScreenReader::setText(const std::string &field, const std::string &text) {
  return changed(field, [&](AtspiEditableText *content) {
    return atspi_editable_text_set_text_contents(content, text.c_str(), nullptr);
  });
}

bool ScreenReader::insertText(const std::string &field, int at, const std::string &text) {
  return changed(field, [&](AtspiEditableText *content) {
    return atspi_editable_text_insert_text(content, at, text.c_str(), static_cast<int>(text.size()),
                                           nullptr);
  });
}

bool ScreenReader::deleteText(const std::string &field, int begin, int end) {
  return changed(field, [=](AtspiEditableText *content) {
    return atspi_editable_text_delete_text(content, begin, end, nullptr);
  });
}

bool ScreenReader::act(const std::string &field, const std::string &action) {
  return actOn(find(field), action);
}

bool ScreenReader::actOnRow(const std::string &field, const std::string &row,
                            const std::string &action) {
  for (const Accessible &found : rowsOf(field))
    if (nameOf(found) == row) return actOn(found, action);
  return false;
}

const std::vector<std::string> &ScreenReader::toldTexts() const { return reader->toldTexts; }

}  // namespace korvel::test
