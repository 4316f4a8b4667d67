#include <libconfig.h>

#include "rows.h"

namespace bench {
namespace {

void ReadFrom(config_setting_t* setting, Totals& totals) {
  switch (config_setting_type(setting)) {
    case CONFIG_TYPE_INT:
      totals.Number(config_setting_get_int(setting));
      break;
    case CONFIG_TYPE_FLOAT:
      totals.Number(config_setting_get_float(setting));
      break;
    case CONFIG_TYPE_BOOL:
      totals.Flag(config_setting_get_bool(setting) != 0);
      break;
    case CONFIG_TYPE_STRING:
      totals.Text(config_setting_get_string(setting));
      break;
    default:
      for (int n = 0; n < config_setting_length(setting); ++n) {
        ReadFrom(config_setting_get_elem(setting, static_cast<unsigned>(n)), totals);
      }
  }
}

class Libconfig {
 public:
  static constexpr Format kFormat = Format::kLibconfig;

  Libconfig() { config_init(&config_); }
  ~Libconfig() { config_destroy(&config_); }
  Libconfig(const Libconfig&) = delete;
  Libconfig& operator=(const Libconfig&) = delete;

  bool Load(const std::string& path) { return config_read_file(&config_, path.c_str()) != 0; }
  void Read(Totals& totals) { ReadFrom(config_root_setting(&config_), totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    const auto* const inside =
        config_setting_get_member(config_root_setting(&config_), section.c_str());
    return config_setting_get_float_elem(config_setting_get_member(inside, keyword.c_str()), 0);
  }

 private:
  config_t config_;
};

const auto kRows = Rows<Libconfig>("libconfig")
                       .Load({"1MB", "small", "settings"})
                       .Read({"1MB"})
                       .LookUp({"1MB"})
                       .Memory({"1MB"});

}  // namespace
}  // namespace bench
