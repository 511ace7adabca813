// SPDX-License-Identifier: MIT
// A message handler of the toolkit that passes on what other threads say. Forms and pictures are
// read under it, one inside the other where a form has a picture.
#include "platform/qt/quiet.h"

#include <QString>
#include <QtGlobal>

namespace korvel::platform::qt {
namespace {

constinit thread_local int depth = 0;
constinit QtMessageHandler outer = nullptr;

void passOthers(QtMsgType type, const QMessageLogContext &context, const QString &message) {
  if (depth == 0 || type == QtFatalMsg) outer(type, context, message);
}

}  // namespace

Quiet::Quiet() {
  if (depth++ > 0) return;
  outer = qInstallMessageHandler(nullptr);  // known before it is asked for
  qInstallMessageHandler(passOthers);
}

Quiet::~Quiet() {
  if (--depth == 0) qInstallMessageHandler(outer);
}

}  // namespace korvel::platform::qt
