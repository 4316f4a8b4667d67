// The edits that bring a text to a tree.
//
// The tree of the text (`before`) is aligned with the wanted tree (`after`), section by section. A node that
// was loaded from the text knows its place in it (tree/zonnodetext.h), so it is paired with the node of
// the same place, whatever it holds now; other nodes are paired by content and then by name. What is not
// paired was removed or added. Only the characters of what differs are replaced.
//
// Invariant: edits do not overlap. An item is replaced or erased within its own lines; what is added is
// inserted at the end of a line that stays, or before a line that begins with the next section.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONREWRITER_H
#define ZON_SAVING_ZONREWRITER_H

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "saving/zonalignment.h"
#include "saving/zonsavedtree.h"
#include "saving/zonsourcelayout.h"
#include "saving/zontextedits.h"

namespace zon {

class Rewriter {
 public:
  explicit Rewriter(const FileText& text);

  // May throw std::bad_alloc.
  void Rewrite(const CzonTargetList& before, const CzonTargetList& after);

  TextEdits& Edits() { return edits_; }

 private:
  using Nodes = std::vector<const CzonNamedNode*>;
  using Values = std::vector<const CzonNode*>;

  // A section of the text and the one that it is to become.
  struct Section {
    const CzonNamedNode* before;
    const CzonNamedNode* after;
  };

  // Where an item can be added.
  struct Anchor {
    const char* place;             // the end of what stays before it
    std::string_view indentation;  // of the lines that are added
    bool isSection;
  };

  const char* OriginOf(const CzonNamedNode& node) const;
  Alignment Align(const Nodes& before, const Nodes& after) const;

  void RewriteSection(const Section& section);
  // Returns the last line that stays; null if none does.
  const CzonNamedNode* RewriteLines(const Section& section, const SectionParts& before,
                                    const SectionParts& after);
  void RewriteSections(const Section& section, const SectionParts& before,
                       const SectionParts& after, const CzonNamedNode* lastLine);
  void RewriteHeader(const CzonNamedNode& before, const CzonNamedNode& after);
  void RewriteKeyword(const CzonNamedNode& before, const CzonNamedNode& after);
  void RewriteValues(const KeywordLayout& layout, const Values& before, const Values& after);
  void RewriteValue(const ValueLayout& layout, const CzonNode* before, const CzonNode* after);
  void RewriteRemark(const Span& place, const CzonNode* before, const CzonNode* after);
  void EraseValue(const KeywordLayout& layout, std::size_t n, bool isBehindOthers);
  void InsertValues(const KeywordLayout& layout, std::size_t n, const Values& values);
  void Erase(const CzonNamedNode& owner, const CzonNamedNode& item);
  void EraseItem(const char* previousEnd, const char* begin, const char* end, bool isSection);
  const char* EndBefore(const CzonNamedNode& owner, const CzonNamedNode& item) const;
  std::string_view InnerIndentation(const CzonNamedNode& section);
  Anchor AnchorOf(const CzonNamedNode& section, const CzonNamedNode* previous);
  void InsertAfter(const Anchor& anchor, const Nodes& items);
  void InsertBefore(const CzonNamedNode& owner, const CzonNamedNode& next, const Nodes& sections);

  SourceLayout layout_;
  std::string_view text_;
  TextEdits edits_;
  std::vector<Section> open_;
  std::deque<std::string> indentations_;
};

}  // namespace zon

#endif
