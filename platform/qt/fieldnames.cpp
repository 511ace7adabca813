// SPDX-License-Identifier: MIT
// Finds each field's label as a person does: by the places of both on the screen.
#include "platform/qt/fieldnames.h"

#include <algorithm>
#include <iterator>

#include <QGroupBox>
#include <QLabel>
#include <QStackedWidget>
#include <QTextDocumentFragment>

namespace korvel::platform::qt {
namespace {

// A text above a field is its label when it lies at most this far from it; farther away, it is the
// heading of a column.
constexpr int kFarthestAbove = 12;
// Frames and accents let a label and its field overlap by some pixels.
constexpr int kOverlap = 6;

// A static text, or a group box with its title.
struct Label {
  QRect place;
  QString text;
};

int sharedHeight(const QRect &a, const QRect &b) {
  return std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) + 1;
}

int sharedWidth(const QRect &a, const QRect &b) {
  return std::min(a.right(), b.right()) - std::max(a.left(), b.left()) + 1;
}

// On the field's row; for a field of several lines, on its first line.
bool isBeside(const QRect &label, const QRect &field) {
  const QRect firstLine(field.left(), field.top(), field.width(),
                        std::min(field.height(), std::max(label.height(), 2 * kOverlap)));
  return 2 * sharedHeight(label, firstLine) >= std::min(label.height(), firstLine.height());
}

bool isLeftOf(const QRect &label, const QRect &field) {
  return label.left() < field.left() && isBeside(label, field);
}

int distanceAbove(const QRect &label, const QRect &field) {
  return field.top() - label.bottom() - 1;
}

bool isOverColumn(const QRect &label, const QRect &field) {
  return distanceAbove(label, field) >= -kOverlap && label.top() < field.top() &&
         sharedWidth(label, field) > 0 && label.left() < field.right() &&
         label.left() >= field.left() - kFarthestAbove;
}

bool isAbove(const QRect &label, const QRect &field) {
  return isOverColumn(label, field) && distanceAbove(label, field) <= kFarthestAbove;
}

bool hasFieldBetween(const QRect &label, const QRect &field, const std::vector<QRect> &fields) {
  return std::any_of(fields.begin(), fields.end(), [&](const QRect &other) {
    return other.left() > label.left() && other.left() < field.left() && isBeside(other, field);
  });
}

bool hasFieldBeside(const QRect &label, const std::vector<QRect> &fields) {
  return std::any_of(fields.begin(), fields.end(),
                     [&](const QRect &field) { return isLeftOf(label, field); });
}

// A text inside a group box says nothing about what lies outside.
bool isKeptApart(const QRect &label, const QRect &field, const std::vector<Label> &groups) {
  return std::any_of(groups.begin(), groups.end(), [&](const Label &group) {
    return group.place.contains(label.center()) && !group.place.contains(field.center());
  });
}

// The best of the labels whose place passes; null when none does.
template <typename Passes, typename Better>
const Label *best(const std::vector<Label> &labels, Passes passes, Better better) {
  const Label *found = nullptr;
  for (const Label &label : labels)
    if (passes(label.place) && (found == nullptr || better(label.place, found->place)))
      found = &label;
  return found;
}

bool isNearerOnTheLeft(const QRect &a, const QRect &b) { return a.left() > b.left(); }
bool isNearerAbove(const QRect &a, const QRect &b) { return a.bottom() > b.bottom(); }
bool isSmaller(const QRect &a, const QRect &b) {
  return qint64{a.width()} * a.height() < qint64{b.width()} * b.height();
}

// The static text that a person takes for the field's label; null when there is none.
const Label *labelOf(const QRect &field, const std::vector<Label> &labels,
                     const std::vector<QRect> &fields) {
  const auto isOnTheLeft = [&](const QRect &label) { return isLeftOf(label, field); };
  const auto isItsOwn = [&](const QRect &label) {
    return isOnTheLeft(label) && !hasFieldBetween(label, field, fields);
  };
  const auto isOverIt = [&](const QRect &label) { return isAbove(label, field); };

  if (const Label *own = best(labels, isItsOwn, isNearerOnTheLeft)) return own;
  if (const Label *above = best(labels, isOverIt, isNearerAbove)) return above;
  return best(labels, isOnTheLeft, isNearerOnTheLeft);
}

// What is nearest to a field without a label: the heading of its column, inside its group, else the
// group's title. Null when there is nothing.
const Label *headingOf(const QRect &field, const std::vector<Label> &labels,
                       const std::vector<Label> &groups, const std::vector<QRect> &fields) {
  const Label *group = best(
      groups, [&](const QRect &place) { return place.contains(field.center()); }, isSmaller);
  const auto isHeading = [&](const QRect &label) {
    return isOverColumn(label, field) && !hasFieldBeside(label, fields) &&
           (group == nullptr || group->place.contains(label.center()));
  };
  const Label *heading = best(labels, isHeading, isNearerAbove);
  return heading != nullptr ? heading : group;
}

QString withoutMnemonic(QString text) {
  for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at + 1))
    text.remove(at, 1);
  return text;
}

// A label's text without its layout, and without a colon at its end.
QString nameFrom(QString text) {
  text = text.simplified();
  while (text.endsWith(u':')) text = text.chopped(1).trimmed();
  return text;
}

bool isRich(const QLabel &label) {
  return label.textFormat() == Qt::RichText ||
         (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text()));
}

QString nameFrom(const QLabel &label) {
  if (isRich(label)) return nameFrom(QTextDocumentFragment::fromHtml(label.text()).toPlainText());
  // A label takes "&" as a mark only if it has a buddy.
  return nameFrom(label.buddy() != nullptr ? withoutMnemonic(label.text()) : label.text());
}

QRect placeIn(const QWidget &window, const QWidget &widget) {
  return {widget.mapTo(&window, QPoint(0, 0)), widget.size()};
}

// The page of a tab widget or the like that the widget is on; null for none. The pages lie over
// each other.
const QWidget *pageOf(const QWidget &widget) {
  for (const QWidget *each = &widget; each->parentWidget() != nullptr; each = each->parentWidget())
    if (qobject_cast<QStackedWidget *>(each->parentWidget()) != nullptr) return each;
  return nullptr;
}

// Everything on one page, or on the window itself.
struct Page {
  const QWidget *page;
  std::vector<QRect> fields;
  std::vector<Label> labels;
  std::vector<Label> groups;
};

class Namer {
 public:
  Namer(const QWidget &window, const std::vector<QWidget *> &fields, const FieldNames &given)
      : window_(window), given_(given) {
    for (const QWidget *field : fields) pageWith(*field).fields.push_back(placeIn(window, *field));
    for (const QLabel *label : window.findChildren<QLabel *>()) add(*label);
    for (const QGroupBox *box : window.findChildren<QGroupBox *>()) add(*box);
  }

  // Whether the application named the field.
  bool isGiven(const QWidget &field) const { return given_.count(&field) != 0; }

  QString nameFor(const QWidget &field) {
    if (const auto given = given_.find(&field); given != given_.end()) return given->second;
    for (const auto &[buddy, name] : buddies_)
      if (buddy == &field) return name;
    return nearestTo(placeIn(window_, field), pageWith(field));
  }

 private:
  Page &pageWith(const QWidget &widget) {
    const QWidget *page = pageOf(widget);
    const auto found = std::find_if(pages_.begin(), pages_.end(),
                                    [page](const Page &each) { return each.page == page; });
    return found != pages_.end() ? *found : pages_.emplace_back(Page{page, {}, {}, {}});
  }

  void add(const QLabel &label) {
    const QString name = nameFrom(label);
    if (name.isEmpty() || label.isHidden()) return;
    if (label.buddy() != nullptr) {
      buddies_.push_back({label.buddy(), name});
    } else {
      pageWith(label).labels.push_back({placeIn(window_, label), name});
    }
  }

  // A box of a classic dialog paints its title itself.
  void add(const QGroupBox &box) {
    const QString title =
        box.title().isEmpty() ? box.accessibleName() : withoutMnemonic(box.title());
    const QString name = nameFrom(title);
    if (!name.isEmpty() && !box.isHidden())
      pageWith(box).groups.push_back({placeIn(window_, box), name});
  }

  static QString nearestTo(const QRect &field, const Page &page) {
    std::vector<Label> labels;
    std::copy_if(page.labels.begin(), page.labels.end(), std::back_inserter(labels),
                 [&](const Label &label) { return !isKeptApart(label.place, field, page.groups); });
    const Label *label = labelOf(field, labels, page.fields);
    if (label == nullptr) label = headingOf(field, labels, page.groups, page.fields);
    return label != nullptr ? label->text : QString();
  }

  const QWidget &window_;
  const FieldNames &given_;
  std::vector<Page> pages_;
  std::vector<std::pair<const QWidget *, QString>> buddies_;
};

void setName(QWidget *field, const QString &name, bool isGiven) {
  if (field != nullptr && (isGiven || field->accessibleName().isEmpty()))
    field->setAccessibleName(name);
}

QString partSeparator() { return QStringLiteral(" : "); }

void namePart(Namer &namer, QWidget *part, const QString &date, const QString &name) {
  if (part == nullptr) return;
  setName(part, date.isEmpty() ? name : date + partSeparator() + name, namer.isGiven(*part));
}

}  // namespace

void nameFields(QWidget &window, const std::vector<QWidget *> &fields,
                const std::vector<DateFields> &dates, const FieldNames &given) {
  Namer namer(window, fields, given);
  std::vector<const QWidget *> parts;
  for (const DateFields &date : dates) {
    const QString name = date.day != nullptr ? namer.nameFor(*date.day) : QString();
    namePart(namer, date.day, name, QStringLiteral("jour"));
    namePart(namer, date.month, name, QStringLiteral("mois"));
    namePart(namer, date.year, name, QStringLiteral("année"));
    for (const QWidget *part : {date.day, date.month, date.year}) parts.push_back(part);
  }
  for (QWidget *field : fields) {
    if (std::find(parts.begin(), parts.end(), field) == parts.end())
      setName(field, namer.nameFor(*field), namer.isGiven(*field));
  }
}

QString nameWithoutPart(const QString &name) {
  return name.left(name.lastIndexOf(partSeparator()));
}

}  // namespace korvel::platform::qt
