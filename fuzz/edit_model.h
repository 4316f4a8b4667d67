// A simple model of a file, and an editor that makes the same random changes on both.
#ifndef ZON_FUZZ_EDIT_MODEL_H
#define ZON_FUZZ_EDIT_MODEL_H

#include <strings.h>
#include <zonx.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "fuzz.h"

namespace model {

using fuzz::Check;

struct Value {
  int value = 0;
  bool isReset = false;  // as for an Item
};

// Sections with keywords, and keywords with integers, in the order of the file.
struct Item {
  bool section = false;
  std::string name;
  std::vector<Item> children;  // of a section
  std::vector<Value> values;   // of a keyword
  int id = 0;                  // identifies the item when its place changes; 0 for the root
  bool isReset = false;        // set by a Copy onto it, cleared by the next change of its namesakes

  Item* Find(int wanted) {
    if (id == wanted) return this;
    for (Item& child : children) {
      if (Item* found = child.Find(wanted)) return found;
    }
    return nullptr;
  }
  Item* ParentOf(int wanted) {
    for (Item& child : children) {
      if (child.id == wanted) return this;
      if (Item* found = child.ParentOf(wanted)) return found;
    }
    return nullptr;
  }

  bool IsNamesakeOf(bool wantSection, const std::string& wanted) const {
    return section == wantSection && strcasecmp(name.c_str(), wanted.c_str()) == 0;
  }

  // All items of a kind below this one.
  void Collect(bool wantSection, std::vector<Item*>& found) {
    for (Item& child : children) {
      if (child.section == wantSection) found.push_back(&child);
      child.Collect(wantSection, found);
    }
  }

  std::size_t Count() const {
    std::size_t count = 1;
    for (const Item& child : children) count += child.Count();
    return count;
  }

  // The item after writing and loading: a keyword without values gets an undefined one.
  Item AsLoaded() const {
    Item loaded = *this;
    if (!section && id != 0 && values.empty()) loaded.values = {Value{}};
    loaded.isReset = false;
    for (Value& value : loaded.values) value.isReset = false;
    std::transform(children.begin(), children.end(), loaded.children.begin(),
                   [](const Item& child) { return child.AsLoaded(); });
    return loaded;
  }

  // The place of the n-th child of the kind; the end if there is none.
  std::size_t PlaceOf(bool wantSection, unsigned n) const {
    std::size_t place = 0;
    while (place < children.size() && (children[place].section != wantSection || --n != 0)) ++place;
    return place;
  }
};

inline void ExpectSame(const Item& model, void* node) {
  Check(zonGetNoNodes(node) == static_cast<int>(model.children.size()), "number of children");
  unsigned counts[2] = {0, 0};
  unsigned place = 0;
  for (const Item& item : model.children) {
    void* child = zonNodeByNum(node, ++place);
    Check(zonGetName(child) == item.name, "name");
    const char* name = item.name.c_str();
    const unsigned number = ++counts[item.section];
    unsigned instance = 0;
    int instances = 0;
    for (const Item& other : model.children) {
      if (!other.IsNamesakeOf(item.section, item.name)) continue;
      ++instances;
      if (&other <= &item) ++instance;
    }
    Check(zonGetInstanceNo(child) == (item.isReset ? 0 : static_cast<int>(instance)),
          "instance number");
    Check(zonGetNoInstances(child) == instances, "number of instances");
    Check((item.section ? zonSectionByNum : zonKeywordByNum)(node, number) == child, "by number");
    Check((item.section ? zonSectionByNameNum : zonKeywordByNameNum)(node, name, instance) == child,
          "by name and number");
    if (item.section) {
      ExpectSame(item, child);
      continue;
    }
    Check(zonGetNoParams(child) == static_cast<int>(item.values.size()), "number of values");
    for (unsigned v = 1; v <= item.values.size(); ++v) {
      const auto& [value, isReset] = item.values[v - 1];
      Check(zonGetInt(zonParamByNum(child, v)) == value, "value");
      Check(zonGetInstanceNo(zonParamByNum(child, v)) == (isReset ? 0 : static_cast<int>(v)),
            "number of a value");
    }
  }
  Check(zonGetNoSections(node) == static_cast<int>(counts[1]), "number of sections");
  Check(zonGetNoKeywords(node) == static_cast<int>(counts[0]),
        "number of keywords");  // the root has none
}

class Editor {
 public:
  // Returns a number of a range; chooses what happens.
  using Number = std::function<unsigned(unsigned from, unsigned to)>;
  Editor(void* file, Number number) : file_(file), number_(std::move(number)) {}

  const Item& Model() const { return root_; }

  void Step() {
    if (number_(0, 3) == 0) return Build();
    Item* section = &root_;
    void* node = zonGetRoot(file_);
    for (;;) {
      const std::size_t place = section->PlaceOf(true, number_(1, 3));
      if (place == section->children.size() || (section != &root_ && number_(0, 2) == 0)) break;
      node = NodeAt(node, place);
      section = &section->children[place];
    }
    if (number_(0, 7) == 0) return SetByPath(*section, node);
    unsigned action = number_(0, section == &root_ ? 4 : 10);
    if (section == &root_ && action == 4) action = 10;
    if (action < 2 || action == 4 || action == 5) {
      InsertNew(*section, node, action < 2);
    } else if (action == 8 || action == 9) {
      EditValues(*section, node);
    } else if (action == 10 && !section->children.empty()) {
      CopyOne(*section, node);
    } else if (!section->children.empty()) {
      EditOne(*section, node, action);
    }
  }

 private:
  std::string Name() {
    constexpr const char* kNames[] = {"a",   "A", "b", "grid", "GRID", "Grid2",
                                      "x_1", "c", "d", "e",    "f"};
    return kNames[number_(0, std::size(kNames) - 1)];
  }
  static std::vector<Item>::iterator At(Item& section, std::size_t place) {
    return section.children.begin() + static_cast<std::ptrdiff_t>(place);
  }
  void* NodeAt(void* node, std::size_t place) {
    return zonNodeByNum(node, static_cast<unsigned>(place + 1));
  }

  void InsertNew(Item& section, void* node, bool isSection) {
    const auto same = static_cast<unsigned>(
        std::count_if(section.children.begin(), section.children.end(),
                      [&](const Item& child) { return child.section == isSection; }));
    const unsigned position = number_(0, same + 2);
    const std::string name = Name();
    void* made =
        (isSection ? zoneInsertNewSection : zoneInsertNewKeyword)(node, name.c_str(), position);
    Check((made != nullptr) == (position <= same + 1), "place of an insertion");
    Check(zonGetErrorGlb() == (made != nullptr ? 0
                               : isSection     ? 1009
                                               : 1007),
          "code of an insertion");
    if (made == nullptr) return;
    const std::size_t place =
        position > 0 ? section.PlaceOf(isSection, position) : section.children.size();
    section.children.insert(At(section, place), Item{isSection, name, {}, {}, ++lastId_});
    Renumber(section, isSection, name);
    const std::string owner = zonGetNameGlb(node);
    Check(zonGetNameGlb(made) == (owner.empty() ? name : owner + "." + name), "global name");
  }

  // A call of the builder, which appends at the cursor.
  void Build() {
    const std::string name = Name();
    const unsigned call = number_(0, 4);
    const bool accepted = call == 0 ? open_ == 0 : call == 3 ? keyword_ != 0 : open_ != 0;
    const int code = call == 0   ? zonAddTargetS(file_, name.c_str())
                     : call == 1 ? zonAddSectionS(file_, name.c_str())
                     : call == 2 ? zonAddKeywordS(file_, name.c_str())
                     : call == 3 ? zonAddIntS(file_, 7)
                                 : zonEndSectionS(file_);
    Check(code == (accepted ? 0 : 2000), "code of the builder");
    if (!accepted) return;
    if (call == 3) {
      std::vector<Value>& values = root_.Find(keyword_)->values;
      values.push_back({7});
      return Renumber(values);
    }
    if (call == 4) return OpenSection(root_.ParentOf(open_)->id);
    Item& section = *root_.Find(open_);
    section.children.push_back(Item{call != 2, name, {}, {}, ++lastId_});
    Renumber(section, call != 2, name);
    if (call != 2) return OpenSection(lastId_);
    keyword_ = lastId_;
  }

  void OpenSection(int id) {
    open_ = id;
    keyword_ = 0;
  }

  // Moves the cursor out of an item that is removed, to the section around it.
  void Leave(Item& item, const Item& parent) {
    if (keyword_ != 0 && item.Find(keyword_) != nullptr) keyword_ = 0;
    if (open_ != 0 && item.Find(open_) != nullptr) OpenSection(parent.id);
  }

  // Each change of the items of a name, or of the values of a keyword, restores their numbers.
  static void Renumber(Item& section, bool isSection, const std::string& name) {
    for (Item& child : section.children) {
      if (child.IsNamesakeOf(isSection, name)) child.isReset = false;
    }
  }
  static void Renumber(std::vector<Value>& values) {
    for (Value& value : values) value.isReset = false;
  }
  static void RenumberRenamed(Item& section, const Item& item, const std::string& former) {
    if (item.IsNamesakeOf(item.section, former)) return;
    Renumber(section, item.section, former);
    Renumber(section, item.section, item.name);
  }

  void Renew(Item& copy) {
    copy.id = ++lastId_;
    copy.isReset = false;
    Renumber(copy.values);
    for (Item& child : copy.children) Renew(child);
  }

  void EditOne(Item& section, void* node, unsigned action) {
    const auto last = static_cast<unsigned>(section.children.size() - 1);
    const std::size_t from = number_(0, last);
    const std::size_t to = number_(0, last);
    Item copy = section.children[from];
    Renew(copy);
    if (action == 2) {
      Check(zoneDeleteNode(NodeAt(node, from)) == 0, "delete");
      Leave(section.children[from], section);
      section.children.erase(At(section, from));
      Renumber(section, copy.section, copy.name);
    } else if (action == 3) {
      const std::string name = section.children[from].name = Name();
      Check((copy.section ? zoneRenameSection : zoneRenameKeyword)(NodeAt(node, from),
                                                                   name.c_str()) == 0,
            "rename");
      RenumberRenamed(section, section.children[from], copy.name);
    } else if (action == 6 && last < 12) {
      const unsigned after = number_(0, 1);
      Check(zonInsert(NodeAt(node, from), NodeAt(node, to), static_cast<int>(after)) != nullptr,
            "insert");
      section.children.insert(At(section, to + after), copy);
      Renumber(section, copy.section, copy.name);
    } else if (action == 7) {
      const bool fits = copy.section == section.children[to].section;
      const unsigned long before = fuzz::messages;
      Check(zonCopy(NodeAt(node, from), NodeAt(node, to)) == fits, "copy");
      Check(fuzz::messages - before == (fits ? 0 : 1), "a message exactly if the nodes do not fit");
      if (!fits || from == to) return;
      Item& target = section.children[to];
      for (Item& child : target.children) Leave(child, target);
      Replace(section, target, std::move(copy));
    }
  }

  static void Replace(Item& section, Item& target, Item copy) {
    const std::string former = target.name;
    copy.id = target.id;
    copy.isReset = target.isReset;
    target = std::move(copy);
    RenumberRenamed(section, target, former);
  }

  static CzonNode& As(void* node) { return dynamic_cast<CzonNode&>(*static_cast<CzonBase*>(node)); }

  // The node of an item.
  void* NodeOf(int id) {
    std::vector<std::size_t> places;
    for (Item* parent = root_.ParentOf(id); parent != nullptr; parent = root_.ParentOf(id)) {
      std::size_t place = 0;
      while (parent->children[place].id != id) ++place;
      places.push_back(place);
      id = parent->id;
    }
    void* node = zonGetRoot(file_);
    for (; !places.empty(); places.pop_back()) node = NodeAt(node, places.back());
    return node;
  }

  // Copies by the class, from a source anywhere in the tree: above, below or beside the target.
  void CopyOne(Item& section, void* node) {
    const std::size_t place = number_(0, static_cast<unsigned>(section.children.size() - 1));
    Item& target = section.children[place];
    std::vector<Item*> sources;
    root_.Collect(target.section, sources);
    const Item& source = *sources[number_(0, static_cast<unsigned>(sources.size() - 1))];
    if (source.Count() > 30 || root_.Count() > 300) return;
    CzonNode& to = As(NodeAt(node, place));
    const CzonNode& from = As(NodeOf(source.id));
    if (&source == &target) return to.Copy(&from);
    Item copy = source;
    Renew(copy);
    for (Item& child : target.children) {
      dynamic_cast<CzonData&>(*static_cast<CzonBase*>(file_))
          .UpdateCurrentNode(&As(NodeOf(child.id)));
      Leave(child, target);
    }
    to.Copy(&from);
    Replace(section, target, std::move(copy));
    target.isReset = true;
  }

  // The n-th child of a name; null if there is none. *isNext: whether there is one less.
  static Item* Instance(Item& section, bool isSection, const std::string& name, unsigned n,
                        bool* isNext) {
    for (Item& child : section.children) {
      if (child.IsNamesakeOf(isSection, name) && --n == 0) return &child;
    }
    *isNext = n == 1;
    return nullptr;
  }

  // Adds a child after the last of its kind; a first keyword precedes all.
  Item& Create(Item& section, bool isSection, const std::string& name) {
    std::size_t place = isSection ? section.children.size() : 0;
    for (std::size_t n = 0; n < section.children.size(); ++n) {
      if (section.children[n].section == isSection) place = n + 1;
    }
    section.children.insert(At(section, place), Item{isSection, name, {}, {}, ++lastId_});
    Renumber(section, isSection, name);
    return section.children[place];
  }

  static void SetValue(std::vector<Value>& values, unsigned n, int value) {
    if (n <= values.size()) {
      values[n - 1].value = value;
      return;
    }
    values.push_back({value});
    Renumber(values);
  }

  // A path of a section and a keyword, either of which can be missing.
  void SetByPath(Item& section, void* node) {
    const std::string outer = Name(), inner = Name();
    const unsigned first = number_(1, 3), second = number_(1, 3);
    const int value = static_cast<int>(number_(0, 1000));
    bool isNext = true;
    Item* parent = Instance(section, true, outer, first, &isNext);
    Item* keyword = nullptr;
    if (parent != nullptr) keyword = Instance(*parent, false, inner, second, &isNext);
    const bool isSet = parent != nullptr ? isNext : isNext && second == 1;
    const std::string path =
        outer + ":" + std::to_string(first) + "/" + inner + ":" + std::to_string(second);
    Check(zonxSetInt64(node, path.c_str(), value) == (isSet ? ZONX_OK : ZONX_MISSING),
          "set by path", path);
    if (!isSet) return;
    if (parent == nullptr) parent = &Create(section, true, outer);
    if (keyword == nullptr) keyword = &Create(*parent, false, inner);
    SetValue(keyword->values, 1, value);
  }

  void EditValues(Item& section, void* node) {
    const std::size_t place = section.PlaceOf(false, number_(1, 4));
    if (place == section.children.size()) return;
    // A keyword has several values only if one is edited more than once.
    for (unsigned edits = number_(1, 6); edits > 0; --edits) {
      EditValue(section.children[place].values, NodeAt(node, place));
    }
  }

  void EditValue(std::vector<Value>& values, void* keyword) {
    const unsigned count = static_cast<unsigned>(values.size());
    const unsigned n = number_(0, count + 1);
    const int value = static_cast<int>(number_(0, 1000));
    const auto at = values.begin() + (n == 0 ? count : std::min(n - 1, count));
    const unsigned action = number_(0, 5);
    const std::string path = "[" + std::to_string(n) + "]";
    const bool there = n >= 1 && n <= count;
    if (action == 0) {
      Check(zoneInsertParameterInt(keyword, n, value) != nullptr, "value inserted");
      values.insert(at, Value{value});
      Renumber(values);
    } else if (action == 1) {
      Check(zoneModifyParameterInt(keyword, n, value) == (there ? 0 : 1012), "value modified");
      if (there) at->value = value;
    } else if (action == 4) {
      Check(zonxSetInt64(keyword, path.c_str(), value) == (n == 0 ? ZONX_BAD_ARGUMENT : ZONX_OK),
            "value set");
      if (n != 0) SetValue(values, n, value);
    } else if (action == 5) {
      Check(zonxRemove(keyword, path.c_str()) == (n == 0  ? ZONX_BAD_ARGUMENT
                                                  : there ? ZONX_OK
                                                          : ZONX_MISSING),
            "value removed");
      if (!there) return;
      values.erase(at);
      Renumber(values);
    } else if (action == 3) {
      if (!there || count == 1) return;
      const unsigned other = n == count ? 1 : n + 1;
      As(zonParamByNum(keyword, n)).Copy(&As(zonParamByNum(keyword, other)));
      *at = Value{values[other - 1].value, true};
    } else {
      Check(zoneDeleteParameterByNum(keyword, n) == (there ? 0 : 1012), "value deleted");
      if (there) {
        values.erase(at);
        Renumber(values);
      }
    }
    zonGetErrorGlb();
  }

  void* file_;
  Number number_;
  Item root_;
  int lastId_ = 0;
  int open_ = 0;  // the cursor: the ids of the open section and of the current keyword, 0 for none
  int keyword_ = 0;
};

}  // namespace model

#endif
