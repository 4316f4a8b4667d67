// A host that defines all four hooks and hears the library in each: host [FILE...] FAULTY-FILE
#include <iostream>
#include <string>

#include <zon.h>

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

int main(int argc, char** argv) {
  zonGetInt(nullptr);
  void* file = zonLoadFile(argv[argc - 1], 0);
  if (file != nullptr) zonClose(&file);
  std::cout << heard << "\n";
  return heard == "Invalid zonNode; Error 1 Missing | harbour-faulty.zon 10 0" ? 0 : 1;
}
