#include "platform/qt/formloader.h"

#include <QApplication>
#include <QBuffer>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPixmap>
#include <QThread>
#include <QUiLoader>
#include <QVariant>

#include "platform/qt/buttonitem.h"
#include "platform/qt/formfilter.h"
#include "platform/qt/listitem.h"
#include "platform/qt/picture.h"
#include "platform/qt/popupitem.h"
#include "platform/qt/text.h"
#include "platform/qt/textitem.h"

namespace korvel::platform::qt {
namespace {

// The loader looks for plugins of the form editor in each of the application's library paths, and
// runs what it finds there.
class NoLibraryPaths {
 public:
  NoLibraryPaths() : before_(QCoreApplication::libraryPaths()) {
    QApplication::style();  // may be a plugin too, and is kept from its first use on
    QCoreApplication::setLibraryPaths({});
  }
  ~NoLibraryPaths() { QCoreApplication::setLibraryPaths(before_); }
  NoLibraryPaths(const NoLibraryPaths &) = delete;
  NoLibraryPaths &operator=(const NoLibraryPaths &) = delete;

 private:
  const QStringList before_;
};

// The toolkit says on standard error what it does not like about a form, in its own words.
class QuietLoading {
 public:
  QuietLoading() {
    g_thread = QThread::currentThreadId();
    g_previous = qInstallMessageHandler(drop);
  }
  ~QuietLoading() { qInstallMessageHandler(g_previous); }
  QuietLoading(const QuietLoading &) = delete;
  QuietLoading &operator=(const QuietLoading &) = delete;

 private:
  static void drop(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    const QtMessageHandler previous = g_previous;  // null for an instant in which others may speak
    if (previous != nullptr && (type == QtFatalMsg || QThread::currentThreadId() != g_thread))
      previous(type, context, message);
  }

  static constinit inline Qt::HANDLE g_thread = nullptr;
  static constinit inline QtMessageHandler g_previous = nullptr;
};

class FormLoader final : public QUiLoader {
 public:
  FormLoader(QDialog &window, HitSink &sink) : window_(window), sink_(sink) {
    setTranslationEnabled(false);
  }

  QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override {
    if (parent == nullptr) return &window_;
    if (className == QLatin1String("QPushButton") ||
        className == QLatin1String("QCommandLinkButton"))
      return make<ButtonItem>(parent);
    if (className == QLatin1String("QCheckBox")) return make<CheckItem>(parent);
    if (className == QLatin1String("QListWidget") || className == QLatin1String("QListView"))
      return make<ListItem>(parent);
    if (className == QLatin1String("QComboBox")) return make<PopUpItem>(parent);
    if (className == QLatin1String("QLineEdit")) return make<TextItem>(parent);
    return QUiLoader::createWidget(className, parent, name);
  }

  const std::vector<Item *> &made() const { return made_; }

 private:
  // Its number comes with its properties.
  template <typename Made>
  QWidget *make(QWidget *parent) {
    auto *item = new Made(parent, sink_, 0);
    made_.push_back(item);
    return item;
  }

  QDialog &window_;
  HitSink &sink_;
  std::vector<Item *> made_;
};

// ---- What the loader hands over ----

// Texts of fields are bytes, as everywhere; those of buttons are as designed, shortcuts included.
void fill(Item &item) {
  const QWidget &widget = *item.widget();
  item.setNumber(widget.property(handed::kItem).toInt());
  if (item.kind() == ItemKind::EditText) item.setText(item.text());
  const QStringList designed = widget.property(handed::kEntries).toStringList();
  if (designed.isEmpty()) return;
  std::vector<std::string> entries;
  for (const QString &entry : designed) entries.push_back(fromQt(entry));
  item.setEntries(entries);
  const QVariant chosen = widget.property(handed::kChosen);
  item.setValue(chosen.isValid() ? chosen.toInt() + 1 : 1);
}

void place(Item &item, LoadedForm &loaded) {
  if (item.number() == 0) return;
  const auto index = static_cast<std::size_t>(item.number()) - 1;
  if (loaded.items.size() <= index) loaded.items.resize(index + 1);
  loaded.items[index] = &item;
  const auto *button = qobject_cast<QPushButton *>(item.widget());
  if (button != nullptr && button->isDefault()) loaded.defaultItem = item.number();
}

// Empty for a name that leads out of the folder, and for what is no file.
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

// What a person types is no markup.
void showPlainly(QWidget &window, const QStringList &told) {
  for (const QString &name : told)
    for (QLabel *label : window.findChildren<QLabel *>(name)) label->setTextFormat(Qt::PlainText);
}

}  // namespace

bool loadForm(const std::string &path, QDialog &window, HitSink &sink, LoadedForm &loaded,
              std::string &problem) {
  std::optional<FilteredForm> form = readForm(path, problem);
  if (!form) return false;
  const QuietLoading quiet;
  {
    const NoLibraryPaths noPlugins;
    FormLoader loader(window, sink);
    QBuffer content(&form->content);
    if (loader.load(&content) == nullptr) {
      problem = loader.errorString().toStdString();
      return false;
    }
    for (Item *item : loader.made()) {
      fill(*item);
      place(*item, loaded);
    }
  }
  showPlainly(window, form->told);
  showPictures(window, path);
  return true;
}

}  // namespace korvel::platform::qt
