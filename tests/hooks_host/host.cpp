// A host that defines all four hooks and hears the library in each: host [FILE...] FAULTY-FILE
// It also has a class and data in common with the library.
#include <iostream>
#include <string>

#include <zon.h>
#include <zonclasses.h>

static std::string heard;

void MessageHook(const char* text) {
  heard += text;
}

void ReportHook(const char* pattern, int severity, void* arguments) {
  heard += std::string("; ").append(pattern, 5) + " " + std::to_string(severity);
  heard += " " + (arguments != nullptr ? *static_cast<std::string*>(arguments) : "no words");
}

// The chain is a text here: the words, and what follows them.
static std::string words;

static void* Chain(const std::string& word, void* rest) {
  words = word + (rest != nullptr ? " " + words : "");
  return &words;
}

void* ReportArgString(const char* text, void* rest) {
  const std::string word = text;
  return Chain(word.substr(word.rfind('/') + 1), rest);
}

void* ReportArgInt(int value, void* rest) {
  return Chain(std::to_string(value), rest);
}

static bool SharesClasses() {
  struct Mine : CzonSection {};
  void* file = zonCreate();
  auto* mine = new Mine;
  static_cast<CzonData*>(static_cast<CzonBase*>(file))->GetRoot()->AddSection(mine);
  auto* found = static_cast<CzonNode*>(static_cast<CzonBase*>(zonTargetByNum(file, 1)));
  const bool isMine = dynamic_cast<CzonSection*>(found) == mine;
  const bool sharesText = &mine->GetRemark() == &CzonNode::empty_string;
  zonClose(&file);
  return isMine && sharesText;
}

int main(int argc, char** argv) {
  zonGetInt(nullptr);
  void* file = zonLoadFile(argv[argc - 1], 0);
  if (file != nullptr) zonClose(&file);
  std::cout << heard << "\n";
  return heard == "Invalid zonNode; Error 1 Missing | harbour-faulty.zon 10 0" && SharesClasses()
             ? 0
             : 1;
}
