// File names: the path arithmetic against slow references, and the functions over them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <random>
#include <sstream>

#include "host.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

// The references go from component to component: "/a//b" is "/", "a/", "/", "b".
Texts Pieces(const std::string& path) {
  Texts pieces;
  for (std::size_t at = 0, end; at < path.size(); at = end) {
    end = std::min(path.find('/', at), path.size() - 1) + 1;
    pieces.push_back(path.substr(at, end - at));
  }
  return pieces;
}

std::string SlowNormalized(const std::string& path) {
  Texts kept;  // `fixed` pieces at its start cannot be taken back
  if (path[0] == '/') kept = {"/"};
  std::size_t fixed = kept.size();
  for (const std::string& piece : Pieces(path)) {
    if (piece == "/") continue;
    const std::string name = piece.substr(0, piece.find('/'));
    const std::size_t run = name.size() - name.find_last_not_of('.') - 1;
    const std::size_t dots = run - (run > 0 && run < name.size());
    const bool takesBack = dots == 2 && kept.size() > fixed;
    if (takesBack) kept.pop_back();
    if (dots == 2 && !takesBack) ++fixed;
    if (dots != 1 && !takesBack) kept.push_back(piece);
  }
  return std::accumulate(kept.begin(), kept.end(), std::string());
}
std::string SlowJoined(const std::string& base, const std::string& text) {
  return SlowNormalized(text[0] == '/' ? text : base + "/" + text);
}

// `anchor` is the absolute name of the parameter file.
std::string SlowResolved(std::string text, const std::string& anchor) {
  std::replace(text.begin(), text.end(), '\\', '/');
  if (text.empty() || text[0] == '/') return text;
  const Texts pieces = Pieces(anchor.size() > 1 ? anchor : "//");
  return SlowJoined(std::accumulate(pieces.begin(), pieces.end() - 1, std::string()), text);
}

std::string SlowWritten(std::string text, const std::string& anchor) {
  if (text[0] == '/') {
    const Texts from = Pieces(anchor), to = Pieces(SlowNormalized(text));
    std::size_t same = 0;
    while (same < std::min(from.size(), to.size()) && from[same] == to[same] &&
           to[same].back() == '/')
      ++same;
    const bool within = same + 1 == from.size() && same < to.size() && from[same] + "/" == to[same];
    text.clear();
    for (std::size_t i = same; i < from.size() && !within; ++i) text += "../";
    for (std::size_t i = same + within; i < to.size(); ++i) text += to[i];
  }
  std::replace(text.begin(), text.end(), '/', '\\');
  return "|" + text + "|";
}

struct OneName : host::File {
  OneName() : File(zonCreate()) {
    zonAddTarget(*this, "A");
    zonAddKeyword(*this, "k");
    zonAddFilename(*this, "");
    section = zonTargetByNum(*this, 1);
    name = zonParamByNum(zonKeywordByNum(section, 1), 1);
  }
  // How a name is resolved, and how it is written.
  std::string Both(const std::string& text, const std::string& anchor) const {
    zonSetFilename(name, text.c_str());
    zonSetAnchorFilename(name, anchor.c_str());
    std::ostringstream out;
    dynamic_cast<CzonNode*>(static_cast<CzonBase*>(name))->Write(out);
    return zonGetFilename(name) + out.str();
  }
  void *section, *name;
};

TEST(Paths, ResolvedAndWritten) {
  const OneName file;
  const fs::path before = fs::current_path();
  const std::string up = host::FolderPath() + "/a/", here = up + "x..y", far(1000000, 'n');
  fs::create_directories(here);
  fs::current_path(here);
  std::mt19937 random(7);
  const auto text = [&](const std::string& start) {
    std::string result = random() % 3 == 0 ? start : "";
    for (auto length = random() % 15; length != 0; --length) result += "ab./\\"[random() % 5];
    return result;
  };
  for (int i = 0; i < 30000; ++i) {
    std::string name = text(here + "/") + text("/"), anchor = text("/");
    const std::string full = SlowJoined(here, SlowJoined(here, anchor));
    ASSERT_EQ(file.Both(name, anchor), SlowResolved(name, full) + SlowWritten(name, full))
        << name << " in " << anchor;
    _normalizePath(anchor.assign(name));
    ASSERT_EQ(anchor, SlowNormalized(name));
  }
  for (const auto& [path, normalized] :
       {std::pair("a/./b/", "a/b/"), {"/..", "/.."}, {"a/..", ""}, {"/a/x../b", "/a/b"}})
    EXPECT_EQ(SlowNormalized(path), normalized);
  EXPECT_EQ(file.Both("sub\\..\\x", "/p/q/m.zon"), "/p/q/x|sub\\..\\x|");
  EXPECT_EQ(file.Both("/abs/../x", "/p/q/m.zon"), "/abs/../x|..\\..\\..\\x|");
  EXPECT_EQ(file.Both("/data/m/in", "/data/m"), "/data/m/in|in|");
  EXPECT_EQ(file.Both("\\abs\\x", "/p/m.zon"), "/abs/x|\\abs\\x|");
  EXPECT_EQ(file.Both("x.dat", ""), up + "x.dat|x.dat|");
  EXPECT_EQ(file.Both("x.dat", "$PWD/m.zon"), here + "/$PWD/x.dat|x.dat|");
  EXPECT_EQ(file.Both(here + "/a", "cfg/model.zon"), here + "/a|..\\..\\a|");
  EXPECT_EQ(file.Both("x", "/" + far + "/m.zon"), "/" + far + "/x|x|");
  std::string deep = here;
  for (const std::string step(100, 'd'); deep.size() < 4500; deep += "/" + step) {
    EXPECT_EQ(file.Both("x", "m.zon"), deep + "/x|x|");
    fs::create_directory(step);
    fs::current_path(step);
  }
  fs::remove("../" + std::string(100, 'd'));
  EXPECT_EQ(file.Both("x", "cfg/m.zon"), "cfg/x|x|");
  EXPECT_EQ(file.Both("/a/../x", "cfg/m.zon"), "/a/../x|\\x|");
  fs::current_path(before);
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

TEST(Filenames, ChangeOnlyFileNames) {
  const OneName file;
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
