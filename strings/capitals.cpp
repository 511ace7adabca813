// Texts in capitals: long ones with the 256-bit instructions that most x86-64 machines have, the
// rest by blocks.
#include "strings/capitals.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __x86_64__
#include <immintrin.h>
#endif

#include <korvel/strings.h>

#include "strings/blocks.h"
#include "strings/machine.h"

namespace korvel::strings {

namespace {

// The capital without diacritics of each byte from 0x80 on.
//
// Letters: the Unicode consortium's table of Mac OS Roman (APPLE/ROMAN.TXT). Their capital: the
// first character of the canonical decomposition, in upper case (the Unicode character database).
// So capitals with diacritics lose them, too.
// ae, oe and o with a stroke have no decomposition and stay letters of their own. Dotless i becomes
// I. Sharp s, the ligatures fi and fl, the micro sign, pi, f with a hook and the ordinals have no
// capital of one byte and stay, as do signs and lone accents.
constexpr std::array<unsigned char, 128> kPlainCapitals = {
    // clang-format off
    'A',  'A',  'C',  'E',  'N',  'O',  'U',  'A',  // 80: Ä Å Ç É Ñ Ö Ü á
    'A',  'A',  'A',  'A',  'A',  'C',  'E',  'E',  // 88: à â ä ã å ç é è
    'E',  'E',  'I',  'I',  'I',  'I',  'N',  'O',  // 90: ê ë í ì î ï ñ ó
    'O',  'O',  'O',  'O',  'U',  'U',  'U',  'U',  // 98: ò ô ö õ ú ù û ü
    0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7,  // A0: † ° ¢ £ § • ¶ ß
    0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF,  // A8: ® © ™ ´ ¨ ≠ Æ Ø
    0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 0xB5, 0xB6, 0xB7,  // B0: ∞ ± ≤ ≥ ¥ µ ∂ ∑
    0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xAE, 0xAF,  // B8: ∏ π ∫ ª º Ω æ ø
    0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7,  // C0: ¿ ¡ ¬ √ ƒ ≈ ∆ «
    0xC8, 0xC9, 0xCA, 'A',  'A',  'O',  0xCE, 0xCE,  // C8: » … (no-break space) À Ã Õ Œ œ
    0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7,  // D0: – — “ ” ‘ ’ ÷ ◊
    'Y',  'Y',  0xDA, 0xDB, 0xDC, 0xDD, 0xDE, 0xDF,  // D8: ÿ Ÿ ⁄ € ‹ › ﬁ ﬂ
    0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 'A',  'E',  'A',  // E0: ‡ · ‚ „ ‰ Â Ê Á
    'E',  'E',  'I',  'I',  'I',  'I',  'O',  'O',  // E8: Ë È Í Î Ï Ì Ó Ô
    0xF0, 'O',  'U',  'U',  'U',  'I',  0xF6, 0xF7,  // F0: (private sign) Ò Ú Û Ù ı ˆ ˜
    0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,  // F8: ¯ ˘ ˙ ˚ ¸ ˝ ˛ ˇ
    // clang-format on
};

constexpr unsigned char plainCapitalOf(unsigned char c) {
  if (c >= 0x80) return kPlainCapitals[c - 0x80U];
  return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 'a' + 'A') : c;
}

// For every byte. A capital is its own capital, so a byte may be looked up twice.
constexpr std::array<unsigned char, 256> kPlainCapitalOfByte = [] {
  std::array<unsigned char, 256> table{};
  for (unsigned c = 0; c < table.size(); ++c) {
    table[c] = plainCapitalOf(static_cast<unsigned char>(c));
  }
  return table;
}();

char plainCapital(char c) {
  return static_cast<char>(kPlainCapitalOfByte[static_cast<unsigned char>(c)]);
}

// The ASCII letters of a block as capitals. 'z' is shifted up to 127, the largest signed byte: one
// signed comparison then finds 'a' to 'z'.
Block asciiCapitals(Block b) {
  constexpr char kShift = '\x7F' - 'z';
  const Block isSmall =
      b + Block::filled(kShift) > Block::filled(static_cast<char>('a' - 1 + kShift));
  return b ^ (isSmall & Block::filled('a' ^ 'A'));
}

// Looks up the bytes of s whose bits are set in `marked`.
void capitaliseMarked(char *s, std::uint64_t marked) {
  for (; marked != 0; marked &= marked - 1) {
    char &c = s[std::countr_zero(marked)];
    c = plainCapital(c);
  }
}

constexpr std::size_t kStretch = 4 * kBlock;

// Four blocks at once: a single test rules out accents in all of them.
void capitaliseStretch(char *s) {
  const Block b0 = Block::load(s, kBlock);
  const Block b1 = Block::load(s + kBlock, kBlock);
  const Block b2 = Block::load(s + 2 * kBlock, kBlock);
  const Block b3 = Block::load(s + 3 * kBlock, kBlock);
  asciiCapitals(b0).store(s, kBlock);
  asciiCapitals(b1).store(s + kBlock, kBlock);
  asciiCapitals(b2).store(s + 2 * kBlock, kBlock);
  asciiCapitals(b3).store(s + 3 * kBlock, kBlock);
  if ((b0 | b1 | b2 | b3).mask() == 0) return;
  const std::uint64_t front = b0.mask() | (b1.mask() << kBlock);
  const std::uint64_t back = b2.mask() | (b3.mask() << kBlock);
  capitaliseMarked(s, front | (back << (2 * kBlock)));
}

}  // namespace

// ASCII letters are changed by blocks, every other byte is looked up.
void capitaliseBlocks(char *s, std::size_t n) {
  const std::size_t rest = n % kStretch;
  for (const char *end = s + (n - rest); s != end; s += kStretch) capitaliseStretch(s);
  overBlocks(s, rest, [](char *place, std::size_t count) {
    const Block b = Block::load(place, count);
    asciiCapitals(b).store(place, count);
    if (b.mask() == 0) return;
    if (count == kBlock) return capitaliseMarked(place, b.mask());
    for (std::size_t i = 0; i < count; ++i) place[i] = plainCapital(place[i]);
  });
}

#ifdef __x86_64__

// Allows a function these instructions in a program built for every x86-64.
#define WIDE __attribute__((target("avx2")))

namespace {

constexpr std::size_t kWide = 32;
static_assert(kStretch == 2 * kWide);

// Bytes above this one are looked up in the table of all capitals: a text has few of them. Those
// between the two rows of accented letters and this one are their own capitals.
constexpr unsigned char kLastOwnCapital = 0xBD;
static_assert([] {
  for (unsigned c = 0xA0; c <= kLastOwnCapital; ++c) {
    if (plainCapitalOf(static_cast<unsigned char>(c)) != c) return false;
  }
  return true;
}());

// The exclusive or of each of the sixteen letters from `first` on with its capital, twice: a wide
// shuffle looks up each of its halves by itself.
constexpr std::array<char, kWide> changesFrom(unsigned char first) {
  std::array<char, kWide> changes{};
  for (unsigned i = 0; i < kWide; ++i) {
    const auto letter = static_cast<unsigned char>(first + i % 16);
    changes[i] = static_cast<char>(letter ^ plainCapitalOf(letter));
  }
  return changes;
}
constexpr std::array<char, kWide> kChanges90 = changesFrom(0x90);
constexpr std::array<char, kWide> kChanges80After90 = [] {
  std::array<char, kWide> changes = changesFrom(0x80);
  for (std::size_t i = 0; i < kWide; ++i) {
    changes[i] = static_cast<char>(changes[i] ^ kChanges90[i]);
  }
  return changes;
}();

WIDE inline __m256i load(const char *p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(p));
}

WIDE inline __m256i filled(unsigned char c) { return _mm256_set1_epi8(static_cast<char>(c)); }

// The exclusive or of the letters 80..9F with their capitals, 0 for all other bytes. The two rows
// are shifted to 60..7F, where a shuffle sees the low four bits alone; every other byte ends at 80
// or above, where it gives 0. Shifted by one more row, only 80..8F stay below 80: they cancel the
// change of 90..9F and take their own.
WIDE inline __m256i changesOfAccented(__m256i b) {
  const __m256i places = _mm256_adds_epu8(b ^ filled(0x80), filled(0x60));
  const __m256i placesOf80 = _mm256_adds_epu8(places, filled(0x10));
  return _mm256_shuffle_epi8(load(kChanges90.data()), places) ^
         _mm256_shuffle_epi8(load(kChanges80After90.data()), placesOf80);
}

// As asciiCapitals.
WIDE inline __m256i changesOfAscii(__m256i b) {
  constexpr unsigned char kShift = 0x7F - 'z';
  const __m256i isSmall =
      _mm256_cmpgt_epi8(_mm256_add_epi8(b, filled(kShift)), filled('a' - 1 + kShift));
  return isSmall & filled('a' ^ 'A');
}

WIDE inline __m256i capitals(__m256i b) { return b ^ changesOfAscii(b) ^ changesOfAccented(b); }

// The high bit set where a byte is above kLastOwnCapital: where a byte has it and loses it when
// kLastOwnCapital is shifted up to FF.
WIDE inline __m256i leftToTable(__m256i b) {
  return _mm256_andnot_si256(_mm256_add_epi8(b, filled(0xFF - kLastOwnCapital)), b);
}

WIDE inline std::uint64_t highBits(__m256i b) {
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(b));
}

WIDE inline void store(char *p, __m256i b) {
  _mm256_storeu_si256(reinterpret_cast<__m256i *>(p), b);
}

WIDE void capitaliseStretches(char *s, const char *end) {
  for (; s != end; s += kStretch) {
    const __m256i front = load(s);
    const __m256i back = load(s + kWide);
    store(s, capitals(front));
    store(s + kWide, capitals(back));
    if (highBits(leftToTable(_mm256_max_epu8(front, back))) == 0) continue;
    capitaliseMarked(s, highBits(leftToTable(front)) | (highBits(leftToTable(back)) << kWide));
  }
}

}  // namespace

std::size_t capitaliseWide(char *s, std::size_t n) {
  const std::size_t whole = n - n % kStretch;
  if (whole == 0 || !thisMachine().avx2) return 0;
  capitaliseStretches(s, s + whole);
  return whole;
}

#else

std::size_t capitaliseWide(char * /*s*/, std::size_t /*n*/) { return 0; }

#endif

void capitalise(std::span<char> text) {
  const std::size_t done = capitaliseWide(text.data(), text.size());
  capitaliseBlocks(text.data() + done, text.size() - done);
}

}  // namespace korvel::strings

using namespace korvel::strings;

char *strupr(char *s) {
  if (s != nullptr) capitalise({s, std::strlen(s)});
  return s;
}
