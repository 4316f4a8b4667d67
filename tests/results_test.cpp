// Result folders, and the names of result files.
#include "treetext.h"

namespace {
int templateReads = 0;
}

// Replaces the function of the C library to count what the library reads.
extern "C" __attribute__((visibility("default"))) char* getenv(const char* name) noexcept {
  if (std::strcmp(name, "VXRESULTFOLDERTEMPLATE") == 0) ++templateReads;
  const std::size_t length = std::strlen(name);
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
    if (std::strncmp(*entry, name, length) == 0 && (*entry)[length] == '=')
      return *entry + length + 1;
  return nullptr;
}

namespace {

namespace fs = std::filesystem;

struct Sample : host::File {  // a file with one value in it, k of A
  explicit Sample(const char* text = "out/a") : File(zonCreate()) {
    zonAddTarget(*this, "A");
    zonPutParamResultFilename(*this, "k", text);
    section = zonTargetByNum(*this, 1), value = host::ValueOf(*this);
  }
  void *section, *value;
};

// The path that a function copies. Its sized twin must copy the same into a buffer of just that
// size.
std::string PathOf(void* node, void (*copy)(void*, char*), int (*copySized)(void*, char*, int)) {
  char text[2000] = "", sized[2000];
  copy(node, text);
  EXPECT_EQ(copySized(node, sized, static_cast<int>(std::strlen(text)) + 1), 0);
  EXPECT_STREQ(sized, text);
  return text;
}
std::string FolderOf(void* node) {
  templateReads = 0;
  const std::string folder = PathOf(node, zonGetResultFolderPath, zonGetResultFolderPath2);
  EXPECT_EQ(templateReads, 2) << "each call reads its template";
  return folder;
}
std::string PathOf(void* node) {
  return PathOf(node, zonGetResultFilenamePath, zonGetResultFilenamePath2);
}

TEST(Results, FolderFollowsFromSettingsAnchorAndWorkingDirectory) {
  const std::string gone = host::FolderPath() + "/gone", end = " - Result Files/";
  const std::string step = "/" + std::string(230, 'd');
  for (std::string here : {gone + step + step + step, std::string("/"), gone}) {
    fs::create_directories(here);
    fs::current_path(here);
    if (here == gone && fs::remove_all(gone) != 0) here.clear();
    const auto expect = [](const std::string& folder, const std::string& anchor,
                           const char* root = "", int use = 0, const char* custom = "") {
      const Sample file;
      zonSetAnchorFilename(file.value, anchor.c_str());
      zonSetProjectResultRoot(file, root);
      zonSetCustomResultFolder(file, use, custom);
      EXPECT_EQ(FolderOf(file.value), folder) << anchor;
      EXPECT_EQ(PathOf(file.value), folder + "out/a") << anchor;
    };
    expect(here + "/" + end, "", "", 0, "c");
    expect(here + "/m.zon" + end, "m.zon");
    expect(here + "./m.zon" + end, "./m.zon");
    expect(here + "/cfg/m.zon" + end, "cfg/m.zon");
    expect("/p/m.zon" + end, "/p/m.zon");
    expect("r\\/p/m.zon" + end, "/p/m.zon", "r\\", 1, "");
    expect("c", "m.zon", "/r", -2, "c");
  }
  fs::current_path(host::FolderPath());
}

TEST(Results, SettingsAreTheRoots) {
  const Sample file;
  int use = -1;
  char folder[] = "kept";
  zonSetProjectResultRoot(file, "/r");
  EXPECT_STREQ(zonGetProjectResultRoot(file.value), "/r");
  zonSetCustomResultFolder(file, -3, "c\\d");
  EXPECT_EQ(zonGetCustomResultFolder2(file.value, &use, folder, 3), -1);
  EXPECT_EQ(zonGetCustomResultFolder2(nullptr, &use, folder, 5), -2);
  EXPECT_EQ(use, -3);
  EXPECT_STREQ(folder, "kept");
  zonGetCustomResultFolder(file.value, nullptr, folder);
  EXPECT_STREQ(folder, "c\\d");
  EXPECT_EQ(zonGetCustomResultFolder2(file.value, nullptr, folder, 4), 0);
  const host::File treeless(host::Load("[A"));
  zonGetErrorGlb();
  for (void* handle : {static_cast<void*>(nullptr), file.value, static_cast<void*>(treeless)}) {
    host::Messages();
    zonSetProjectResultRoot(handle, "x");
    EXPECT_EQ(zonGetErrorGlb(), handle == treeless ? 1006 : 1005);
    zonSetCustomResultFolder(handle, 1, "x");
    EXPECT_EQ(zonGetErrorGlb(), handle == treeless ? 1006 : 1005);
    EXPECT_EQ(host::Messages().size(), 2U);
  }
  zonConstructResultFolderPathName();
  zonGetResultFolderPath(file.value, nullptr);
  EXPECT_EQ(host::Heard(), "0");
  CzonKeyword alone;
  EXPECT_DEATH(zonGetResultFolderPath(nullptr, folder), "^zondll: .*`pOwner != 0'");
  EXPECT_DEATH(zonGetResultFolderPath(static_cast<CzonBase*>(&alone), folder), "zondll.*List");
}

TEST(Results, NamesAreAddedAndFound) {
  for (const std::string name : {"/x", "\\x", ""}) {
    const Sample file(name.c_str());
    EXPECT_EQ(zonAddResultFilenameS(file, name.c_str()), 0);
    const std::string shown = (name[0] == '/' ? "file " : "string ") + name;
    EXPECT_EQ(host::ShowTree(file), "{A{k(" + shown + ", " + shown + ")}}");
    const char* found = nullptr;
    CString copied;
    EXPECT_EQ(zonGetParamResultFilename(file.section, "K", &copied, 1, 2), 1);
    EXPECT_EQ(zonGetParamResultFilename(file.section, "K", &found, 1, 1), 1);
    EXPECT_EQ(found, name);
    EXPECT_EQ(copied, name.c_str());
    // The path function stores the first eight bytes of the path as if they were an address.
    const std::string custom(name.empty() ? 500 : 1, 'l');
    zonSetCustomResultFolder(file, 1, custom.c_str());
    EXPECT_EQ(zonGetParamResultFilePath(file.section, "k", &found, 1, 1), 1);
    const std::string path = (name[0] == '/' ? "" : custom) + name + std::string(8, '\0');
    EXPECT_EQ(std::memcmp(&found, path.data(), sizeof found), 0) << name;
  }
  EXPECT_EQ(zonAddResultFilenameS(nullptr, nullptr), 1005);
  const Sample file;
  zonAddString(file, "/a");
  void* rooted = host::ValueOf(file, 2);
  EXPECT_EQ(FolderOf(rooted), "");
  EXPECT_EQ(PathOf(rooted), "/a");
  for (void* other : {static_cast<void*>(nullptr), file.section}) {
    char path[] = "kept";
    zonGetResultFilenamePath(other, path);
    EXPECT_EQ(zonGetResultFilenamePath2(other, path, sizeof path), -2);
    EXPECT_EQ(zonGetResultFilename(other), nullptr) << path;
    EXPECT_STREQ(path, "kept");
  }
  EXPECT_EQ(host::Messages().size(), 3U);
}

}  // namespace
