// A reader of the events of a JSON parser. Nodes are in one list and refer to each other by number,
// so neither reading nor releasing a deep tree recurses. The parser reads through an iterator that
// counts, so each event has a place in the text.
// Tested by tests/json.t.
#include "tool/jsontree.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include <nlohmann/json.hpp>

namespace tool {
namespace {

using Json = nlohmann::json;

// An iterator over a text that stores how many characters were read.
class Cursor {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Cursor(const char* at, std::size_t* count) : at_(at), count_(count) {}

  const char& operator*() const { return *at_; }
  Cursor& operator++() {
    ++at_;
    ++*count_;
    return *this;
  }
  bool operator==(const Cursor& other) const { return at_ == other.at_; }
  bool operator!=(const Cursor& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  std::size_t* count_;
};

constexpr std::string_view kLatin1 = "-latin1";

struct NamedMember {
  const char* name;
  JsonMember member;
};

constexpr NamedMember kMembers[] = {
    {"file", kJsonFile},         {"sections", kJsonSections}, {"kind", kJsonKind},
    {"name", kJsonName},         {"multi", kJsonMulti},       {"remark", kJsonRemark},
    {"children", kJsonChildren}, {"values", kJsonValues},     {"value", kJsonValue},
    {"text", kJsonText},         {"real", kJsonReal},         {"items", kJsonItems},
    {"line", kJsonLine},         {"column", kJsonColumn}};

// Bytes from a text whose characters are those of Latin-1. False if one of them is not.
bool ToLatin1(std::string& text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead >= 0xC4) return false;
    if (lead < 0x80) {
      bytes += text[at];
    } else {
      ++at;
      bytes +=
          static_cast<char>(((lead & 0x03) << 6) | (static_cast<unsigned char>(text[at]) & 0x3F));
    }
  }
  text = std::move(bytes);
  return true;
}

// The parser's message without its number and its place.
std::string MessageOf(const std::string& text) {
  const std::size_t place = text.find(": ");
  if (text.find("parse error at line") != std::string::npos && place != std::string::npos)
    return text.substr(place + 2);
  const std::size_t bracket = text.find("] ");
  return bracket == std::string::npos ? text : text.substr(bracket + 2);
}

class Reader : public nlohmann::json_sax<Json> {
 public:
  Reader(const std::size_t* count, JsonTree* tree) : count_(count), tree_(tree) {
    tree_->nodes.emplace_back();
  }

  bool null() override { return skipped_ > 0 || Fail("null is not expected"); }

  bool boolean(bool value) override {
    if (skipped_ > 0) return true;
    if (!IsMember(kJsonMulti | kJsonValue)) return Fail("a boolean is not expected here");
    if (member_ == kJsonMulti) {
      Node().isMulti = value;
    } else {
      Node().value = value;
    }
    return true;
  }

  bool number_integer(std::int64_t value) override {
    return Number(static_cast<double>(value), std::to_string(value));
  }
  bool number_unsigned(std::uint64_t value) override {
    return Number(static_cast<double>(value), std::to_string(value));
  }
  bool number_float(double value, const std::string& text) override { return Number(value, text); }

  bool string(std::string& text) override {
    if (skipped_ > 0) return true;
    if (!IsMember(kJsonFile | kJsonKind | kJsonName | kJsonRemark | kJsonText | kJsonValue))
      return Fail("a text is not expected here");
    if (isLatin1_ && !ToLatin1(text)) return Fail("a character is not in Latin-1");
    Store(std::move(text));
    return true;
  }

  bool binary(Json::binary_t&) override { return Fail("bytes are not expected"); }

  bool start_object(std::size_t) override {
    if (skipped_ > 0) return Skip();
    if (open_.empty()) {
      open_.push_back({0, false});
      return true;
    }
    if (!open_.back().isInList) return Fail("an object is not expected here");
    const std::size_t number = tree_->nodes.size();
    JsonNode& owner = Node();
    (owner.lastChild != 0 ? tree_->nodes[owner.lastChild].next : owner.firstChild) = number;
    owner.lastChild = number;
    tree_->nodes.emplace_back().offset = *count_;
    open_.push_back({number, false});
    return true;
  }

  bool key(std::string& name) override {
    if (skipped_ > 0) return true;
    const auto suffix =
        name.size() < kLatin1.size() ? std::string::npos : name.size() - kLatin1.size();
    isLatin1_ = suffix != std::string::npos && name.compare(suffix, kLatin1.size(), kLatin1) == 0;
    const std::string member = isLatin1_ ? name.substr(0, suffix) : name;
    const auto* found = std::find_if(std::begin(kMembers), std::end(kMembers),
                                     [&](const NamedMember& one) { return one.name == member; });
    if (found == std::end(kMembers)) return Fail("`" + name + "` is no member of an object");
    member_ = found->member;
    if (Node().Has(member_)) return Fail("`" + name + "` occurs twice in an object");
    Node().members |= member_;
    return true;
  }

  bool end_object() override {
    if (skipped_ > 0) return EndSkipped();
    open_.pop_back();
    return true;
  }

  bool start_array(std::size_t) override {
    if (skipped_ > 0) return Skip();
    if (IsMember(kJsonItems)) return Skip();
    if (!IsMember(kJsonSections | kJsonChildren | kJsonValues))
      return Fail("a list is not expected here");
    open_.back().isInList = true;
    return true;
  }

  bool end_array() override {
    if (skipped_ > 0) return EndSkipped();
    open_.back().isInList = false;
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    tree_->error = MessageOf(error.what());
    tree_->offset = position;
    return false;
  }

 private:
  struct Open {
    std::size_t node;
    bool isInList;  // in the list of its children
  };

  JsonNode& Node() { return tree_->nodes[open_.back().node]; }

  bool IsMember(unsigned int members) const {
    return !open_.empty() && !open_.back().isInList && (member_ & members) != 0;
  }

  bool Skip() {
    ++skipped_;
    return true;
  }
  bool EndSkipped() {
    --skipped_;
    return true;
  }

  bool Number(double number, const std::string& text) {
    if (skipped_ > 0) return true;
    if (!IsMember(kJsonLine | kJsonColumn | kJsonReal | kJsonValue))
      return Fail("a number is not expected here");
    if (member_ == kJsonReal) Node().real = number;
    if (member_ == kJsonValue) Node().value = JsonNumber{number, text};
    return true;
  }

  void Store(std::string text) {
    JsonNode& node = Node();
    switch (member_) {
      case kJsonKind:
        node.kind = std::move(text);
        break;
      case kJsonName:
        node.name = std::move(text);
        node.offset = *count_;
        break;
      case kJsonRemark:
        node.remark = std::move(text);
        break;
      case kJsonText:
        node.text = std::move(text);
        break;
      case kJsonValue:
        node.value = std::move(text);
        break;
      default:  // the name of the file
        break;
    }
  }

  bool Fail(const std::string& message) {
    tree_->error = message;
    tree_->offset = *count_;
    return false;
  }

  const std::size_t* const count_;
  JsonTree* const tree_;
  std::vector<Open> open_;
  JsonMember member_ = kJsonFile;  // the last key
  bool isLatin1_ = false;          // of the last key
  std::size_t skipped_ = 0;        // how many lists and objects of items are open
};

}  // namespace

const char* NameOf(JsonMember member) {
  return std::find_if(std::begin(kMembers), std::end(kMembers),
                      [&](const NamedMember& one) { return one.member == member; })
      ->name;
}

JsonTree ReadJsonTree(const std::string& text) {
  JsonTree tree;
  std::size_t count = 0;
  Reader reader(&count, &tree);
  Json::sax_parse(Cursor(text.data(), &count), Cursor(text.data() + text.size(), &count), &reader);
  return tree;
}

}  // namespace tool
