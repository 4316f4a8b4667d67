// Values of the command line as the texts of a parameter file.
#ifndef ZON_TOOL_VALUETEXT_H
#define ZON_TOOL_VALUETEXT_H

#include <optional>
#include <string>
#include <vector>

namespace tool {

// The text between two marks; single quotes in it are doubled if they are the mark.
std::string Between(char mark, const std::string& text);

// The kinds are those of zonxKind.
class ValueText {
 public:
  ValueText();
  ValueText(const ValueText&) = delete;
  ValueText& operator=(const ValueText&) = delete;
  ~ValueText();

  // How many values the text has as a file has them; 0 if a file cannot have it.
  int Count(const std::string& text);
  // The kinds of the values of a text; none if a file cannot have it.
  std::vector<int> Kinds(const std::string& text);
  // The kind of a text with one value; 0 for any other.
  int KindOf(const std::string& text);

  // The text of a value of this kind. A string, file name or date-time may be given without its
  // marks, a real without a point. Nothing if the given text is no value of the kind.
  std::optional<std::string> OfKind(int kind, const std::string& given);
  // The text of a string or file name, whatever marks the given text has.
  std::optional<std::string> Quoted(int kind, const std::string& given);
  // Sets value n of a keyword without a change of the others, whose number it does not depend on.
  // False if the library would spell the value otherwise than the text.
  bool SetAlone(void* keyword, unsigned int n, const std::string& text);

  // Whether a section or keyword can have the name.
  bool IsName(const std::string& name);

 private:
  void* file_ = nullptr;  // with one keyword
};

}  // namespace tool

#endif
