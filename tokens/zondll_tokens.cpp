// The C functions of the token reader. Each one checks its handle and calls the class. No exception
// escapes it: if out of memory, it returns the failure value that zon.h states.
// Tested by tests/tokens_test.cpp and tests/faults/alloc_faults_test.cpp.
#include <exception>
#include <memory>

#include "base/zoncancel.h"
#include "base/zonerror.h"
#include "tokens/zontoken.h"

namespace {

constexpr int kNullReader = -2;

const char zontNullObject[] = "Handle is NULL";

CzonTokenReader* Reader(void* handle) {
  return static_cast<CzonTokenReader*>(handle);
}

}  // namespace

extern "C" {

ZON_API int zontLoadFile(const char* fileName, void** reader) {
  try {
    auto input = std::make_unique<CzonInput>();
    if (input->open(fileName) != 0) return zon::kErrFileOpen;
    if (reader != nullptr) *reader = new CzonTokenReader(input.release());
    return 0;
  } catch (...) {
    if (zon::IsCancellation()) throw;
    return zon::kErrParserInit;
  }
}

ZON_API int zontNextToken(void* reader) {
  if (reader == nullptr) return kNullReader;
  try {
    return Reader(reader)->NextToken();
  } catch (const std::exception& failure) {
    Reader(reader)->Error(failure.what());
  } catch (...) {
    if (zon::IsCancellation()) throw;
    Reader(reader)->Error("Unknown failure");
  }
  return -1;
}

ZON_API const char* zontGetTokenString(void* reader) {
  return reader != nullptr ? Reader(reader)->GetTokenText().c_str() : zontNullObject;
}

ZON_API const char* zontGetError(void* reader, unsigned int* line, unsigned int* position) {
  if (line != nullptr) *line = reader != nullptr ? Reader(reader)->GetErrorLine() : ~0U;
  if (position != nullptr) *position = reader != nullptr ? Reader(reader)->GetErrorPosition() : ~0U;
  return reader != nullptr ? Reader(reader)->GetErrorText().c_str() : zontNullObject;
}

ZON_API void zontDispose(void** reader) {
  if (reader != nullptr) delete Reader(*reader);
}

}  // extern "C"
