// SPDX-License-Identifier: MIT
// Finds and measures fonts for bytes of the screen set, and draws their glyphs at whole pixels.
#include "platform/qt/screenfont.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <unordered_map>

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QTextLayout>

#include "platform/qt/text.h"
#include "platform/screentext.h"

namespace korvel::platform::qt {
namespace {

// Names of fonts, and the families with the same measures that replace them; each list separated by
// "|". After fontconfig's rules for metric-compatible families (30-metric-aliases.conf).
struct Equals {
  QLatin1String names;
  QLatin1String answers;  // the best on the screen first
};

constexpr Equals kEquals[] = {
    {QLatin1String("Arial|Helvetica"),
     QLatin1String("Liberation Sans|Arimo|Arial|Helvetica|Nimbus Sans|TeX Gyre Heros|Albany AMT")},
    {QLatin1String("Arial Narrow|Helvetica Narrow"),
     QLatin1String("Liberation Sans Narrow|Arial Narrow|Nimbus Sans Narrow|TeX Gyre Heros Cn")},
    {QLatin1String("Times New Roman|Times"),
     QLatin1String("Liberation Serif|Tinos|Times New Roman|Times|Nimbus Roman|TeX Gyre Termes|"
                   "Thorndale AMT")},
    {QLatin1String("Courier New|Courier"),
     QLatin1String("Liberation Mono|Cousine|Courier New|Courier|Nimbus Mono PS|TeX Gyre Cursor|"
                   "Cumberland AMT")},
    {QLatin1String("Palatino"), QLatin1String("P052|TeX Gyre Pagella")},
    {QLatin1String("Bookman"), QLatin1String("URW Bookman|TeX Gyre Bonum")},
    {QLatin1String("New Century Schoolbook"), QLatin1String("C059|TeX Gyre Schola")},
    {QLatin1String("Avant Garde"), QLatin1String("URW Gothic|TeX Gyre Adventor")},
    {QLatin1String("Zapf Chancery"), QLatin1String("Z003|TeX Gyre Chorus")},
    {QLatin1String("Zapf Dingbats"), QLatin1String("D050000L")},
    {QLatin1String("Symbol"), QLatin1String("Standard Symbols PS")},
    {QLatin1String("Calibri"), QLatin1String("Carlito")},
    {QLatin1String("Cambria"), QLatin1String("Caladea")},
    {QLatin1String("Georgia"), QLatin1String("Gelasio")},
};

bool contains(QLatin1String names, const QString &name) {
  for (const QLatin1String each : names.tokenize(u'|'))
    if (name.compare(each, Qt::CaseInsensitive) == 0) return true;
  return false;
}

constexpr int kCondensed = 75;  // percent of the usual width
constexpr int kExtended = 125;

QFont qtFont(const QString *family, unsigned face, int size) {
  QFont font =
      family == nullptr ? QFontDatabase::systemFont(QFontDatabase::GeneralFont) : QFont(*family);
  font.setPixelSize(size);
  font.setBold((face & kBold) != 0);
  font.setItalic((face & kItalic) != 0);
  if ((face & kCondense) != 0) font.setStretch(kCondensed);
  if ((face & kExtend) != 0) font.setStretch(kExtended);
  font.setKerning(false);
  font.setHintingPreference(QFont::PreferFullHinting);
  font.setStyleStrategy(
      static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
  return font;
}

int wholePixels(qreal length) { return std::max(0, static_cast<int>(std::ceil(length))); }

bool isControl(char16_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// The glyph of a character that the font lacks, from another font of the system.
struct Substitute {
  QRawFont face;
  quint32 index = 0;
};

Substitute substituteFor(char16_t character, const QFont &font) {
  QTextLayout layout(QString(QChar(character)), font);
  layout.beginLayout();
  layout.createLine();
  layout.endLayout();
  for (const QGlyphRun &run : layout.glyphRuns())
    if (!run.glyphIndexes().isEmpty()) return {run.rawFont(), run.glyphIndexes().constFirst()};
  return {};
}

// The largest coordinate that a painter can use.
constexpr long long kFarthest = 32767;

bool isNear(long long place, long long extent) {
  return place >= -kFarthest - extent && place <= kFarthest;
}

// Larger glyphs are drawn as outlines.
constexpr int kLargestInk = 64;

// A run of glyphs of one face. Its memory is reused for the next run.
class GlyphRow {
 public:
  void add(quint32 glyph, long long place) {
    glyphs_.push_back(glyph);
    places_.emplace_back(static_cast<qreal>(place), 0);
  }
  // Leaves it empty.
  void draw(QPainter &painter, const QRawFont &face, long long baseline) {
    if (glyphs_.empty()) return;
    run_.setRawFont(face);
    run_.setRawData(glyphs_.data(), places_.data(), static_cast<int>(glyphs_.size()));
    painter.drawGlyphRun(QPointF(0, static_cast<qreal>(baseline)), run_);
    clear();
  }
  // Drops what a failed allocation left undrawn.
  void clear() {
    glyphs_.clear();
    places_.clear();
  }
  void forgetFace() { run_.setRawFont(QRawFont()); }

 private:
  QGlyphRun run_;
  std::vector<quint32> glyphs_;
  std::vector<QPointF> places_;
};

GlyphRow &glyphRow() {
  static auto &kept = *new GlyphRow;
  return kept;
}

// Null when there is none.
QString installedFamily(const QString &name) {
  if (name.isEmpty()) return {};
  if (QFontDatabase::hasFamily(name)) return name;
  for (const Equals &equals : kEquals) {
    if (!contains(equals.names, name)) continue;
    for (const QLatin1String answer : equals.answers.tokenize(u'|'))
      if (QFontDatabase::hasFamily(answer)) return answer;
  }
  return {};
}

}  // namespace

// The caches here and below are never destroyed: by then the toolkit's own fonts may be gone.
const QString *familyAnswering(std::string_view name) {
  static auto &answers = *new std::map<std::string, const QString *, std::less<>>;
  static auto &families = *new std::set<QString>;
  const auto known = answers.find(name);
  if (known != answers.end()) return known->second;
  const QString family = installedFamily(toQt(name));
  const QString *kept = family.isNull() ? nullptr : &*families.insert(family).first;
  answers.emplace(name, kept);
  return kept;
}

ScreenFont::ScreenFont(const QFont &font, unsigned face)
    : isUnderlined_((face & kUnderline) != 0), pixelSize_(font.pixelSize()) {
  faces_.push_back(QRawFont::fromFont(font));
  const QFontMetricsF measures(font);
  metrics_.ascent = wholePixels(measures.ascent());
  metrics_.descent = wholePixels(measures.descent());
  metrics_.leading = wholePixels(measures.leading());
  underline_.top = std::max(1, qRound(faces_[0].underlinePosition()));
  underline_.thickness = std::max(1, qRound(faces_[0].lineThickness()));
  for (unsigned byte = 0; byte < glyphs_.size(); ++byte) {
    const Glyph glyph = glyphOf(characterOf(static_cast<unsigned char>(byte)), font);
    glyphs_[byte] = glyph;
    if (!glyph.isShown) continue;
    const QList<QPointF> advances = faces_[glyph.face].advancesForGlyphIndexes({glyph.index});
    advances_[byte] = advances.isEmpty() ? 0 : std::max(1, qRound(advances.constFirst().x()));
  }
  metrics_.widest = *std::max_element(advances_.begin(), advances_.end());
}

std::uint8_t ScreenFont::indexOfFace(const QRawFont &face) {
  const auto found = std::find(faces_.begin(), faces_.end(), face);
  const auto index = static_cast<std::uint8_t>(found - faces_.begin());
  if (found == faces_.end()) faces_.push_back(face);
  return index;
}

ScreenFont::Glyph ScreenFont::glyphOf(char16_t character, const QFont &font) {
  Glyph glyph;
  if (isControl(character)) return glyph;
  const QList<quint32> own = faces_[0].glyphIndexesForString(QString(QChar(character)));
  glyph.isShown = true;
  if (!own.isEmpty()) glyph.index = own.constFirst();
  if (glyph.index != 0) return glyph;
  const Substitute other = substituteFor(character, font);
  if (other.index == 0) return glyph;
  glyph.face = indexOfFace(other.face);
  glyph.index = other.index;
  return glyph;
}

int ScreenFont::width(std::string_view text) const {
  long long sum = 0;
  for (const char byte : text) sum += advance(byte);
  return static_cast<int>(std::min<long long>(sum, std::numeric_limits<int>::max()));
}

ScreenFont::Scaled &ScreenFont::scaledBy(qreal scale) const {
  for (Scaled &each : scaled_)
    if (each.scale == scale) return each;
  Scaled made{scale, faces_, nullptr};
  if (scale != 1)
    for (QRawFont &face : made.faces) face.setPixelSize(face.pixelSize() * scale);
  return scaled_.emplace_back(std::move(made));
}

void ScreenFont::draw(QPainter &painter, int x, int y, std::string_view text, qreal scale) const {
  if (faces_.empty()) return;
  const std::vector<QRawFont> &faces = scaledBy(scale).faces;
  const long long extent = std::llround(4 * pixelSize_ * scale);  // of a glyph, at most
  const long long baseline = placeOf(y, scale);
  if (!isNear(baseline, extent)) return;
  GlyphRow &row = glyphRow();
  row.clear();
  std::uint8_t face = 0;
  long long next = x;
  for (const char byte : text) {
    const Glyph &glyph = glyphs_[static_cast<unsigned char>(byte)];
    const long long place = placeOf(next, scale);
    next += advance(byte);
    if (!glyph.isShown || !isNear(place, extent)) continue;
    if (glyph.face != face) row.draw(painter, faces[face], baseline);
    face = glyph.face;
    row.add(glyph.index, place);
  }
  row.draw(painter, faces[face], baseline);
}

InkTable *ScreenFont::inkAt(qreal scale) const {
  if (pixelSize_ * scale > kLargestInk) return nullptr;
  Scaled &scaled = scaledBy(scale);
  if (scaled.ink == nullptr) {
    scaled.ink = std::make_unique<InkTable>([this, scale](unsigned char byte) {
      const Glyph &glyph = glyphs_[byte];
      const bool isThere = glyph.isShown && !faces_.empty();
      return isThere ? inkOf(scaledBy(scale).faces[glyph.face], glyph.index) : GlyphInk();
    });
  }
  return scaled.ink.get();
}

void ScreenFont::end() {
  faces_.clear();
  for (Scaled &each : scaled_) each.faces.clear();
}

namespace {

struct Fonts {
  using Faces = std::unordered_map<unsigned, std::unique_ptr<ScreenFont>>;
  std::unordered_map<const QString *, Faces> families;
  std::vector<std::unique_ptr<ScreenFont>> ended;  // which ports may still have
  bool endsWithApplication = false;
};

Fonts &fonts() {
  static auto &kept = *new Fonts;
  return kept;
}

void endFonts() {
  for (auto &[family, faces] : fonts().families)
    for (auto &[key, font] : faces) {
      font->end();
      fonts().ended.push_back(std::move(font));
    }
  fonts().families.clear();
  glyphRow().forgetFace();
  fonts().endsWithApplication = false;
}

}  // namespace

const ScreenFont &screenFont(const QString *family, unsigned face, int size) {
  if (!fonts().endsWithApplication) qAddPostRoutine(endFonts);
  fonts().endsWithApplication = true;
  Fonts::Faces &faces = fonts().families[family];
  const unsigned key = face << 16 | static_cast<unsigned>(size);
  auto font = faces.find(key);
  if (font == faces.end())
    font = faces.emplace(key, std::make_unique<ScreenFont>(qtFont(family, face, size), face)).first;
  return *font->second;
}

bool canHaveFonts() {
  return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

}  // namespace korvel::platform::qt
