// SPDX-License-Identifier: MIT
// A register of vaccinations: a Qt application with the library's dialogs over its own window.
// register --carnet <number> <file> writes a person's booklet as PDF, without a window.
#include <cstdio>

#include <QApplication>

#include "form.h"
#include "pages.h"
#include "store.h"
#include "window.h"

namespace registry {
namespace {

int fail(const QString &reason, int status = 1) {
  std::fprintf(stderr, "register: %s\n", reason.toUtf8().constData());
  return status;
}

int writeBooklet(int number, const QString &path) {
  for (const Person &person : readRegister().people)
    if (person.number == number)
      return writePages(person, path) ? 0 : fail("le fichier n’a pas pu être écrit");
  return fail("pas de fiche lisible de ce numéro");
}

int run(const QStringList &arguments) {
  const bool isBooklet = arguments.size() == 4 && arguments[1] == "--carnet";
  if (arguments.size() > 1 && !isBooklet)
    return fail("emploi\u00A0: register [--carnet <numéro> <fichier>]", 2);
  const QString reason = openRegister();
  if (!reason.isEmpty()) {
    if (!isBooklet) warn(nullptr, "Registre des vaccinations", reason);
    return fail(reason);
  }
  if (isBooklet) return writeBooklet(arguments[2].toInt(), arguments[3]);
  Window window;
  window.show();
  return QApplication::exec();
}

}  // namespace
}  // namespace registry

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName("register");
  return registry::run(QApplication::arguments());
}
