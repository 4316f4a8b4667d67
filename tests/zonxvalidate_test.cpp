// Validation: every mismatch with its places, conditions, faulty templates, and the agreement with
// zonEquivalent.
#include <gtest/gtest.h>

#include "reports.h"
#include "treetext.h"
#include "zonx.h"

using host::Texts;

namespace {

class Validate : public testing::Test {
 protected:
  void TearDown() override {
    EXPECT_EQ(host::Heard(), "0") << "a hook of zon.h was called";
    EXPECT_EQ(host::Reports(), Texts{});
  }
};

struct FromText : host::File {
  explicit FromText(const std::string& text, const char* name = "f.zon") : File(nullptr) {
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), name, Address(), nullptr, nullptr), ZONX_OK)
        << text;
  }
};

// The status if it is not the one that follows from the reports, and the reports with their hints.
Texts ReportsOf(void* wanted, void* file) {
  Texts texts;
  const auto add = [](const zonxReport* report, void* context) {
    const std::string hint = *report->hint != '\0' ? std::string(" (") + report->hint + ")" : "";
    static_cast<Texts*>(context)->push_back(host::Short(*report) + hint);
    EXPECT_EQ(report->related.file != nullptr, *report->relatedMessage != '\0');
  };
  const int status = zonxValidate(wanted, file, add, &texts);
  EXPECT_EQ(zonxValidate(wanted, file, nullptr, nullptr), status);
  if (status != (texts.empty() ? ZONX_OK : ZONX_MISMATCH)) {
    texts.push_back("status " + std::to_string(status));
  }
  return texts;
}

struct Row {
  std::string file;
  Texts reports;
};

void Expect(const std::string& wanted, const std::vector<Row>& rows) {
  const FromText pattern(wanted, "t.zon");
  for (const auto& [text, reports] : rows) {
    EXPECT_EQ(ReportsOf(pattern, FromText(text)), reports) << wanted << "\n" << text;
  }
}

// Rows of one keyword; its definition is in line 2 of the template.
void ExpectKeyword(const std::string& wanted, std::vector<Row> rows) {
  for (Row& row : rows) row.file = "[A] " + row.file + " EndSect";
  Expect("[A]\n" + wanted + "\nEndSect\n", rows);
}

TEST_F(Validate, dummy) {
  Expect(
      "[Model]\n"
      "  depth = 1, 2.5\n"
      "  name = 'x' file = |f| when = #d# flag = true hole =\n"
      "  many() = 1\n"
      "  [Grid] cells = 1 EndSect\n"
      "  [Layer()] top = 1.5 EndSect\n"
      "EndSect\n"
      "[Open()] {required} () = 1, 'x' named = 2 EndSect\n",
      {{"[Model] depth=1 nam='x' [Grid] cel = 2 cells='x' EndSect [Layr] EndSect [grid] EndSect flag = 1 name = 1, 2 name = 'x' EndSect [Openn] EndSect", {}},
       {"[Model] depth = 1, 2 depth = , #x# when=|x| EndSect [Open] a = 2 b= 3, 'x', 4 EndSect",{}}});
  ExpectKeyword("k = 0 {>=0; < 100}, 'x' {one of a, b, 'c, d'; open; unit m}", {{"k = 1, 'a', 'c, d', 'c', 'A', 3", {}},
    {"k = -1, 'a' k = 99.9, 'a' k = 100.0, 'a'", {}}});
  ExpectKeyword("k {-1 .. 3.5; required} = 0, 1 m = true {one of TRUE; required} f {exists}= |f|", {{"k = 1, 2", {}}, {"j = 1", {}}, {"k = -2, 4 m = false f=|gg|", {}}});
  ExpectKeyword("k = 0 {> 5; < 3} m = 'x' {>= 0; one of 1} f = 1 {one of a, b}", {{"k = 1, 2", {}}});
}

}  // namespace
