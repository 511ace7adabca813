// Pictures by name.
#include "tests/draw/drawing_fixture.h"

#include <climits>
#include <string>

namespace korvel::test {
namespace {

class Pictures : public DrawTest {
 protected:
  int draw(const std::string &name) { return BMP_affic_desfond0(name.c_str(), port, 4, 5); }
  // "20x10", or the result when there is no such picture.
  static std::string size(const std::string &name) {
    int cx = -1;
    int cy = -1;
    const int result = BMP_affic_dimfond0(name.c_str(), &cx, &cy);
    if (cx == -1 && cy == -1) return std::to_string(result);
    return std::to_string(cx) + 'x' + std::to_string(cy);
  }

  PictureFolder folder;
};

TEST_F(Pictures, IsDrawnWithItsCornerAtThePoint) {
  folder.add("coeur.svg", "20x10");
  EXPECT_EQ(draw("coeur"), 0);
  EXPECT_EQ(drawn(), "picture (4,5) coeur\n");
}

TEST_F(Pictures, IsMeasured) {
  folder.add("coeur.svg", "20x10");
  EXPECT_EQ(size("coeur"), "20x10");
  EXPECT_EQ(BMP_affic_dimfond0("coeur", nullptr, nullptr), 0);
}

TEST_F(Pictures, IsASvgOrElseAPng) {
  folder.add("a.png", "20x10");
  EXPECT_EQ(size("a"), "20x10");
  folder.add("b.png", "20x10");
  folder.add("b.svg", "30x30");
  EXPECT_EQ(size("b"), "30x30");
}

TEST_F(Pictures, ThatDoesNotExistIsToldSo) {
  EXPECT_EQ(draw("inconnu"), 1);
  EXPECT_EQ(size("inconnu"), "1");
  EXPECT_EQ(drawn(), "");
}

TEST_F(Pictures, ThatCannotBeReadIsNone) {
  folder.add("cassee.svg", "no size");
  EXPECT_EQ(draw("cassee"), 1);
  EXPECT_EQ(size("cassee"), "1");
}

TEST_F(Pictures, OfANameThatIsTooLongSaysItWasDrawn) {  // Kept: as if it had been drawn.
  EXPECT_EQ(draw(std::string(256, 'a')), 0);
  EXPECT_EQ(size(std::string(256, 'a')), "0");
  EXPECT_EQ(size(std::string(5000, 'a')), "0");
  EXPECT_EQ(draw(std::string(255, 'a')), 1);
  EXPECT_EQ(size(std::string(255, 'a')), "1");
  EXPECT_EQ(BMP_affic_desfond0(std::string(256, 'a').c_str(), nullptr, 0, 0), 0);
  EXPECT_EQ(drawn(), "");
  EXPECT_TRUE(desk.picturesRead().empty());
}

TEST_F(Pictures, WithoutNameOrPortNothingIsDrawn) {
  folder.add("coeur.svg", "20x10");
  EXPECT_EQ(BMP_affic_desfond0(nullptr, port, 0, 0), 1);
  EXPECT_EQ(BMP_affic_desfond0("coeur", nullptr, 0, 0), 1);
  EXPECT_EQ(BMP_affic_dimfond0(nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(size(""), "1");
  EXPECT_EQ(drawn(), "");
}

TEST_F(Pictures, MayLieFarOutside) {
  folder.add("coeur.svg", "20x10");
  EXPECT_EQ(BMP_affic_desfond0("coeur", port, INT_MIN, INT_MAX), 0);
  EXPECT_EQ(drawn(), "picture (-2147483648,2147483647) coeur\n");
}

// ---- What is kept ----

TEST_F(Pictures, AreReadOnce) {
  folder.add("a.svg", "20x10");
  folder.add("b.svg", "30x30");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(size("a"), "20x10");
    EXPECT_EQ(size("b"), "30x30");
    EXPECT_EQ(draw("a"), 0);
  }
  EXPECT_EQ(desk.picturesRead().size(), 2u);
}

TEST_F(Pictures, ThatComeLaterAreFound) {
  EXPECT_EQ(size("a"), "1");
  folder.add("a.svg", "20x10");
  EXPECT_EQ(size("a"), "20x10");
}

TEST_F(Pictures, OfAnotherFolderAreOthers) {
  folder.add("a.svg", "20x10");
  EXPECT_EQ(size("a"), "20x10");
  PictureFolder other;
  other.add("a.svg", "7x7");
  EXPECT_EQ(size("a"), "7x7");
  folder.stand();
  EXPECT_EQ(size("a"), "20x10");
}

TEST_F(Pictures, NamesAreUtf8OnTheDisk) {
  folder.add("\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.svg", "20x10");
  EXPECT_EQ(size("\xE9t\xE9 \x80"), "20x10");
  EXPECT_EQ(size("\xC3\xA9t\xC3\xA9 \xE2\x82\xAC"), "20x10") << "as it is on the disk";
  EXPECT_EQ(size("\xE8t\xE9 \x80"), "1");
}

TEST_F(Pictures, NamesStandWhereTheyAreRead) {
  folder.add("a.svg", "20x10");
  EXPECT_EQ(size("ab"), "1");
  EXPECT_EQ(size("A"), "1");
  EXPECT_EQ(size("a.svg"), "1");
}

}  // namespace
}  // namespace korvel::test
