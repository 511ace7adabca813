// SPDX-License-Identifier: MIT
// Has the toolkit's loader make the widgets of a form, with our items among them, then numbers,
// connects and fills these.
#include "platform/qt/formloader.h"

#include <algorithm>
#include <iterator>

#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QLabel>
#include <QPixmap>
#include <QScopeGuard>
#include <QUiLoader>
#include <QVariant>

#include "platform/qt/buttonitem.h"
#include "platform/qt/formfilter.h"
#include "platform/qt/listitem.h"
#include "platform/qt/picture.h"
#include "platform/qt/popupitem.h"
#include "platform/qt/quiet.h"
#include "platform/qt/text.h"
#include "platform/qt/textitem.h"

namespace korvel::platform::qt {
namespace {

constexpr int kLastItem = 32767;

// The loader looks for plugins of the form editor in each of these paths, and runs what it finds.
auto withoutLibraryPaths() {
  QApplication::style();  // may be a plugin too, and is kept from its first use on
  const QStringList before = QCoreApplication::libraryPaths();
  QCoreApplication::setLibraryPaths({});
  return qScopeGuard([before] { QCoreApplication::setLibraryPaths(before); });
}

class FormLoader final : public QUiLoader {
 public:
  FormLoader(QDialog &window, HitSink &sink) : window_(window), sink_(sink) {
    setTranslationEnabled(false);
  }

  QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override {
    if (parent == nullptr) return &window_;
    QWidget *widget = createItem(className, parent);
    if (widget == nullptr) widget = QUiLoader::createWidget(className, parent, name);
    if (widget != nullptr) made_.push_back(widget);
    return widget;
  }

  // Those inside of the window, in the form's order.
  const std::vector<QWidget *> &made() const { return made_; }
  std::vector<QWidget *> named(const QString &name) const {
    std::vector<QWidget *> found;
    std::copy_if(made_.begin(), made_.end(), std::back_inserter(found),
                 [&name](QWidget *widget) { return widget->objectName() == name; });
    return found;
  }

 private:
  // Its number comes with its properties. Null for a class that is no item.
  QWidget *createItem(const QString &className, QWidget *parent) {
    if (className == QLatin1String("QPushButton") ||
        className == QLatin1String("QCommandLinkButton"))
      return new ButtonItem(parent, sink_, 0);
    if (className == QLatin1String("QCheckBox")) return new CheckItem(parent, sink_, 0);
    if (className == QLatin1String("QListWidget") || className == QLatin1String("QListView"))
      return new ListItem(parent, sink_, 0);
    if (className == QLatin1String("QComboBox")) return new PopUpItem(parent, sink_, 0);
    if (className == QLatin1String("QLineEdit")) return new LineItem(parent, sink_, 0);
    if (className == QLatin1String("QPlainTextEdit")) return new LinesItem(parent, sink_, 0);
    return nullptr;
  }

  QDialog &window_;
  HitSink &sink_;
  std::vector<QWidget *> made_;
};

// ---- The order of the Tab key, and connections ----

// The loader drops the whole order for one unknown name.
void orderTabs(const FormLoader &loader, const QStringList &names) {
  QWidget *before = nullptr;
  for (const QString &name : names) {
    const std::vector<QWidget *> found = loader.named(name);
    if (found.empty() || found.front() == before) continue;
    if (before != nullptr) QWidget::setTabOrder(before, found.front());
    before = found.front();
  }
}

// The loader would connect the window, its buttons and what items hold as well. What an item holds
// is changed by a person or by the program, who both hear of it.
void connectWidgets(const FormLoader &loader, const std::vector<FormConnection> &connections) {
  for (const FormConnection &each : connections) {
    const std::vector<QWidget *> senders = loader.named(each.sender);
    const std::vector<QWidget *> receivers = loader.named(each.receiver);
    if (senders.empty() || receivers.size() != 1) continue;
    const auto *item = dynamic_cast<const Item *>(receivers.front());
    const int number = item != nullptr ? item->number() : 0;
    if (number == 1 || number == 2 || (number != 0 && each.setsContent)) continue;
    QObject::connect(senders.front(), '2' + each.signal, receivers.front(), '1' + each.slot);
    // What a person types is no markup.
    auto *label = qobject_cast<QLabel *>(receivers.front());
    if (label != nullptr && each.slot == "setText(QString)") label->setTextFormat(Qt::PlainText);
  }
}

// ---- Items ----

void place(Item &item, int number, LoadedForm &loaded) {
  item.setNumber(number);
  const auto index = static_cast<std::size_t>(number) - 1;
  if (loaded.items.size() <= index) loaded.items.resize(index + 1);
  loaded.items[index] = &item;
  const auto *button = qobject_cast<QPushButton *>(item.widget());
  if (button != nullptr && button->isDefault()) loaded.defaultItem = number;
}

// What is wrong with the numbers of items; empty when nothing is.
QString placeItems(const FormLoader &loader, LoadedForm &loaded) {
  QHash<int, QString> takenBy;
  for (QWidget *widget : loader.made()) {
    const QVariant told = widget->property(handed::kItem);
    if (!told.isValid()) continue;
    const QString name = widget->objectName();
    const int number = told.toInt();
    if (number < 1 || number > kLastItem)
      return QStringLiteral("\"%1\" has the item number %2, which is not one of 1 to %3")
          .arg(name, told.toString(), QString::number(kLastItem));
    auto *item = dynamic_cast<Item *>(widget);
    const QString className = QLatin1String(widget->metaObject()->className());
    // The numbers of a label and a group are for the form's reader.
    if (item == nullptr && className != QLatin1String("QLabel") &&
        className != QLatin1String("QGroupBox"))
      return QStringLiteral("\"%1\" has an item number, but can be no item: it is shown as a %2")
          .arg(name, className);
    if (takenBy.contains(number))
      return QStringLiteral("item %1 is there twice, as \"%2\" and as \"%3\"")
          .arg(QString::number(number), takenBy.value(number), name);
    takenBy.insert(number, name);
    if (item != nullptr) place(*item, number, loaded);
  }
  return {};
}

// Texts of fields are bytes, as everywhere; those of buttons are as designed, shortcuts included.
void fillItems(const FormLoader &loader) {
  for (QWidget *widget : loader.made()) {
    auto *item = dynamic_cast<Item *>(widget);
    if (item == nullptr) continue;
    if (item->kind() == ItemKind::EditText) item->setText(item->text());
    std::vector<std::string> entries;
    for (const QString &entry : widget->property(handed::kEntries).toStringList())
      entries.push_back(fromQt(entry));
    if (entries.empty()) continue;
    item->setEntries(entries);
    const QVariant chosen = widget->property(handed::kChosen);
    if (item->kind() == ItemKind::PopUp) item->setValue(chosen.isValid() ? chosen.toInt() + 1 : 1);
  }
}

// ---- Pictures ----

// Empty for a name that leads out of the folder, and where there is no file.
QString fileIn(const QDir &folder, const QString &formFolder, const QString &name) {
  const QString path = QDir::cleanPath(folder.filePath(formFolder + u'/' + name));
  const bool isInside = QDir::isRelativePath(name) && path.startsWith(folder.path() + u'/');
  return isInside && QFileInfo(path).isFile() ? path : QString();
}

void showPictures(QWidget &window, const std::string &formPath) {
  const QDir forms = QFileInfo(QFile::decodeName(formPath.c_str())).absoluteDir();
  const QDir resources(QDir::cleanPath(forms.filePath(QStringLiteral(".."))));
  for (QLabel *label : window.findChildren<QLabel *>()) {
    const QString name = label->property(handed::kPicture).toString();
    if (name.isEmpty()) continue;
    const QString path = fileIn(resources, forms.dirName(), name);
    if (path.isEmpty()) continue;
    const auto picture = QtPicture::read(QFile::encodeName(path).toStdString());
    if (picture->width() > 0) label->setPixmap(QPixmap::fromImage(picture->at(1)));
  }
}

}  // namespace

bool loadForm(const std::string &path, QDialog &window, HitSink &sink, LoadedForm &loaded,
              std::string &problem) {
  std::optional<FilteredForm> form = readForm(path, problem);
  if (!form) return false;
  const Quiet quiet;  // the loader says what it does not like about a form in its own words
  {
    const auto noPlugins = withoutLibraryPaths();
    FormLoader loader(window, sink);
    QBuffer content(&form->content);
    if (loader.load(&content) == nullptr) {
      problem = loader.errorString().toStdString();
      return false;
    }
    problem = placeItems(loader, loaded).toStdString();
    if (!problem.empty()) return false;
    orderTabs(loader, form->tabOrder);
    connectWidgets(loader, form->connections);
    fillItems(loader);
  }
  showPictures(window, path);
  return true;
}

}  // namespace korvel::platform::qt
