// The edits that bring a text to a tree.
//
// The text is read item by item (reader/zonitemreader.h) beside the sections of the tree. A node
// that was loaded from the text knows its place in it (tree/zonnodetext.h), so an item belongs to
// the node of its place, whatever that holds now; only the characters of what differs are replaced.
// Items and nodes between two that belong together are a gap. In most gaps there are only items,
// which were removed, or only nodes, which were added. If there are both, they are aligned by
// content and then by name (zonalignment.h), and an item that is paired so is rewritten as a text
// of its own.
//
// Invariant: edits do not overlap. An item is replaced or erased within its own lines; what is
// added is inserted at the end of a line that stays, or before a line that begins with the next
// section.
// Memory: the items of the open gaps. Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONREWRITER_H
#define ZON_SAVING_ZONREWRITER_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reader/zonitembuilder.h"
#include "saving/zonalignment.h"
#include "saving/zonplainlist.h"
#include "saving/zonsavedtree.h"
#include "saving/zonsourcelayout.h"
#include "saving/zontextedits.h"

namespace zon {

class Rewriter : public ItemVisitor {
 public:
  // Finds the edits; false if the text has an error. `knowsPlaces`: the text is the one that the
  // tree was loaded from or saved to last. May throw std::bad_alloc.
  static bool Rewrite(const std::shared_ptr<FileText>& text, bool knowsPlaces, SectionParts wanted,
                      TextEdits* edits);

  void OpenSection(const CzonNamedNode& header) override;
  void VisitLine(const CzonNamedNode& line, const char* end) override;
  void CloseSection(const char* begin, const char* end) override;

 private:
  using Nodes = std::vector<const CzonNamedNode*>;
  using Values = std::vector<const CzonNode*>;

  // An item of the text that belongs to no node so far.
  struct Item {
    const char* previousEnd;  // of the item or header before it
    const char* begin;
    const char* end;
    bool isSection;
    AlignmentKey content;
    AlignmentKey name;
  };

  // The lines, or the inner sections, of a section: the wanted ones, and how far they are done.
  struct Row {
    Nodes wanted;
    std::size_t next = 0;             // the first one that is not done
    std::size_t candidate = 0;        // the next one that has a place in the rest of the text
    std::vector<Item> items;          // of the text, since then
    const char* lastBegin = nullptr;  // of the last item that stays; null for none
    const char* lastEnd = nullptr;
  };

  // A section that is open.
  struct Level {
    const CzonNamedNode* header;  // in the text; null for the file
    const CzonNamedNode* node;    // that it belongs to; null for none, and for the file
    bool isFollowed;              // false: nothing in it is compared
    const char* previousEnd;      // of the item or header before the next one
    Row lines;
    Row sections;
    Item item;  // of a section that belongs to no node
  };

  Rewriter(const FileText& text, bool knowsPlaces, TextEdits& edits);

  Level& Top() { return levels_.back(); }
  const CzonNamedNode* Match(Row& row, const CzonNamedNode& node, std::size_t* place) const;
  void Finish(Level& level, Row& row, std::size_t wantedEnd, const Item* next);
  void RewriteGap(Level& level, Row& row, std::size_t wantedEnd, const Item* next);
  void RewriteItem(const Item& item, const CzonNamedNode& wanted);

  bool FinishValues(const CzonNamedNode& wanted, const CzonNamedNode& loaded);
  void RewriteKeyword(const CzonNamedNode& before, const CzonNamedNode& after);
  void RewriteHeader(const CzonNamedNode& before, const CzonNamedNode& after);
  void RewriteEndComment(const CzonNamedNode& before, const CzonNamedNode& after, const char* end);
  void RewriteValues(const KeywordLayout& layout, const Values& before, const Values& after);
  void RewriteValue(const ValueLayout& layout, const CzonNode* before, const CzonNode* after);
  void RewriteRemark(const Span& place, const CzonNode* before, const CzonNode* after);
  void EraseValue(const KeywordLayout& layout, std::size_t n, bool followsValue);
  void InsertValues(const KeywordLayout& layout, std::size_t n, const Values& values);

  void Change(const char* begin, const char* end, std::string by);
  void Erase(const Item& item);
  void EraseLines(const Item& item, const char* line, const char* next);
  void Insert(const Level& level, const Row& row, const Nodes& nodes, const Item* next);
  void InsertAfter(const char* place, std::string_view indentation, bool followsSection,
                   const Nodes& nodes);
  void InsertBefore(const Item& next, const Nodes& sections);
  std::string InnerIndentation(const Level& level, const Item* next) const;

  SourceLayout layout_;
  std::string_view text_;
  const bool knowsPlaces_;
  TextEdits& edits_;
  std::vector<Level> levels_;
  PlainListMatch listMatch_;  // of the present line
  const CzonNamedNode* pairedNode_ =
      nullptr;  // that the first item belongs to, wherever it is from
};

}  // namespace zon

#endif
