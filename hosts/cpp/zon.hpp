/** @file
 * zon for C++17: loads, queries, changes and saves parameter files. Header-only, over zon.h and
 * zonx.h.
 *
 * @code
 * #include <zon.hpp>
 *
 * zon::File file = zon::load("harbour.zon");           // throws zon::Error; what() has the reports
 * double length = file["Quay"]["Length"];              // throws with the place of the value
 * int cells = file["Run"]["Cells"].value_or(40);       // a default for what is missing
 * std::vector<double> weights = file["Run"]["Weights"].values<double>();
 * for (zon::Section quay : file.sections("Quay")) std::cout << quay.name() << quay.instance();
 * if (length > 200) throw file["Quay"]["Length"].error("longer than the harbour");
 * file["Quay"][2]["Length"] = 96.5;                    // what is missing is created
 * file.save();                                         // comments and layout stay
 * @endcode
 *
 * Classes. A File owns the tree. Section, Keyword and Value are views: pointers to a node, or
 * empty. An Item, the result of [], is a path that is looked up by each use; it is the only one
 * that can be assigned a value. What a class inherits from zon::detail (Finds, Reads, Node) is part
 * of its interface.
 *
 * Paths. A name in [], find(), section() and keyword() is a path, as in zonx.h:
 * "Quay:2/Berth/Draught". The case of A to Z does not count. [n] counts from 1.
 *
 * Errors. A failure throws zon::Error, out of memory std::bad_alloc. Queries of a view that is
 * empty, or of an item that is missing, do not throw: they return empty optionals, views, ranges
 * and texts. as() and the conversions need a value and throw if there is none. A malformed path
 * always throws.
 *
 * Lifetimes. A view is valid until its file is closed or its node is removed or replaced: assigning
 * a value of another kind replaces a Value. An Item is valid as long as the file or section that it
 * was made from. A std::string_view of a string is valid until its value changes or the file is
 * closed, one of a name until the node goes or is renamed. No view may be used after the File that
 * it belongs to, so a File that is needed later must have a name. A reference to a File does not
 * protect the tree: views of a const File can change it.
 *
 * Threads. Different files may be used in different threads at the same time, one file by one
 * thread at a time.
 *
 * Both C interfaces can be used on File::handle() and node(). A type is visible outside of a shared
 * library, a function is not: a library that includes this header exports nothing of it.
 */
#ifndef ZON_HPP
#define ZON_HPP

#include <zon.h>
#include <zonx.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

// Everything is hidden but the types that a host keeps as members of its own classes: g++ warns of
// a member whose type is less visible than the class. The functions of these types are hidden one
// by one.
/// @cond
#define ZON_TYPE __attribute__((visibility("default")))
#define ZON_LOCAL __attribute__((visibility("hidden")))
#define ZON_V1 v1 ZON_LOCAL
// NOLINTBEGIN(bugprone-macro-parentheses): the name of a class
#define ZON_LOCAL_MEMBERS(Class)                          \
  ZON_LOCAL Class() = default;                            \
  ZON_LOCAL Class(const Class&) = default;                \
  ZON_LOCAL Class(Class&&) noexcept = default;            \
  ZON_LOCAL Class& operator=(const Class&) = default;     \
  ZON_LOCAL Class& operator=(Class&&) noexcept = default; \
  ZON_LOCAL ~Class() = default;
// NOLINTEND(bugprone-macro-parentheses)
/// @endcond

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wattributes"
#endif

/** The library for C++. */
namespace zon {
// Keeps these names apart from those of a static library.
inline namespace ZON_V1 {

class Error;
class File;
class Item;
class Keyword;
class Section;
class Value;
template <class View>
class Range;

/** Ranges of views, from sections(), keywords() and values(). @{ */
using Sections = Range<Section>;
using Keywords = Range<Keyword>;
using Values = Range<Value>;
/** @} */

/* ---- Reports --------------------------------------------------------------------------------- */

/** How serious a report is. */
enum class Severity { error = ZONX_ERROR, warning = ZONX_WARNING, note = ZONX_NOTE };

/** What a node is. */
enum class Kind {
  none = 0, /**< no node */
  file = ZONX_FILE,
  section = ZONX_SECTION,
  keyword = ZONX_KEYWORD,
  definition = ZONX_DEFINITION,
  integer = ZONX_INTEGER,
  real = ZONX_REAL,
  boolean = ZONX_BOOLEAN,
  string = ZONX_STRING,
  filename = ZONX_FILENAME,
  placeholder = ZONX_PLACEHOLDER,
  substitution = ZONX_SUBSTITUTION,
  datetime = ZONX_DATETIME,
  unknown = ZONX_UNKNOWN,
  empty = ZONX_EMPTY,
  clob = ZONX_CLOB
};

/** A range of a text. Lines and columns count from 1, columns in bytes; 0: no place is known. */
struct ZON_TYPE Place {
  ZON_LOCAL_MEMBERS(Place)
  std::string file;            /**< as it was passed to load() */
  unsigned int line = 0;       /**< of the first character */
  unsigned int column = 0;     /**< of the first character */
  unsigned int end_line = 0;   /**< after the last character */
  unsigned int end_column = 0; /**< after the last character */
  std::size_t offset = 0;      /**< of the first character, in bytes from the start of the text */
  std::size_t length = 0;      /**< in bytes */
};

/** One finding. */
struct ZON_TYPE Report {
  ZON_LOCAL_MEMBERS(Report)
  Severity severity = Severity::error; /**< only errors make a load fail */
  std::string rule;                    /**< a word that never changes, such as "unclosed-section" */
  std::string message;                 /**< one line, without the place */
  std::string hint;                    /**< what to do about it, or empty */
  Place place;                         /**< where the mistake is */
  Place related;                       /**< e.g. the header of the unclosed section */
  std::string related_message;         /**< empty without a related place */
  std::string source_line;             /**< the text of place.line, if it is known */
  std::string text;                    /**< all of it as text, with source line and caret */
};

/** What a difference is, see diff(). */
enum class Change {
  added = ZONX_ADDED,
  removed = ZONX_REMOVED,
  different = ZONX_DIFFERENT,
  moved = ZONX_MOVED
};

/** One difference between two files. Valid as long as both files, unchanged. */
struct ZON_TYPE Difference {
  ZON_LOCAL_MEMBERS(Difference)
  /** The section, keyword or value in each of the two files; does not exist if it was added or
   *  removed, respectively. @{ */
  ZON_LOCAL Item before() const;
  ZON_LOCAL Item after() const;
  /** @} */

  Change change = Change::different; /**< what it is */
  std::string path;                  /**< of the file that has it, of `after` if both have it */
  void* before_node = nullptr;       /**< for the C interfaces */
  void* after_node = nullptr;        /**< for the C interfaces */
};

/** What several classes share, and what is internal. */
namespace detail {

/// @cond
class Collector;

// std::allocator under a name that keeps instances of the containers hidden.
template <class T>
struct Allocator : std::allocator<T> {
  Allocator() = default;
  template <class U>
  Allocator(const Allocator<U>& /*other*/) noexcept {}  // NOLINT: as every allocator
  template <class U>
  struct rebind {
    using other = Allocator<U>;
  };
};
/// @endcond

}  // namespace detail

/** An array of reports or of differences, which does not change: copies share it. */
template <class T>
class ZON_TYPE List {
 public:
  using value_type = T;            /**< a Report or a Difference */
  using const_iterator = const T*; /**< iterates over them */
  using iterator = const_iterator; /**< the same */
  ZON_LOCAL_MEMBERS(List)
  /** As of an array. */
  ZON_LOCAL const T* begin() const noexcept { return list_ != nullptr ? list_->data() : nullptr; }
  /** As of an array. */
  ZON_LOCAL const T* end() const noexcept { return begin() + size(); }
  /** As of an array. */
  ZON_LOCAL std::size_t size() const noexcept { return list_ != nullptr ? list_->size() : 0; }
  /** As of an array. */
  ZON_LOCAL bool empty() const noexcept { return size() == 0; }
  /** `n` counts from 0, as in an array. */
  ZON_LOCAL const T& operator[](std::size_t n) const noexcept { return begin()[n]; }

 private:
  friend class detail::Collector;
  std::shared_ptr<std::vector<T, detail::Allocator<T>>> list_;
};

using Reports = List<Report>;         /**< of a load, a check or a comparison with a template */
using Differences = List<Difference>; /**< of diff() */

/** What is thrown, unless out of memory. what() is the text of all reports. */
class Error : public std::runtime_error {
 public:
  Error(int status, const Reports& reports); /**< what() is their text */

  /** The zonxStatus, such as ZONX_MISSING; ZONX_OK for an error of the host. */
  int status() const noexcept { return status_; }

  /** Each with its place; a load can fail with many. Valid as long as the error. */
  const Reports& reports() const noexcept { return reports_; }

 private:
  Reports reports_;
  int status_;
};

/* ---- Internals ------------------------------------------------------------------------------- */

namespace detail {

/// @cond

template <class T, class... Types>
constexpr bool kIsOneOf = (std::is_same_v<T, Types> || ...);

// The types that can be read.
template <class T>
constexpr bool kIsReadable = kIsOneOf<T, bool, int, long, long long, float, double, std::string,
                                      std::string_view, std::filesystem::path>;

// The types of n in [n]: integers, but no characters.
template <class T>
constexpr bool kIsNumber =
    kIsOneOf<T, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
             unsigned long, long long, unsigned long long>;

// Every class that converts to the types that can be read.
struct Convertible {};

// The types of single values that can be assigned. Each reaches the library without loss, or is
// refused.
template <class T>
constexpr bool kIsText = std::is_convertible_v<const T&, std::string_view> &&
                         !std::is_base_of_v<Convertible, T> && !std::is_null_pointer_v<T>;
template <class T>
constexpr bool kIsScalar =
    kIsNumber<T> || kIsText<T> || kIsOneOf<T, bool, float, double, std::filesystem::path>;

template <class T, class = void>
struct ElementOf {
  using Type = std::nullptr_t;
};
template <class T>
struct ElementOf<T, std::void_t<decltype(std::begin(std::declval<const T&>())),
                                decltype(std::end(std::declval<const T&>()))>> {
  using Type =
      typename std::iterator_traits<decltype(std::begin(std::declval<const T&>()))>::value_type;
};

// Containers, arrays and ranges of such values.
template <class T>
constexpr bool kIsList = !kIsScalar<T> && kIsScalar<typename ElementOf<T>::Type>;

// What value_or() returns for a default: a copy of a text.
template <class T>
using Fallback =
    std::conditional_t<kIsReadable<std::decay_t<T>>, std::decay_t<T>,
                       std::conditional_t<kIsText<std::decay_t<T>>, std::string, std::decay_t<T>>>;

// A path as it is passed by a host. A null pointer and a zero byte throw.
class PathView {
 public:
  PathView() = default;
  PathView(const char* path);         // NOLINT: implicit, as of a std::string_view
  PathView(const std::string& path);  // NOLINT
  PathView(std::string_view path);    // NOLINT
  std::string_view Text() const { return text_; }

 private:
  std::string_view text_;
};

// The path of an Item: short ones need no memory. At its end can be "[n]", which selects a value,
// or, when a name or another "[m]" follows, becomes the ":n" of an instance.
class ItemPath {
 public:
  explicit ItemPath(std::string_view path);
  ItemPath(const ItemPath& other);
  ItemPath& operator=(const ItemPath&) = delete;
  ~ItemPath() = default;

  // The path of a name, and of a number, below this one.
  ItemPath(const ItemPath& parent, std::string_view name);
  ItemPath(const ItemPath& parent, unsigned long long number);

  const char* CText() const { return text_; }
  std::string_view Text() const { return {text_, size_}; }
  bool HasNumber() const { return numberAt_ != size_; }

  // Without the number; as the path of a section; with "[n]" in any case.
  std::string WithoutNumber() const { return std::string(text_, numberAt_); }
  std::string AsSection() const;
  std::string AsValue() const {
    return HasNumber() ? std::string(Text()) : WithoutNumber() + "[1]";
  }

 private:
  char* Allocate(std::size_t size);
  void EndAt(char* end);

  static constexpr std::size_t kRoom = 80;
  std::unique_ptr<char[]> memory_;  // of a long path
  char* text_;
  std::size_t size_ = 0;
  std::size_t numberAt_ = 0;
  char room_[kRoom];
};

// Receives what the library reports. Its functions are called by the library, so they do not throw:
// Taken() throws if memory was missing.
class Collector {
 public:
  static void Add(const zonxReport* report, void* collector) noexcept;
  static void AddDifference(const zonxDifference* difference, void* collector) noexcept;
  const Reports& TakenReports() const { return Taken(reports_); }
  const Differences& TakenDifferences() const { return Taken(differences_); }

 private:
  template <class T, class Make>
  void Keep(List<T>& list, Make&& make) noexcept;
  template <class T>
  const List<T>& Taken(const List<T>& list) const;

  Reports reports_;
  Differences differences_;
  bool isIncomplete_ = false;
};

struct Close {
  void operator()(void* file) const noexcept { zonClose(&file); }
};

// Operators need the type of a value, which only the host knows. A compiler must not choose one.
template <class A, class B = A>
using IfConvertible =
    std::enable_if_t<std::is_base_of_v<Convertible, A> || std::is_base_of_v<Convertible, B>, int>;
#define ZON_NO_UNARY(symbol)               \
  template <class A, IfConvertible<A> = 0> \
  void operator symbol(const A& item) = delete;
#define ZON_NO_BINARY(symbol)                          \
  template <class A, class B, IfConvertible<A, B> = 0> \
  void operator symbol(const A& left, const B& right) = delete;
#define ZON_NO_COMPOUND(symbol)                        \
  template <class A, class B, IfConvertible<A, B> = 0> \
  void operator symbol(A& left, const B& right) = delete;
ZON_NO_UNARY(+)
ZON_NO_UNARY(-)
ZON_NO_UNARY(~)
ZON_NO_BINARY(+)
ZON_NO_BINARY(-)
ZON_NO_BINARY(*)
ZON_NO_BINARY(/)
ZON_NO_BINARY(%)
ZON_NO_BINARY(&)
ZON_NO_BINARY(|)
ZON_NO_BINARY(^)
ZON_NO_BINARY(<<)
ZON_NO_BINARY(>>)
ZON_NO_BINARY(==)
ZON_NO_BINARY(!=)
ZON_NO_BINARY(<)
ZON_NO_BINARY(<=)
ZON_NO_BINARY(>)
ZON_NO_BINARY(>=)
#if defined(__cpp_impl_three_way_comparison)
ZON_NO_BINARY(<=>)
#endif
ZON_NO_COMPOUND(+=)
ZON_NO_COMPOUND(-=)
ZON_NO_COMPOUND(*=)
ZON_NO_COMPOUND(/=)
ZON_NO_COMPOUND(%=)
ZON_NO_COMPOUND(&=)
ZON_NO_COMPOUND(|=)
ZON_NO_COMPOUND(^=)
#undef ZON_NO_UNARY
#undef ZON_NO_BINARY
#undef ZON_NO_COMPOUND

/// @endcond

/* ---- What several classes share -------------------------------------------------------------- */

/** Finding, of File, Section and Item. What is missing is an empty view, an empty range, or an Item
 *  that does not exist. Without a path section() and keyword() are the thing itself, and the ranges
 *  have all of its sections or keywords. */
template <class Class>
class Finds {
 public:
  /** The section or keyword of a path, found when it is used. Nothing is allocated for paths of up
   *  to 79 bytes. Where section and keyword of a name both exist, the Item is the keyword where a
   *  value is needed and the section where a name follows. */
  Item operator[](const char* path) const;
  Item operator[](const std::string& path) const; /**< the same */
  Item operator[](std::string_view path) const;   /**< the same */
  Item find(PathView path) const;                 /**< the same */

  Section section(PathView path = {}) const; /**< the view of a section */
  Keyword keyword(PathView path = {}) const; /**< the view of a keyword */

  /** With a path: every section, or keyword, that has the last name of the path, in the section of
   *  the path. Sections and keywords must not be added or removed in a loop over them. */
  Sections sections(PathView path = {}) const;
  Keywords keywords(PathView path = {}) const; /**< the same */

 private:
  Item Child(PathView path) const;
};

/** Reading a value, of Item, Keyword and Value: of a keyword the first one.
 *
 *  T is bool, int, long, long long, float, double, std::string, std::string_view or
 *  std::filesystem::path. An integer can be read as a real; nothing else is converted, and no
 *  digits are lost but by rounding. A path is that of a file name, resolved against the folder of
 *  the parameter file.
 *
 *  There are no operators on items, as these have no type of their own: in expressions write
 *  as<T>(). Initialise with "=", as in `std::string name = file["Quay"]["Name"]`. */
template <class Class>
class Reads : private Convertible {
 public:
  /** The value; empty if it is missing, of another kind, or does not fit T. */
  template <class T>
  std::optional<T> get() const;

  /** The value, or `fallback` if get() is empty. T is the type of `fallback`, of a literal
   *  std::string: a real needs value_or(30.0) or value_or<double>(30). */
  template <class T>
  Fallback<T> value_or(T&& fallback) const;

  /** The value. Throws an Error with the place of the value; if it is missing, of its keyword; and
   *  without a keyword, of the section around it. */
  template <class T>
  T as() const;
  /** The same, for initialisations and assignments. */
  template <class T, std::enable_if_t<kIsReadable<T>, int> = 0>
  operator T() const {  // NOLINT: implicit
    return as<T>();
  }

  /** Use exists(), or as<bool>(). */
  explicit operator bool() const = delete;

  /** The value as it is written in a file, with quotes, bars and marks; empty if it is missing. */
  std::string text() const;

 private:
  template <class T>
  bool IsRead(T& value) const;
};

/** A view of a node, of Section, Keyword and Value. */
template <class Class>
class Node {
 public:
  /** False for an empty view. */
  bool exists() const noexcept { return node_ != nullptr; }

  /** The node, for the C interfaces; null for an empty view. */
  void* node() const noexcept { return node_; }

  /** Empty for a value. Valid until the node goes or is renamed. */
  std::string_view name() const;

  /** The place among those of the same name, or of a value among those of its keyword, from 1; or
   *  0. */
  int instance() const;

  /** Kind::none for an empty view. */
  Kind kind() const;

  /** The remark, without its braces; or empty. */
  std::string remark() const;

  /** Where the text of the node is; line 0 if it was not loaded or has changed. */
  Place place() const;

  /** The section around it; around a top-level section the root of the file. */
  Section parent() const;

  /** An error of the host about this node, to be thrown: it has the form of the library's errors.
   *  @param hint  what to do about it */
  Error error(const std::string& message, const std::string& hint = {}) const;

 protected:
  Node() = default;                                   /**< empty */
  explicit Node(void* node) noexcept : node_(node) {} /**< of the class that is derived */

 private:
  void* node_ = nullptr;
};

}  // namespace detail

/* ---- Views ----------------------------------------------------------------------------------- */

/** A range of views. It is valid as long as they are. */
template <class View>
class Range {
 public:
  class iterator;
  using value_type = View;         /**< Section, Keyword or Value */
  using const_iterator = iterator; /**< the same */

  /** An empty range. */
  Range() = default;

  iterator begin() const { return iterator(parent_, name_, 1); }        /**< the first */
  iterator end() const { return iterator(parent_, name_, count_ + 1); } /**< after the last */
  std::size_t size() const { return count_; }                           /**< how many they are */
  bool empty() const { return count_ == 0; } /**< whether there is none */

 private:
  friend class Item;
  friend class Keyword;
  Range(void* parent, const char* name);

  void* parent_ = nullptr;
  const char* name_ = nullptr;  // of the nodes; null: all of them
  unsigned int count_ = 0;
};

/** Reads each view anew, so it is an input iterator that can be copied and used again; for the
 *  ranges of C++20 a forward iterator. */
template <class View>
class Range<View>::iterator {
 public:
  /// @cond
  // The result of ->.
  class Pointer {
   public:
    explicit Pointer(View view) : view_(view) {}
    View* operator->() { return &view_; }

   private:
    View view_;
  };
  using iterator_category = std::input_iterator_tag;
  using iterator_concept = std::forward_iterator_tag;
  using value_type = View;
  using difference_type = std::ptrdiff_t;
  using pointer = Pointer;
  using reference = View;

  iterator() = default;
  View operator*() const;
  Pointer operator->() const { return Pointer(**this); }
  iterator& operator++() {
    ++number_;
    return *this;
  }
  iterator operator++(int) {
    iterator before = *this;
    ++number_;
    return before;
  }
  friend bool operator==(const iterator& a, const iterator& b) { return a.number_ == b.number_; }
  friend bool operator!=(const iterator& a, const iterator& b) { return a.number_ != b.number_; }
  /// @endcond

 private:
  friend class Range;
  iterator(void* parent, const char* name, unsigned int number)
      : parent_(parent), name_(name), number_(number) {}

  void* parent_ = nullptr;
  const char* name_ = nullptr;
  unsigned int number_ = 0;
};

/** A section, or nothing. As a range it has its sections. */
class ZON_TYPE Section : public detail::Node<Section>, public detail::Finds<Section> {
 public:
  ZON_LOCAL Section() = default;
  /** @param node  a section or the root of a file, from a C interface; or null */
  ZON_LOCAL explicit Section(void* node) noexcept : Node(node) {}

  ZON_LOCAL Sections::iterator begin() const; /**< of its sections */
  ZON_LOCAL Sections::iterator end() const;   /**< of its sections */

  /** Whether both are the same section, or both are empty. */
  ZON_LOCAL friend bool operator==(Section a, Section b) { return a.node() == b.node(); }
  /** Whether they are not. */
  ZON_LOCAL friend bool operator!=(Section a, Section b) { return a.node() != b.node(); }

  using Finds::operator[];
  /** A section has no number of its own: write item[n], or a path with ":n". */
  template <class N, std::enable_if_t<std::is_integral_v<N>, int> = 0>
  void operator[](N) const = delete;
};

/** A value of a keyword, or nothing. An empty place of a file is a value too, of Kind::empty, which
 *  has nothing to read. */
class ZON_TYPE Value : public detail::Node<Value>, public detail::Reads<Value> {
 public:
  ZON_LOCAL Value() = default;
  /** @param node  a value, from a C interface; or null */
  ZON_LOCAL explicit Value(void* node) noexcept : Node(node) {}

 private:
  friend class detail::Reads<Value>;
  ZON_LOCAL void* Start() const { return node(); }
  ZON_LOCAL const char* PathOfValue() const { return ""; }
};

/** A keyword, or nothing. As a range it has its values; as a value it is the first of them. */
class ZON_TYPE Keyword : public detail::Node<Keyword>, public detail::Reads<Keyword> {
 public:
  ZON_LOCAL Keyword() = default;
  /** @param node  a keyword, from a C interface; or null */
  ZON_LOCAL explicit Keyword(void* node) noexcept : Node(node) {}

  /** The values, each with its kind. @{ */
  ZON_LOCAL Values values() const;
  ZON_LOCAL Values::iterator begin() const;
  ZON_LOCAL Values::iterator end() const;
  ZON_LOCAL std::size_t size() const;
  /** @} */

  /** All values as in Item. */
  template <class T>
  ZON_LOCAL std::vector<T> values() const;

  /** The n-th value, from 1, to be read or assigned. */
  template <class N, std::enable_if_t<detail::kIsNumber<N>, int> = 0>
  ZON_LOCAL Item operator[](N n) const;

 private:
  friend class detail::Reads<Keyword>;
  ZON_LOCAL void* Start() const { return node(); }
  ZON_LOCAL const char* PathOfValue() const { return ""; }
};

/** The path of a section, keyword or value, from a file or section: the result of []. It is looked
 *  up by each use and need not exist. */
class ZON_TYPE Item : public detail::Finds<Item>, public detail::Reads<Item> {
 public:
  /** @param fileOrNode  from a C interface; null is the start of no path */
  ZON_LOCAL explicit Item(void* fileOrNode, detail::PathView path = {})
      : start_(fileOrNode), path_(path.Text()) {}
  ZON_LOCAL Item(const Item&) = default; /**< the same path */
  ZON_LOCAL ~Item() = default;

  /** An Item is a place in a file. To copy a value, write `a = b.as<double>()`. */
  Item& operator=(const Item&) = delete;

  using Finds::operator[];
  /** Of a section the n-th of its name, of a keyword its n-th value; in file["Run"]["Input"][2][1]
   *  the first value of the second keyword. Throws for n less than 1. */
  template <class N, std::enable_if_t<detail::kIsNumber<N>, int> = 0>
  ZON_LOCAL Item operator[](N n) const;

  /** Whether there is such a section, keyword or value. */
  ZON_LOCAL bool exists() const;

  /** The view of the first value, or of that of [n]. */
  ZON_LOCAL Value value() const;
  /** The views of all values. */
  ZON_LOCAL Values values() const { return keyword().values(); }

  /** All values of the keyword, each as by as(); T as there. Empty if there is no keyword, or only
   *  an empty place. Throws an Error with the place of the first value that is missing, of another
   *  kind, or does not fit T. */
  template <class T>
  ZON_LOCAL std::vector<T> values() const;

  /** Sets one value, the first or that of [n], and creates sections and keyword if they are
   *  missing: of two sections Quay, file["Quay"][3]["Length"] creates the third. The other values
   *  stay. A value that is equal keeps its spelling.
   *  @param value  bool, an integer, float, double, a text, or a std::filesystem::path for a file
   *      name as it is to be written. A float is written with the digits of a float.
   *  An integer beyond 64 bits, a real that is infinite or not a number, a text with a zero byte, a
   *  path that is malformed or has no section, and a name that the format does not allow throw; the
   *  tree is then as before. */
  template <class T, std::enable_if_t<detail::kIsScalar<T>, int> = 0>
  ZON_LOCAL Item& operator=(const T& value);

  /** Replaces all values of the keyword. No values leave one empty place.
   *  @param values  a container, array or list of values in braces, all of one type @{ */
  template <class T, std::enable_if_t<detail::kIsList<T>, int> = 0>
  ZON_LOCAL Item& operator=(const T& values);
  template <class T, std::enable_if_t<detail::kIsScalar<T>, int> = 0>
  ZON_LOCAL Item& operator=(std::initializer_list<T> values);
  /** @} */

  /** Replaces all values by those of a text as it is written in a file: "1, 2.5 {m}, 'x'". */
  ZON_LOCAL void set_text(const std::string& text);

  /** Removes the value of [n], or the keyword, or else the section. False if there is none. */
  ZON_LOCAL bool remove();

  /** An error of the host, to be thrown, placed at the value; if it is missing at its keyword or,
   *  without one, at the section around it. Of a section at its header.
   *  @param hint  what to do about it */
  ZON_LOCAL Error error(const std::string& message, const std::string& hint = {}) const;

 private:
  template <class>
  friend class detail::Finds;
  friend class detail::Reads<Item>;
  friend class Keyword;
  ZON_LOCAL Item(const Item& parent, std::string_view name)
      : start_(parent.start_), path_(parent.path_, name) {}
  ZON_LOCAL Item(const Item& parent, unsigned long long number)
      : start_(parent.start_), path_(parent.path_, number) {}
  template <class N>
  ZON_LOCAL Item WithNumber(N n) const;
  ZON_LOCAL void* Start() const { return start_; }
  ZON_LOCAL const char* PathOfValue() const { return path_.CText(); }
  ZON_LOCAL Section FindSection() const;
  ZON_LOCAL Keyword FindKeyword() const;
  ZON_LOCAL Sections FindSections(bool isNamed) const;
  ZON_LOCAL Keywords FindKeywords(bool isNamed) const;

  void* start_;
  detail::ItemPath path_;
};

/* ---- Files ----------------------------------------------------------------------------------- */

/** A parameter file in memory, which is closed with the object. As a range it has its sections. A
 *  File that was moved from throws in every use but assignment and destruction. */
class ZON_TYPE File : public detail::Finds<File> {
 public:
  /** An empty file, to be built: assign values, then save() with a name. */
  ZON_LOCAL File();
  /** Owns a handle of a C interface. */
  ZON_LOCAL explicit File(void* handle) noexcept : handle_(handle) {}
  ZON_LOCAL File(File&&) noexcept = default;            /**< leaves the other without a tree */
  ZON_LOCAL File& operator=(File&&) noexcept = default; /**< closes its own tree before */
  ZON_LOCAL ~File() = default;

  /** The handle, for the C interfaces. The File goes on owning it. */
  ZON_LOCAL void* handle() const;

  /** A temporary File is closed before a loop over its sections or keywords begins. @{ */
  ZON_LOCAL Sections sections(detail::PathView path = {}) const&;
  ZON_LOCAL Keywords keywords(detail::PathView path = {}) const&;
  ZON_LOCAL Sections::iterator begin() const&;
  ZON_LOCAL Sections::iterator end() const&;
  void sections(detail::PathView path = {}) const&& = delete;
  void keywords(detail::PathView path = {}) const&& = delete;
  void begin() const&& = delete;
  void end() const&& = delete;
  /** @} */

  using Finds::operator[];
  /** A file has no number. */
  template <class N, std::enable_if_t<std::is_integral_v<N>, int> = 0>
  void operator[](N) const = delete;

  /** Saves the changes to the file that was loaded or last saved, or the tree to another file.
   *  Comments, layout and spelling of what did not change stay byte for byte. The file is replaced
   *  in one step; if it fails, file and tree are as before.
   *  @param flags  0 or a sum of ZONX_PLAIN, ZONX_NEW, ZONX_OVERWRITE, ZONX_BACKUP and
   *      ZONX_NAMES_AS_WRITTEN. Without ZONX_OVERWRITE a file that has changed since it was loaded,
   *      and another file that exists, throw (ZONX_CHANGED). @{ */
  ZON_LOCAL void save(unsigned int flags = 0);
  ZON_LOCAL void save(const std::filesystem::path& name, unsigned int flags = 0);
  /** @} */

  /** The text that save() would write. */
  ZON_LOCAL std::string text(unsigned int flags = 0) const;

  /** The warnings of load() or parse(). Valid as long as the File. */
  ZON_LOCAL const Reports& warnings() const&;
  void warnings() const&& = delete;

  /** Starts watching which keywords are read; with false it stops. */
  ZON_LOCAL void watch(bool on = true);
  /** A warning for each keyword of which no value was read since then. */
  ZON_LOCAL Reports unread() const;

  /** An error of the host about the file as a whole, to be thrown. */
  ZON_LOCAL Error error(const std::string& message, const std::string& hint = {}) const;

 private:
  template <class>
  friend class detail::Finds;
  friend File load(const std::filesystem::path& name);
  friend File parse(std::string_view text, const std::filesystem::path& name);
  ZON_LOCAL void Save(const char* name, unsigned int flags);

  std::unique_ptr<void, detail::Close> handle_;
  Reports warnings_;
};

/** Loads a file, or a text. Every mistake in it is one of the reports of the Error that is thrown;
 *  warnings alone are in warnings().
 *  @param name  of a text: for reports, and for the file names in it @{ */
File load(const std::filesystem::path& name);
File parse(std::string_view text, const std::filesystem::path& name = {});
/** @} */

/** Returns every error and warning of a file; nothing if it is sound. Also that a file cannot be
 *  read is a report. */
Reports check(const std::filesystem::path& name);

/** Returns every mismatch of a file with a template, with its place in the file and, as related
 *  place, in the template; nothing if the file conforms. Throws if the template is faulty. */
Reports validate(const File& pattern, const File& candidate);

/** How reals are compared by diff(). Two reals are equal if they differ by at most `absolute`, or
 *  at most `relative` times the larger one. */
struct Tolerance {
  double relative = 0; /**< of the larger of both */
  double absolute = 0; /**< in the unit of the values */
};

/** Returns the differences of two files, see zonxDiff; none if they are equal as data.
 *  @param key  if not empty: repeated sections are paired by their values of this keyword */
Differences diff(const File& before, const File& after, const Tolerance& tolerance = {},
                 const std::string& key = {});

/** Gives every keyword of `overlay` to `target`, where it replaces all values of the keyword with
 *  that path; what is missing is added. If it throws, `target` is as before. */
void merge(File& target, const File& overlay);

}  // namespace ZON_V1
}  // namespace zon

/* ==== Definitions
 *  ================================================================================== */

/// @cond
namespace zon {
inline namespace ZON_V1 {
namespace detail {

/* ---- Reports and errors ---------------------------------------------------------------------- */

// Called before they are defined.
Error MakeError(void* start, const std::string& path, int status, const char* rule,
                const std::string& message, const std::string& hint);
[[noreturn]] void Throw(int status, Collector& collector);
[[noreturn]] void Throw(int status, const std::string& message);
[[noreturn]] void FailRead(void* start, const char* path, int status);

// Whether a status means that there is no such value.
inline bool IsAbsent(void* start, int status) {
  return start == nullptr || status == ZONX_MISSING || status == ZONX_WRONG_KIND ||
         status == ZONX_OUT_OF_RANGE;
}

inline std::string CopyText(const char* text) {
  return text != nullptr ? std::string(text) : std::string();
}

inline Place MakePlace(const zonxPlace& place) {
  Place made;
  made.file = CopyText(place.file);
  made.line = place.line;
  made.column = place.column;
  made.end_line = place.endLine;
  made.end_column = place.endColumn;
  made.offset = place.offset;
  made.length = place.length;
  return made;
}

inline std::string FormatReport(const zonxReport& report) {
  std::string text(zonxFormatReport(&report, nullptr, 0), '\0');
  const std::size_t written = zonxFormatReport(&report, text.data(), text.size() + 1);
  if (written == 0 || written != text.size()) throw std::bad_alloc();
  return text;
}

inline Report MakeReport(const zonxReport& report) {
  Report made;
  made.severity = static_cast<Severity>(report.severity);
  made.rule = CopyText(report.rule);
  made.message = CopyText(report.message);
  made.hint = CopyText(report.hint);
  made.place = MakePlace(report.place);
  made.related = MakePlace(report.related);
  made.related_message = CopyText(report.relatedMessage);
  made.source_line = CopyText(report.sourceLine);
  made.text = FormatReport(report);
  return made;
}

inline Difference MakeDifference(const zonxDifference& difference) {
  Difference made;
  made.change = static_cast<Change>(difference.change);
  made.path = CopyText(difference.path);
  made.before_node = difference.before;
  made.after_node = difference.after;
  return made;
}

template <class T, class Make>
void Collector::Keep(List<T>& list, Make&& make) noexcept {
  try {
    using Array = std::vector<T, Allocator<T>>;
    if (list.list_ == nullptr) list.list_ = std::make_shared<Array>();
    list.list_->push_back(make());
  } catch (...) {
    isIncomplete_ = true;
  }
}

inline void Collector::Add(const zonxReport* report, void* collector) noexcept {
  auto* self = static_cast<Collector*>(collector);
  self->Keep(self->reports_, [&] { return MakeReport(*report); });
}

inline void Collector::AddDifference(const zonxDifference* difference, void* collector) noexcept {
  auto* self = static_cast<Collector*>(collector);
  self->Keep(self->differences_, [&] { return MakeDifference(*difference); });
}

template <class T>
const List<T>& Collector::Taken(const List<T>& list) const {
  if (isIncomplete_) throw std::bad_alloc();
  return list;
}

inline std::string JoinTexts(const Reports& reports) {
  std::string text;
  for (const Report& report : reports) {
    if (!text.empty()) text += '\n';
    text += report.text;
  }
  return text;
}

// The words that zonxReportPath uses.
inline const char* RuleOf(int status) {
  switch (status) {
    case ZONX_MISSING:
      return "missing";
    case ZONX_WRONG_KIND:
      return "wrong-kind";
    case ZONX_OUT_OF_RANGE:
      return "out-of-range";
    case ZONX_BAD_ARGUMENT:
      return "bad-argument";
    default:
      return "failed";
  }
}

// Throws what was reported. A status without a report gets one that has no place.
inline void Throw(int status, Collector& collector) {
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
  if (collector.TakenReports().empty()) Throw(status, zonxStatusText(status));
  throw Error(status, collector.TakenReports());
}

inline void Throw(int status, const std::string& message) {
  throw MakeError(nullptr, {}, status, RuleOf(status), message, {});
}

// The node of a path; null if there is none.
inline void* FindNode(void* start, const char* path) {
  void* node = nullptr;
  if (start == nullptr) return nullptr;
  const int status = zonxFind(start, path, &node);
  if (status == ZONX_BAD_ARGUMENT || status == ZONX_NO_MEMORY) FailRead(start, path, status);
  return node;
}

// Receives a report of the library, and keeps it with other texts.
struct Reworded {
  static void Add(const zonxReport* report, void* context) noexcept {
    auto* self = static_cast<Reworded*>(context);
    zonxReport reworded = *report;
    reworded.rule = self->rule;
    reworded.message = self->message.c_str();
    reworded.hint = self->hint.c_str();
    Collector::Add(&reworded, &self->collector);
  }

  const char* rule;
  const std::string& message;
  const std::string& hint;
  Collector collector;
};

// An error at the deepest node of a path that exists: there a missing value is reported.
inline Error MakeError(void* start, const std::string& path, int status, const char* rule,
                       const std::string& message, const std::string& hint) {
  Reworded reworded = {rule, message, hint, {}};
  if (start == nullptr) {
    zonxReport nowhere = {};
    nowhere.relatedMessage = "";
    Reworded::Add(&nowhere, &reworded);
  } else if (zonxReportPath(start, path.c_str(), ZONX_MISSING, Reworded::Add, &reworded) ==
             ZONX_NO_MEMORY) {
    throw std::bad_alloc();
  }
  return Error(status, reworded.collector.TakenReports());
}

// Texts begin with a std::string here: of a literal plus a temporary one g++ 12 warns in C++20.
inline std::string Quoted(std::string_view path) {
  return std::string("`").append(path) + "`";
}

inline void FailRead(void* start, const char* path, int status) {
  if (start == nullptr) {
    Throw(ZONX_MISSING, *path == '\0'
                            ? "there is no such section, keyword or value"
                            : std::string("there is no section to find ") + Quoted(path) + " in");
  }
  Collector collector;
  if (status != ZONX_NO_MEMORY) {
    zonxReportPath(start, path, status, Collector::Add, &collector);
  }
  Throw(status, collector);
}

[[noreturn]] inline void FailWrite(void* start, const char* path, int status) {
  const char* reason = "";
  const char* hint = "";
  if (status == ZONX_OUT_OF_RANGE) {
    reason = " cannot be set: a file has no such number";
    hint = "integers have 64 bits; reals are finite";
  } else if (status == ZONX_FAULTY) {
    reason = " cannot be set: the text is no list of values";
    hint = "write values as in a file, with commas between them";
  } else if (status == ZONX_BAD_ARGUMENT && start != nullptr) {
    reason =
        " cannot be set: it is no path to a value, or has a name that the format does not allow";
    hint = "a path has the form Section:2/Keyword[3]";
  } else {
    FailRead(start, path, status);
  }
  throw MakeError(start, path, status, RuleOf(status), Quoted(path) + reason, hint);
}

// A list of all values has no number.
inline void RequireNoNumber(void* start, const ItemPath& path) {
  if (!path.HasNumber()) return;
  const std::string text(path.Text());
  throw MakeError(start, text, ZONX_BAD_ARGUMENT, RuleOf(ZONX_BAD_ARGUMENT),
                  Quoted(text) + " is one value, not a list",
                  "the n-th keyword of a name is selected by :n");
}

/* ---- Paths ----------------------------------------------------------------------------------- */

inline std::string_view CheckedPath(std::string_view path) {
  if (!path.empty() && std::memchr(path.data(), '\0', path.size()) != nullptr) {
    Throw(ZONX_BAD_ARGUMENT, "a path has a zero byte");
  }
  return path;
}

inline PathView::PathView(const char* path) {
  if (path == nullptr) Throw(ZONX_BAD_ARGUMENT, "a path is a null pointer");
  text_ = path;
}
inline PathView::PathView(const std::string& path) : text_(CheckedPath(path)) {}
inline PathView::PathView(std::string_view path) : text_(CheckedPath(path)) {}

// Copies a name, which has 3 to 16 bytes in most cases: for them a call of std::memcpy takes longer
// than two moves of words that overlap. Returns the end of the copy.
inline char* CopyName(char* to, std::string_view name) {
  const char* const from = name.data();
  const std::size_t size = name.size();
  if (size > 16) {
    std::memcpy(to, from, size);
  } else if (size >= 8) {
    std::memcpy(to, from, 8);
    std::memcpy(to + size - 8, from + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(to, from, 4);
    std::memcpy(to + size - 4, from + size - 4, 4);
  } else if (size > 0) {
    to[0] = from[0];
    to[size / 2] = from[size / 2];
    to[size - 1] = from[size - 1];
  }
  return to + size;
}

// Room for a path and its final zero.
inline char* ItemPath::Allocate(std::size_t size) {
  if (size < kRoom) return room_;
  memory_.reset(new char[size + 1]);
  return memory_.get();
}

inline void ItemPath::EndAt(char* end) {
  *end = '\0';
  size_ = static_cast<std::size_t>(end - text_);
  numberAt_ = size_;
}

inline ItemPath::ItemPath(std::string_view path) : text_(Allocate(path.size())) {
  EndAt(CopyName(text_, path));
}

inline ItemPath::ItemPath(const ItemPath& other) : ItemPath(other.Text()) {
  numberAt_ = other.numberAt_;
}

inline ItemPath::ItemPath(const ItemPath& parent, std::string_view name)
    : text_(Allocate(parent.size_ + 1 + name.size())) {
  char* const text = text_;
  char* end = CopyName(text, parent.Text());
  if (parent.HasNumber()) {
    text[parent.numberAt_] = ':';
    end[-1] = '/';
  } else if (end != text && end[-1] != '/') {
    *end++ = '/';
  }
  EndAt(CopyName(end, name));
}

inline ItemPath::ItemPath(const ItemPath& parent, unsigned long long number)
    : text_(Allocate(parent.size_ + 22)) {
  char* end = CopyName(text_, parent.Text());
  if (parent.HasNumber()) {
    text_[parent.numberAt_] = ':';
    --end;  // before "]"
  } else if (end != text_ && end[-1] == '/') {
    --end;
  }
  char* const start = end;
  *end++ = '[';
  end = std::to_chars(end, end + 20, number).ptr;
  *end++ = ']';
  EndAt(end);
  numberAt_ = static_cast<std::size_t>(start - text_);
}

inline std::string ItemPath::AsSection() const {
  std::string path(Text());
  if (HasNumber()) {
    path[numberAt_] = ':';
    path.back() = '/';
  } else if (!path.empty() && path.back() != '/') {
    path += '/';
  }
  return path;
}

/* ---- Reading and writing values -------------------------------------------------------------- */

// Each returns a zonxStatus.
inline int Read(void* start, const char* path, int& value) {
  return zonxGetInt(start, path, &value);
}
inline int Read(void* start, const char* path, long long& value) {
  return zonxGetInt64(start, path, &value);
}
inline int Read(void* start, const char* path, double& value) {
  return zonxGetDouble(start, path, &value);
}
inline int Read(void* start, const char* path, bool& value) {
  int number = 0;
  const int status = zonxGetBool(start, path, &number);
  value = number != 0;
  return status;
}
inline int Read(void* start, const char* path, std::string_view& value) {
  const char* text = "";
  const int status = zonxGetString(start, path, &text);
  value = text;
  return status;
}
inline int Read(void* start, const char* path, std::string& value) {
  const char* text = "";
  const int status = zonxGetString(start, path, &text);
  value = text;
  return status;
}
inline int Read(void* start, const char* path, std::filesystem::path& value) {
  const char* text = "";
  const int status = zonxGetFilename(start, path, &text);
  if (status == ZONX_OK) value = text;
  return status;
}

// A number in a smaller type. A real is rounded, but not to zero or to infinity.
inline int Narrow(long long wide, long& value) {
  if (wide < std::numeric_limits<long>::min() || wide > std::numeric_limits<long>::max()) {
    return ZONX_OUT_OF_RANGE;
  }
  value = static_cast<long>(wide);
  return ZONX_OK;
}
inline int Narrow(double wide, float& value) {
  constexpr auto kMax = static_cast<double>(std::numeric_limits<float>::max());
  if (wide < -kMax || wide > kMax) return ZONX_OUT_OF_RANGE;
  value = static_cast<float>(wide);
  return value == 0 && wide != 0 ? ZONX_OUT_OF_RANGE : ZONX_OK;
}

template <class Wide, class T>
int ReadNarrow(void* start, const char* path, T& value) {
  Wide wide = 0;
  const int status = Read(start, path, wide);
  return status == ZONX_OK ? Narrow(wide, value) : status;
}
inline int Read(void* start, const char* path, long& value) {
  return ReadNarrow<long long>(start, path, value);
}
inline int Read(void* start, const char* path, float& value) {
  return ReadNarrow<double>(start, path, value);
}

// Lists, as the library returns them.
inline int ReadList(void* start, const char* path, int* out, std::size_t room, std::size_t* count) {
  return zonxGetInts(start, path, out, room, count);
}
inline int ReadList(void* start, const char* path, long long* out, std::size_t room,
                    std::size_t* count) {
  return zonxGetInt64s(start, path, out, room, count);
}
inline int ReadList(void* start, const char* path, double* out, std::size_t room,
                    std::size_t* count) {
  return zonxGetDoubles(start, path, out, room, count);
}
inline int ReadList(void* start, const char* path, const char** out, std::size_t room,
                    std::size_t* count) {
  return zonxGetStrings(start, path, out, room, count);
}
inline int ReadBools(void* start, const char* path, int* out, std::size_t room,
                     std::size_t* count) {
  return zonxGetBools(start, path, out, room, count);
}

inline std::string ValuePath(const char* path, std::size_t number) {
  return path + std::string("[") + std::to_string(number) + "]";
}

[[noreturn]] inline void FailList(void* start, const char* path, int status, std::size_t number) {
  FailRead(start, number > 0 ? ValuePath(path, number).c_str() : path, status);
}

// Whether a list that cannot be read has no values: no keyword, or one with an empty place alone.
inline bool IsEmptyList(void* start, const char* path, int status, std::size_t number) {
  if (start == nullptr) return true;
  if (status != ZONX_MISSING || number > 1) return false;
  return number == 0 || FindNode(start, ValuePath(path, 2).c_str()) == nullptr;
}

template <class Raw, class ReadRaw>
std::vector<Raw> ReadRawList(void* start, const char* path, ReadRaw&& read) {
  std::vector<Raw> values(16);
  std::size_t count = 0;
  int status = read(start, path, values.data(), values.size(), &count);
  if (status == ZONX_OK && count > values.size()) {
    values.resize(count);
    status = read(start, path, values.data(), values.size(), &count);
  }
  if (status != ZONX_OK) {
    if (!IsEmptyList(start, path, status, count)) FailList(start, path, status, count);
    count = 0;
  }
  values.resize(count);
  return values;
}

template <class Raw>
std::vector<Raw> ReadRawList(void* start, const char* path) {
  return ReadRawList<Raw>(
      start, path, [](void* from, const char* at, Raw* out, std::size_t room, std::size_t* count) {
        return ReadList(from, at, out, room, count);
      });
}

template <class T, class Wide>
std::vector<T> ReadNarrowList(void* start, const char* path) {
  const std::vector<Wide> raw = ReadRawList<Wide>(start, path);
  std::vector<T> values(raw.size());
  for (std::size_t at = 0; at < raw.size(); ++at) {
    const int status = Narrow(raw[at], values[at]);
    if (status != ZONX_OK) FailList(start, path, status, at + 1);
  }
  return values;
}

inline std::vector<std::filesystem::path> ReadFileNames(void* start, const char* path) {
  void* const keyword = FindNode(start, path);
  const int count = keyword != nullptr ? zonGetNoNodes(keyword) : 0;
  std::vector<std::filesystem::path> values(count > 0 ? static_cast<std::size_t>(count) : 0);
  for (std::size_t number = 1; number <= values.size(); ++number) {
    const int status = Read(keyword, ValuePath("", number).c_str(), values[number - 1]);
    if (status == ZONX_MISSING && values.size() == 1) return {};
    if (status != ZONX_OK) FailList(start, path, status, number);
  }
  return values;
}

template <class T>
std::vector<T> ReadValues(void* start, const char* path) {
  static_assert(kIsReadable<T>,
                "T must be bool, int, long, long long, float, double, std::string, "
                "std::string_view or std::filesystem::path");
  if constexpr (kIsOneOf<T, int, long long, double>) {
    return ReadRawList<T>(start, path);
  } else if constexpr (std::is_same_v<T, bool>) {
    const std::vector<int> raw = ReadRawList<int>(start, path, ReadBools);
    return std::vector<bool>(raw.begin(), raw.end());
  } else if constexpr (std::is_same_v<T, long>) {
    return ReadNarrowList<long, long long>(start, path);
  } else if constexpr (std::is_same_v<T, float>) {
    return ReadNarrowList<float, double>(start, path);
  } else if constexpr (std::is_same_v<T, std::filesystem::path>) {
    return ReadFileNames(start, path);
  } else {
    const std::vector<const char*> raw = ReadRawList<const char*>(start, path);
    return std::vector<T>(raw.begin(), raw.end());
  }
}

// The real that has the digits of a float: 0.1 for 0.1f, and not 0.100000001490116. Where these
// digits, read as a double, round to another float, as those of 7.038531e-26f do, it has more
// digits.
inline double WidenByDigits(float value) {
#if defined(__cpp_lib_to_chars)
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, value);
  double wide = 0;
  std::from_chars(digits, end.ptr, wide);
  return static_cast<float>(wide) == value ? wide : static_cast<double>(value);
#else
  return static_cast<double>(value);
#endif
}

// What the library takes for a value that is assigned.
template <class T>
auto ToRaw(const T& value, int* status) {
  if constexpr (std::is_same_v<T, bool>) {
    return value ? 1 : 0;
  } else if constexpr (kIsNumber<T>) {
    if constexpr (std::is_unsigned_v<T> && sizeof(T) >= sizeof(long long)) {
      if (value > static_cast<T>(std::numeric_limits<long long>::max()))
        *status = ZONX_OUT_OF_RANGE;
    }
    return static_cast<long long>(value);
  } else if constexpr (std::is_same_v<T, float>) {
    return WidenByDigits(value);
  } else if constexpr (std::is_same_v<T, double>) {
    return value;
  } else {
    std::string text;
    if constexpr (std::is_same_v<T, std::filesystem::path>) {
      text = value.native();
    } else {
      if constexpr (std::is_pointer_v<T>) {
        if (value == nullptr) Throw(ZONX_BAD_ARGUMENT, "a text is a null pointer");
      }
      text = std::string_view(value);
    }
    if (text.find('\0') != std::string::npos) {
      Throw(ZONX_BAD_ARGUMENT, "a text with a zero byte cannot be written to a file");
    }
    return text;
  }
}

template <class T>
int WriteValue(void* start, const char* path, const T& value) {
  int status = ZONX_OK;
  const auto raw = ToRaw(value, &status);
  if (status != ZONX_OK) return status;
  if constexpr (std::is_same_v<T, bool>) {
    return zonxSetBool(start, path, raw);
  } else if constexpr (kIsNumber<T>) {
    return zonxSetInt64(start, path, raw);
  } else if constexpr (std::is_floating_point_v<T>) {
    return zonxSetDouble(start, path, raw);
  } else if constexpr (std::is_same_v<T, std::filesystem::path>) {
    return zonxSetFilename(start, path, raw.c_str());
  } else {
    return zonxSetString(start, path, raw.c_str());
  }
}

inline int WriteRawList(void* start, const char* path, const std::vector<int>& values) {
  return zonxSetBools(start, path, values.data(), values.size());
}
inline int WriteRawList(void* start, const char* path, const std::vector<long long>& values) {
  return zonxSetInt64s(start, path, values.data(), values.size());
}
inline int WriteRawList(void* start, const char* path, const std::vector<double>& values) {
  return zonxSetDoubles(start, path, values.data(), values.size());
}
inline int WriteRawList(void* start, const char* path, const std::vector<std::string>& values) {
  std::vector<const char*> texts;
  texts.reserve(values.size());
  for (const std::string& value : values) texts.push_back(value.c_str());
  return zonxSetStrings(start, path, texts.data(), texts.size());
}

inline int WriteFileNames(void* start, const char* path, const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    if (name.find_first_of("|\n\r") != std::string::npos) {
      Throw(ZONX_BAD_ARGUMENT, "a file name with a bar or a line end cannot be written to a file");
    }
    text += (text.empty() ? "|" : ", |") + name + "|";
  }
  return zonxSetText(start, path, text.c_str());
}

template <class T>
int WriteList(void* start, const char* path, const T& values) {
  using Element = typename ElementOf<T>::Type;
  int status = ZONX_OK;
  std::vector<decltype(ToRaw(std::declval<const Element&>(), &status))> raw;
  for (const auto& value : values) raw.push_back(ToRaw<Element>(value, &status));
  if (status != ZONX_OK) return status;
  if constexpr (std::is_same_v<Element, std::filesystem::path>) {
    return WriteFileNames(start, path, raw);
  } else {
    return WriteRawList(start, path, raw);
  }
}

/* ---- What several classes share -------------------------------------------------------------- */

// Declared inline: at -O2 g++ would otherwise call these functions, with some 70 instructions for
// each name.
template <class Class>
inline Item Finds<Class>::Child(PathView path) const {
  const auto& self = static_cast<const Class&>(*this);
  if constexpr (std::is_same_v<Class, Item>) {
    if (path.Text().empty()) return self;
    return Item(self, path.Text());
  } else if constexpr (std::is_same_v<Class, File>) {
    return Item(self.handle(), path);
  } else {
    return Item(self.node(), path);
  }
}

template <class Class>
inline Item Finds<Class>::operator[](const char* path) const {
  return Child(path);
}
template <class Class>
inline Item Finds<Class>::operator[](const std::string& path) const {
  return Child(path);
}
template <class Class>
inline Item Finds<Class>::operator[](std::string_view path) const {
  return Child(path);
}
template <class Class>
Item Finds<Class>::find(PathView path) const {
  return Child(path);
}
template <class Class>
Section Finds<Class>::section(PathView path) const {
  return Child(path).FindSection();
}
template <class Class>
Keyword Finds<Class>::keyword(PathView path) const {
  return Child(path).FindKeyword();
}
template <class Class>
Sections Finds<Class>::sections(PathView path) const {
  return Child(path).FindSections(!path.Text().empty());
}
template <class Class>
Keywords Finds<Class>::keywords(PathView path) const {
  return Child(path).FindKeywords(!path.Text().empty());
}

template <class Class>
template <class T>
bool Reads<Class>::IsRead(T& value) const {
  static_assert(kIsReadable<T>,
                "T must be bool, int, long, long long, float, double, std::string, "
                "std::string_view or std::filesystem::path");
  const auto& self = static_cast<const Class&>(*this);
  const int status = Read(self.Start(), self.PathOfValue(), value);
  if (status == ZONX_OK) return true;
  if (!IsAbsent(self.Start(), status)) FailRead(self.Start(), self.PathOfValue(), status);
  return false;
}

template <class Class>
template <class T>
std::optional<T> Reads<Class>::get() const {
  T value{};
  if (!IsRead(value)) return std::nullopt;
  return value;
}

template <class Class>
template <class T>
Fallback<T> Reads<Class>::value_or(T&& fallback) const {
  Fallback<T> value{};
  if (!IsRead(value)) return Fallback<T>(std::forward<T>(fallback));
  return value;
}

template <class Class>
template <class T>
T Reads<Class>::as() const {
  static_assert(kIsReadable<T>,
                "T must be bool, int, long, long long, float, double, std::string, "
                "std::string_view or std::filesystem::path");
  const auto& self = static_cast<const Class&>(*this);
  T value{};
  const int status = Read(self.Start(), self.PathOfValue(), value);
  if (status != ZONX_OK) FailRead(self.Start(), self.PathOfValue(), status);
  return value;
}

template <class Class>
std::string Reads<Class>::text() const {
  const auto& self = static_cast<const Class&>(*this);
  const char* text = "";
  const int status = zonxGetText(self.Start(), self.PathOfValue(), &text);
  if (status != ZONX_OK && !IsAbsent(self.Start(), status)) {
    FailRead(self.Start(), self.PathOfValue(), status);
  }
  return text;
}

template <class Class>
std::string_view Node<Class>::name() const {
  return node_ != nullptr ? zonGetName(node_) : "";
}
template <class Class>
int Node<Class>::instance() const {
  return node_ != nullptr ? zonGetInstanceNo(node_) : 0;
}
template <class Class>
Kind Node<Class>::kind() const {
  return static_cast<Kind>(zonxGetKind(node_));
}
template <class Class>
std::string Node<Class>::remark() const {
  const char* remark = "";
  if (zonxGetRemark(node_, &remark) == ZONX_NO_MEMORY) throw std::bad_alloc();
  return remark;
}
template <class Class>
Place Node<Class>::place() const {
  zonxPlace place = {};
  if (zonxWhere(node_, &place) == ZONX_NO_MEMORY) throw std::bad_alloc();
  return MakePlace(place);
}
template <class Class>
Section Node<Class>::parent() const {
  return Section(node_ != nullptr ? zonGetParentSection(node_) : nullptr);
}
template <class Class>
Error Node<Class>::error(const std::string& message, const std::string& hint) const {
  return MakeError(node_, {}, ZONX_OK, "", message, hint);
}

// The children of a node of each kind. The calls have no failure but out of memory.
inline int CountOf(void* parent, const char* name, Section /*kind*/) {
  if (name == nullptr) return zonGetNoSections(parent);
  void* const first = zonSectionByNameNum(parent, name, 1);
  return first != nullptr ? zonGetNoInstances(first) : 0;
}
inline int CountOf(void* parent, const char* name, Keyword /*kind*/) {
  if (name == nullptr) return zonGetNoKeywords(parent);
  void* const first = zonKeywordByNameNum(parent, name, 1);
  return first != nullptr ? zonGetNoInstances(first) : 0;
}
inline int CountOf(void* parent, const char* /*name*/, Value /*kind*/) {
  return zonGetNoNodes(parent);
}
inline void* ChildOf(void* parent, const char* name, unsigned int n, Section /*kind*/) {
  return name != nullptr ? zonSectionByNameNum(parent, name, n) : zonSectionByNum(parent, n);
}
inline void* ChildOf(void* parent, const char* name, unsigned int n, Keyword /*kind*/) {
  return name != nullptr ? zonKeywordByNameNum(parent, name, n) : zonKeywordByNum(parent, n);
}
inline void* ChildOf(void* parent, const char* /*name*/, unsigned int n, Value /*kind*/) {
  return zonNodeByNum(parent, n);
}

}  // namespace detail

/* ---- Views ----------------------------------------------------------------------------------- */

inline Error::Error(int status, const Reports& reports)
    : std::runtime_error(detail::JoinTexts(reports)), reports_(reports), status_(status) {}

template <class View>
Range<View>::Range(void* parent, const char* name) : parent_(parent), name_(name) {
  if (parent == nullptr) return;
  const int count = detail::CountOf(parent, name, View());
  if (count < 0) throw std::bad_alloc();
  count_ = static_cast<unsigned int>(count);
}

template <class View>
View Range<View>::iterator::operator*() const {
  void* const node = detail::ChildOf(parent_, name_, number_, View());
  if (node == nullptr && parent_ != nullptr &&
      static_cast<int>(number_) <= detail::CountOf(parent_, name_, View())) {
    throw std::bad_alloc();
  }
  return View(node);
}

inline Sections::iterator Section::begin() const {
  return sections().begin();
}
inline Sections::iterator Section::end() const {
  return sections().end();
}

inline Values Keyword::values() const {
  return Values(node(), nullptr);
}
inline Values::iterator Keyword::begin() const {
  return values().begin();
}
inline Values::iterator Keyword::end() const {
  return values().end();
}
inline std::size_t Keyword::size() const {
  return values().size();
}

template <class T>
std::vector<T> Keyword::values() const {
  return detail::ReadValues<T>(node(), "");
}

template <class N, std::enable_if_t<detail::kIsNumber<N>, int>>
Item Keyword::operator[](N n) const {
  return Item(node()).WithNumber(n);
}

inline Item Difference::before() const {
  return Item(before_node);
}
inline Item Difference::after() const {
  return Item(after_node);
}

/* ---- Items ----------------------------------------------------------------------------------- */

template <class N>
Item Item::WithNumber(N n) const {
  if (n < 1) {
    const std::string path = path_.WithoutNumber() + "[" + std::to_string(n) + "]";
    throw detail::MakeError(start_, path, ZONX_BAD_ARGUMENT, detail::RuleOf(ZONX_BAD_ARGUMENT),
                            detail::Quoted(path) + " is no path", "numbers count from 1");
  }
  return Item(*this, static_cast<unsigned long long>(n));
}

template <class N, std::enable_if_t<detail::kIsNumber<N>, int>>
Item Item::operator[](N n) const {
  return WithNumber(n);
}

inline Section Item::FindSection() const {
  if (path_.HasNumber() && path_.WithoutNumber().empty()) return Section();
  void* const node = detail::FindNode(start_, path_.AsSection().c_str());
  const Kind kind = static_cast<Kind>(zonxGetKind(node));
  return Section(kind == Kind::section || kind == Kind::file ? node : nullptr);
}

inline Keyword Item::FindKeyword() const {
  void* const node = detail::FindNode(start_, path_.WithoutNumber().c_str());
  const Kind kind = static_cast<Kind>(zonxGetKind(node));
  return Keyword(kind == Kind::keyword || kind == Kind::definition ? node : nullptr);
}

inline Sections Item::FindSections(bool isNamed) const {
  const Section first = FindSection();
  if (!first.exists() || !isNamed) return Sections(first.node(), nullptr);
  return Sections(first.parent().node(), zonGetName(first.node()));
}

inline Keywords Item::FindKeywords(bool isNamed) const {
  if (!isNamed) return Keywords(FindSection().node(), nullptr);
  const Keyword first = FindKeyword();
  if (first.kind() != Kind::keyword) return Keywords();
  return Keywords(first.parent().node(), zonGetName(first.node()));
}

inline bool Item::exists() const {
  return detail::FindNode(start_, path_.CText()) != nullptr ||
         (path_.HasNumber() && FindSection().exists());
}

inline Value Item::value() const {
  void* node = detail::FindNode(start_, path_.CText());
  const int kind = zonxGetKind(node);
  if (kind == ZONX_KEYWORD || kind == ZONX_DEFINITION) return Value(detail::FindNode(node, "[1]"));
  return Value(kind > ZONX_DEFINITION ? node : nullptr);
}

template <class T>
std::vector<T> Item::values() const {
  detail::RequireNoNumber(start_, path_);
  return detail::ReadValues<T>(start_, path_.CText());
}

template <class T, std::enable_if_t<detail::kIsScalar<T>, int>>
Item& Item::operator=(const T& value) {
  const int status = detail::WriteValue<std::decay_t<const T>>(start_, path_.CText(), value);
  if (status != ZONX_OK) detail::FailWrite(start_, path_.CText(), status);
  return *this;
}

template <class T, std::enable_if_t<detail::kIsList<T>, int>>
Item& Item::operator=(const T& values) {
  detail::RequireNoNumber(start_, path_);
  const int status = detail::WriteList(start_, path_.CText(), values);
  if (status != ZONX_OK) detail::FailWrite(start_, path_.CText(), status);
  return *this;
}

template <class T, std::enable_if_t<detail::kIsScalar<T>, int>>
Item& Item::operator=(std::initializer_list<T> values) {
  operator=<std::initializer_list<T>>(values);
  return *this;
}

inline void Item::set_text(const std::string& text) {
  detail::RequireNoNumber(start_, path_);
  int ignored = ZONX_OK;
  const int status = zonxSetText(start_, path_.CText(), detail::ToRaw(text, &ignored).c_str());
  if (status != ZONX_OK) detail::FailWrite(start_, path_.CText(), status);
}

inline bool Item::remove() {
  if (start_ == nullptr) return false;
  int status = zonxRemove(start_, path_.CText());
  if (status == ZONX_MISSING && path_.HasNumber() && !path_.WithoutNumber().empty()) {
    status = zonxRemove(start_, path_.AsSection().c_str());
  }
  if (status != ZONX_OK && status != ZONX_MISSING) detail::FailRead(start_, path_.CText(), status);
  return status == ZONX_OK;
}

inline Error Item::error(const std::string& message, const std::string& hint) const {
  const bool isSection = !value().exists() && FindSection().exists();
  return detail::MakeError(start_, isSection ? path_.AsSection() : path_.AsValue(), ZONX_OK, "",
                           message, hint);
}

/* ---- Files ----------------------------------------------------------------------------------- */

namespace detail {

struct FreeText {
  void operator()(char* text) const noexcept { zonxFree(text); }
};

// A name for the C interface, which would end it at a zero byte.
inline const char* CheckedName(const std::filesystem::path& name) {
  if (name.native().find('\0') != std::string::npos) {
    Throw(ZONX_BAD_ARGUMENT, "the name of a file has a zero byte");
  }
  return name.c_str();
}

// Owns the handle that a load has returned, also of a load that failed.
template <class Load>
File LoadFile(Reports& warnings, Load&& load) {
  void* handle = nullptr;
  Collector collector;
  const int status = load(&handle, Collector::Add, &collector);
  File file(handle);
  if (status != ZONX_OK) Throw(status, collector);
  warnings = collector.TakenReports();
  return file;
}

}  // namespace detail

inline File::File() : File(parse({})) {}

inline void* File::handle() const {
  if (handle_ == nullptr) {
    detail::Throw(ZONX_BAD_ARGUMENT, "the File was moved from, so it has no tree");
  }
  return handle_.get();
}

inline Sections File::sections(detail::PathView path) const& {
  return Finds::sections(path);
}
inline Keywords File::keywords(detail::PathView path) const& {
  return Finds::keywords(path);
}
inline Sections::iterator File::begin() const& {
  return sections().begin();
}
inline Sections::iterator File::end() const& {
  return sections().end();
}

inline void File::Save(const char* name, unsigned int flags) {
  detail::Collector collector;
  const int status = zonxSave(handle(), name, flags, detail::Collector::Add, &collector);
  if (status == ZONX_BAD_ARGUMENT) {
    throw detail::MakeError(handle(), {}, status, detail::RuleOf(status),
                            "cannot be saved: it has no name yet, or the flags are unknown",
                            "pass a name to save()");
  }
  if (status != ZONX_OK) detail::Throw(status, collector);
}

inline void File::save(unsigned int flags) {
  Save(nullptr, flags);
}
inline void File::save(const std::filesystem::path& name, unsigned int flags) {
  Save(detail::CheckedName(name), flags);
}

inline std::string File::text(unsigned int flags) const {
  char* text = nullptr;
  std::size_t size = 0;
  detail::Collector collector;
  const int status = zonxText(handle(), flags, &text, &size, detail::Collector::Add, &collector);
  const std::unique_ptr<char, detail::FreeText> owned(text);
  if (status != ZONX_OK) detail::Throw(status, collector);
  return std::string(text, size);
}

inline const Reports& File::warnings() const& {
  handle();
  return warnings_;
}

inline void File::watch(bool on) {
  detail::Collector none;
  const int status = zonxWatch(handle(), on ? 1 : 0);
  if (status != ZONX_OK) detail::Throw(status, none);
}

inline Reports File::unread() const {
  detail::Collector collector;
  const int status = zonxReportUnread(handle(), detail::Collector::Add, &collector, nullptr);
  if (status != ZONX_OK) detail::Throw(status, collector);
  return collector.TakenReports();
}

inline Error File::error(const std::string& message, const std::string& hint) const {
  return detail::MakeError(handle(), {}, ZONX_OK, "", message, hint);
}

inline File load(const std::filesystem::path& name) {
  const char* const text = detail::CheckedName(name);
  Reports warnings;
  File file = detail::LoadFile(warnings, [&](void** handle, zonxReporter reporter, void* context) {
    return zonxLoadFile(text, handle, reporter, context);
  });
  file.warnings_ = warnings;
  return file;
}

inline File parse(std::string_view text, const std::filesystem::path& name) {
  const char* const named = detail::CheckedName(name);
  Reports warnings;
  File file = detail::LoadFile(warnings, [&](void** handle, zonxReporter reporter, void* context) {
    return zonxLoadText(text.data(), text.size(), named, handle, reporter, context);
  });
  file.warnings_ = warnings;
  return file;
}

inline Reports check(const std::filesystem::path& name) {
  detail::Collector collector;
  const int status =
      zonxLoadFile(detail::CheckedName(name), nullptr, detail::Collector::Add, &collector);
  if (status == ZONX_NO_MEMORY) throw std::bad_alloc();
  return collector.TakenReports();
}

inline Reports validate(const File& pattern, const File& candidate) {
  detail::Collector collector;
  const int status =
      zonxValidate(pattern.handle(), candidate.handle(), detail::Collector::Add, &collector);
  if (status != ZONX_OK && status != ZONX_MISMATCH) detail::Throw(status, collector);
  return collector.TakenReports();
}

inline Differences diff(const File& before, const File& after, const Tolerance& tolerance,
                        const std::string& key) {
  const zonxCompare options = {tolerance.relative, tolerance.absolute};
  detail::Collector collector;
  const int status = zonxDiffByKey(before.handle(), after.handle(), key.c_str(), &options,
                                   detail::Collector::AddDifference, &collector, nullptr);
  if (status != ZONX_OK) detail::Throw(status, collector);
  return collector.TakenDifferences();
}

inline void merge(File& target, const File& overlay) {
  detail::Collector none;
  const int status = zonxMerge(target.handle(), overlay.handle());
  if (status != ZONX_OK) detail::Throw(status, none);
}

}  // namespace ZON_V1
}  // namespace zon

// For C++20: file.sections("Quay") | std::views::filter(...); an iterator may outlive its range.
#if defined(__cpp_lib_ranges)
template <class View>
inline constexpr bool std::ranges::enable_view<zon::Range<View>> = true;
template <class View>
inline constexpr bool std::ranges::enable_borrowed_range<zon::Range<View>> = true;
#endif
/// @endcond

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#undef ZON_TYPE
#undef ZON_LOCAL
#undef ZON_V1
#undef ZON_LOCAL_MEMBERS

#endif
