#include "platform/qt/form.h"

#include <QFile>
#include <QFont>
#include <QMetaEnum>
#include <QRect>
#include <QSizePolicy>
#include <QXmlStreamReader>
#include <algorithm>

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

int bounded(int number) { return std::clamp(number, -kFarthest, kFarthest); }

class FormReader {
 public:
  explicit FormReader(QIODevice &file) : xml_(&file) {}

  std::optional<Form> read(std::string &problem) {
    Form form;
    readForm(form);
    if (!xml_.hasError()) return form;
    problem = "line " + std::to_string(xml_.lineNumber()) + ": " + xml_.errorString().toStdString();
    return std::nullopt;
  }

 private:
  void readForm(Form &form);
  void readCustomClasses(Form &form);
  void readTabOrder(Form &form);
  FormWidget readWidget();
  void readEntry(FormWidget &widget);
  std::unique_ptr<FormLayout> readLayout();
  FormCell readCell();
  FormProperties readSpacer();
  void readProperty(FormProperties &properties);
  QVariant readValue();
  int readNumber();
  QRect readRect();
  QSize readSize();
  QFont readFont();
  QSizePolicy readSizePolicy();
  std::vector<int> readNumbers(std::initializer_list<const char *> names);

  bool isAt(const char *element) const { return xml_.name() == QLatin1String(element); }
  QString attribute(const char *name) const {
    return xml_.attributes().value(QLatin1String(name)).toString();
  }
  int cellNumber(const char *name, int otherwise);
  QString text() { return xml_.readElementText(QXmlStreamReader::SkipChildElements); }
  void fail(const char *why) { xml_.raiseError(QLatin1String(why)); }
  // Counts one more; false when there are too many.
  bool count(int &counter, int most, const char *why);

  QXmlStreamReader xml_;
  int depth_ = 0;
  int widgets_ = 0;
  int entries_ = 0;
};

bool FormReader::count(int &counter, int most, const char *why) {
  if (++counter <= most) return true;
  fail(why);
  return false;
}

void FormReader::readForm(Form &form) {
  if (!xml_.readNextStartElement()) return;
  if (!isAt("ui")) return fail("not a form: its root element is not <ui>");
  bool hasWindow = false;
  while (xml_.readNextStartElement()) {
    if (isAt("widget")) {
      if (hasWindow) return fail("a second window");
      form.window = readWidget();
      hasWindow = true;
    } else if (isAt("customwidgets")) {
      readCustomClasses(form);
    } else if (isAt("tabstops")) {
      readTabOrder(form);
    } else {
      xml_.skipCurrentElement();
    }
  }
  if (!hasWindow && !xml_.hasError()) fail("there is no window");
}

void FormReader::readCustomClasses(Form &form) {
  while (xml_.readNextStartElement()) {
    QString name, base;
    while (xml_.readNextStartElement()) {
      if (isAt("class"))
        name = text();
      else if (isAt("extends"))
        base = text();
      else
        xml_.skipCurrentElement();
    }
    form.baseClasses.insert(name, base);
  }
}

void FormReader::readTabOrder(Form &form) {
  while (xml_.readNextStartElement()) form.tabOrder << text();
}

FormWidget FormReader::readWidget() {
  FormWidget widget;
  widget.className = attribute("class");
  widget.name = attribute("name");
  if (!count(widgets_, kMostWidgets, "too many widgets")) return widget;
  if (!count(depth_, kDeepest, "widgets nested too deeply")) return widget;
  while (xml_.readNextStartElement()) {
    if (isAt("property"))
      readProperty(widget.properties);
    else if (isAt("attribute"))
      readProperty(widget.attributes);
    else if (isAt("item"))
      readEntry(widget);
    else if (isAt("widget"))
      widget.children.push_back(readWidget());
    else if (isAt("layout"))
      widget.layout = readLayout();
    else if (isAt("zorder"))
      widget.stacking << text();
    else
      xml_.skipCurrentElement();
  }
  --depth_;
  return widget;
}

void FormReader::readEntry(FormWidget &widget) {
  if (!count(entries_, kMostEntries, "too many entries")) return;
  FormProperties properties;
  while (xml_.readNextStartElement()) {
    if (isAt("property"))
      readProperty(properties);
    else
      xml_.skipCurrentElement();
  }
  widget.entries << properties.value(QStringLiteral("text")).toString();
}

std::unique_ptr<FormLayout> FormReader::readLayout() {
  auto layout = std::make_unique<FormLayout>();
  layout->className = attribute("class");
  for (const QXmlStreamAttribute &each : xml_.attributes())
    layout->attributes.insert(each.name().toString(), each.value().toString());
  if (!count(depth_, kDeepest, "layouts nested too deeply")) return layout;
  while (xml_.readNextStartElement()) {
    if (isAt("property"))
      readProperty(layout->properties);
    else if (isAt("item"))
      layout->cells.push_back(readCell());
    else
      xml_.skipCurrentElement();
  }
  --depth_;
  return layout;
}

int FormReader::cellNumber(const char *name, int otherwise) {
  const QString told = attribute(name);
  if (told.isEmpty()) return otherwise;
  bool isNumber = false;
  const int number = told.toInt(&isNumber);
  if (isNumber && number >= 0 && number < kMostCells) return number;
  fail("a cell of a layout has no place");
  return otherwise;
}

FormCell FormReader::readCell() {
  FormCell cell;
  cell.row = cellNumber("row", -1);
  cell.column = cellNumber("column", -1);
  cell.rowSpan = std::max(1, cellNumber("rowspan", 1));
  cell.columnSpan = std::max(1, cellNumber("colspan", 1));
  cell.alignment = attribute("alignment");
  while (xml_.readNextStartElement()) {
    if (isAt("widget") && !cell.widget)
      cell.widget = readWidget();
    else if (isAt("layout"))
      cell.layout = readLayout();
    else if (isAt("spacer"))
      cell.spacer = readSpacer();
    else
      xml_.skipCurrentElement();
  }
  return cell;
}

FormProperties FormReader::readSpacer() {
  FormProperties properties;
  if (!count(widgets_, kMostWidgets, "too many widgets")) return properties;
  while (xml_.readNextStartElement()) {
    if (isAt("property"))
      readProperty(properties);
    else
      xml_.skipCurrentElement();
  }
  return properties;
}

void FormReader::readProperty(FormProperties &properties) {
  const QString name = attribute("name");
  while (xml_.readNextStartElement()) {
    const QVariant value = readValue();
    if (value.isValid()) properties.insert(name, value);
  }
}

// Nothing for a kind of value that no dialog needs.
QVariant FormReader::readValue() {
  if (isAt("string") || isAt("cstring") || isAt("enum") || isAt("set") || isAt("pixmap"))
    return text();
  if (isAt("number")) return readNumber();
  if (isAt("bool")) return text() == QLatin1String("true");
  if (isAt("rect")) return readRect();
  if (isAt("size")) return readSize();
  if (isAt("font")) return readFont();
  if (isAt("sizepolicy")) return QVariant::fromValue(readSizePolicy());
  xml_.skipCurrentElement();
  return {};
}

int FormReader::readNumber() {
  bool isNumber = false;
  const qlonglong number = text().trimmed().toLongLong(&isNumber);
  if (!isNumber) fail("a number is none");
  return static_cast<int>(std::clamp<qlonglong>(number, -kFarthest - 1, kFarthest + 1));
}

std::vector<int> FormReader::readNumbers(std::initializer_list<const char *> names) {
  std::vector<int> numbers(names.size());
  while (xml_.readNextStartElement()) {
    const auto *found =
        std::find_if(names.begin(), names.end(), [this](const char *name) { return isAt(name); });
    if (found == names.end())
      xml_.skipCurrentElement();
    else
      numbers[static_cast<std::size_t>(found - names.begin())] = bounded(readNumber());
  }
  return numbers;
}

QRect FormReader::readRect() {
  const std::vector<int> numbers = readNumbers({"x", "y", "width", "height"});
  return {numbers[0], numbers[1], std::max(0, numbers[2]), std::max(0, numbers[3])};
}

QSize FormReader::readSize() {
  const std::vector<int> numbers = readNumbers({"width", "height"});
  return {std::max(0, numbers[0]), std::max(0, numbers[1])};
}

// What the form does not say stays that of the window.
QFont FormReader::readFont() {
  QFont font;
  while (xml_.readNextStartElement()) {
    const QString element = xml_.name().toString();
    const QString value = text().trimmed();
    const bool isOn = value == QLatin1String("true");
    if (element == QLatin1String("family"))
      font.setFamily(value);
    else if (element == QLatin1String("pointsize"))
      font.setPointSize(std::clamp(value.toInt(), 1, kLargestFont));
    else if (element == QLatin1String("bold"))
      font.setBold(isOn);
    else if (element == QLatin1String("italic"))
      font.setItalic(isOn);
    else if (element == QLatin1String("underline"))
      font.setUnderline(isOn);
    else if (element == QLatin1String("strikeout"))
      font.setStrikeOut(isOn);
  }
  return font;
}

QSizePolicy FormReader::readSizePolicy() {
  const auto policyOf = [this](const char *name) {
    const QString told = attribute(name);
    const int value = QMetaEnum::fromType<QSizePolicy::Policy>().keyToValue(told.toLatin1());
    return value < 0 ? QSizePolicy::Preferred : static_cast<QSizePolicy::Policy>(value);
  };
  QSizePolicy policy(policyOf("hsizetype"), policyOf("vsizetype"));
  const std::vector<int> stretches = readNumbers({"horstretch", "verstretch"});
  policy.setHorizontalStretch(std::clamp(stretches[0], 0, 255));
  policy.setVerticalStretch(std::clamp(stretches[1], 0, 255));
  return policy;
}

}  // namespace

std::optional<Form> readForm(const std::string &path, std::string &problem) {
  QFile file(QFile::decodeName(path.c_str()));
  if (!file.open(QIODevice::ReadOnly)) {
    problem = file.errorString().toStdString();
    return std::nullopt;
  }
  if (file.size() > kLargestFile) {
    problem = "too large for a form";
    return std::nullopt;
  }
  return FormReader(file).read(problem);
}

}  // namespace korvel::platform::qt
