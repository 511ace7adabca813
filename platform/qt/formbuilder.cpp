#include "platform/qt/formbuilder.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QPixmap>
#include <QTabWidget>
#include <algorithm>
#include <iterator>

#include "platform/qt/buttonitem.h"
#include "platform/qt/listitem.h"
#include "platform/qt/popupitem.h"
#include "platform/qt/text.h"
#include "platform/qt/textitem.h"

namespace korvel::platform::qt {
namespace {

constexpr int kLastItem = 32767;
constexpr int kMostBases = 8;

// Properties that are taken over from a form as they stand. All else would change what an item is
// (an input mask, an echo mode), or belongs to the desktop.
constexpr const char *kProperties[] = {
    // of every widget
    "enabled", "minimumSize", "maximumSize", "sizePolicy", "font", "toolTip", "accessibleName",
    "accessibleDescription", "focusPolicy",
    // of labels, frames, group boxes and pages
    "alignment", "wordWrap", "indent", "margin", "textFormat", "scaledContents", "frameShape",
    "frameShadow", "lineWidth", "midLineWidth", "title", "flat", "tabPosition",
    // of items
    "checked", "readOnly", "placeholderText", "frame", "maxLength", "maxVisibleItems",
    "sizeAdjustPolicy", "minimumContentsLength", "alternatingRowColors",
    "horizontalScrollBarPolicy", "verticalScrollBarPolicy"};

bool isTaken(const QString &property) {
  return std::any_of(std::begin(kProperties), std::end(kProperties),
                     [&](const char *taken) { return property == QLatin1String(taken); });
}

// A value of another type than the property's would be converted, which is not what was designed.
bool fits(const QVariant &value, const QMetaProperty &property) {
  if (property.isEnumType()) return value.metaType() == QMetaType::fromType<QString>();
  return value.metaType() == property.metaType();
}

// Only indents have a negative number, -1, with a meaning.
QVariant sensible(const QString &property, const QVariant &value) {
  if (value.metaType() != QMetaType::fromType<int>()) return value;
  return std::max(property == QLatin1String("indent") ? -1 : 0, value.toInt());
}

void takeProperties(QWidget &widget, const FormProperties &properties) {
  const QMetaObject &type = *widget.metaObject();
  for (auto each = properties.cbegin(); each != properties.cend(); ++each) {
    const int index = type.indexOfProperty(each.key().toLatin1());
    if (index < 0 || !isTaken(each.key())) continue;
    const QMetaProperty property = type.property(index);
    if (fits(each.value(), property)) property.write(&widget, sensible(each.key(), each.value()));
  }
}

QVector<int> listOf(const QString &numbers) {
  QVector<int> list;
  for (const QString &number : numbers.split(u',')) list << std::clamp(number.toInt(), 0, 32767);
  return list;
}

// Example: "Qt::AlignRight|Qt::AlignVCenter".
Qt::Alignment alignmentOf(const QString &keys) {
  const int value = QMetaEnum::fromType<Qt::Alignment>().keysToValue(keys.toLatin1());
  return keys.isEmpty() || value < 0 ? Qt::Alignment() : Qt::Alignment(value);
}

// What the form editor puts around a layout that stands by itself in a place of its own.
bool isLayoutWidget(const FormWidget &widget) {
  return widget.className == QLatin1String("QWidget") &&
         widget.name.contains(QLatin1String("ayoutWidget"));
}

bool isOneOf(const QString &className, std::initializer_list<const char *> classes) {
  return std::any_of(classes.begin(), classes.end(),
                     [&](const char *each) { return className == QLatin1String(each); });
}

enum class Margins { Usual, None };

// ---- Layouts ----

void setMargins(QLayout &layout, const FormProperties &properties, Margins byDefault) {
  QMargins margins = byDefault == Margins::Usual ? layout.contentsMargins() : QMargins();
  const auto told = [&](const char *name, int otherwise) {
    return std::max(0, properties.value(QLatin1String(name), otherwise).toInt());
  };
  const int all = told("margin", -1);
  if (properties.contains(QStringLiteral("margin"))) margins = {all, all, all, all};
  layout.setContentsMargins(told("leftMargin", margins.left()), told("topMargin", margins.top()),
                            told("rightMargin", margins.right()),
                            told("bottomMargin", margins.bottom()));
}

void setSpacing(QLayout &layout, const FormProperties &properties) {
  const auto apply = [&](const char *name, const auto &set) {
    const QVariant spacing = properties.value(QLatin1String(name));
    if (spacing.isValid()) set(std::max(0, spacing.toInt()));
  };
  apply("spacing", [&](int pixels) { layout.setSpacing(pixels); });
  const auto applyBoth = [&](auto *each) {
    apply("horizontalSpacing", [=](int pixels) { each->setHorizontalSpacing(pixels); });
    apply("verticalSpacing", [=](int pixels) { each->setVerticalSpacing(pixels); });
  };
  if (auto *grid = qobject_cast<QGridLayout *>(&layout)) applyBoth(grid);
  if (auto *rows = qobject_cast<QFormLayout *>(&layout)) applyBoth(rows);
}

// After the cells are there: a stretch is that of a row or column, or of the n-th cell.
void setStretches(QLayout &layout, const FormLayout &described) {
  const auto forEach = [&](const char *name, int count, const auto &set) {
    const QVector<int> numbers = listOf(described.attributes.value(QLatin1String(name)));
    for (int n = 0; n < std::min<int>(count, static_cast<int>(numbers.size())); ++n)
      set(n, numbers[n]);
  };
  if (auto *box = qobject_cast<QBoxLayout *>(&layout))
    forEach("stretch", box->count(), [=](int n, int stretch) { box->setStretch(n, stretch); });
  auto *grid = qobject_cast<QGridLayout *>(&layout);
  if (grid == nullptr) return;
  const int rows = grid->rowCount();
  const int columns = grid->columnCount();
  forEach("rowstretch", rows, [=](int n, int stretch) { grid->setRowStretch(n, stretch); });
  forEach("columnstretch", columns, [=](int n, int s) { grid->setColumnStretch(n, s); });
  forEach("rowminimumheight", rows, [=](int n, int h) { grid->setRowMinimumHeight(n, h); });
  forEach("columnminimumwidth", columns, [=](int n, int w) { grid->setColumnMinimumWidth(n, w); });
}

QLayout *layoutOf(const QString &className) {
  if (className == QLatin1String("QHBoxLayout")) return new QHBoxLayout;
  if (className == QLatin1String("QGridLayout")) return new QGridLayout;
  if (className == QLatin1String("QFormLayout")) return new QFormLayout;
  return new QVBoxLayout;
}

QSpacerItem *makeSpacer(const FormProperties &spacer) {
  const QSize size = spacer.value(QStringLiteral("sizeHint")).toSize();
  const bool isUpright =
      spacer.value(QStringLiteral("orientation")).toString() == QLatin1String("Qt::Vertical");
  const QByteArray type = spacer.value(QStringLiteral("sizeType")).toString().toLatin1();
  const int told = QMetaEnum::fromType<QSizePolicy::Policy>().keyToValue(type);
  const auto along = told < 0 ? QSizePolicy::Expanding : static_cast<QSizePolicy::Policy>(told);
  return isUpright ? new QSpacerItem(size.width(), size.height(), QSizePolicy::Minimum, along)
                   : new QSpacerItem(size.width(), size.height(), along, QSizePolicy::Minimum);
}

// A layout's way of taking what stands in one of its cells.
class CellAdder {
 public:
  CellAdder(QLayout &layout, const FormCell &cell) : layout_(layout), cell_(cell) {}

  bool isFree() const {
    const auto *rows = qobject_cast<QFormLayout *>(&layout_);
    if (rows == nullptr || row() >= rows->rowCount()) return true;
    const auto isEmpty = [&](QFormLayout::ItemRole role) {
      return rows->itemAt(row(), role) == nullptr;
    };
    const bool needsLabel = role() != QFormLayout::FieldRole;
    const bool needsField = role() != QFormLayout::LabelRole;
    return isEmpty(QFormLayout::SpanningRole) && (!needsLabel || isEmpty(QFormLayout::LabelRole)) &&
           (!needsField || isEmpty(QFormLayout::FieldRole));
  }

  void add(QWidget *widget) const {
    const Qt::Alignment alignment = alignmentOf(cell_.alignment);
    if (auto *grid = qobject_cast<QGridLayout *>(&layout_))
      grid->addWidget(widget, row(), column(), cell_.rowSpan, cell_.columnSpan, alignment);
    else if (auto *rows = qobject_cast<QFormLayout *>(&layout_))
      rows->setWidget(row(), role(), widget);
    else if (auto *box = qobject_cast<QBoxLayout *>(&layout_))
      box->addWidget(widget, 0, alignment);
  }

  void add(QLayout *layout) const {
    if (auto *grid = qobject_cast<QGridLayout *>(&layout_))
      grid->addLayout(layout, row(), column(), cell_.rowSpan, cell_.columnSpan);
    else if (auto *rows = qobject_cast<QFormLayout *>(&layout_))
      rows->setLayout(row(), role(), layout);
    else if (auto *box = qobject_cast<QBoxLayout *>(&layout_))
      box->addLayout(layout);
  }

  void add(QSpacerItem *spacer) const {
    if (auto *grid = qobject_cast<QGridLayout *>(&layout_))
      grid->addItem(spacer, row(), column(), cell_.rowSpan, cell_.columnSpan);
    else if (auto *rows = qobject_cast<QFormLayout *>(&layout_))
      rows->setItem(row(), role(), spacer);
    else
      layout_.addItem(spacer);
  }

 private:
  int row() const { return std::max(0, cell_.row); }
  int column() const { return std::max(0, cell_.column); }
  QFormLayout::ItemRole role() const {
    if (cell_.columnSpan > 1) return QFormLayout::SpanningRole;
    return column() == 0 ? QFormLayout::LabelRole : QFormLayout::FieldRole;
  }

  QLayout &layout_;
  const FormCell &cell_;
};

// ---- Widgets ----

class Builder {
 public:
  Builder(const Form &form, const QString &folder, HitSink &sink, BuiltForm &built)
      : form_(form), folder_(folder), sink_(sink), built_(built) {}

  // False when something is wrong with the form.
  bool build(QWidget &window);
  const std::string &problem() const { return problem_; }

 private:
  QString knownClass(QString className) const;
  QWidget *make(const FormWidget &widget, QWidget *parent);
  QWidget *makeItem(const FormWidget &widget, const QString &className, QWidget *parent);
  QWidget *makeDecoration(const FormWidget &widget, const QString &className, QWidget *parent);
  QWidget *makeLabel(const FormWidget &widget, QWidget *parent);
  QWidget *makeLine(const FormWidget &widget, QWidget *parent);
  void fillItem(Item &item, const FormWidget &widget);
  void fill(QWidget &made, const FormWidget &widget);
  void addPages(QTabWidget &tabs, const FormWidget &widget);

  void fillLayout(QLayout &made, const FormLayout &layout, QWidget &parent, Margins margins);
  void addCell(QLayout &layout, const FormCell &cell, QWidget &parent);

  int numberOf(const FormWidget &widget);
  void noteNumber(int number, const FormWidget &widget);
  void fail(const QString &why) {
    if (problem_.empty()) problem_ = why.toStdString();
  }
  void setTabOrder(QWidget &window);
  void setBuddies();

  const Form &form_;
  const QString folder_;
  HitSink &sink_;
  BuiltForm &built_;
  std::string problem_;
  QHash<QString, QWidget *> byName_;
  QHash<int, QString> takenBy_;  // item numbers
  QHash<QLabel *, QString> buddies_;
};

// A custom class is as good as the class that it extends.
QString Builder::knownClass(QString className) const {
  for (int n = 0; n < kMostBases && form_.baseClasses.contains(className); ++n)
    className = form_.baseClasses.value(className);
  return className;
}

int Builder::numberOf(const FormWidget &widget) {
  const QVariant told = widget.properties.value(QStringLiteral("item"));
  if (!told.isValid()) return 0;
  bool isNumber = false;
  const int number = told.toInt(&isNumber);
  if (isNumber && number >= 1 && number <= kLastItem) return number;
  fail(QStringLiteral("\"%1\" has an item number that is none: %2")
           .arg(widget.name, told.toString()));
  return 0;
}

void Builder::noteNumber(int number, const FormWidget &widget) {
  if (number == 0) return;
  if (takenBy_.contains(number))
    fail(QStringLiteral("item %1 is there twice, as \"%2\" and as \"%3\"")
             .arg(QString::number(number), takenBy_.value(number), widget.name));
  takenBy_.insert(number, widget.name);
}

QWidget *Builder::makeItem(const FormWidget &widget, const QString &className, QWidget *parent) {
  const int number = numberOf(widget);
  const auto finish = [&](auto *item) -> QWidget * {
    fillItem(*item, widget);
    if (number > 0) {
      const auto index = static_cast<std::size_t>(number) - 1;
      if (built_.items.size() <= index) built_.items.resize(index + 1);
      built_.items[index] = item;
    }
    return item;
  };
  if (isOneOf(className, {"QPushButton", "QCommandLinkButton"})) {
    if (widget.properties.value(QStringLiteral("default")).toBool()) built_.defaultItem = number;
    return finish(new ButtonItem(parent, sink_, number));
  }
  if (className == QLatin1String("QCheckBox")) return finish(new CheckItem(parent, sink_, number));
  if (isOneOf(className, {"QListWidget", "QListView"}))
    return finish(new ListItem(parent, sink_, number));
  if (className == QLatin1String("QComboBox")) return finish(new PopUpItem(parent, sink_, number));
  if (className == QLatin1String("QLineEdit")) return finish(new TextItem(parent, sink_, number));
  return nullptr;
}

// Texts of fields are bytes, as everywhere; those of buttons are as designed, shortcuts included.
void Builder::fillItem(Item &item, const FormWidget &widget) {
  const QVariant text = widget.properties.value(QStringLiteral("text"));
  if (item.kind() == ItemKind::EditText)
    item.setText(fromQt(text.toString()));
  else if (text.isValid())
    item.widget()->setProperty("text", text);
  if (widget.entries.isEmpty()) return;
  std::vector<std::string> entries;
  for (const QString &entry : widget.entries) entries.push_back(fromQt(entry));
  item.setEntries(entries);
  item.setValue(widget.properties.value(QStringLiteral("currentIndex"), 0).toInt() + 1);
}

QWidget *Builder::makeLabel(const FormWidget &widget, QWidget *parent) {
  auto *label = new QLabel(parent);
  label->setText(widget.properties.value(QStringLiteral("text")).toString());
  const QString picture = widget.properties.value(QStringLiteral("pixmap")).toString();
  if (!picture.isEmpty())
    label->setPixmap(QPixmap(
        picture.startsWith(u'/') || picture.startsWith(u':') ? picture : folder_ + u'/' + picture));
  const QString buddy = widget.properties.value(QStringLiteral("buddy")).toString();
  if (!buddy.isEmpty()) buddies_.insert(label, buddy);
  return label;
}

QWidget *Builder::makeLine(const FormWidget &widget, QWidget *parent) {
  auto *line = new QFrame(parent);
  const bool isUpright = widget.properties.value(QStringLiteral("orientation")).toString() ==
                         QLatin1String("Qt::Vertical");
  line->setFrameStyle((isUpright ? QFrame::VLine : QFrame::HLine) | QFrame::Sunken);
  return line;
}

QWidget *Builder::makeDecoration(const FormWidget &widget, const QString &className,
                                 QWidget *parent) {
  const bool isStatic = isOneOf(className, {"QLabel", "QGroupBox"});
  if (!isStatic && widget.properties.contains(QStringLiteral("item")))
    fail(QStringLiteral("\"%1\" has an item number and is no item: %2")
             .arg(widget.name, widget.className));
  numberOf(widget);
  if (className == QLatin1String("QLabel")) return makeLabel(widget, parent);
  if (className == QLatin1String("QGroupBox")) return new QGroupBox(parent);
  if (className == QLatin1String("QTabWidget")) return new QTabWidget(parent);
  if (className == QLatin1String("QFrame")) return new QFrame(parent);
  if (className == QLatin1String("Line")) return makeLine(widget, parent);
  return new QWidget(parent);
}

QWidget *Builder::make(const FormWidget &widget, QWidget *parent) {
  const QString className = knownClass(widget.className);
  QWidget *made = makeItem(widget, className, parent);
  if (made == nullptr) made = makeDecoration(widget, className, parent);
  noteNumber(numberOf(widget), widget);
  made->setObjectName(widget.name);
  if (!byName_.contains(widget.name)) byName_.insert(widget.name, made);
  const QVariant geometry = widget.properties.value(QStringLiteral("geometry"));
  if (geometry.isValid()) made->setGeometry(geometry.toRect());
  takeProperties(*made, widget.properties);
  fill(*made, widget);
  return made;
}

void Builder::addPages(QTabWidget &tabs, const FormWidget &widget) {
  for (const FormWidget &page : widget.children)
    tabs.addTab(make(page, &tabs), page.attributes.value(QStringLiteral("title")).toString());
  tabs.setCurrentIndex(widget.properties.value(QStringLiteral("currentIndex"), 0).toInt());
}

// What stands inside of a widget.
void Builder::fill(QWidget &made, const FormWidget &widget) {
  if (auto *tabs = qobject_cast<QTabWidget *>(&made)) return addPages(*tabs, widget);
  if (widget.layout != nullptr) {
    QLayout *layout = layoutOf(widget.layout->className);
    made.setLayout(layout);
    fillLayout(*layout, *widget.layout, made,
               isLayoutWidget(widget) ? Margins::None : Margins::Usual);
  }
  for (const FormWidget &child : widget.children) make(child, &made);
  for (const QString &name : widget.stacking)
    if (QWidget *child = byName_.value(name); child != nullptr && child->parentWidget() == &made)
      child->raise();
}

// ---- Cells ----

// `made` stands in its place already: what its margins are by default depends on that.
void Builder::fillLayout(QLayout &made, const FormLayout &layout, QWidget &parent,
                         Margins margins) {
  setMargins(made, layout.properties, margins);
  setSpacing(made, layout.properties);
  for (const FormCell &cell : layout.cells) addCell(made, cell, parent);
  setStretches(made, layout);
}

void Builder::addCell(QLayout &layout, const FormCell &cell, QWidget &parent) {
  const CellAdder adder(layout, cell);
  if (!adder.isFree()) return fail(QStringLiteral("two widgets stand in one cell of a layout"));
  if (cell.widget) {
    adder.add(make(*cell.widget, &parent));
  } else if (cell.layout != nullptr) {
    QLayout *inner = layoutOf(cell.layout->className);
    adder.add(inner);
    fillLayout(*inner, *cell.layout, parent, Margins::None);
  } else if (cell.spacer) {
    adder.add(makeSpacer(*cell.spacer));
  }
}

// ---- The whole form ----

void Builder::setTabOrder(QWidget &window) {
  QWidget *before = nullptr;
  for (const QString &name : form_.tabOrder) {
    QWidget *next = byName_.value(name);
    if (next == nullptr || next == &window || next == before) continue;
    if (before != nullptr) QWidget::setTabOrder(before, next);
    before = next;
  }
}

void Builder::setBuddies() {
  for (auto each = buddies_.cbegin(); each != buddies_.cend(); ++each)
    each.key()->setBuddy(byName_.value(each.value()));
}

bool Builder::build(QWidget &window) {
  const FormWidget &described = form_.window;
  if (!isOneOf(knownClass(described.className), {"QDialog", "QWidget"})) {
    fail(QStringLiteral("its window is no dialog but a %1").arg(described.className));
    return false;
  }
  window.setObjectName(described.name);
  const QVariant font = described.properties.value(QStringLiteral("font"));
  if (font.isValid()) window.setFont(font.value<QFont>());
  fill(window, described);
  setTabOrder(window);
  setBuddies();
  return problem_.empty();
}

}  // namespace

bool buildForm(const Form &form, const QString &folder, QWidget &window, HitSink &sink,
               BuiltForm &built, std::string &problem) {
  Builder builder(form, folder, sink, built);
  if (builder.build(window)) return true;
  problem = builder.problem();
  return false;
}

}  // namespace korvel::platform::qt
