// The written form of sections, keywords, default definitions and file roots. Values are written by
// the Write of their classes.
//
// WriteChildren visits the tree depth first with a stack of positions on the heap. Only nodes of
// exactly the class CzonSection are put on the stack; every other node, also of a host's class, is
// written by its virtual Write. Characters go to the stream unformatted (base/zonput.h), so locale,
// width and flags of the stream have no effect.
//
// Remarks, comments and the layout of the read file are not written. Reading what was written
// results in an equal tree: fuzz/write_fuzz.cpp. Tested by tests/write_test.cpp.
#include <cstdio>
#include <ctime>
#include <ostream>
#include <typeinfo>
#include <vector>

#include "base/zonenvironment.h"
#include "base/zonput.h"
#include "base/zonversion.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"

namespace {

constexpr int kIndentation = 3;

// In pieces of up to 48: deep trees need many. A negative count, of a root, writes nothing.
void PutBlanks(std::ostream& out, int count) {
  constexpr std::string_view kBlanks = "                                                ";
  for (; count > 0; count -= static_cast<int>(kBlanks.size())) {
    zon::Put(out, kBlanks.substr(0, static_cast<std::size_t>(count)));
  }
}

// Compatibility: existing files have the date in this form, padded in year and month only.
void PutHeader(std::ostream& out) {
  const std::tm now = zon::LocalTime();
  char created[128];
  std::snprintf(created, sizeof created, "// Created     : %04d-%02d-%d %d:%d:%d\n",
                now.tm_year + 1900, now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min,
                now.tm_sec);
  zon::Put(out, created);
  zon::Put(out, "// DLL         : ");
  zon::Put(out, zon::kDllId);
  zon::Put(out, "\n// Version     : ");
  zon::Put(out, zon::kBuildVersion);
  zon::Put(out, "\n\n");
}

void PutNameAndMark(std::ostream& out, const CzonNamedNode& node) {
  zon::Put(out, zon::NodeAccess::GetNameView(node));
  if ((node.GetFlags() & CzonNamedNode::kMulti) != 0) zon::Put(out, "()");
}

}  // namespace

void CzonNamedNode::Indent(std::ostream& out) const {
  PutBlanks(out, kIndentation * (GetLevel() - 1));
}

// Sections in sections are written without recursion, so that the depth of a tree costs no stack.
void CzonNamedNode::WriteChildren(std::ostream& out) const {
  struct Position {
    const CzonNamedNode* node;
    std::uint32_t next;
  };
  std::vector<Position> path{{this, 0}};
  // The class of the last child that is no section: a comparison of classes compares their names.
  const std::type_info* other = nullptr;
  while (!path.empty()) {
    Position& position = path.back();
    const zon::NodeSpan children = position.node->Children();
    if (position.next >= children.Size()) {
      if (position.node != this) static_cast<const CzonSection*>(position.node)->WriteEnd(out);
      path.pop_back();
      continue;
    }
    const CzonNode* child = children[position.next++];
    const std::type_info& kind = typeid(*child);
    if (&kind == other || kind != typeid(CzonSection)) {
      other = &kind;
      child->Write(out);
      continue;
    }
    const auto* section = static_cast<const CzonSection*>(child);
    section->WriteHead(out);
    path.push_back({section, 0});
  }
}

std::ostream& CzonNamedNode::Write(std::ostream& out) const {
  if (GetOwner() == nullptr) PutHeader(out);
  WriteChildren(out);
  return out;
}

std::ostream& CzonSection::Write(std::ostream& out) const {
  WriteHead(out);
  WriteChildren(out);
  WriteEnd(out);
  return out;
}

void CzonSection::WriteHead(std::ostream& out) const {
  Indent(out);
  zon::Put(out, '[');
  PutNameAndMark(out, *this);
  zon::Put(out, "]\n");
}

void CzonSection::WriteEnd(std::ostream& out) const {
  Indent(out);
  zon::Put(out, "EndSect  // ");
  zon::Put(out, zon::NodeAccess::GetNameView(*this));
  zon::Put(out, "\n\n");
}

std::ostream& CzonKeyword::Write(std::ostream& out) const {
  Indent(out);
  PutNameAndMark(out, *this);
  zon::Put(out, " = ");
  return WriteParms(out);
}

std::ostream& CzonDefaultDef::Write(std::ostream& out) const {
  Indent(out);
  zon::Put(out, "default (");
  zon::Put(out, zon::NodeAccess::GetNameView(*this));
  zon::Put(out, ") = ");
  return WriteParms(out);
}

std::ostream& CzonKeyword::WriteParms(std::ostream& out) const {
  bool isFirst = true;
  for (const CzonNode* param : Children()) {
    if (!isFirst) {
      zon::Put(out, ',');
      zon::Put(out, ' ');
    }
    isFirst = false;
    param->Write(out);
  }
  zon::Put(out, '\n');
  return out;
}
