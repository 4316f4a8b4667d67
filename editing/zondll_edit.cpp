// The exported editing functions. Tested by tests/edit_test.cpp.
#include <typeinfo>

#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "base/zonnumber.h"
#include "editing/zonedit.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreal.h"
#include "tree/zonstring.h"

using zon::NodeAccess;
using zon::TextOf;

namespace {

const char* TextOfRefusal(int code) {
  switch (code) {
    case zon::kErrNode:
      return "Invalid zonNode";
    case zon::kErrTargetList:
      return "Invalid zonNode (CzonTargetList)";
    case zon::kErrSection:
      return "Invalid zonNode (CzonSection)";
    case zon::kErrNamedNode:
      return "Invalid zonNode (CzonKeyword)";
    default:
      return "Invalid zonNode (CzonParam)";
  }
}

// Checks the node and runs the edit. Returns 0, or after a report the code of the error.
template <class F>
int Edit(void* node, F&& edit) {
  return zon::Guarded(zon::kErrNode, static_cast<int>(zon::kErrNode), [&]() -> int {
    auto* checked = zon::Require<CzonNode>(node);
    if (checked == nullptr) return zon::kErrNode;
    try {
      edit(*checked);
      return 0;
    } catch (const zon::Refusal& refusal) {
      zon::RaiseError(refusal.code);
      zon::SendMessage(TextOfRefusal(refusal.code));
      return refusal.code;
    }
  });
}

// The same for an edit that makes a node; null on failure.
template <class F>
void* Insert(void* node, F&& insert) {
  CzonBase* inserted = nullptr;
  Edit(node, [&](CzonNode& checked) { inserted = insert(checked); });
  return inserted;
}

template <class T, class F>
void* InsertParameter(void* keyword, unsigned int position, F&& fill) {
  return Insert(keyword, [&](CzonNode& node) {
    CzonKeyword& owner = zon::RequireKeyword(node);
    auto param = std::make_unique<T>();
    fill(*param);
    zon::InsertParam(owner, param.get(), position);
    return param.release();
  });
}

// Sets a value of class T in place. Replaces a value of any other class by a new T.
template <class T, class F>
void Modify(CzonNode& param, F&& fill) {
  if (typeid(param) == typeid(T)) return fill(static_cast<T&>(param));
  auto fresh = std::make_unique<T>();
  fill(*fresh);
  zon::ReplaceParam(param, fresh.get());
  static_cast<void>(fresh.release());  // owned by the tree
}

template <class T, class F>
int ModifyParameter(void* keyword, unsigned int n, F&& fill) {
  return Edit(keyword, [&](CzonNode& node) {
    Modify<T>(zon::RequireParam(zon::RequireKeyword(node), n), fill);
  });
}

// The same for reals. A CzonReal, which was read from a file, is set in place by both precisions.
template <class T, class F>
int ModifyReal(void* keyword, unsigned int n, double value, const zon::NumberText& text, F&& fill) {
  return Edit(keyword, [&](CzonNode& node) {
    CzonNode& param = zon::RequireParam(zon::RequireKeyword(node), n);
    if (typeid(param) == typeid(CzonReal)) {
      NodeAccess::SetReal(static_cast<CzonReal&>(param), value, text.View());
    } else {
      Modify<T>(param, fill);
    }
  });
}

// Return the functions that set the value of a node.
template <class Number>
auto SetValue(Number number) {
  return
      [number](auto& value) { NodeAccess::SetValue(value, number, NodeAccess::GetArena(value)); };
}
auto SetText(const char* text) {
  return [text](CzonParam& value) {
    NodeAccess::SetText(value, TextOf(text), NodeAccess::GetArena(value));
  };
}
void SetNothing(CzonParam&) {}

}  // namespace

extern "C" {

void* zoneInsertNewSection(void* parent, const char* name, unsigned int position) {
  return Insert(parent, [&](CzonNode& node) {
    CzonTargetList& owner = zon::RequireList(node);
    auto section = std::make_unique<CzonSection>(TextOf(name), 0, 0);
    zon::InsertSection(owner, section.get(), position);
    return section.release();
  });
}

void* zoneInsertNewKeyword(void* section, const char* name, unsigned int position) {
  return Insert(section, [&](CzonNode& node) {
    CzonSection& owner = zon::RequireSection(node);
    auto keyword = std::make_unique<CzonKeyword>(TextOf(name), 0, 0);
    zon::InsertKeyword(owner, keyword.get(), position);
    return keyword.release();
  });
}

void* zoneInsertParameterInt(void* keyword, unsigned int position, int value) {
  return InsertParameter<CzonInt>(keyword, position, SetValue(value));
}
void* zoneInsertParameterFloat(void* keyword, unsigned int position, float value) {
  return InsertParameter<CzonFloat>(keyword, position, SetValue(value));
}
void* zoneInsertParameterDouble(void* keyword, unsigned int position, double value) {
  return InsertParameter<CzonDouble>(keyword, position, SetValue(value));
}
void* zoneInsertParameterBool(void* keyword, unsigned int position, int value) {
  return InsertParameter<CzonBool>(keyword, position, SetValue(value != 0));
}
void* zoneInsertParameterString(void* keyword, unsigned int position, const char* value) {
  return InsertParameter<CzonString>(keyword, position, SetText(value));
}
void* zoneInsertParameterFilename(void* keyword, unsigned int position, const char* value) {
  return InsertParameter<CzonFilename>(keyword, position, SetText(value));
}
void* zoneInsertParameterUndefined(void* keyword, unsigned int position) {
  return InsertParameter<CzonUndefinedPar>(keyword, position, SetNothing);
}
void* zoneInsertParameterDefault(void* keyword, unsigned int position) {
  return InsertParameter<CzonDefaultPar>(keyword, position, SetNothing);
}

int zoneDeleteSectionByNum(void* parent, unsigned int n) {
  return Edit(parent, [&](CzonNode& node) {
    CzonSection* section = zon::RequireList(node).SectionByNum(n);
    if (section == nullptr) throw zon::Refusal{zon::kErrSection};
    zon::DeleteNode(*section);
  });
}
int zoneDeleteSectionByNameNum(void* parent, const char* name, unsigned int n) {
  return Edit(parent, [&](CzonNode& node) {
    CzonSection* section = zon::RequireList(node).SectionByNameNum(name, n);
    if (section == nullptr) throw zon::Refusal{zon::kErrSection};
    zon::DeleteNode(*section);
  });
}
int zoneDeleteKeywordByNum(void* section, unsigned int n) {
  return Edit(section, [&](CzonNode& node) {
    CzonKeyword* keyword = zon::RequireSection(node).KeywordByNum(n);
    if (keyword == nullptr) throw zon::Refusal{zon::kErrNamedNode};
    zon::DeleteNode(*keyword);
  });
}
int zoneDeleteKeywordByNameNum(void* section, const char* name, unsigned int n) {
  return Edit(section, [&](CzonNode& node) {
    CzonKeyword* keyword = zon::RequireSection(node).KeywordByNameNum(name, n);
    if (keyword == nullptr) throw zon::Refusal{zon::kErrNamedNode};
    zon::DeleteNode(*keyword);
  });
}
int zoneDeleteParameterByNum(void* keyword, unsigned int n) {
  return Edit(keyword, [&](CzonNode& node) {
    zon::DeleteNode(zon::RequireParam(zon::RequireKeyword(node), n));
  });
}
int zoneDeleteNode(void* node) {
  return Edit(node, [](CzonNode& checked) { zon::DeleteNode(checked); });
}

int zoneRenameSection(void* section, const char* name) {
  return Edit(section,
              [&](CzonNode& node) { zon::RenameNode(zon::RequireSection(node), TextOf(name)); });
}
int zoneRenameKeyword(void* keyword, const char* name) {
  return Edit(keyword,
              [&](CzonNode& node) { zon::RenameNode(zon::RequireKeyword(node), TextOf(name)); });
}

int zoneModifyParameterInt(void* keyword, unsigned int n, int value) {
  return ModifyParameter<CzonInt>(keyword, n, SetValue(value));
}
int zoneModifyParameterFloat(void* keyword, unsigned int n, float value) {
  // The float that would be written: clamped to the range of a float, 0 for a subnormal one.
  const float stored = NodeAccess::GetFloatView<CzonNumeric>(static_cast<double>(value));
  const auto text = zon::NumberText::OfFloat(stored);
  return ModifyReal<CzonFloat>(keyword, n, static_cast<double>(stored), text, SetValue(value));
}
int zoneModifyParameterDouble(void* keyword, unsigned int n, double value) {
  return ModifyReal<CzonDouble>(keyword, n, value, zon::NumberText::OfDouble(value),
                                SetValue(value));
}
int zoneModifyParameterBool(void* keyword, unsigned int n, int value) {
  return ModifyParameter<CzonBool>(keyword, n, SetValue(value != 0));
}
int zoneModifyParameterString(void* keyword, unsigned int n, const char* value) {
  return ModifyParameter<CzonString>(keyword, n, SetText(value));
}
int zoneModifyParameterFilename(void* keyword, unsigned int n, const char* value) {
  return ModifyParameter<CzonFilename>(keyword, n, SetText(value));
}

}  // extern "C"
