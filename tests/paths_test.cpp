// File names: how they are resolved and written, and the functions that read and set them.
#include "treetext.h"

namespace {

namespace fs = std::filesystem;
using host::OneName, host::Texts;

class Paths : public testing::Test {
 protected:
  Paths() {
    fs::create_directories(here);
    fs::current_path(here);
  }
  ~Paths() override { fs::current_path(before); }
  const OneName file;
  const fs::path before = fs::current_path();
  const std::string up = host::FolderPath() + "/a/", here = up + "x..y";
};

TEST_F(Paths, AreResolvedByTheAnchor) {
  const std::string longName(1000000, 'n');
  EXPECT_EQ(file.Both("\\abs\\..\\x", "/p/q/m.zon"), "/abs/../x|\\abs\\..\\x|");
  EXPECT_EQ(file.Both("x", "/" + longName + "/m.zon"), "/" + longName + "/x|x|");
  EXPECT_EQ(file.Both("x.dat", ""), up + "x.dat|x.dat|");
  EXPECT_EQ(file.Both("x.dat", "$PWD/m.zon"), here + "/$PWD/x.dat|x.dat|");
  EXPECT_EQ(file.Both(here + "/a", "cfg/model.zon"), here + "/a|..\\..\\a|");
}

TEST_F(Paths, WorkingDirectoryCanBeLongOrRemoved) {
  const std::string step(100, 'd');
  for (std::string deep = here; deep.size() < 4500; deep += "/" + step) {
    EXPECT_EQ(file.Both("x", "m.zon"), deep + "/x|x|");
    fs::create_directory(step);
    fs::current_path(step);
  }
  fs::remove("../" + step);
  EXPECT_EQ(file.Both("x", "cfg/m.zon"), "cfg/x|x|");
  EXPECT_EQ(file.Both("x", ""), "x|x|");
  EXPECT_EQ(file.Both("/x", ""), "/x|\\x|");
  EXPECT_EQ(file.Both("/a/../x", "cfg/m.zon"), "/a/../x|\\x|");
}

TEST(Filenames, AnchorsAreTheRootsOwn) {
  const OneName file;
  void* root = zonGetRoot(file);
  zonSetAnchorFilename(file.name, "a\\../m.zon");
  for (void* node : {root, file.section, file.name}) {
    EXPECT_STREQ(zonGetZonFileName(node), "a\\../m.zon");
    EXPECT_STREQ(zonGetAnchorFilename(node), node == root ? "a\\../m.zon" : "");
  }
  zonSetAnchorFilename(root, nullptr);
  EXPECT_STREQ(zonGetAnchorFilename(root), "");
  CzonKeyword detached;
  CzonFilename value("x");
  EXPECT_STREQ(zonGetZonFileName(&detached), "");
  const std::string list = "dynamic_cast<(const )?CzonTargetList\\*>\\(pOwner\\) != 0";
  EXPECT_DEATH(zonGetZonFileName(nullptr), "zondll.*pOwner != 0");
  EXPECT_DEATH(zonSetAnchorFilename(&detached, "x"), "zondll.*" + list);
  EXPECT_DEATH(zonGetFilename(&value), "zonnode.*" + list);
}

// Hosts append to a path in its own buffer.
TEST(Filenames, PathsHaveRoomForMore) {
  const host::File loaded(host::Load("[A] k = |/a|, ||, |/b| EndSect"));
  const OneName built;
  struct {
    void* name;
    const char* path;
    char letter, *room;
  } rows[] = {{host::ValueOf(loaded, 1), "/a", 'c', nullptr},
              {host::ValueOf(loaded, 2), "", 'd', nullptr},
              {host::ValueOf(loaded, 3), "/b", 'e', nullptr},
              {built.name, "", 'f', nullptr},
              {nullptr, "", 'g', nullptr}};
  for (int again = 0; again < 3; ++again) {
    for (auto& row : rows) row.room = zonGetFilename(row.name);
    for (auto& row : rows) EXPECT_STREQ(row.room, row.path);
    for (auto& row : rows) std::strcpy(row.room, std::string(260, row.letter).c_str());
    for (auto& row : rows) EXPECT_EQ(row.room, std::string(260, row.letter));
  }
  const std::string far = "/" + std::string(300, 'n');
  zonSetFilename(built.name, far.c_str());
  EXPECT_EQ(zonGetFilename(built.name), far);
  zonSetFilename(built.name, "/c");
  EXPECT_STREQ(zonGetFilename(built.name), "/c");
  host::Heard();
}

TEST(Filenames, ChangeOnlyFileNames) {
  const OneName file;
  host::Messages();
  EXPECT_EQ(file.Both("a\\b//c", "/p/m.zon"), "/p/a/b/c|a\\b\\\\c|");
  char* resolved = zonGetFilename(file.name);
  zonSetFilename(file.name, zonGetFilenameString(file.name) + 2);
  EXPECT_STREQ(resolved, "/p/a/b/c");
  zonFileCopyCallBack(file.name);
  EXPECT_STREQ(zonGetFilenameString(file.name), "/p/b/c");
  zonSetFilename(file.name, nullptr);
  EXPECT_STREQ(zonGetFilename(file.name), "");
  zonSetFilename(file.section, "x");
  zonFileCopyCallBack(file.section);
  EXPECT_EQ(host::Messages(), Texts{});
  EXPECT_EQ(zonGetFilename(file.section), nullptr);
  EXPECT_EQ(zonGetFilenameString(file.section), nullptr);
  EXPECT_EQ(host::Messages(), Texts(2, "Function invalid in this context"));
}

}  // namespace
