#include "files.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace host {

namespace {

struct Folder {
  Folder() {
    path = std::filesystem::temp_directory_path() / "zon-test-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) std::abort();
  }
  ~Folder() {
    if (getpid() == owner) std::filesystem::remove_all(path);
  }
  std::string path;
  pid_t owner = getpid();  // a forked process leaves the folder in place
};

}  // namespace

std::string FolderPath() {
  static const Folder folder;
  return folder.path;
}

std::string WriteFile(const std::string& name, const std::string& content) {
  std::string path = FolderPath() + "/" + name;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string ReadFile(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::string ReadFileWithoutDates(const std::string& path) {
  std::string text = ReadFile(path);
  for (std::size_t at; (at = text.find("// Created")) != std::string::npos;) {
    text.erase(at, text.find('\n', at) + 1 - at);
  }
  return text;
}

int LowestFreeDescriptor() {
  const int file = dup(0);
  close(file);
  return file;
}

void* Load(const std::string& content) {
  return zonLoadFile(WriteFile("load.zon", content).c_str(), 0);
}

}  // namespace host
