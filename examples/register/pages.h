// SPDX-License-Identifier: MIT
// A person's booklet as a PDF file.
#ifndef REGISTER_PAGES_H
#define REGISTER_PAGES_H

#include <QString>

#include "person.h"

namespace registry {

// Writes the file as a whole or leaves the one that is there. False when that is not possible.
bool writePages(const Person &person, const QString &path);

}  // namespace registry

#endif
