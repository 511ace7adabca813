// Finds each field's label as a person does: by the places of both on the screen.
#include "platform/qt/fieldnames.h"

#include <algorithm>

#include <QLabel>
#include <QTextDocumentFragment>

namespace korvel::platform::qt {
namespace {

// A label above its field lies at most this far from it.
constexpr int kFarthestAbove = 12;
// Frames and accents let a label and its field overlap by some pixels.
constexpr int kOverlap = 6;

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

bool isAbove(const QRect &label, const QRect &field) {
  const int distance = field.top() - label.bottom() - 1;
  return distance >= -kOverlap && distance <= kFarthestAbove && label.top() < field.top() &&
         sharedWidth(label, field) > 0 && label.left() < field.right() &&
         label.left() >= field.left() - kFarthestAbove;
}

bool hasFieldBetween(const QRect &label, const QRect &field, const std::vector<QRect> &fields) {
  return std::any_of(fields.begin(), fields.end(), [&](const QRect &other) {
    return other.left() > label.left() && other.left() < field.left() && isBeside(other, field);
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

class Namer {
 public:
  Namer(const QWidget &window, const std::vector<QWidget *> &fields) : window_(window) {
    for (const QWidget *field : fields) places_.push_back(placeIn(window, *field));
    for (const QLabel *label : window.findChildren<QLabel *>()) add(*label);
  }

  QString nameFor(const QWidget &field) const {
    for (const auto &[buddy, name] : buddies_)
      if (buddy == &field) return name;
    const Label *label = labelOf(placeIn(window_, field), labels_, places_);
    return label != nullptr ? label->text : QString();
  }

 private:
  void add(const QLabel &label) {
    const QString name = nameFrom(label);
    if (name.isEmpty() || label.isHidden()) return;
    if (label.buddy() != nullptr) {
      buddies_.push_back({label.buddy(), name});
    } else {
      labels_.push_back({placeIn(window_, label), name});
    }
  }

  const QWidget &window_;
  std::vector<QRect> places_;
  std::vector<Label> labels_;
  std::vector<std::pair<const QWidget *, QString>> buddies_;
};

void setName(QWidget *field, const QString &name) {
  if (field != nullptr && field->accessibleName().isEmpty()) field->setAccessibleName(name);
}

void setPartName(QWidget *part, const QString &date, const QString &name) {
  setName(part, date.isEmpty() ? name : date + QStringLiteral(" : ") + name);
}

}  // namespace

const Label *labelOf(const QRect &field, const std::vector<Label> &labels,
                     const std::vector<QRect> &fields) {
  const auto isNearerOnTheLeft = [](const QRect &a, const QRect &b) { return a.left() > b.left(); };
  const auto isNearerAbove = [](const QRect &a, const QRect &b) { return a.bottom() > b.bottom(); };
  const auto isOnTheLeft = [&](const QRect &label) { return isLeftOf(label, field); };
  const auto isItsOwn = [&](const QRect &label) {
    return isOnTheLeft(label) && !hasFieldBetween(label, field, fields);
  };
  const auto isOverIt = [&](const QRect &label) { return isAbove(label, field); };

  if (const Label *own = best(labels, isItsOwn, isNearerOnTheLeft)) return own;
  if (const Label *above = best(labels, isOverIt, isNearerAbove)) return above;
  return best(labels, isOnTheLeft, isNearerOnTheLeft);
}

void nameFields(QWidget &window, const std::vector<QWidget *> &fields,
                const std::vector<DateFields> &dates) {
  const Namer namer(window, fields);
  for (const DateFields &date : dates) {
    const QString name = date.day != nullptr ? namer.nameFor(*date.day) : QString();
    setPartName(date.day, name, QStringLiteral("jour"));
    setPartName(date.month, name, QStringLiteral("mois"));
    setPartName(date.year, name, QStringLiteral("année"));
  }
  for (QWidget *field : fields) setName(field, namer.nameFor(*field));
}

}  // namespace korvel::platform::qt
