// SPDX-License-Identifier: MIT
// The two dialogs of the application. Each keeps on the disk what was entered before it closes: an
// entry that cannot be kept stays in its dialog.
#ifndef REGISTER_DIALOGS_H
#define REGISTER_DIALOGS_H

#include "person.h"

class QWidget;

namespace registry {

// A person, a new one without a number. True when the person was changed and is kept.
bool enterPerson(Person &person);

// A new vaccination of a person (place -1), or the one at that place. True likewise.
bool enterVaccination(QWidget *owner, Person &person, qsizetype place);

}  // namespace registry

#endif
