// SPDX-License-Identifier: MIT
// The practice's table of vaccines, "Registre:vaccins.tab", once the register is open.
#ifndef REGISTER_VACCINES_H
#define REGISTER_VACCINES_H

#include <string>

#include <QString>

namespace registry {

// The code itself where the table does not have it.
QString vaccineLabel(const QString &code);

// Empty where the table does not have the label.
QString vaccineCode(const QString &label);

// After how many months the table proposes another dose; 0 for none.
int monthsToNext(const QString &code);

// The labels as the choices of a pop-up.
std::string vaccineChoices();

}  // namespace registry

#endif
