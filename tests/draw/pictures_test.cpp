// SPDX-License-Identifier: MIT
// Pictures by name.
#include <chrono>
#include <climits>
#include <filesystem>
#include <string>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/draw/drawing_fixture.h"

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

// Kept: a name that is too long counts as drawn.
// Kept: a name that is too long counts as measured.
TEST_F(Pictures, OfANameThatIsTooLongSaysItWasDrawn) {
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

// A file just written may be written again within the same tick of the clock.
void letFilesRest() { std::this_thread::sleep_for(std::chrono::milliseconds(50)); }

TEST_F(Pictures, AreReadOnce) {
  folder.add("a.svg", "20x10");
  folder.add("b.svg", "30x30");
  letFilesRest();
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

TEST_F(Pictures, AreSeenAnewWhenTheirFileIsWrittenAgain) {
  for (const char *sizes :
       {"20x10", "30x30", "40x40", "5x5"}) {  // of the same length, and of another
    folder.add("a.svg", sizes);
    EXPECT_EQ(size("a"), sizes);
    EXPECT_EQ(draw("a"), 0);
    if (sizes[0] == '3') letFilesRest();
  }
}

TEST_F(Pictures, AreSeenAnewWhenAnotherFileTakesTheirPlace) {
  folder.add("a.svg", "20x10");
  folder.add("new.svg", "30x30");
  letFilesRest();
  EXPECT_EQ(size("a"), "20x10");
  std::filesystem::rename(folder.file("new.svg"), folder.file("a.svg"));
  EXPECT_EQ(size("a"), "30x30");
  folder.add("a.png", "40x40");
  EXPECT_EQ(size("a"), "30x30") << "an SVG comes first";
  std::filesystem::remove(folder.file("a.svg"));
  EXPECT_EQ(size("a"), "40x40");
}

TEST_F(Pictures, ThatWereRemovedAreGone) {
  folder.add("a.svg", "20x10");
  letFilesRest();
  EXPECT_EQ(draw("a"), 0);
  std::filesystem::remove(folder.file("a.svg"));
  EXPECT_EQ(draw("a"), 1);
  EXPECT_EQ(size("a"), "1");
  folder.add("a.svg", "20x10");
  EXPECT_EQ(draw("a"), 0);
}

TEST_F(Pictures, ThatCannotBeReadAreNotReadAgainUntilTheyChange) {
  folder.add("a.svg", "no size");
  letFilesRest();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(size("a"), "1");
  EXPECT_EQ(desk.picturesRead().size(), 1u);
  folder.add("a.svg", "20x10");
  EXPECT_EQ(size("a"), "20x10");
}

// Without descriptors a file that is there cannot be opened.
TEST_F(Pictures, ThatCouldNotBeReadAreTriedAgainASecondLater) {
  folder.add("a.svg", "20x10");
  letFilesRest();
  rlimit before;
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(size("a"), "1");
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(size("a"), "20x10");
}

TEST_F(Pictures, AreReadAgainWhileALaterChangeOfTheirFileMayNotShow) {
  using std::chrono::milliseconds;
  const auto now = std::chrono::system_clock::now();
  EXPECT_FALSE(draw::isAtRest(now, now));
  EXPECT_FALSE(draw::isAtRest(now - milliseconds(10), now));
  EXPECT_FALSE(draw::isAtRest(now + milliseconds(10), now));
  EXPECT_TRUE(draw::isAtRest(now - milliseconds(30), now));
  EXPECT_TRUE(draw::isAtRest(now + std::chrono::hours(1), now)) << "dated in the future";
}

TEST_F(Pictures, OfANameThatLeadsElsewhereAreNone) {
  folder.add("a.svg", "20x10");
  folder.add("sub/b.svg", "20x10");
  folder.add("../c.svg", "20x10");
  const std::string absolute = folder.file("a");
  for (const std::string name :
       {"../c", "../pictures/a", "sub/../a", "sub/b", "/a", "./a", absolute.c_str()}) {
    EXPECT_EQ(size(name), "1") << name;
    EXPECT_EQ(draw(name), 1) << name;
  }
  EXPECT_TRUE(desk.picturesRead().empty());
}

TEST_F(Pictures, APipeOrADeviceIsNone) {
  folder.add("a.png", "20x10");
  ASSERT_EQ(mkfifo(folder.file("a.svg").c_str(), 0600), 0);
  EXPECT_EQ(size("a"), "20x10") << "of the file behind it";
  std::filesystem::create_symlink("/dev/zero", folder.file("b.svg"));
  EXPECT_EQ(size("b"), "1");
  std::filesystem::create_directory(folder.file("c.svg"));
  EXPECT_EQ(size("c"), "1");
}

TEST_F(Pictures, OfAnotherFolderAreOthers) {
  folder.add("a.svg", "20x10");
  EXPECT_EQ(size("a"), "20x10");
  PictureFolder other;
  other.add("a.svg", "7x7");
  EXPECT_EQ(size("a"), "7x7");
  folder.choose();
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
