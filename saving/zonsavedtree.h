// Trees as they are saved: the parts of a section, whether two trees are the same data, and the
// plain form, which is the layout of zonWrite without its losses.
//
// The order between a line and a section of one section is no data: in the plain form and in a
// file, keywords that were added follow the last keyword, wherever the sections are.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONSAVEDTREE_H
#define ZON_SAVING_ZONSAVEDTREE_H

#include <string>
#include <string_view>
#include <vector>

#include "saving/zonalignment.h"

class CzonNamedNode;
class CzonNode;
class CzonTargetList;

namespace zon {

// The children of a section: keywords with default definitions, and sections.
struct SectionParts {
  explicit SectionParts(const CzonNamedNode& section);

  std::vector<const CzonNamedNode*> lines;
  std::vector<const CzonNamedNode*> sections;
  bool hasOthers = false;  // of a kind that no section of a file has
};

// The values of a keyword. One without values is saved with an empty place, which is null here.
std::vector<const CzonNode*> SavedValues(const CzonNamedNode& keyword);

// The data and the remark of a value. Null is an empty place.
bool IsSameSavedValue(const CzonNode* wanted, const CzonNode* loaded);

// Name, class, flags and remark.
bool IsSameHead(const CzonNamedNode& wanted, const CzonNamedNode& loaded);
bool HasSameValues(const CzonNamedNode& wanted, const CzonNamedNode& loaded);

// Keys of the name and class of a node, and of its whole content: that of a line, or that of the
// head of a section with those of its parts mixed in, in their order.
AlignmentKey KeyOfHead(const CzonNamedNode& node);
AlignmentKey KeyOfContent(const CzonNamedNode& node);
AlignmentKey MixKeys(AlignmentKey key, AlignmentKey more);

// The name with its marker, and "{remark}" after a blank if there is one.
void AppendName(std::string* out, const CzonNamedNode& node);
void AppendRemark(std::string* out, const CzonNode& node);

// `name = values` without indentation and line end.
void AppendLine(std::string* out, const CzonNamedNode& keyword);

// From the header to the EndSect and its comment, each line with the indentation and, but for the
// last, with the line end.
void AppendSection(std::string* out, const CzonNamedNode& section, std::string_view indentation,
                   std::string_view lineEnd);

// A whole file in the plain form.
std::string PlainForm(const CzonTargetList& root);

}  // namespace zon

#endif
