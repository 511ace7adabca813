// For platform/qt/ only: a Qt Designer form as it stands in its file, before any widget is made.
//
// Reading keeps what describes a dialog: widgets, layouts and their plain properties. What could
// bring in code or reach out of the form (custom classes beyond their base class, signals and
// slots, icons, style sheets) is passed over. What is kept is bounded in number, depth and size.
#ifndef KORVEL_PLATFORM_QT_FORM_H
#define KORVEL_PLATFORM_QT_FORM_H

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvel::platform::qt {

// By name. Enumerations and sets are strings, as are names of other widgets and of picture files.
using FormProperties = QHash<QString, QVariant>;

struct FormLayout;

struct FormWidget {
  QString className;
  QString name;
  FormProperties properties;
  FormProperties attributes;  // what its container keeps of it: the title of a page
  QStringList entries;        // of a combo box or list
  QStringList stacking;       // names of children, from the back to the front
  std::vector<FormWidget> children;
  std::unique_ptr<FormLayout> layout;
};

// One of the three, in its place.
struct FormCell {
  int row = -1;  // -1: none told
  int column = -1;
  int rowSpan = 1;
  int columnSpan = 1;
  QString alignment;
  std::optional<FormWidget> widget;
  std::unique_ptr<FormLayout> layout;
  std::optional<FormProperties> spacer;
};

struct FormLayout {
  QString className;
  FormProperties properties;
  QHash<QString, QString> attributes;  // lists of numbers
  std::vector<FormCell> cells;
};

struct Form {
  FormWidget window;
  QHash<QString, QString> baseClasses;  // of custom classes
  QStringList tabOrder;
};

// Nothing when the file cannot be read or is no form; `problem` then says why.
std::optional<Form> readForm(const std::string &path, std::string &problem);

}  // namespace korvel::platform::qt

#endif
