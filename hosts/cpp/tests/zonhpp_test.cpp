// The interface for C++. Every test also requires that no code of zon.h is pending after it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <list>
#include <map>
#if __has_include(<ranges>)
#include <ranges>
#endif
#include <set>
#include <sstream>
#include <thread>

#include <zon.hpp>

#include "memory.h"

namespace {

namespace fs = std::filesystem;

constexpr char kHarbour[] =
    "[Run] {day}\n"                                       // 1
    "  Cells = 40\n"                                      // 2
    "  Big = 12345678901, 99999999999999999999\n"         // 3
    "  Weights = 1, 2.5, -3\n"                            // 4
    "  Gap = 1, , 3\n"                                    // 5
    "  Empty =\n"                                         // 6
    "  Open = true, false\n"                              // 7
    "  Name = 'it''s', 'x'\n"                             // 8
    "  File = |a\\b|, |/c|\n"                             // 9
    "  Range = 1e39, 1e-60, 0.1, 3.4e38\n"                // 10
    "  Mixed = 1, 'x'\n"                                  // 11
    "  Variable = %run\n"                                 // 12
    "EndSect\n"                                           // 13
    "[Quay]\n"                                            // 14
    "  Length = 240.0 // metres\n"                        // 15
    "  Bollard = 1, 25.0\n"                               // 16
    "  Bollard = 2, 26.0 {r}\n"                           // 17
    "  Both = 7\n"                                        // 18
    "  [Both] In = 8 EndSect\n"                           // 19
    "  [Berth] Draught = 6.8 EndSect\n"                   // 20
    "EndSect\n"                                           // 21
    "[QUAY] Length = 96.5 EndSect\n"                      // 22
    "[Quay] [Berth] Draught = 4.1, 5 EndSect EndSect\n";  // 23

class Hpp : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(zonPeekErrorGlb(), 0); }

  zon::File file = zon::parse(kHarbour, "/data/f.zon");
  const std::string before = file.text();
};

// What an error says; empty if nothing is thrown.
template <class Act>
std::string Thrown(Act&& act) {
  try {
    act();
  } catch (const zon::Error& error) {
    return error.what();
  }
  return {};
}

// Its status and place: "10 15:3".
template <class Act>
std::string Place(Act&& act) {
  try {
    act();
  } catch (const zon::Error& error) {
    const zon::Report& report = error.reports()[0];
    return std::to_string(error.status()) + " " + std::to_string(report.place.line) + ":" +
           std::to_string(report.place.column);
  }
  return "nothing";
}

// The text of a file that was built, without the frame of its one section [A].
std::string Body(const zon::File& file) {
  const std::string text = file.text();
  const std::size_t start = text.find('\n') + 1;
  return text.substr(start, text.rfind("EndSect") - start);
}

std::string FolderPath() {
  return testing::TempDir() + "zonhpp" + std::to_string(getpid()) + "/";
}

std::string WriteFile(const std::string& name, const std::string& content) {
  fs::create_directories(FolderPath());
  std::ofstream(FolderPath() + name, std::ios::binary) << content;
  return FolderPath() + name;
}

std::string ReadFile(const std::string& path) {
  std::stringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// ---- Types --------------------------------------------------------------------------------------

template <class View>
constexpr bool kIsSmall = std::is_trivially_copyable_v<View> && sizeof(View) == sizeof(void*);
static_assert(kIsSmall<zon::Section> && kIsSmall<zon::Keyword> && kIsSmall<zon::Value>);

template <class Iterator>
constexpr bool kIsInput =
    std::is_base_of_v<std::input_iterator_tag,
                      typename std::iterator_traits<Iterator>::iterator_category>&&
        std::is_default_constructible_v<Iterator>&& std::is_copy_assignable_v<Iterator>&&
            std::is_swappable_v<Iterator>&&
                std::is_same_v<decltype(*std::declval<Iterator&>()++),
                               typename std::iterator_traits<Iterator>::reference>;
static_assert(kIsInput<zon::Sections::iterator> && kIsInput<zon::Keywords::iterator> &&
              kIsInput<zon::Values::iterator> && kIsInput<zon::Reports::const_iterator>);
#if defined(__cpp_lib_ranges)
static_assert(std::ranges::view<zon::Sections> && std::ranges::borrowed_range<zon::Keywords>);
static_assert(std::ranges::forward_range<zon::File&> && std::ranges::forward_range<zon::Section> &&
              std::ranges::forward_range<zon::Keyword> && std::ranges::sized_range<zon::Values>);
#endif

static_assert(std::is_nothrow_move_constructible_v<zon::File> &&
              std::is_nothrow_move_assignable_v<zon::File> &&
              !std::is_copy_constructible_v<zon::File>);
static_assert(std::is_nothrow_copy_constructible_v<zon::Error>);

static_assert(!std::is_assignable_v<zon::Item&, const zon::Item&> &&
              !std::is_assignable_v<zon::Item&, zon::Item> &&
              !std::is_assignable_v<zon::Item&, zon::Value> &&
              !std::is_assignable_v<zon::Item&, zon::Keyword>);
template <class T>
constexpr bool kTakes = std::is_assignable_v<zon::Item, T>;
static_assert(kTakes<int> && kTakes<unsigned long long> && kTakes<bool> && kTakes<float> &&
              kTakes<const char*> && kTakes<std::string_view> && kTakes<fs::path> &&
              kTakes<std::set<std::string>> && kTakes<std::vector<bool>>);
static_assert(!kTakes<char> && !kTakes<long double> && !kTakes<std::nullptr_t> && !kTakes<void*> &&
              !kTakes<std::vector<char>> && !kTakes<std::map<int, int>>);
#if defined(__cpp_char8_t)
static_assert(!kTakes<char8_t> && !kTakes<decltype(u8"x")> && !kTakes<std::u8string>);
#endif
template <class T>
constexpr bool kGives = std::is_convertible_v<zon::Item, T>;
static_assert(kGives<bool> && kGives<long> && kGives<float> && kGives<std::string> &&
              kGives<fs::path>);
static_assert(!kGives<unsigned> && !kGives<char> && !kGives<short> && !kGives<long double> &&
              !kGives<const char*>);
static_assert(!std::is_constructible_v<bool, zon::Item> &&
              !std::is_constructible_v<bool, zon::Value> &&
              !std::is_constructible_v<bool, zon::Section>);

// ---- Finding ------------------------------------------------------------------------------------

TEST_F(Hpp, ItemsLeadToKeywordsAndSections) {
  EXPECT_EQ(file["Run"]["Cells"].as<int>(), 40);
  EXPECT_EQ(file["run/CELLS"].as<int>(), 40);
  EXPECT_EQ(file[std::string("Run")][std::string_view("Cells/").substr(0, 5)].as<int>(), 40);
  EXPECT_EQ(file["Run/"]["Cells"].as<int>(), 40);
  EXPECT_EQ(file["Quay"][2]["Length"].as<double>(), 96.5);
  EXPECT_EQ(file["Quay:2"]["Length"].as<double>(), 96.5);
  EXPECT_EQ(file["Quay/"][3U]["Berth"]["Draught"][2].as<int>(), 5);
  EXPECT_EQ(file.find("Quay:3/Berth/Draught[2]").as<int>(), 5);
  EXPECT_EQ(file["Quay"]["Bollard"][2].as<double>(), 25);
  EXPECT_EQ(file["Quay"]["Bollard"][short{2}][2LL].as<double>(), 26);
  EXPECT_EQ(file["Quay"]["Both"].as<int>(), 7);
  EXPECT_EQ(file["Quay"]["Both"]["In"].as<int>(), 8);
  EXPECT_EQ(file.section("Quay").section("Both")["In"].as<int>(), 8);
  EXPECT_EQ(file["Quay"].keyword("Both").as<int>(), 7);
  EXPECT_EQ(file["Quay"][3].section()["Berth/Draught"].as<double>(), 4.1);
  EXPECT_EQ(file["Quay"].keyword("Bollard:2")[2].as<double>(), 26);
  const zon::Item item = file["Quay"][1];
  EXPECT_EQ(item["Length"].as<double>(), 240);
  const std::string name(100, 'x');
  EXPECT_FALSE(file[name][name][99][name].exists());
}

TEST_F(Hpp, WhatIsMissingIsEmpty) {
  const zon::Item depth = file.find("Quay:2/Berth/Draught");
  EXPECT_FALSE(depth.exists());
  EXPECT_EQ(depth.get<double>(), std::nullopt);
  EXPECT_TRUE(depth.values<double>().empty());
  EXPECT_TRUE(depth.values().empty());
  EXPECT_FALSE(depth.value().exists());
  EXPECT_EQ(depth.text() + file["Run"]["Empty"].text() + file["Run"].text(), "");
  const zon::Section none = file.section("Quay:4");
  EXPECT_FALSE(none.exists());
  EXPECT_EQ(none.name(), "");
  EXPECT_EQ(none.instance(), 0);
  EXPECT_EQ(none.kind(), zon::Kind::none);
  EXPECT_EQ(none.remark(), "");
  EXPECT_EQ(none.place().line, 0U);
  EXPECT_EQ(none.parent(), none);
  EXPECT_EQ(none["A"]["k"].value_or(1), 1);
  EXPECT_FALSE(none["A"][2].remove());
  EXPECT_FALSE(none.section("A").keyword("k").exists());
  EXPECT_TRUE(none.sections().empty() && none.keywords("k").empty());
  for (zon::Section section : none) ADD_FAILURE() << section.name();
  EXPECT_TRUE(zon::Keyword().values<int>().empty());
  EXPECT_EQ(zon::Value().get<int>(), std::nullopt);
  EXPECT_EQ(zon::Value().text(), "");
  EXPECT_EQ(zon::Keyword()[2].get<int>(), std::nullopt);
}

TEST_F(Hpp, ExistsAsksForSectionsKeywordsAndValues) {
  EXPECT_TRUE(file["Run"].exists());
  EXPECT_TRUE(file["Run"]["Empty"].exists());
  EXPECT_TRUE(file["Quay"][3].exists());
  EXPECT_FALSE(file["Quay"][4].exists());
  EXPECT_TRUE(file["Run"]["Weights"][3].exists());
  EXPECT_FALSE(file["Run"]["Weights"][4].exists());
  EXPECT_FALSE(file.keyword("Run/Cells")[2].exists());
  EXPECT_FALSE(file["Run"]["Cell"].exists());
}

TEST_F(Hpp, ViewsDescribeNodes) {
  const zon::Keyword bollard = file.keyword("Quay/Bollard:2");
  EXPECT_EQ(bollard.name(), "Bollard");
  EXPECT_EQ(bollard.instance(), 2);
  EXPECT_EQ(bollard.kind(), zon::Kind::keyword);
  EXPECT_EQ(bollard.size(), 2U);
  EXPECT_EQ(bollard.parent(), file.section("Quay"));
  EXPECT_EQ(bollard.parent().parent().kind(), zon::Kind::file);
  const zon::Value value = file["Quay"]["Bollard"][2][2].value();
  EXPECT_EQ(value.kind(), zon::Kind::real);
  EXPECT_EQ(value.instance(), 2);
  EXPECT_EQ(value.remark(), "r");
  EXPECT_EQ(value.text(), "26.0");
  EXPECT_EQ(value.place().line, 17U);
  EXPECT_EQ(value.place().column, 16U);
  EXPECT_EQ(value.place().file, "/data/f.zon");
  EXPECT_EQ(zon::Item(value.node()).value().text(), "26.0");
  EXPECT_EQ(file.section("QUAY:2").name(), "QUAY");
  EXPECT_EQ(file["Run"]["Name"].text(), "'it''s'");
}

TEST_F(Hpp, RangesWorkWithAlgorithms) {
  std::string names;
  for (zon::Section section : file) {
    names += std::string(section.name()) + std::to_string(section.instance()) + " ";
  }
  EXPECT_EQ(names, "Run1 Quay1 QUAY2 Quay3 ");
  const zon::Sections quays = file.sections("Quay");
  EXPECT_EQ(quays.size(), 3U);
  const auto found = std::find_if(quays.begin(), quays.end(), [](zon::Section quay) {
    return quay["Length"].value_or(0.0) < 100;
  });
  ASSERT_NE(found, quays.end());
  EXPECT_EQ(found->instance(), 2);
  const auto bollards = file.keywords("Quay/Bollard");
  EXPECT_TRUE(
      std::all_of(bollards.begin(), bollards.end(), [](zon::Keyword k) { return k.size() == 2; }));
  EXPECT_EQ(file.section("Quay").keywords().size(), 4U);
  EXPECT_EQ(file["Quay"][3].sections("Berth").size(), 1U);
  EXPECT_TRUE(file.keywords("Quay/Both/").empty());
  std::vector<double> weights;
  const zon::Keyword keyword = file.keyword("Run/Weights");
  std::transform(keyword.begin(), keyword.end(), std::back_inserter(weights),
                 [](zon::Value value) { return value.as<double>(); });
  EXPECT_EQ(weights, (std::vector<double>{1, 2.5, -3}));
  std::vector<zon::Value> gap;
  for (zon::Value value : file["Run"]["Gap"].values()) gap.push_back(value);
  EXPECT_EQ(gap[1].kind(), zon::Kind::empty);
}

// ---- Reading ------------------------------------------------------------------------------------

TEST_F(Hpp, NothingIsConvertedWithLoss) {
  const zon::Item run = file["Run"];
  const int cells = run["Cells"];
  const bool isOpen = run["Open"];
  const double real = run["Cells"];
  const long wide = run["Big"];
  const float weight = run["Weights"][2];
  std::string name = run["Name"];
  const std::string_view view = run["Name"][2];
  const fs::path path = run["File"];
  EXPECT_EQ(cells, 40);
  EXPECT_TRUE(isOpen);
  EXPECT_EQ(real, 40);
  EXPECT_EQ(wide, 12345678901);
  EXPECT_EQ(weight, 2.5F);
  EXPECT_EQ(name, "it's");
  EXPECT_EQ(view, "x");
  EXPECT_EQ(path, "/data/a/b");
  name = run["Name"][2];
  EXPECT_EQ(name, "x");
  EXPECT_EQ(run["Big"].get<int>(), std::nullopt);
  EXPECT_EQ(run["Big"][2].get<long long>(), std::nullopt);
  EXPECT_EQ(run["Big"][2].get<double>(), 1e20);
  EXPECT_EQ(run["Weights"][2].get<int>(), std::nullopt);
  EXPECT_EQ(run["Open"].get<int>(), std::nullopt);
  EXPECT_EQ(run["Cells"].get<bool>(), std::nullopt);
  EXPECT_EQ(run["Cells"].get<std::string>(), std::nullopt);
  EXPECT_EQ(run["Name"].get<fs::path>(), std::nullopt);
  EXPECT_EQ(run["Range"][1].get<float>(), std::nullopt);
  EXPECT_EQ(run["Range"][2].get<float>(), std::nullopt);
  EXPECT_EQ(run["Range"][3].get<float>(), 0.1F);
  EXPECT_EQ(run["Range"][4].get<float>(), 3.4e38F);
  EXPECT_EQ(run["Empty"].get<int>(), std::nullopt);
  EXPECT_EQ(run.get<int>(), std::nullopt);
}

TEST_F(Hpp, DefaultsReplaceWhatCannotBeRead) {
  const zon::Item run = file["Run"];
  EXPECT_EQ(run["Cells"].value_or(1), 40);
  EXPECT_EQ(run["Cell"].value_or(1), 1);
  EXPECT_EQ(run["Cells"].value_or<double>(1), 40.0);
  EXPECT_EQ(run["Big"].value_or(1), 1);
  EXPECT_EQ(run["Gap"][2].value_or(5), 5);
  const std::string name = run["Title"].value_or("none");
  EXPECT_EQ(name, "none");
  EXPECT_EQ(run["Name"].value_or(std::string("none")), "it's");
  EXPECT_EQ(run["Name"].value_or(std::string_view("none")), "it's");
  EXPECT_EQ(run["Files"].value_or(fs::path("none")), "none");
  EXPECT_EQ(file.keyword("Run/Open").value_or(false), true);
}

TEST_F(Hpp, ListsAreReadAsAWhole) {
  const zon::Item run = file["Run"];
  EXPECT_EQ(run["Weights"].values<double>(), (std::vector<double>{1, 2.5, -3}));
  EXPECT_EQ(run["Weights"].values<float>(), (std::vector<float>{1, 2.5, -3}));
  EXPECT_EQ(file.keyword("Run/Open").values<bool>(), (std::vector<bool>{true, false}));
  EXPECT_EQ(run["Cells"].values<long>(), std::vector<long>{40});
  EXPECT_EQ(run["Name"].values<std::string>(), (std::vector<std::string>{"it's", "x"}));
  EXPECT_EQ(run["Name"].values<std::string_view>().at(1), "x");
  EXPECT_EQ(run["File"].values<fs::path>(), (std::vector<fs::path>{"/data/a/b", "/c"}));
  EXPECT_TRUE(run["Empty"].values<int>().empty());
  EXPECT_TRUE(run["Empty"].values<fs::path>().empty());
  std::vector<int> many(1000);
  for (std::size_t n = 0; n < many.size(); ++n) many[n] = static_cast<int>(n);
  file["New"]["Many"] = many;
  EXPECT_EQ(file["New"]["Many"].values<int>(), many);
}

TEST_F(Hpp, ErrorsHaveThePlace) {
  const std::pair<std::string, std::string> rows[] = {
      {Place([&] { file["Run"]["Weights"][2].as<int>(); }), "11 4:16"},
      {Place([&] { file["Run"]["Name"].as<int>(); }), "11 8:10"},
      {Place([&] { (void)static_cast<int>(file["Run"]["Big"]); }), "12 3:9"},
      {Place([&] { file["Run"]["Range"].as<float>(); }), "12 10:11"},
      {Place([&] { file["Run"]["Empty"].as<int>(); }), "10 6:3"},
      {Place([&] { file["Run"]["Gap"][2].as<int>(); }), "10 5:11"},
      {Place([&] { file["Run"]["Gap"][4].as<int>(); }), "10 5:3"},
      {Place([&] { file["Run"]["Cell"].as<int>(); }), "10 1:1"},
      {Place([&] { file["Quay"][2]["Berth"]["Draught"].as<int>(); }), "10 22:1"},
      {Place([&] { file["Runs"]["Cells"].as<int>(); }), "10 0:0"},
      {Place([&] { file.keyword("Run/Name").as<int>(); }), "11 8:10"},
      {Place([&] { file.keyword("Run/Name").begin()->as<int>(); }), "11 8:10"},
      {Place([&] { file["Run"]["Mixed"].values<int>(); }), "11 11:14"},
      {Place([&] { file["Run"]["Gap"].values<int>(); }), "10 5:11"},
      {Place([&] { file["Run"]["Gap"].values<fs::path>(); }), "11 5:9"},
      {Place([&] { file["Run"]["Range"].values<float>(); }), "12 10:11"},
      {Place([&] { file["Run"].values<int>(); }), "11 1:1"},
      {Place([&] { zon::Section()["x"].as<int>(); }), "10 0:0"},
      {Place([&] { throw file["Quay"]["Length"].error("long"); }), "0 15:12"},
      {Place([&] { throw file["Run"]["Weights"][3].error("long"); }), "0 4:21"},
      {Place([&] { throw file["Run"]["Empty"].error("empty"); }), "0 6:10"},
      {Place([&] { throw file["Run"]["Weights"][9].error("few"); }), "0 4:3"},
      {Place([&] { throw file["Quay"][2]["Berth"]["Draught"].error("none"); }), "0 22:1"},
      {Place([&] { throw file.section("Quay:3").error("far"); }), "0 23:1"},
      {Place([&] { throw file["Quay"][3].error("far"); }), "0 23:1"},
      {Place([&] { throw file["Run"].error("short"); }), "0 1:1"},
      {Place([&] { throw file.keyword("Run/Weights").error("few"); }), "0 4:3"},
      {Place([&] { throw file["Run"]["Weights"][3].value().error("long"); }), "0 4:21"}};
  for (const auto& [place, expected] : rows)
    EXPECT_EQ(place, expected) << &expected - &rows[0].second;
  EXPECT_EQ(Thrown([&] { throw file["Quay"]["Length"].error("longer than the harbour", "240"); }),
            "/data/f.zon:15:12: error: longer than the harbour\n"
            "  Length = 240.0 // metres\n"
            "           ^~~~~\n"
            "hint: 240");
  EXPECT_EQ(Thrown([&] { file["Quay"]["Lenght"].as<double>(); }),
            "/data/f.zon:14:1: error: the section `Quay` has no keyword `Lenght`\n[Quay]\n^~~~~~\n"
            "hint: did you mean Length?");
  EXPECT_EQ(Thrown([&] { zon::Section()["A"]["k"].as<int>(); }),
            "error: there is no section to find `A/k` in");
  EXPECT_EQ(Thrown([&] { throw file.error("wrong"); }), "/data/f.zon: error: wrong");
}

TEST_F(Hpp, WrongPathsThrow) {
  const char* const null = nullptr;
  const std::string zero("Run\0x", 5);
  const auto& rows = {Place([&] { file["Run"][0]; }),
                      Place([&] { file["Run"]["Weights"][-1]; }),
                      Place([&] { file["a//b"].get<int>(); }),
                      Place([&] { file["a//b"].text(); }),
                      Place([&] { file["Run"]["Gap"][1][2][3].exists(); }),
                      Place([&] { file["Run:0"].section(); }),
                      Place([&] { file["Run"]["Gap"][1].values<int>(); }),
                      Place([&] { file[null]; }),
                      Place([&] { file[zero]; }),
                      Place([&] { file.find(std::string_view(zero)); }),
                      Place([&] {
                        file["Run"]["Gap"][2] = {1, 2};
                      }),
                      Place([&] { file["Run"]["Gap"][2].set_text("1"); })};
  for (const std::string& place : rows) EXPECT_EQ(place.substr(0, 2), "1 ");
  EXPECT_EQ(file.text(), before);
}

// ---- Changing -----------------------------------------------------------------------------------

struct Assignment {
  void (*assign)(zon::Item item);
  std::string text;
};

TEST_F(Hpp, ValuesAreWritten) {
  const Assignment rows[] = {
      {[](zon::Item k) { k = 5; }, "5"},
      {[](zon::Item k) { k = std::int8_t{-5}; }, "-5"},
      {[](zon::Item k) { k = std::numeric_limits<long long>::min(); }, "-9223372036854775808"},
      {[](zon::Item k) { k = std::size_t{7}; }, "7"},
      {[](zon::Item k) { k = true; }, "true"},
      {[](zon::Item k) { k = 0.1; }, "0.1"},
      {[](zon::Item k) { k = 0.1F; }, "0.1"},
      {[](zon::Item k) { k = -1e-40F; }, "-1e-40"},
      {[](zon::Item k) { k = 7.038531e-26F; }, "7.038530691851209e-26"},
      {[](zon::Item k) { k = std::numeric_limits<float>::max(); }, "3.4028235e+38"},
      {[](zon::Item k) { k = "it's"; }, "'it''s'"},
      {[](zon::Item k) { k = "\xff\xc0"; }, "'\xff\xc0'"},
      {[](zon::Item k) { k = std::string_view("xyz", 2); }, "'xy'"},
      {[](zon::Item k) { k = std::string(); }, "''"},
      {[](zon::Item k) { k = fs::path("a/b"); }, "|a/b|"},
      {[](zon::Item k) {
         k = {1, 2};
       },
       "1, 2"},
      {[](zon::Item k) {
         k = {"a", "b"};
       },
       "'a', 'b'"},
      {[](zon::Item k) {
         k = std::list<std::string>{"a", "b"};
       },
       "'a', 'b'"},
      {[](zon::Item k) {
         k = std::array<float, 2>{0.1F, 2};
       },
       "0.1, 2.0"},
      {[](zon::Item k) {
         k = std::vector<bool>{true, false};
       },
       "true, false"},
      {[](zon::Item k) {
         k = std::vector<fs::path>{"a", "b c"};
       },
       "|a|, |b c|"},
      {[](zon::Item k) { k = std::vector<fs::path>{}; }, ""},
      {[](zon::Item k) { k = std::vector<int>{}; }, ""},
      {[](zon::Item k) { k.set_text("1, 2.50 {m}, 'x'"); }, "1, 2.50 {m}, 'x'"},
      {[](zon::Item k) {
         k[1] = 1;
         k[2] = 2.5;
         k[1] = "x";
       },
       "'x', 2.5"}};
  for (const Assignment& row : rows) {
    zon::File built;
    row.assign(built["A"]["k"]);
    EXPECT_EQ(Body(built), "   k = " + row.text + "\n");
  }
}

TEST_F(Hpp, RefusedValuesChangeNothing) {
  const std::string zero("a\0b", 3);
  const char* const null = nullptr;
  zon::Item target = file["New"]["k"];
  const auto refused = [&](auto&& value) { return Place([&] { target = value; }); };
  EXPECT_EQ(refused(std::numeric_limits<double>::infinity()), "12 0:0");
  EXPECT_EQ(refused(std::numeric_limits<float>::quiet_NaN()), "12 0:0");
  EXPECT_EQ(refused(std::numeric_limits<std::uint64_t>::max()), "12 0:0");
  EXPECT_EQ(refused(std::vector<double>{1, std::numeric_limits<double>::quiet_NaN()}), "12 0:0");
  EXPECT_EQ(refused(zero), "1 0:0");
  EXPECT_EQ(refused(fs::path(zero)), "1 0:0");
  EXPECT_EQ(refused(std::vector<std::string>{"a", zero}), "1 0:0");
  EXPECT_EQ(refused(std::vector<fs::path>{"a|, 7, |b"}), "1 0:0");
  EXPECT_EQ(refused(null), "1 0:0");
  EXPECT_EQ(refused(std::vector<const char*>{"a", null}), "1 0:0");
  EXPECT_EQ(Place([&] { file["Quay"][5]["Length"] = 1; }), "10 0:0");
  EXPECT_EQ(Place([&] { file["Run"]["Weights"][5] = 1; }), "10 4:3");
  EXPECT_EQ(Place([&] { file["Run"]["a b"] = 1; }), "1 1:1");
  EXPECT_EQ(Place([&] { file["k"] = 1; }), "1 0:0");
  EXPECT_EQ(Place([&] { file["Run"]["k"].set_text("1 EndSect"); }), "6 1:1");
  EXPECT_EQ(Place([&] { zon::Section()["k"] = 1; }), "10 0:0");
  EXPECT_EQ(file.text(), before);
}

TEST_F(Hpp, WhatIsMissingIsCreated) {
  file["Quay"][2]["Length"] = 97;
  file["Quay"][4]["Berth"][1]["Name"] = "east";
  file["Run"]["Weights"][4] = 8;
  file.keyword("Quay/Bollard:2")[2] = 30.0;
  file.section("Quay:3")["Rails"] = true;
  EXPECT_EQ(file["Quay:2/Length"].text(), "97");
  EXPECT_EQ(file["Quay:4/Berth/Name"].text(), "'east'");
  EXPECT_EQ(file["Run/Weights[4]"].text(), "8");
  EXPECT_EQ(file["Quay/Bollard:2[2]"].text(), "30.0");
  EXPECT_EQ(file["Quay:3/Rails"].text(), "true");
  zon::File built;
  for (int n = 1; n <= 3; ++n) built["Quay"][n]["Number"] = n;
  EXPECT_EQ(built.sections("Quay").size(), 3U);
  const zon::File loaded = zon::parse(built.text());
  EXPECT_EQ(loaded["Quay"][3]["Number"].as<int>(), 3);
}

TEST_F(Hpp, ItemsAreRemoved) {
  EXPECT_TRUE(file["Run"]["Weights"][1].remove());
  EXPECT_EQ(file["Run"]["Weights"].values<double>(), (std::vector<double>{2.5, -3}));
  EXPECT_TRUE(file["Quay"]["Both"].remove());
  EXPECT_EQ(file["Quay"]["Both"]["In"].as<int>(), 8);
  EXPECT_TRUE(file["Quay"]["Both"].remove());
  EXPECT_TRUE(file["Quay"][2].remove());
  EXPECT_EQ(file.sections("Quay").size(), 2U);
  EXPECT_FALSE(file["Quay"][3].remove());
  EXPECT_FALSE(file["Run"]["Cell"].remove());
  EXPECT_EQ(Place([&] { file["a//b"].remove(); }), "1 0:0");
}

// ---- Files --------------------------------------------------------------------------------------

TEST_F(Hpp, SavingKeepsComments) {
  const std::string path = WriteFile("saved.zon", kHarbour);
  zon::File loaded = zon::load(path);
  loaded["Quay"]["Length"] = 241.0;
  loaded.save();
  std::string expected = kHarbour;
  expected.replace(expected.find("240.0"), 5, "241.0");
  EXPECT_EQ(ReadFile(path), expected);
  EXPECT_EQ(loaded.text(), expected);
  loaded["Quay"]["Length"] = 242.0;
  loaded.save(ZONX_BACKUP);
  EXPECT_EQ(ReadFile(path + "~"), expected);
  EXPECT_EQ(Place([&] { loaded.save(path, ZONX_NEW); }).substr(0, 2), "9 ");
  WriteFile("saved.zon", "[A] EndSect");
  loaded["Quay"]["Length"] = 243.0;
  EXPECT_EQ(Place([&] { loaded.save(); }).substr(0, 2), "8 ");
  loaded.save(FolderPath() + "other.zon");
  EXPECT_EQ(zon::load(FolderPath() + "other.zon")["Quay"]["Length"].as<double>(), 243);
  EXPECT_NE(Thrown([&] { loaded.save(fs::path(std::string("a\0b", 3))); }), "");
  EXPECT_EQ(Place([&] { zon::File().save(); }), "1 0:0");
  EXPECT_EQ(Place([&] { loaded.text(0x8000); }), "1 0:0");
}

TEST_F(Hpp, LoadsThrowEveryReport) {
  const std::string path = WriteFile("faulty.zon", "[A]\n x = ]\n y = 1 2\nEndSect\n");
  try {
    zon::load(path);
    ADD_FAILURE();
  } catch (const zon::Error& error) {
    EXPECT_EQ(error.status(), ZONX_FAULTY);
    ASSERT_EQ(error.reports().size(), 2U);
    EXPECT_EQ(error.reports()[0].place.line, 2U);
    EXPECT_EQ(error.reports()[1].place.line, 3U);
    EXPECT_EQ(error.reports()[1].source_line, " y = 1 2");
    EXPECT_EQ(error.what(), error.reports()[0].text + "\n" + error.reports()[1].text);
    EXPECT_EQ(error.reports()[0].text.find(path + ":2:6: error: "), 0U);
    const zon::Error copy = error;
    EXPECT_EQ(copy.reports().begin(), error.reports().begin());
  }
  EXPECT_EQ(zon::check(path).size(), 2U);
  EXPECT_EQ(Place([&] { zon::load(FolderPath() + "none.zon"); }), "3 0:0");
  EXPECT_NE(Thrown([&] { zon::load(FolderPath() + "none.zon"); }).find("none.zon: error: "),
            std::string::npos);
  EXPECT_EQ(zon::check(FolderPath() + "none.zon").size(), 1U);
  EXPECT_NE(Thrown([&] { zon::load(std::string("a\0b", 3)); }), "");
  EXPECT_NE(Thrown([] { zon::parse("[A]"); }), "");
  EXPECT_NE(Thrown([] { zon::parse(std::string_view("[A]\0 EndSect", 12)); }), "");
  const zon::File warned = zon::parse("[A] a = 1 b = 2 a = 3 EndSect", "w.zon");
  ASSERT_EQ(warned.warnings().size(), 1U);
  EXPECT_EQ(warned.warnings()[0].severity, zon::Severity::warning);
}

TEST_F(Hpp, FilesMove) {
  zon::File moved = std::move(file);
  EXPECT_EQ(moved["Run"]["Cells"].as<int>(), 40);
  const auto uses = {Thrown([&] { file["Run"]; }),
                     Thrown([&] { file.section("Run"); }),
                     Thrown([&] { file.begin(); }),
                     Thrown([&] { file.sections(); }),
                     Thrown([&] { file.keywords("x"); }),
                     Thrown([&] { file.save("x"); }),
                     Thrown([&] { (void)file.text(); }),
                     Thrown([&] { file.watch(); }),
                     Thrown([&] { (void)file.unread(); }),
                     Thrown([&] { (void)file.handle(); }),
                     Thrown([&] { (void)file.warnings(); }),
                     Thrown([&] { throw file.error("x"); }),
                     Thrown([&] { zon::diff(file, moved); }),
                     Thrown([&] { zon::merge(moved, file); }),
                     Thrown([&] { zon::validate(moved, file); })};
  for (const std::string& use : uses) {
    EXPECT_EQ(use, "error: the File was moved from, so it has no tree");
  }
  file = std::move(moved);
  EXPECT_EQ(file["Run"]["Cells"].as<int>(), 40);
  file = zon::parse("[B] EndSect");
  EXPECT_EQ(file.begin()->name(), "B");
}

TEST_F(Hpp, UnreadKeywordsAreReported) {
  zon::File watched = zon::parse("[A] a = 1 bb = 2 EndSect", "w.zon");
  EXPECT_NE(Thrown([&] { (void)watched.unread(); }), "");
  watched.watch();
  EXPECT_EQ(watched["A"]["a"].as<int>() + watched["A"]["b"].value_or(1), 2);
  const zon::Reports unread = watched.unread();
  ASSERT_EQ(unread.size(), 1U);
  EXPECT_EQ(unread[0].place.column, 11U);
}

TEST_F(Hpp, MismatchesHaveBothPlaces) {
  const zon::File pattern = zon::parse("[A]\n k = 1 {0 .. 5}\nEndSect", "t.zon");
  EXPECT_TRUE(zon::validate(pattern, zon::parse("[A] k = 5 EndSect")).empty());
  const zon::Reports reports = zon::validate(pattern, zon::parse("[A] k = 6 EndSect", "c.zon"));
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_EQ(reports[0].place.column, 9U);
  EXPECT_EQ(reports[0].related.file, "t.zon");
  EXPECT_EQ(reports[0].related.line, 2U);
  const zon::File faulty = zon::parse("[A] k = 1 {> 5; < 5} EndSect", "t.zon");
  EXPECT_EQ(Place([&] { zon::validate(faulty, pattern); }).substr(0, 2), "6 ");
}

TEST_F(Hpp, DifferencesLeadToBothNodes) {
  zon::File other = zon::parse(kHarbour, "/data/f.zon");
  EXPECT_TRUE(zon::diff(file, other).empty());
  other["Quay"]["Length"] = 240.5;
  other["Quay"][4]["x"] = 1;
  other["Run"]["Cells"].remove();
  std::string all;
  for (const zon::Difference& difference : zon::diff(file, other)) {
    all += std::to_string(static_cast<int>(difference.change)) + difference.path +
           (difference.before().exists() ? " b" : "") + (difference.after().exists() ? " a" : "") +
           "\n";
  }
  EXPECT_EQ(all, "1Run/Cells b\n2Quay/Length[1] b a\n0Quay:4 a\n");
  const zon::Differences two = zon::diff(file, other, {0.01, 0});
  ASSERT_EQ(two.size(), 2U);
  EXPECT_EQ(two[0].before().as<int>(), 40);
  const zon::File a = zon::parse("[Q] n = 1 EndSect [Q] n = 2 EndSect");
  const zon::File b = zon::parse("[Q] n = 1 EndSect [Q] n = 3 EndSect");
  EXPECT_EQ(zon::diff(a, b).size(), 1U);
  EXPECT_EQ(zon::diff(a, b, {}, "n").size(), 2U);
  EXPECT_EQ(Place([&] { zon::diff(a, b, {-1, 0}); }), "1 0:0");
}

TEST_F(Hpp, MergingKeepsTheRest) {
  const zon::File overlay = zon::parse("[Quay] Length = 250.5 Rails = true EndSect");
  zon::merge(file, overlay);
  EXPECT_EQ(file["Quay"]["Length"].as<double>(), 250.5);
  EXPECT_TRUE(file["Quay"]["Rails"].as<bool>());
  EXPECT_EQ(file["Quay"]["Both"].as<int>(), 7);
  EXPECT_NE(file.text().find("250.5 // metres"), std::string::npos);
}

// ---- Memory and threads -------------------------------------------------------------------------

TEST_F(Hpp, ReadingByNameAllocatesNothing) {
  if (ZON_COUNTS_MEMORY == 0) GTEST_SKIP() << "the address sanitizer replaces operator new";
  double sum = 0;
  std::string_view name;
  for (int round = 0; round < 2; ++round) {  // values are made by the first
    Memory::Allow();
    sum += file["Quay"][2]["Length"].as<double>() + file["Run"]["Cells"].value_or(1);
    sum +=
        file["Quay"]["Berth"]["Depth"].value_or(1.0) + file.section("Quay")["Length"].as<double>();
    name = file["Run"]["Name"];
    sum += file["Run"]["Weights"][3].get<float>().value_or(0);
    for (zon::Section quay : file.sections("Quay")) sum += quay.instance();
  }
  EXPECT_EQ(Memory::requests, 0);
  EXPECT_EQ(name, "it's");
  EXPECT_GT(sum, 0);
}

// Refuses each request of an action in turn: it throws std::bad_alloc and leaves nothing behind.
TEST_F(Hpp, RefusedMemoryThrows) {
  if (ZON_COUNTS_MEMORY == 0) GTEST_SKIP() << "the address sanitizer replaces operator new";
  const std::string path = WriteFile("memory.zon", kHarbour);
  const std::string faulty = WriteFile("memory-faulty.zon", "[A] x = ] y = ] EndSect");
  const std::string longName(200, 'n');
  void (*const acts[])(zon::File&, const std::string&, const std::string&) = {
      [](zon::File&, const std::string& good, const std::string&) { zon::load(good); },
      [](zon::File&, const std::string&, const std::string& bad) { zon::check(bad); },
      [](zon::File&, const std::string&, const std::string& bad) {
        EXPECT_NE(Thrown([&] { zon::load(bad); }), "");
      },
      [](zon::File& f, const std::string&, const std::string&) {
        EXPECT_NE(Thrown([&] { f["Run"]["Name"].as<int>(); }), "");
      },
      [](zon::File& f, const std::string&, const std::string&) {
        EXPECT_EQ(f["Run"]["File"].values<fs::path>().size(), 2U);
      },
      [](zon::File& f, const std::string&, const std::string&) {
        f["Memory"]["Texts"] = {"a", "b"};
        EXPECT_TRUE(f["Memory"].remove());
      },
      [](zon::File& f, const std::string&, const std::string&) {
        EXPECT_EQ(f["Quay"][3]["Berth"]["Draught"].value().kind(), zon::Kind::real);
        EXPECT_EQ(f.keyword("Quay/Bollard:2").begin()->text(), "2");
      },
      [](zon::File& f, const std::string&, const std::string&) { zon::diff(f, zon::File()); },
      [](zon::File& f, const std::string&, const std::string&) { f.text(); }};
  for (const auto act : acts) {
    zon::File changed = zon::parse(kHarbour, "/data/f.zon");
    bool isDone = false;
    for (long number = 1; !isDone; ++number) {
      Memory::Refuse(number);
      try {
        act(changed, path, faulty);
        isDone = Memory::requests < number;
      } catch (const std::bad_alloc&) {
      }
      Memory::Allow();
      zonGetErrorGlb();
      changed["Memory"].remove();
      EXPECT_EQ(changed.text(), before);
      ASSERT_LT(number, 100000);
    }
  }
  EXPECT_THROW(
      {
        Memory::Refuse(1);
        file[longName];
      },
      std::bad_alloc);
  Memory::Allow();
}

TEST(HppThreads, FilesAreIndependent) {
  const std::string path = WriteFile("threads.zon", kHarbour);
  std::vector<std::thread> threads;
  for (int number = 1; number <= 2; ++number) {
    threads.emplace_back([number, &path] {
      zon::File file = zon::load(path);
      for (int n = 1; n <= 200; ++n) {
        file["Quay"][2]["Length"] = number * n;
        EXPECT_EQ(file["Quay"][2]["Length"].as<int>(), number * n);
        EXPECT_EQ(Place([&] { file["Run"]["Cell"].as<int>(); }), "10 1:1");
        EXPECT_EQ(file["Run"]["File"].as<fs::path>(), FolderPath() + "a/b");
      }
      file.save(path + std::to_string(number), ZONX_OVERWRITE);
      EXPECT_EQ(zon::load(path + std::to_string(number))["Quay:2/Length"].as<int>(), 200 * number);
    });
  }
  for (std::thread& thread : threads) thread.join();
  fs::remove_all(FolderPath());
}

}  // namespace
