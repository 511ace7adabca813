// SPDX-License-Identifier: MIT
// Starts programs, and drives them on whichever screen there is.
#include "tests/desktop/screen_user.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <signal.h>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktop/screen.h"
#include "tests/desktop/stillness.h"

extern char **environ;

namespace korvel::test {

namespace {

using std::chrono::steady_clock;

// The applications that run.
std::vector<pid_t> running;

// What tests/support/toolkit_leaks.cpp tells the sanitizers, for the examples, which are tested as
// they are.
constexpr const char *kSanitizerOptions[] = {"ASAN_OPTIONS=intercept_tls_get_addr=0",
                                             "LSAN_OPTIONS=suppressions='" TOOLKIT_LEAKS "'"};

std::vector<std::string> linesOf(const std::string &path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

void clickWith(int button, Place place, int times) {
  const Content content = activeContent();
  screen().click(button, {content.corner.x + place.x, content.corner.y + place.y}, times);
}

void hold(const std::string &selection, const std::string &text) {
  screen().hold(selection, text);
  EXPECT_TRUE(waitUntil(kPatience, [&] { return screen().held(selection) == text; }));
}

bool hasTheFocus(const std::string &title) {
  const ActiveWindow window = screen().active();
  return window.title == title &&
         std::find(running.begin(), running.end(), window.process) != running.end();
}

std::vector<std::string> split(const std::string &words) {
  std::istringstream stream(words);
  return {std::istream_iterator<std::string>(stream), {}};
}

std::string environmentOr(const char *name, const char *otherwise) {
  const char *value = std::getenv(name);
  return value != nullptr ? value : otherwise;
}

}  // namespace

void rest(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void settle() {
  std::vector<pid_t> processes = running;
  for (const std::string &program : split(environmentOr("SCREEN_PROGRAMS", "")))
    processes.push_back(std::stoi(program));
  waitUntilAtRest(processes, std::stoi(environmentOr("SCREEN_TICKING", "0")));
}

bool waitUntil(int seconds, const std::function<bool()> &condition) {
  const auto end = steady_clock::now() + std::chrono::seconds(seconds);
  bool holds = condition();
  while (!holds && steady_clock::now() < end) {
    rest(20);
    holds = condition();
  }
  return holds;
}

const Screen &screen() {
  return std::getenv("WAYLAND_DISPLAY") == nullptr ? xScreen() : waylandScreen();
}

std::string shellQuoted(const std::string &text) {
  std::string result = "'";
  for (char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result + "'";
}

std::string outputOf(const std::string &command) {
  std::string result;
  FILE *pipe = popen(command.c_str(), "r");
  char block[65536];
  for (std::size_t n; (n = fread(block, 1, sizeof block, pipe)) > 0;) result.append(block, n);
  pclose(pipe);
  return result;
}

std::string firstLineOf(const std::string &command) {
  const std::string text = outputOf(command);
  return text.substr(0, text.find('\n'));
}

bool run(const std::string &command) { return std::system(command.c_str()) == 0; }

Application::Application(const std::vector<std::string> &command,
                         std::vector<std::string> environment) {
  environment.insert(environment.end(), std::begin(kSanitizerOptions), std::end(kSanitizerOptions));
  std::string name = std::filesystem::temp_directory_path() / "korvel-desktop-XXXXXX";
  folder_ = mkdtemp(name.data());

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const auto &[descriptor, file] : {std::pair(1, "/output"), std::pair(2, "/errors")})
    posix_spawn_file_actions_addopen(&actions, descriptor, (folder_ + file).c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const auto nameOf = [](const std::string &entry) { return entry.substr(0, entry.find('=')); };
  std::vector<std::string> entries;
  for (char **entry = environ; *entry != nullptr; ++entry)
    if (std::none_of(environment.begin(), environment.end(),
                     [&](const std::string &own) { return nameOf(own) == nameOf(*entry); }))
      entries.emplace_back(*entry);
  for (const std::string &own : environment)
    if (own.find('=') != std::string::npos) entries.push_back(own);

  std::vector<char *> arguments, variables;
  for (const std::string &argument : command)
    arguments.push_back(const_cast<char *>(argument.c_str()));
  for (std::string &entry : entries) variables.push_back(entry.data());
  arguments.push_back(nullptr);
  variables.push_back(nullptr);
  posix_spawn(&process_, arguments[0], &actions, nullptr, arguments.data(), variables.data());
  posix_spawn_file_actions_destroy(&actions);
  running.push_back(process_);
}

Application::~Application() {
  std::erase(running, process_);
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  std::filesystem::remove_all(folder_);
}

int Application::wait() {
  int status = 0;
  if (!waitUntil(kPatience, [&] { return waitpid(process_, &status, WNOHANG) == process_; }))
    return -1;
  std::erase(running, process_);
  process_ = -1;
  if (status == 0) return 0;
  for (const std::string &line : errors()) std::fprintf(stderr, "%s\n", line.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<std::string> Application::output() const { return linesOf(folder_ + "/output"); }

std::vector<std::string> Application::errors() const { return linesOf(folder_ + "/errors"); }

bool Application::says(const std::string &line) const {
  return waitUntil(kPatience, [&] {
    const auto lines = output();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  });
}

int Application::count(const std::string &start) const {
  const auto lines = output();
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string &line) {
    return line.starts_with(start);
  }));
}

void Application::pause() const {
  kill(process_, SIGSTOP);
  stops();
}

void Application::goOn() const { kill(process_, SIGCONT); }

bool Application::stops() const {
  return waitUntil(kPatience, [this] { return isStopped(process_); });
}

int Picture::darkPixels() const {
  return static_cast<int>(std::count_if(
      pixels.begin(), pixels.end(), [](Colour c) { return c.red + c.green + c.blue < 3 * 128; }));
}

std::string activeWindow() { return screen().active().title; }

bool waitForWindow(const std::string &title) {
  return waitUntil(kPatience, [&] {
    if (!hasTheFocus(title)) return false;
    settle();
    return hasTheFocus(title);
  });
}

// A compositor moves a new window until the application has agreed, for which it waits a fifth of a
// second.
bool waitForWindowAtWork(const std::string &title) {
  Content before;
  return waitUntil(kPatience, [&] {
    if (!hasTheFocus(title)) return false;
    const Content now = activeContent();
    if (now == before) return true;
    before = now;
    rest(400);
    return false;
  });
}

bool isOwned(const Application &application) { return screen().isOwned(application); }

void press(const std::string &keys) {
  for (const std::string &key : split(keys)) {
    screen().press(key);
    settle();
  }
}

void write(const std::string &text) {
  screen().write(text, 30);
  settle();
}

void burst(const std::string &text) { screen().write(text, 0); }

void burstOfKeys(const std::string &keys) {
  for (const std::string &key : split(keys)) screen().press(key);
}

void click(Place place, int times) {
  clickWith(1, place, times);
  settle();
}

void clickMeanwhile(Place place) { clickWith(1, place, 1); }

void clickMiddle(Place place) {
  clickWith(2, place, 1);
  settle();
}

void turnWheelDown(Place place, int steps) {
  clickWith(5, place, steps);
  settle();
}

void restOn(Place place) {
  const Place corner = activeContent().corner;
  for (const int step : {-1, 0}) screen().moveTo({corner.x + place.x + step, corner.y + place.y});
  settle();
}

void closeWindow() {
  screen().closeWindow();
  settle();
}

void minimiseWindow() {
  screen().minimiseWindow();
  settle();
}

Content activeContent() { return screen().activeContent(); }

Picture picture(int left, int top, int width, int height) {
  settle();
  const Content content = activeContent();
  const std::string ppm =
      screen().picture({content.corner.x + left, content.corner.y + top}, width, height);
  Picture result;
  int depth = 0, start = 0;
  if (std::sscanf(ppm.c_str(), "P6 %d %d %d%n", &result.width, &result.height, &depth, &start) != 3)
    return {};
  const auto *bytes = reinterpret_cast<const std::uint8_t *>(ppm.data()) + start + 1;
  for (int i = 0; i < result.width * result.height; ++i)
    result.pixels.push_back({bytes[3 * i], bytes[3 * i + 1], bytes[3 * i + 2]});
  return result;
}

std::string clipboard() { return screen().held("clipboard"); }

void setClipboard(const std::string &text) { hold("clipboard", text); }

void setSelection(const std::string &text) { hold("primary", text); }

}  // namespace korvel::test
