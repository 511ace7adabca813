// SPDX-License-Identifier: MIT
// The showcase: a host application of Qt's own that lends its window and a painter to the library.
#include <cstring>
#include <string>

#include <QApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <korvel/desktop.h>
#include <korvel/draw.h>
#include <korvel/messages.h>
#include <korvel/strings.h>

#include "common/richline.h"
#include "page.h"

namespace {

// Texts of the application are CP1252.
std::string cp1252(const std::string &utf8) {
  std::string text(utf8.size() + 1, '\0');
  KorvelFromUtf8(utf8.c_str(), text.data(), static_cast<int>(text.size()));
  text.resize(std::strlen(text.c_str()));
  return text;
}

// A strip that is painted anew whenever Qt asks for it, by the library on the strip's painter.
class Strip : public QWidget {
 public:
  explicit Strip(QWidget *parent) : QWidget(parent) { setFixedHeight(30); }

  void show(const QString &text) {
    text_ = cp1252(text.toStdString());
    update();
  }

 protected:
  void paintEvent(QPaintEvent *) override {
    QPainter painter(this);
    const CGrafPtr port = KorvelPainterPort(&painter);
    Rectangle_Ex(port, 0, 0, width(), height(), KorvelWhite);
    ch_font_set(port, "Arial", KorvelBlack, KorvelTransparent, 13);
    RichLine line;
    lineStart(&line);
    lineEscape(&line, KorvelDotEscape);
    lineText(&line, text_.c_str());
    lineDraw(&line, port, 8, 6);
    KorvelPortRelease(port);
  }

 private:
  std::string text_;
};

struct Box {
  const char *button;
  const char *caption;
  const char *text;
  unsigned flags;
};

const Box kBoxes[] = {
    {"&Note", "Fiche enregistrée", "Le dossier de Mme Lefèvre est à jour.", 0},
    {"&Information", "Information", "Trois ordonnances sont à renouveler cette semaine.",
     KorvelNoteIcon},
    {"&Attention", "Attention",
     "Deux médicaments de cette ordonnance ne doivent pas être pris ensemble\u00A0: vérifiez les "
     "doses "
     "avant de l’imprimer.",
     KorvelCautionIcon},
    {"A&rrêt", "Impression impossible", "L’imprimante ne répond pas.", KorvelStopIcon},
    {"&Question", "Quitter la fiche",
     "Enregistrer les changements avant de quitter la fiche\u00A0?", KorvelQuestion},
    {"&Suppression", "Supprimer un acte",
     "Supprimer l’acte sélectionné\u00A0? Il ne pourra pas être retrouvé.",
     KorvelQuestion | KorvelCautionIcon | KorvelDefaultNon},
};

QString answerOf(int result) {
  return result == KorvelOuiAnswer   ? QStringLiteral("Oui")
         : result == KorvelNonAnswer ? QStringLiteral("Non")
                                     : QStringLiteral("OK");
}

class Window : public QWidget {
 public:
  Window() {
    setWindowTitle(QStringLiteral("Vitrine"));
    auto *column = new QVBoxLayout(this);
    column->addSpacing(kPageHeight);
    strip_ = new Strip(this);
    strip_->show(QStringLiteral(
        "Cette ligne est dessinée par la bibliothèque sur le peintre de l’application."));
    column->addWidget(strip_);
    auto *row = new QHBoxLayout;
    for (const Box &box : kBoxes) row->addWidget(button(box));
    column->addLayout(row);
    setFixedWidth(kPageWidth);
  }

 private:
  QPushButton *button(const Box &box) {
    auto *push = new QPushButton(QString::fromUtf8(box.button), this);
    push->setAutoDefault(false);
    connect(push, &QPushButton::clicked, this, [this, &box] { ask(box); });
    return push;
  }
  void ask(const Box &box) {
    const int result = MessageBox(KorvelWidgetWindow(this), cp1252(box.text).c_str(),
                                  cp1252(box.caption).c_str(), box.flags);
    strip_->show(QStringLiteral("Réponse\u00A0: ") + answerOf(result));
  }

  Strip *strip_;
};

}  // namespace

int main(int argc, char **argv) {
  // Never destroyed: under Wayland two threads of the toolkit may wait for each other at its end.
  new QApplication(argc, argv);
  Window window;
  window.show();
  drawPage(GetWindowPort(KorvelWidgetWindow(&window)));
  return QApplication::exec();
}
