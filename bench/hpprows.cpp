// Reading by name through zon.hpp, each row beside the C calls that do the same. Run both in random
// order (--benchmark_enable_random_interleaving=true), and compare their medians.
#include <cstring>
#include <vector>

#include <zon.hpp>

#include "rows.h"
#include "zonxrows.h"

namespace bench {
namespace {

const zon::File& Harbour() {
  static const zon::File file = zon::parse(
      "[Quay] Name = 'North' Length = 240.5 Cells = 40 Depths = 9.5, 8, 7.25, 7, 6.5\n"
      " [Berth] Draught = 7.5 EndSect EndSect");
  return file;
}

// One row for each side. What is read is added up, so that it is not left out.
template <class Call, class Expression>
void AddPair(const std::string& name, Call call, Expression expression) {
  const auto run = [](auto read) {
    return [read](benchmark::State& state) {
      double sum = 0;
      for (auto _ : state) sum += static_cast<double>(read());
      Require(sum > 0, "nothing is found");
      PerValue(state, 1);
    };
  };
  AddRow(name + "/zon/c", run(call));
  AddRow(name + "/zon/cpp", run(expression));
}

}  // namespace

void AddHppRows() {
  const zon::File& file = Harbour();
  void* const handle = file.handle();
  const zon::Section quay = file.section("Quay");
  const auto number = [](void* start, const char* path) {
    double value = 0;
    return zonxGetDouble(start, path, &value) == ZONX_OK ? value : -1;
  };
  AddPair(
      "hpp-path", [=] { return number(handle, "Quay/Length"); },
      [&file] { return file["Quay/Length"].as<double>(); });
  AddPair(
      "hpp-names", [=] { return number(handle, "Quay/Length"); },
      [&file] { return file["Quay"]["Length"].as<double>(); });
  AddPair(
      "hpp-three-names", [=] { return number(handle, "Quay/Berth/Draught"); },
      [&file] { return file["Quay"]["Berth"]["Draught"].as<double>(); });
  AddPair(
      "hpp-section", [=] { return number(quay.node(), "Length"); },
      [quay] { return quay["Length"].as<double>(); });
  AddPair(
      "hpp-default",
      [=] {
        int value = 40;
        return zonxGetInt(handle, "Quay/Cell", &value) == ZONX_MISSING ? value : -1;
      },
      [&file] { return file["Quay"]["Cell"].value_or(40); });
  AddPair(
      "hpp-text",
      [=] {
        const char* text = "";
        return zonxGetString(handle, "Quay/Name", &text) == ZONX_OK ? std::strlen(text) : 0;
      },
      [&file] { return file["Quay"]["Name"].as<std::string_view>().size(); });
  AddPair(
      "hpp-list",
      [=] {
        std::vector<double> values(16);
        std::size_t count = 0;
        zonxGetDoubles(handle, "Quay/Depths", values.data(), values.size(), &count);
        values.resize(count);
        return values.back();
      },
      [&file] { return file["Quay"]["Depths"].values<double>().back(); });
}

}  // namespace bench
