// SPDX-License-Identifier: MIT
// For platform/qt/: the X server that shows the windows, and its end.
//
// The toolkit ends the process as soon as it looks at a connection that is gone. So it does not get
// to look: while a dialog runs, the end is seen first, and the dialog ends; between dialogs nothing
// of the toolkit runs. A loop of the application's own inside a dialog cannot be left that way, nor
// one of a toolkit without GLib: there the process ends as the toolkit has it.
#ifndef KORVEL_PLATFORM_QT_XSERVER_H
#define KORVEL_PLATFORM_QT_XSERVER_H

#include <functional>

namespace korvel::platform::qt {

// Whether a new connection to the server of DISPLAY can be made.
bool xServerAnswers();

// Whether the running application is one of X11, and its server has gone away.
bool xServerHasGone();
inline constexpr char kXServerGone[] = "no screen: the X server has gone away";

// What the library below the toolkit calls when the connection to a server is lost: one function
// for all connections of the process, which may have others than the toolkit's.
using LostConnection = int(void *display);
// What is set now; to be asked before the toolkit starts, which sets its own. The library's default
// where the application has set none, null where the library is not loaded yet.
LostConnection *lostConnectionHandler();

// That library and the toolkit would end the process, too, with many words. Has them do nothing
// when the toolkit's connection is lost; other connections stay the matter of `others`, and where
// that is null, of the toolkit. An application that sets a function afterwards hears of all.
void outliveXServer(LostConnection *others);

// While it lives, the loop that runs says when the server goes away, once and before the toolkit
// looks.
class XServerWatch {
 public:
  explicit XServerWatch(std::function<void()> onGone);
  // Says in one line of the process that the server has gone away.
  ~XServerWatch();
  XServerWatch(const XServerWatch &) = delete;
  XServerWatch &operator=(const XServerWatch &) = delete;

  bool hasSeenItGo() const { return hasSeen_; }

 private:
  bool see();

  const std::function<void()> onGone_;
  unsigned source_ = 0;  // of the loop; 0: none
  bool hasSeen_ = false;
};

}  // namespace korvel::platform::qt

#endif
