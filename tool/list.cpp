#include <iostream>

#include <zon.h>
#include <zonclasses.h>

#include "tool/commands.h"
#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

// The children in the order of the file, each by its whole path, which other commands take. Default
// definitions are no keywords and are left out.
void Print(void* section, const std::string& path, const Listing& listing) {
  for (unsigned int n = 1; void* node = zonNodeByNum(section, n); ++n) {
    const std::string own = path + NameOf(node);
    if (zonIsSection(node) != 0) {
      std::cout << own << "/\n";
      if (listing.recursive) Print(node, own + '/', listing);
    } else if (zonGetSyntaxClass(node) == kZonKeyword) {
      std::cout << own;
      if (listing.withValues) std::cout << " = " << LoadedValues(node);
      std::cout << '\n';
    }
  }
}

}  // namespace

Status List(const Listing& listing) {
  const Source source(listing.file);
  if (source.Problem() != kFine) return source.Problem();
  void* section = listing.path.empty()
                      ? source.Root()
                      : zonFindSectionByHandle(source.File(), listing.path.c_str());
  if (section == nullptr) {
    Say(source.From().Name() + ": there is no section " + listing.path);
    return kFindings;
  }
  const bool open = !listing.path.empty() && listing.path.back() != '/';
  Print(section, listing.path + (open ? "/" : ""), listing);
  return kFine;
}

}  // namespace tool
