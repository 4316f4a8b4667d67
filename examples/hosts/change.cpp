// A host in C++: sets values of a file by path and saves it in place. The same as change.c.
#include <iostream>
#include <memory>
#include <string>

#include <zon.h>
#include <zonx.h>

namespace {

struct CloseFile {
  void operator()(void* file) const { zonClose(&file); }
};
using File = std::unique_ptr<void, CloseFile>;

void Print(const zonxReport* report, void*) {
  std::string text(zonxFormatReport(report, nullptr, 0) + 1, '\0');
  zonxFormatReport(report, &text[0], text.size());
  std::cout << text.c_str() << '\n';
}

// "Quay/Length=96.5"
int Change(void* file, const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos) return ZONX_BAD_ARGUMENT;
  const std::string path = assignment.substr(0, equals);
  const std::string value = assignment.substr(equals + 1);
  const int status = value.empty() ? zonxRemove(file, path.c_str())
                                   : zonxSetText(file, path.c_str(), value.c_str());
  zonxReportPath(file, path.c_str(), status, Print, nullptr);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  void* handle = nullptr;
  int status = zonxLoadFile(argv[1], &handle, Print, nullptr);
  const File file(handle);
  for (int n = 2; n < argc && status == ZONX_OK; ++n) status = Change(file.get(), argv[n]);
  if (status == ZONX_OK) status = zonxSave(file.get(), nullptr, ZONX_BACKUP, Print, nullptr);
  std::cout << zonxStatusText(status) << '\n';
  return status == ZONX_OK ? 0 : 1;
}
