// Prints a JSON document on standard output piece by piece, so that no tree of it is needed:
// objects, lists and scalars with commas, line ends and indentation.
#ifndef ZON_TOOL_JSONWRITER_H
#define ZON_TOOL_JSONWRITER_H

#include <cstddef>
#include <iostream>
#include <string>

#include <nlohmann/json.hpp>

namespace tool {

class JsonWriter {
 public:
  // An object or list that is opened with `onOneLine` has no line ends inside.
  void Open(char bracket, bool onOneLine = false);
  void Close(char bracket);
  void Key(const char* key);

  template <class T>
  void Put(const char* key, const T& value) {
    Key(key);
    Scalar(nlohmann::json(value).dump());
  }
  // The key gets the suffix "-latin1" if the text is not UTF-8.
  void PutText(const char* key, const std::string& text);
  // U+FFFD replaces what is not UTF-8, for documents whose keys are not free.
  void PutRepaired(const char* key, const std::string& text);

 private:
  void Scalar(const std::string& text);
  void Separate();
  void Indent() const { std::cout << '\n' << std::string(2 * depth_, ' '); }

  std::size_t depth_ = 0;
  std::size_t flat_ = 0;     // from this depth on there are no line ends; 0 if there are
  bool isFirst_ = true;      // no element of the innermost object or list is printed yet
  bool isAfterKey_ = false;  // set by Key: the next value needs no separator
};

}  // namespace tool

#endif
