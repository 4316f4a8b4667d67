// A host in C++: reads settings, which have defaults, and reports what is wrong in the file with
// its place. The same as settings.c.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <zon.h>
#include <zonx.h>

namespace {

struct Settings {
  std::string title = "untitled";
  int workers = 4;
  bool isVerbose = false;
  double step = 30;
  std::vector<double> hours;
};

struct CloseFile {
  void operator()(void* file) const { zonClose(&file); }
};

int Get(void* file, const char* path, int* out) {
  return zonxGetInt(file, path, out);
}
int Get(void* file, const char* path, double* out) {
  return zonxGetDouble(file, path, out);
}
int Get(void* file, const char* path, bool* out) {
  int value = 0;
  const int status = zonxGetBool(file, path, &value);
  if (status == ZONX_OK) *out = value != 0;
  return status;
}
int Get(void* file, const char* path, std::string* out) {
  const char* text = nullptr;
  const int status = zonxGetString(file, path, &text);
  if (status == ZONX_OK) *out = text;
  return status;
}
int Get(void* file, const char* path, std::vector<double>* out) {
  std::size_t count = 0;
  int status = zonxGetDoubles(file, path, nullptr, 0, &count);
  if (status != ZONX_OK) return status;
  std::vector<double> values(count);
  status = zonxGetDoubles(file, path, values.data(), count, &count);
  if (status == ZONX_OK) out->swap(values);
  return status;
}

// A file of settings. Prints each report, and counts the errors.
class SettingsFile {
 public:
  explicit SettingsFile(const char* name) {
    void* handle = nullptr;
    isLoaded_ = zonxLoadFile(name, &handle, Print, this) == ZONX_OK;
    file_.reset(handle);
  }

  bool IsLoaded() const { return isLoaded_; }
  bool HasErrors() const { return !isLoaded_ || errors_ > 0; }

  // A value that is missing keeps its default.
  template <class T>
  void Read(const char* path, T* value) {
    const int status = Get(file_.get(), path, value);
    if (status != ZONX_MISSING) zonxReportPath(file_.get(), path, status, Print, this);
  }

  // The same for a number that must be in a range.
  template <class T>
  void Read(const char* path, T* value, T low, T high) {
    Read(path, value);
    if (*value >= low && *value <= high) return;
    void* node = nullptr;
    if (zonxFind(file_.get(), path, &node) != ZONX_OK || zonxFind(node, "[1]", &node) != ZONX_OK)
      return;
    const std::string message = std::string(path) + " is " + std::to_string(*value) +
                                ", not from " + std::to_string(low) + " to " + std::to_string(high);
    zonxReportNode(node, ZONX_ERROR, "range", message.c_str(), "", Print, this);
  }

 private:
  static void Print(const zonxReport* report, void* context) {
    std::string text(zonxFormatReport(report, nullptr, 0) + 1, '\0');
    zonxFormatReport(report, text.data(), text.size());
    text.back() = '\n';
    std::cout << text;
    if (report->severity == ZONX_ERROR) ++static_cast<SettingsFile*>(context)->errors_;
  }

  std::unique_ptr<void, CloseFile> file_;
  bool isLoaded_ = false;
  int errors_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  SettingsFile file(argv[1]);
  Settings settings;
  if (file.IsLoaded()) {
    file.Read("Run/Title", &settings.title);
    file.Read("Run/Verbose", &settings.isVerbose);
    file.Read("Run/Step", &settings.step, 1.0, 3600.0);
    file.Read("Run/Workers", &settings.workers, 1, 64);
    file.Read("Run/Report/Hours", &settings.hours);
  }
  if (file.HasErrors()) return 1;
  std::cout << settings.title << ": " << settings.workers << " workers, step " << settings.step
            << " s, " << settings.hours.size() << " hours\n";
}
