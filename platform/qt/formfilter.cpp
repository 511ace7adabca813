// SPDX-License-Identifier: MIT
// Copies a form element by element and leaves out what is not listed here. What would harm the
// loader all the same is refused, or replaced where it is only a value.
#include "platform/qt/formfilter.h"

#include <algorithm>
#include <iterator>

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTextDocument>
#include <QTextFormat>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace korvel::platform::qt {
namespace {

// Far beyond what fits on a screen.
constexpr qint64 kLargestFile = 4 * 1024 * 1024;
constexpr int kDeepest = 50;
constexpr int kMostWidgets = 2000;
constexpr int kMostEntries = 20000;
constexpr int kMostCells = 200;  // rows or columns of a layout
constexpr int kFarthest = 32768;
constexpr int kLargestFont = 200;
constexpr int kLongestMarkup = 10000;
constexpr int kMostBases = 8;  // of a class that the form declares
constexpr int kQuoted = 40;    // characters of a text that is at fault

// ---- What passes ----

// The elements that pass, with those that pass inside them, their attributes, and the properties
// that may have them as a value. Any other property would change what an item is (an input mask, an
// echo mode), could load something, or belongs to the desktop. The loader would convert a value of
// another kind.
struct Element {
  const char *name;
  const char *inside, *attributes;  // null for a plain text
  const char *properties;
};
constexpr Element kElements[] = {
    {"", " ui ", "", ""},
    {"ui", " widget ", "", ""},
    {"widget", " property attribute item zorder widget layout ", " name ", ""},
    {"layout", " property item ",
     " name stretch rowstretch columnstretch rowminimumheight columnminimumwidth ", ""},
    {"item", " widget layout spacer ", " row column rowspan colspan alignment ", ""},
    {"spacer", " property ", " name ", ""},
    {"property", "", " name ", ""},  // its values are the rows below
    {"attribute", "", " name ", ""},
    {"rect", " x y width height ", "", " geometry "},
    {"size", " width height ", "", " minimumSize maximumSize sizeHint "},
    {"font", " family pointsize bold italic underline strikeout ", "", " font "},
    {"sizepolicy", " horstretch verstretch ", " hsizetype vsizetype ", " sizePolicy "},
    {"bool", nullptr, nullptr,
     " enabled wordWrap scaledContents flat widgetResizable default checked readOnly frame"
     " alternatingRowColors "},
    {"number", nullptr, nullptr,
     " item indent margin lineWidth midLineWidth currentIndex maxLength maxVisibleItems"
     " minimumContentsLength minimum maximum value leftMargin topMargin rightMargin bottomMargin"
     " spacing horizontalSpacing verticalSpacing "},
    {"string", nullptr, nullptr,
     " item text plainText title label windowTitle styleSheet toolTip accessibleName "
     "accessibleDescription"
     " placeholderText "},
    {"enum", nullptr, nullptr,
     " focusPolicy textFormat frameShape frameShadow orientation tabPosition sizeAdjustPolicy"
     " horizontalScrollBarPolicy verticalScrollBarPolicy sizeType "},
    {"set", nullptr, nullptr, " alignment "},
    {"cstring", nullptr, nullptr, " buddy "},
    {"pixmap", nullptr, nullptr, " pixmap "},
};
// A window that was disabled, or of another modality, could not be left.
constexpr char kWindowProperties[] = " geometry windowTitle font styleSheet ";

constexpr char kClasses[] =
    " QPushButton QCommandLinkButton QCheckBox QListWidget QListView QComboBox QLineEdit"
    " QPlainTextEdit QWidget QFrame Line QLabel QGroupBox QSlider QSpinBox QTabWidget "
    "QStackedWidget QToolBox "
    "QScrollArea ";
// The loader gives each widget inside of one a page, or the whole place: none has a layout.
constexpr char kContainers[] = " QTabWidget QStackedWidget QToolBox QScrollArea ";
constexpr char kLayouts[] = " QVBoxLayout QHBoxLayout QGridLayout QFormLayout ";

constexpr char kNumbers[] = " number x y width height horstretch verstretch pointsize ";
constexpr char kSigned[] = " x y item indent currentIndex minimum maximum value ";

// A signal on losing the focus, or at the end of a widget, could call itself without end.
constexpr char kSignals[] =
    " toggled(bool) clicked() clicked(bool) pressed() released() stateChanged(int)"
    " textChanged(QString) textEdited(QString) returnPressed() valueChanged(int) activated(int)"
    " currentIndexChanged(int) currentTextChanged(QString) currentChanged(int) ";
constexpr char kLookSlots[] =
    " setEnabled(bool) setDisabled(bool) setVisible(bool) setHidden(bool) show() hide() "
    "setFocus() ";
constexpr char kContentSlots[] =
    " setText(QString) setNum(int) setValue(int) setCurrentIndex(int) setChecked(bool) clear() ";

// Lists have a blank before and after each word.
bool isIn(QStringView word, const char *words) {
  return !word.contains(u' ') &&
         QLatin1String(words).contains(QString(u' ' + word.toString() + u' '));
}

// Null for an element that is not in the table.
const Element *rowOf(QStringView element) {
  const auto *found =
      std::find_if(std::begin(kElements), std::end(kElements),
                   [element](const Element &row) { return element == QLatin1String(row.name); });
  return found == std::end(kElements) ? nullptr : found;
}

// The loader reads some other properties without asking whether they have a value.
bool isListed(QStringView property) {
  return std::any_of(std::begin(kElements), std::end(kElements),
                     [property](const Element &row) { return isIn(property, row.properties); });
}

// ---- Texts ----

// Notes what a text asks for when it is shown as rich text.
class Markup final : public QTextDocument {
 public:
  explicit Markup(const QString &text) { setHtml(text); }
  // Whether there is a picture, a style sheet or an absurdly large font.
  bool reachesOut() const {
    const QVector<QTextFormat> formats = allFormats();
    return hasAsked_ || std::any_of(formats.begin(), formats.end(), [](const QTextFormat &format) {
             return format.isImageFormat() || format.hasProperty(QTextFormat::BackgroundImageUrl) ||
                    format.doubleProperty(QTextFormat::FontPointSize) > kLargestFont ||
                    format.intProperty(QTextFormat::FontPixelSize) > kLargestFont;
           });
  }

 protected:
  QVariant loadResource(int, const QUrl &) override {
    hasAsked_ = true;
    return {};
  }

 private:
  bool hasAsked_ = false;
};

// A rich text that reaches out is shown as its words alone.
QString harmlessText(const QString &text) {
  if (!text.contains(u'<')) return text;
  if (text.size() > kLongestMarkup) return QString(text).remove(u'<');
  const Markup markup(text);
  if (!markup.reachesOut()) return text;
  return markup.toPlainText().remove(QChar::ObjectReplacementCharacter).remove(u'<').trimmed();
}

// A style sheet can name files, set any property and ask for absurd sizes; \ hides any of it.
bool isHarmlessStyle(const QString &sheet) {
  static const QRegularExpression danger(
      QStringLiteral("url|@|\\\\|qproperty|\\d{4,}(\\.\\d*)?\\s*(px|pt|em|ex)"),
      QRegularExpression::CaseInsensitiveOption);
  return !danger.match(sheet).hasMatch();
}

QString textIn(QXmlStreamReader &xml) {
  return xml.readElementText(QXmlStreamReader::SkipChildElements);
}

// ---- The filter ----

class FormFilter {
 public:
  explicit FormFilter(const QByteArray &content) : in_(content), out_(&form_.content) {
    collect(content);
  }

  std::optional<FilteredForm> run(std::string &problem) {
    Holder document;
    document.row = rowOf(u"");
    if (in_.readNextStartElement()) {
      if (!isAt("ui")) fail(QStringLiteral("not a form: its root element is not <ui>"));
      pass(document);
      if (widgets_ == 0) fail(QStringLiteral("there is no window"));
    }
    if (!in_.hasError()) return form_;
    problem = "line " + std::to_string(in_.lineNumber()) + ": " + in_.errorString().toStdString();
    return std::nullopt;
  }

 private:
  // An element that is no text, while it passes.
  struct Holder {
    const Element *row = nullptr;
    QString name, className;       // a property has the class of its widget
    bool isWindow = false;         // or one of its properties
    int widgets = 0, layouts = 0;  // directly inside
    QStringList entries;
    QSet<QPair<int, int>> cells;  // the taken ones of a form layout

    bool isA(const char *element) const { return QLatin1String(row->name) == element; }
    bool isProperty() const { return isA("property") || isA("attribute"); }
  };

  void collect(const QByteArray &content);
  void pass(Holder &around);
  bool passesInside(const Holder &holder) const;
  QString passedClass(const Holder &around) const;
  void passAttributes(const Holder &holder);
  QString passedAttribute(const Holder &holder, QStringView name, const QString &told);
  QString passedText(const Holder &around);
  void noteEntry(Holder &widget);
  void writeEntries(const QStringList &entries);
  void check(const Holder &holder, Holder &around);
  void checkCell(Holder &layout);

  bool isAt(const char *element) const { return in_.name() == QLatin1String(element); }
  QString attribute(const char *name) const {
    return in_.attributes().value(QLatin1String(name)).toString();
  }
  // The first fault is the one that is reported; nothing is read after it.
  void fail(const QString &why) {
    if (!in_.hasError()) in_.raiseError(why);
  }

  FilteredForm form_;
  QHash<QString, QString> bases_;  // of the classes that the form declares
  QXmlStreamReader in_;
  QXmlStreamWriter out_;
  int depth_ = 0, widgets_ = 0, entries_ = 0;
};

// What a form says after its widgets. A fault in the XML is found later, while it passes.
void FormFilter::collect(const QByteArray &content) {
  for (QXmlStreamReader xml(content); !xml.atEnd(); xml.readNext()) {
    if (!xml.isStartElement()) continue;
    if (xml.name() == QLatin1String("tabstop")) form_.tabOrder << textIn(xml);
    if (!isIn(xml.name(), " customwidget connection ")) continue;
    QHash<QString, QString> texts;
    while (xml.readNextStartElement()) {
      const QString name = xml.name().toString();
      texts.insert(name, textIn(xml));
    }
    const auto text = [&texts](const char *name) { return texts.value(QLatin1String(name)); };
    if (texts.contains(QStringLiteral("extends"))) bases_.insert(text("class"), text("extends"));
    const bool setsContent = isIn(text("slot"), kContentSlots);
    if (isIn(text("signal"), kSignals) && (setsContent || isIn(text("slot"), kLookSlots)))
      form_.connections.push_back({text("sender"), text("receiver"), text("signal").toLatin1(),
                                   text("slot").toLatin1(), setsContent});
  }
}

void FormFilter::pass(Holder &around) {
  const QString element = in_.name().toString();
  Holder holder;
  holder.row = rowOf(element);
  if (holder.row == nullptr || holder.row->inside == nullptr)
    return out_.writeTextElement(isAt("pixmap") ? QStringLiteral("string") : element,
                                 passedText(around));
  holder.name = attribute("name");
  holder.className = passedClass(around);
  holder.isWindow = around.isA("ui") || (holder.isProperty() && around.isWindow);
  const int deeper = holder.isA("widget") || holder.isA("layout") ? 1 : 0;
  depth_ += deeper;
  check(holder, around);
  out_.writeStartElement(element);
  passAttributes(holder);
  while (in_.readNextStartElement()) {
    if (!passesInside(holder)) {
      in_.skipCurrentElement();
    } else if (holder.isA("widget") && isAt("item")) {
      noteEntry(holder);
    } else {
      pass(holder);
    }
  }
  if (!holder.entries.isEmpty()) writeEntries(holder.entries);
  out_.writeEndElement();
  depth_ -= deeper;
}

bool FormFilter::passesInside(const Holder &holder) const {
  if (!holder.isProperty()) {
    const bool isProperty = isAt("property") || isAt("attribute");
    return isIn(in_.name(), holder.row->inside) && (!isProperty || isListed(attribute("name")));
  }
  const Element *kind = rowOf(in_.name());
  return kind != nullptr && isIn(holder.name, kind->properties) &&
         (!holder.isWindow || isIn(holder.name, kWindowProperties));
}

// A class that the form declares is the class that it extends. The loader would make no layout or
// widget of an unknown class, nor the widgets inside of it.
QString FormFilter::passedClass(const Holder &around) const {
  QString name = attribute("class");
  if (isAt("layout")) return isIn(name, kLayouts) ? name : QStringLiteral("QVBoxLayout");
  if (!isAt("widget")) return around.className;
  for (int n = 0; n < kMostBases && bases_.contains(name); ++n) name = bases_.value(name);
  return around.isA("ui") || isIn(name, kClasses) ? name : QStringLiteral("QWidget");
}

// ---- Attributes and texts ----

void FormFilter::passAttributes(const Holder &holder) {
  for (const QXmlStreamAttribute &each : in_.attributes())
    if (isIn(each.name(), holder.row->attributes))
      out_.writeAttribute(each.name().toString(),
                          passedAttribute(holder, each.name(), each.value().toString()));
  if (!holder.isA("widget") && !holder.isA("layout")) return;
  out_.writeAttribute(QStringLiteral("class"), holder.className);
  // The editor's own frame around a layout, which is not "native", has no margins.
  if (holder.isA("widget") &&
      (holder.className != attribute("class") || attribute("native") == QLatin1String("true")))
    out_.writeAttribute(QStringLiteral("native"), QStringLiteral("true"));
}

QString FormFilter::passedAttribute(const Holder &holder, QStringView name, const QString &told) {
  if (isIn(name, " row column rowspan colspan ")) {
    bool isNumber = false;
    const int number = told.isEmpty() ? 0 : told.toInt(&isNumber);
    if (!told.isEmpty() && (!isNumber || number < 0 || number >= kMostCells))
      fail(QStringLiteral("a cell of a layout has no place"));
    return QString::number(std::max(number, name.endsWith(u"span") ? 1 : 0));
  }
  if (holder.isA("layout") && name != u"name") {
    QStringList numbers = told.split(u',');
    for (QString &number : numbers)
      number = QString::number(std::clamp(number.toInt(), 0, kFarthest));
    return numbers.join(u',');
  }
  if (!holder.isProperty()) return told;
  if (told == QLatin1String("pixmap")) return QLatin1String(handed::kPicture);
  const bool isChosen =
      told == QLatin1String("currentIndex") && holder.className == QLatin1String("QComboBox");
  return isChosen ? QLatin1String(handed::kChosen) : told;
}

// The loader takes what is no number for 0. A number out of its range is moved into it.
QString FormFilter::passedText(const Holder &around) {
  const QString element = in_.name().toString();
  const QString told = textIn(in_);
  if (isIn(element, kNumbers)) {
    bool isNumber = false;
    const qlonglong number = told.trimmed().toLongLong(&isNumber);
    if (!isNumber) fail(QStringLiteral("no number: \"%1\"").arg(told.simplified().left(kQuoted)));
    const bool isSigned = isIn(element == QLatin1String("number") ? around.name : element, kSigned);
    const int most = around.isA("font") ? kLargestFont : kFarthest;
    return QString::number(std::clamp<qlonglong>(number, isSigned ? -kFarthest : 0, most));
  }
  if (around.name == QLatin1String("styleSheet")) return isHarmlessStyle(told) ? told : QString();
  if (element == QLatin1String("string")) return harmlessText(told);
  // Markdown has ways of its own to bring pictures.
  return told.contains(QLatin1String("Markdown")) ? QStringLiteral("Qt::AutoText") : told;
}

void FormFilter::noteEntry(Holder &widget) {
  if (++entries_ > kMostEntries) return fail(QStringLiteral("too many entries"));
  widget.entries << QString();
  while (in_.readNextStartElement()) {
    if (isAt("property") && attribute("name") == QLatin1String("text")) {
      while (in_.readNextStartElement()) widget.entries.last() = textIn(in_);
    } else {
      in_.skipCurrentElement();
    }
  }
}

void FormFilter::writeEntries(const QStringList &entries) {
  out_.writeStartElement(QStringLiteral("property"));
  out_.writeAttribute(QStringLiteral("name"), QLatin1String(handed::kEntries));
  out_.writeStartElement(QStringLiteral("stringlist"));
  for (const QString &entry : entries) out_.writeTextElement(QStringLiteral("string"), entry);
  out_.writeEndElement();
  out_.writeEndElement();
}

// ---- What is refused ----

void FormFilter::check(const Holder &holder, Holder &around) {
  if (holder.isA("widget") || holder.isA("spacer")) ++widgets_;
  if (widgets_ > kMostWidgets) fail(QStringLiteral("too many widgets"));
  if (depth_ > kDeepest)
    fail(QStringLiteral("%1s nested too deeply").arg(QLatin1String(holder.row->name)));
  if (holder.isA("widget")) {
    ++around.widgets;
    if (holder.isWindow && around.widgets > 1) fail(QStringLiteral("a second window"));
    if (holder.isWindow && !isIn(holder.className, " QDialog QWidget "))
      fail(QStringLiteral("its window is no dialog but a %1").arg(attribute("class")));
    // The second one would destroy the first while the loader still refers to it.
    if (around.className == QLatin1String("QScrollArea") && around.widgets > 1)
      fail(QStringLiteral("\"%1\" scrolls two widgets").arg(around.name));
  } else if (holder.isA("layout") && around.isA("widget")) {
    if (++around.layouts > 1 || isIn(around.className, kContainers))
      fail(QStringLiteral("\"%1\" has a layout too many").arg(around.name));
  } else if (holder.isA("item")) {
    checkCell(around);
  }
}

// Other layouts show both widgets of one cell.
void FormFilter::checkCell(Holder &layout) {
  if (layout.className != QLatin1String("QFormLayout")) return;
  const int row = attribute("row").toInt();
  const bool isField = attribute("column").toInt() > 0,
             isSpanning = attribute("colspan").toInt() > 1;
  for (const int column : {0, 1}) {
    if (!isSpanning && column != (isField ? 1 : 0)) continue;
    if (layout.cells.contains({row, column}))
      fail(QStringLiteral("two widgets stand in one cell of a layout"));
    layout.cells.insert({row, column});
  }
}

}  // namespace

std::optional<FilteredForm> readForm(const std::string &path, std::string &problem) {
  QFile file(QFile::decodeName(path.c_str()));
  const QFileInfo found(file);
  QByteArray content;
  if (found.exists() && !found.isFile()) {  // a pipe would be waited for
    problem = "not a file";
  } else if (!file.open(QIODevice::ReadOnly)) {
    problem = file.errorString().toStdString();
  } else if (content = file.read(kLargestFile + 1); content.size() > kLargestFile) {
    problem = "too large for a form";
  } else {
    return FormFilter(content).run(problem);
  }
  return std::nullopt;
}

}  // namespace korvel::platform::qt
