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
constexpr int kFarthest = 32767;
constexpr int kLargestFont = 200;
constexpr int kLongestMarkup = 10000;

constexpr int kLastItem = 32767;
constexpr int kMostBases = 8;

// Words stand between blanks in a list of them.
bool isIn(const QString &word, const char *words) {
  return !word.contains(u' ') && QLatin1String(words).contains(QString(u' ' + word + u' '));
}

// ---- What is taken over ----

constexpr char kItemClasses[] =
    " QPushButton QCommandLinkButton QCheckBox QListWidget QListView QComboBox QLineEdit ";
// The loader gives each widget inside of one a page, or the whole place.
constexpr char kContainers[] = " QTabWidget QStackedWidget QToolBox QScrollArea ";
constexpr char kOtherClasses[] = " QWidget QFrame Line QLabel QGroupBox QSlider QSpinBox ";
constexpr char kLayouts[] = " QVBoxLayout QHBoxLayout QGridLayout QFormLayout ";

// All other properties would change what an item is (an input mask, an echo mode), could load
// something, or belong to the desktop; and a value of another kind would be converted.
struct Kind {
  const char *name, *properties;
};
constexpr Kind kKinds[] = {
    {"bool",
     " enabled wordWrap scaledContents flat widgetResizable default checked readOnly frame"
     " alternatingRowColors "},
    {"number",
     " item indent margin lineWidth midLineWidth currentIndex maxLength maxVisibleItems"
     " minimumContentsLength minimum maximum value leftMargin topMargin rightMargin bottomMargin"
     " spacing horizontalSpacing verticalSpacing "},
    {"string",
     " item text title label windowTitle styleSheet toolTip accessibleName accessibleDescription"
     " placeholderText "},
    {"enum",
     " focusPolicy textFormat frameShape frameShadow orientation tabPosition sizeAdjustPolicy"
     " horizontalScrollBarPolicy verticalScrollBarPolicy sizeType "},
    {"set", " alignment "},
    {"size", " minimumSize maximumSize sizeHint "},
    {"rect", " geometry "},
    {"font", " font "},
    {"sizepolicy", " sizePolicy "},
    {"cstring", " buddy "},
    {"pixmap", " pixmap "},
};
// A window that were disabled, or of another modality, could not be left.
constexpr char kWindowProperties[] = " geometry windowTitle font styleSheet ";
// Where a negative number has a meaning.
constexpr char kSigned[] = " item indent currentIndex minimum maximum value ";

struct Range {
  const char *element;
  int low, high;
};
constexpr Range kRanges[] = {{"x", -kFarthest, kFarthest},  {"y", -kFarthest, kFarthest},
                             {"width", 0, kFarthest},       {"height", 0, kFarthest},
                             {"horstretch", 0, 255},        {"verstretch", 0, 255},
                             {"pointsize", 1, kLargestFont}};
constexpr char kFontElements[] = " family bold italic underline strikeout ";

// ---- What connections may do ----

// A signal on losing the focus, or at the end of a widget, could call itself without end.
constexpr char kSignals[] =
    " toggled(bool) clicked() clicked(bool) pressed() released() stateChanged(int)"
    " textChanged(QString) textEdited(QString) returnPressed() valueChanged(int) activated(int)"
    " currentIndexChanged(int) currentTextChanged(QString) currentChanged(int) ";
constexpr char kLookSlots[] =
    " setEnabled(bool) setDisabled(bool) setVisible(bool) setHidden(bool) show() hide() "
    "setFocus() ";
// What an item holds is changed by a person or by the program, who both hear of it.
constexpr char kValueSlots[] =
    " setText(QString) setNum(int) setValue(int) setCurrentIndex(int) setChecked(bool) clear() ";

// ---- Texts ----

// Whether a text, shown as rich text, would ask for a picture or style sheet or be absurdly large.
bool reachesOut(QTextDocument &document, bool hasAsked) {
  const QVector<QTextFormat> formats = document.allFormats();
  return hasAsked || std::any_of(formats.begin(), formats.end(), [](const QTextFormat &format) {
           return format.isImageFormat() || format.hasProperty(QTextFormat::BackgroundImageUrl) ||
                  format.doubleProperty(QTextFormat::FontPointSize) > kLargestFont ||
                  format.doubleProperty(QTextFormat::FontPixelSize) > kLargestFont;
         });
}

// A rich text that brings its own pictures is shown as its words alone.
QString harmlessText(const QString &text) {
  if (!text.contains(u'<')) return text;
  class Document final : public QTextDocument {
   public:
    bool hasAsked = false;

   protected:
    QVariant loadResource(int, const QUrl &) override {
      hasAsked = true;
      return {};
    }
  } document;
  if (text.size() > kLongestMarkup) return QString(text).remove(u'<');
  document.setHtml(text);
  if (!reachesOut(document, document.hasAsked)) return text;
  return document.toPlainText().remove(QChar::ObjectReplacementCharacter).remove(u'<').trimmed();
}

// Markdown has ways of its own to bring pictures.
QString harmlessFormat(const QString &format) {
  return format.contains(QLatin1String("Markdown")) ? QStringLiteral("Qt::AutoText") : format;
}

// A style sheet can name files, set any property and ask for absurd sizes; \ hides any of it.
bool isHarmlessStyle(const QString &sheet) {
  static const QRegularExpression danger(
      QStringLiteral("url|@|\\\\|qproperty|\\d{4,}(\\.\\d*)?\\s*(px|pt|em|ex)"),
      QRegularExpression::CaseInsensitiveOption);
  return !danger.match(sheet).hasMatch();
}

// ---- The filter ----

using Bases = QHash<QString, QString>;

// The classes that a form declares, with those that they extend; they stand behind their use.
Bases basesIn(const QByteArray &content) {
  Bases bases;
  QString name;
  QXmlStreamReader xml(content);
  bool isDeclaring = false;
  while (!xml.atEnd()) {
    xml.readNext();
    if (xml.name() == QLatin1String("customwidget")) isDeclaring = xml.isStartElement();
    if (!isDeclaring || !xml.isStartElement()) continue;
    if (xml.name() == QLatin1String("class"))
      name = xml.readElementText(QXmlStreamReader::SkipChildElements);
    else if (xml.name() == QLatin1String("extends"))
      bases.insert(name, xml.readElementText(QXmlStreamReader::SkipChildElements));
  }
  return bases;
}

class FormFilter {
 public:
  explicit FormFilter(const QByteArray &content)
      : bases_(basesIn(content)), in_(content), out_(&form_.content) {}

  std::optional<FilteredForm> run(std::string &problem) {
    passForm();
    if (!in_.hasError()) return form_;
    problem = "line " + std::to_string(in_.lineNumber()) + ": " + in_.errorString().toStdString();
    return std::nullopt;
  }

 private:
  enum class Place { Window, Widget };

  // A widget while it is passed on.
  struct Widget {
    QString designedClass, className, name;
    Place place = Place::Widget;
    int number = 0;
    int contents = 0, layouts = 0;
    QStringList entries;

    bool isItem() const { return isIn(className, kItemClasses); }
  };
  // What a connection may know of it afterwards.
  struct Known {
    int number;  // of an item, else 0
    bool isUnique;
  };
  using Connection = QHash<QString, QString>;  // sender, signal, receiver and slot
  using Cells = QSet<QPair<int, int>>;

  void passForm();
  void passWidget(Place place);
  void passPiece(Widget &widget);
  void passEntries(const Widget &widget);
  void passLayout();
  void passCell(Cells *cells);
  void passSpacer();
  void passProperty(Widget &widget);
  void passValue(Widget &widget, const QString &name);
  void passPart();
  void writeText(const QString &property, const QString &text);
  QString readEntry();
  Connection readConnection();
  void writeConnections();
  void writeTabOrder();

  QString knownClass(QString className, Place place);
  void noteItem(Widget &widget, const QString &told);
  void note(const Widget &widget);
  bool mayConnect(const Connection &connection) const;
  int cellNumber(const char *name, int otherwise);
  int readNumber(int low, int high);

  bool isAt(const char *element) const { return in_.name() == QLatin1String(element); }
  QString attribute(const char *name) const {
    return in_.attributes().value(QLatin1String(name)).toString();
  }
  QString text() { return in_.readElementText(QXmlStreamReader::SkipChildElements); }
  // The first fault is the one that is told.
  void fail(const QString &why) {
    if (!in_.hasError()) in_.raiseError(why);
  }
  // Counts one more; false when there are too many.
  bool count(int &counter, int most, const char *why);
  void start(const char *element) { out_.writeStartElement(QLatin1String(element)); }
  void write(const char *element, const QString &content) {
    out_.writeTextElement(QLatin1String(element), content);
  }
  void writeAttribute(const char *name, const QString &value) {
    out_.writeAttribute(QLatin1String(name), value);
  }

  const Bases bases_;
  FilteredForm form_;
  QXmlStreamReader in_;
  QXmlStreamWriter out_;
  int depth_ = 0;
  int widgets_ = 0;
  int entries_ = 0;
  QHash<int, QString> takenBy_;  // item numbers
  QHash<QString, Known> known_;  // by name, without the window
  QVector<Connection> connections_;
  QStringList tabOrder_;
};

bool FormFilter::count(int &counter, int most, const char *why) {
  if (++counter <= most) return true;
  fail(QLatin1String(why));
  return false;
}

void FormFilter::passForm() {
  if (!in_.readNextStartElement()) return;
  if (!isAt("ui")) return fail(QStringLiteral("not a form: its root element is not <ui>"));
  start("ui");
  writeAttribute("version", QStringLiteral("4.0"));
  bool hasWindow = false;
  while (in_.readNextStartElement()) {
    if (isAt("widget")) {
      if (hasWindow) return fail(QStringLiteral("a second window"));
      passWidget(Place::Window);
      hasWindow = true;
    } else if (isAt("tabstops")) {
      while (in_.readNextStartElement()) tabOrder_ << text();
    } else if (isAt("connections")) {
      while (in_.readNextStartElement()) connections_ << readConnection();
    } else {
      in_.skipCurrentElement();
    }
  }
  if (!hasWindow && !in_.hasError()) return fail(QStringLiteral("there is no window"));
  writeTabOrder();
  writeConnections();
  out_.writeEndElement();
}

// ---- Widgets ----

QString FormFilter::knownClass(QString className, Place place) {
  const QString designed = className;
  for (int n = 0; n < kMostBases && bases_.contains(className); ++n)
    className = bases_.value(className);
  if (place == Place::Window) {
    if (!isIn(className, " QDialog QWidget "))
      fail(QStringLiteral("its window is no dialog but a %1").arg(designed));
    return QStringLiteral("QDialog");
  }
  const bool isKnown = isIn(className, kItemClasses) || isIn(className, kContainers) ||
                       isIn(className, kOtherClasses);
  return isKnown ? className : QStringLiteral("QWidget");
}

void FormFilter::passWidget(Place place) {
  Widget widget;
  widget.designedClass = attribute("class");
  widget.className = knownClass(widget.designedClass, place);
  widget.name = attribute("name");
  widget.place = place;
  if (!count(widgets_, kMostWidgets, "too many widgets")) return;
  if (!count(depth_, kDeepest, "widgets nested too deeply")) return;
  start("widget");
  writeAttribute("class", widget.className);
  writeAttribute("name", widget.name);
  // The editor's own frame around a layout, which is no "native" widget, has no margins.
  if (widget.className != widget.designedClass || attribute("native") == QLatin1String("true"))
    writeAttribute("native", QStringLiteral("true"));
  while (in_.readNextStartElement()) passPiece(widget);
  passEntries(widget);
  out_.writeEndElement();
  note(widget);
  --depth_;
}

void FormFilter::passPiece(Widget &widget) {
  if (isAt("property") || isAt("attribute")) return passProperty(widget);
  if (isAt("zorder")) return write("zorder", text());
  if (isAt("item")) {
    if (count(entries_, kMostEntries, "too many entries")) widget.entries << readEntry();
  } else if (isAt("widget")) {
    // A second one would end the first while the loader still knows of it.
    if (widget.className == QLatin1String("QScrollArea") && ++widget.contents > 1)
      return fail(QStringLiteral("\"%1\" scrolls two widgets").arg(widget.name));
    passWidget(Place::Widget);
  } else if (isAt("layout")) {
    if (isIn(widget.className, kContainers) || ++widget.layouts > 1)
      return fail(QStringLiteral("\"%1\" has a layout too many").arg(widget.name));
    passLayout();
  } else {
    in_.skipCurrentElement();
  }
}

QString FormFilter::readEntry() {
  QString entry;
  while (in_.readNextStartElement()) {
    const bool isText = isAt("property") && attribute("name") == QLatin1String("text");
    while (isText && in_.readNextStartElement()) entry = text();
    if (!isText) in_.skipCurrentElement();
  }
  return entry;
}

void FormFilter::passEntries(const Widget &widget) {
  if (widget.entries.isEmpty() || !widget.isItem()) return;
  start("property");
  writeAttribute("name", QLatin1String(handed::kEntries));
  start("stringlist");
  for (const QString &entry : widget.entries) write("string", entry);
  out_.writeEndElement();
  out_.writeEndElement();
}

void FormFilter::noteItem(Widget &widget, const QString &told) {
  bool isNumber = false;
  widget.number = told.toInt(&isNumber);
  if (!isNumber || widget.number < 1 || widget.number > kLastItem)
    return fail(
        QStringLiteral("\"%1\" has an item number that is none: %2").arg(widget.name, told));
  if (!widget.isItem() && !isIn(widget.className, " QLabel QGroupBox "))
    return fail(QStringLiteral("\"%1\" has an item number and is no item: %2")
                    .arg(widget.name, widget.designedClass));
  if (takenBy_.contains(widget.number))
    return fail(
        QStringLiteral("item %1 is there twice, as \"%2\" and as \"%3\"")
            .arg(QString::number(widget.number), takenBy_.value(widget.number), widget.name));
  takenBy_.insert(widget.number, widget.name);
}

void FormFilter::note(const Widget &widget) {
  // The loader takes a name that the window has as well for the window.
  if (widget.place == Place::Window) known_.remove(widget.name);
  if (widget.place == Place::Window || widget.name.isEmpty()) return;
  const bool isUnique = !known_.contains(widget.name);
  known_.insert(widget.name, {widget.isItem() ? widget.number : 0, isUnique});
}

// ---- Layouts ----

void FormFilter::passLayout() {
  if (!count(depth_, kDeepest, "layouts nested too deeply")) return;
  Widget layout;
  layout.className = attribute("class");
  if (!isIn(layout.className, kLayouts)) layout.className = QStringLiteral("QVBoxLayout");
  start("layout");
  writeAttribute("class", layout.className);
  writeAttribute("name", attribute("name"));
  for (const char *name :
       {"stretch", "rowstretch", "columnstretch", "rowminimumheight", "columnminimumwidth"}) {
    if (!in_.attributes().hasAttribute(QLatin1String(name))) continue;
    QStringList numbers;
    for (const QString &number : attribute(name).split(u','))
      numbers << QString::number(std::clamp(number.toInt(), 0, kFarthest));
    writeAttribute(name, numbers.join(u','));
  }
  Cells cells;
  const bool isForm = layout.className == QLatin1String("QFormLayout");
  while (in_.readNextStartElement()) {
    if (isAt("property"))
      passProperty(layout);
    else if (isAt("item"))
      passCell(isForm ? &cells : nullptr);
    else
      in_.skipCurrentElement();
  }
  out_.writeEndElement();
  --depth_;
}

int FormFilter::cellNumber(const char *name, int otherwise) {
  const QString told = attribute(name);
  if (told.isEmpty()) return otherwise;
  bool isNumber = false;
  const int number = told.toInt(&isNumber);
  if (isNumber && number >= 0 && number < kMostCells) return number;
  fail(QStringLiteral("a cell of a layout has no place"));
  return otherwise;
}

// `cells` are those that are taken, where two widgets cannot stand in one; else null.
void FormFilter::passCell(Cells *cells) {
  const int row = cellNumber("row", 0);
  const int column = cellNumber("column", 0);
  const int rowSpan = std::max(1, cellNumber("rowspan", 1));
  const int columnSpan = std::max(1, cellNumber("colspan", 1));
  for (int n = 0; cells != nullptr && n < 2; ++n) {
    if (columnSpan == 1 && n != std::min(1, column)) continue;
    if (cells->contains({row, n}))
      return fail(QStringLiteral("two widgets stand in one cell of a layout"));
    cells->insert({row, n});
  }
  start("item");
  for (const auto &[name, number] :
       {std::pair("row", row), std::pair("column", column), std::pair("rowspan", rowSpan),
        std::pair("colspan", columnSpan)})
    writeAttribute(name, QString::number(number));
  writeAttribute("alignment", attribute("alignment"));
  bool isEmpty = true;
  while (in_.readNextStartElement()) {
    const bool isContent = isAt("widget") || isAt("layout") || isAt("spacer");
    if (!isContent || !isEmpty) {
      in_.skipCurrentElement();
      continue;
    }
    isEmpty = false;
    if (isAt("widget"))
      passWidget(Place::Widget);
    else if (isAt("layout"))
      passLayout();
    else
      passSpacer();
  }
  out_.writeEndElement();
}

void FormFilter::passSpacer() {
  if (!count(widgets_, kMostWidgets, "too many widgets")) return;
  Widget spacer;
  start("spacer");
  writeAttribute("name", attribute("name"));
  while (in_.readNextStartElement()) {
    if (isAt("property"))
      passProperty(spacer);
    else
      in_.skipCurrentElement();
  }
  out_.writeEndElement();
}

// ---- Properties ----

bool isTaken(const QString &name, const QString &kind) {
  return std::any_of(std::begin(kKinds), std::end(kKinds), [&](const Kind &each) {
    return kind == QLatin1String(each.name) && isIn(name, each.properties);
  });
}

// Instead of the property itself, what the loader hands over.
QString passedName(const QString &name, const QString &className) {
  if (name == QLatin1String("pixmap")) return QLatin1String(handed::kPicture);
  if (name == QLatin1String("currentIndex") && className == QLatin1String("QComboBox"))
    return QLatin1String(handed::kChosen);
  return name;
}

void FormFilter::passProperty(Widget &widget) {
  const QString element = in_.name().toString();
  const QString name = attribute("name");
  while (in_.readNextStartElement()) {
    const QString kind = in_.name().toString();
    const bool mayHaveIt = widget.place != Place::Window || isIn(name, kWindowProperties);
    if (!mayHaveIt || !isTaken(name, kind)) {
      in_.skipCurrentElement();
      continue;
    }
    out_.writeStartElement(element);
    writeAttribute("name", passedName(name, widget.className));
    passValue(widget, name);
    out_.writeEndElement();
  }
}

void FormFilter::passValue(Widget &widget, const QString &name) {
  const QString kind = in_.name().toString();
  if (kind == QLatin1String("number") || name == QLatin1String(handed::kItem)) {
    const bool isSigned = isIn(name, kSigned);
    const QString value = kind == QLatin1String("number")
                              ? QString::number(readNumber(isSigned ? -kFarthest - 1 : 0,
                                                           kFarthest + (isSigned ? 1 : 0)))
                              : text();
    if (name == QLatin1String(handed::kItem)) noteItem(widget, value);
    return out_.writeTextElement(QStringLiteral("number"), value);
  }
  if (kind == QLatin1String("pixmap")) return write("string", text());
  if (kind == QLatin1String("string")) return writeText(name, text());
  if (name == QLatin1String("textFormat")) return write("enum", harmlessFormat(text()));
  out_.writeStartElement(kind);
  out_.writeAttributes(in_.attributes());
  while (!in_.atEnd() && in_.readNext() != QXmlStreamReader::EndElement) {
    if (in_.isStartElement())
      passPart();
    else if (in_.isCharacters())
      out_.writeCharacters(in_.text().toString());
  }
  out_.writeEndElement();
}

void FormFilter::writeText(const QString &property, const QString &text) {
  const bool isStyle = property == QLatin1String("styleSheet");
  write("string", !isStyle ? harmlessText(text) : isHarmlessStyle(text) ? text : QString());
}

// Of a value that has several.
void FormFilter::passPart() {
  const QString part = in_.name().toString();
  const auto *range = std::find_if(std::begin(kRanges), std::end(kRanges), [&](const Range &each) {
    return part == QLatin1String(each.element);
  });
  if (range != std::end(kRanges))
    out_.writeTextElement(part, QString::number(readNumber(range->low, range->high)));
  else if (isIn(part, kFontElements))
    out_.writeTextElement(part, text());
  else
    in_.skipCurrentElement();
}

int FormFilter::readNumber(int low, int high) {
  bool isNumber = false;
  const qlonglong number = text().trimmed().toLongLong(&isNumber);
  if (!isNumber) fail(QStringLiteral("a number is none"));
  return static_cast<int>(std::clamp<qlonglong>(number, low, high));
}

// ---- Connections and the order of the Tab key ----

FormFilter::Connection FormFilter::readConnection() {
  Connection connection;
  while (in_.readNextStartElement()) {
    const QString part = in_.name().toString();
    connection.insert(part, text());
  }
  return connection;
}

bool FormFilter::mayConnect(const Connection &connection) const {
  const QString slot = connection.value(QStringLiteral("slot"));
  const auto receiver = known_.constFind(connection.value(QStringLiteral("receiver")));
  if (receiver == known_.cend() || !receiver->isUnique) return false;
  if (!known_.contains(connection.value(QStringLiteral("sender")))) return false;
  if (!isIn(connection.value(QStringLiteral("signal")), kSignals)) return false;
  if (receiver->number == 1 || receiver->number == 2) return false;
  return isIn(slot, kLookSlots) || (receiver->number == 0 && isIn(slot, kValueSlots));
}

void FormFilter::writeConnections() {
  start("connections");
  for (const Connection &connection : connections_) {
    if (!mayConnect(connection)) continue;
    start("connection");
    for (const char *part : {"sender", "signal", "receiver", "slot"})
      write(part, connection.value(QLatin1String(part)));
    out_.writeEndElement();
    if (connection.value(QStringLiteral("slot")) == QLatin1String("setText(QString)"))
      form_.told << connection.value(QStringLiteral("receiver"));
  }
  out_.writeEndElement();
}

// The loader keeps no order at all when the first name is nobody's.
void FormFilter::writeTabOrder() {
  QString before;
  start("tabstops");
  for (const QString &name : tabOrder_) {
    if (!known_.contains(name) || name == before) continue;
    write("tabstop", name);
    before = name;
  }
  out_.writeEndElement();
}

}  // namespace

std::optional<FilteredForm> readForm(const std::string &path, std::string &problem) {
  QFile file(QFile::decodeName(path.c_str()));
  const QFileInfo found(file);
  if (found.exists() && !found.isFile()) {
    problem = "not a file";
    return std::nullopt;
  }
  if (!file.open(QIODevice::ReadOnly)) {
    problem = file.errorString().toStdString();
    return std::nullopt;
  }
  const QByteArray content = file.read(kLargestFile + 1);
  if (content.size() > kLargestFile) {
    problem = "too large for a form";
    return std::nullopt;
  }
  return FormFilter(content).run(problem);
}

}  // namespace korvel::platform::qt
