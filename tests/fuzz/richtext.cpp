// SPDX-License-Identifier: MIT
// Rich and plain texts of any bytes, drawn and measured beside the literal model on ports that
// record: same operations, same results. What outlasts a text goes on from each to the next.
#include <memory>
#include <string>

#include <korvel/desktop.h>
#include <korvel/draw.h>

#include "draw/pictures.h"
#include "tests/draw/literal_text.h"
#include "tests/fuzz/target.h"
#include "tests/platform/scripted_desktop.h"
#include "tests/platform/scripted_port.h"
#include "tests/platform/temporary_folder.h"

namespace korvel::test {
namespace {

// Some pictures are there, the others are missing.
class Pictures {
 public:
  Pictures() {
    for (const char *name : {"repferb", "puceb", "repouvl"}) {
      folder_.add("pictures/" + std::string(name) + ".svg", "16x16");
    }
    std::snprintf(szResources, sizeof szResources, "%s", folder_.path().c_str());
  }

 private:
  TemporaryFolder folder_;
};

// The library's image, and the model's.
class Sheets {
 public:
  Sheets() { model_.setFont("Arial", 0); }

  void chooseFont(Input &input) {
    const int size = input.ConsumeIntegralInRange(1, 60);
    ch_font_set(port_, "Arial", KorvelRed, KorvelTransparent, size);
    model_.setFontSize(size);
    model_.setForeground({0xFFFF, 0, 0});
    char_dy = input.ConsumeIntegralInRange(-3, 40);
  }

  void use(Input &input) {
    const std::string given = bytes(input, 700);
    Exactly text = Exactly::holding(given);
    const int x = input.ConsumeIntegralInRange(-300, 300);
    const int y = input.ConsumeIntegralInRange(-50, 50);
    const int x0 = input.ConsumeIntegralInRange(-1000, 1000);
    const int y0 = input.ConsumeIntegralInRange(-1000, 1000);
    const int advance = TextOut_Ext(port_, x, y, x0, y0, text.data(), text.size());
    require(advance == literal_.draw(model_, char_dy, x, y, x0, y0, given));
    require(desk_.drawn(0).operations == record_->operations);

    int cx = -1;
    int cy = -1;
    const int result = GetTextExtent_Ext(port_, x, y, text.data(), text.size(), &cx, &cy);
    const LiteralText::Extent expected = literal_.measure(model_, x, given);
    require(result == expected.result && cx == expected.cx && cy == expected.cy);
    forget();
  }

  // Whatever the numbers; only that nothing breaks.
  void useOddly(Input &input) {
    Exactly run = Exactly::holding(bytes(input, 300));
    const int at[] = {number(input, -300, 300), number(input, -300, 300), number(input, -99, 99),
                      number(input, -99, 99)};
    int cx = 0;
    int cy = 0;
    const int width = TextOut_0(port_, at[0], at[1], run.data(), run.size());
    GetTextExtent_0(port_, run.data(), run.size(), &cx, &cy);
    require(width == cx && cy == 0);
    TextOut_Ext(port_, at[0], at[1], at[2], at[3], run.data(), run.size());
    Exactly text = Exactly::terminated(korvel::test::text(input, 300));
    ch_font_printstr(port_, at[0], at[1], at[2], number(input, 0, 16), number(input, 0, 255),
                     number(input, 0, 40), text.data());
    Rectangle_Ex(port_, at[0], at[1], at[2], at[3], number(input, 0, 15));
    Line_Ex(port_, at[0], at[1], at[2], at[3], number(input, 0, 15), number(input, 0, 9));
    ch_font_set_ext(port_, text.data(), number(input, 0, 15), number(input, 0, 255),
                    number(input, 0, 40), number(input, 0, 31));
    BMP_affic_desfond0(text.data(), port_, at[0], at[1]);
    forget();
  }

  // The pen, what a run aligns to and the font as they were, so that an input does the same again.
  void settle() {
    char_dy = 0;
    ch_font_set(port_, "Arial", KorvelBlack, KorvelTransparent, 12);
    constexpr std::string_view kReset = "\xFF\x82\xFF\xC9    ";
    const int length = static_cast<int>(kReset.size());
    TextOut_Ext(port_, 0, 0, 0, 0, kReset.data(), length);
    GetTextExtent_Ext(port_, 0, 0, kReset.data(), 2, nullptr, nullptr);
    literal_.draw(model_, 0, 0, 0, 0, 0, std::string(kReset));
    literal_.measure(model_, 0, std::string(kReset.substr(0, 2)));
    forget();
  }

 private:
  void forget() {
    desk_.drawn(0) = {};
    *record_ = {};
  }

  Pictures pictures_;
  ScriptedDesktop desk_;
  CGrafPtr port_ = KorvelImagePort(200, 100);
  std::shared_ptr<PortRecord> record_ = std::make_shared<PortRecord>();
  ScriptedPort model_{record_, std::make_shared<FontNames>(FontNames{"Arial"}),
                      ScriptedPort::Surface::Image, 100, 100};
  LiteralText literal_{[](const std::string &name) { return draw::findPicture(name); }};
};

}  // namespace
}  // namespace korvel::test

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace korvel::test;
  static auto &sheets = *new Sheets;
  Input input(data, size);
  sheets.settle();
  sheets.chooseFont(input);
  for (int texts = 0; texts < 3; ++texts) sheets.use(input);
  if (input.ConsumeBool()) sheets.useOddly(input);
  return 0;
}
