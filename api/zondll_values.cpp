// Exported functions: the value of a node. Tested by tests/values_test.cpp and
// tests/handles_test.cpp.
#include <typeinfo>

#include "api/zon.h"
#include "api/zoncopyout.h"
#include "api/zonhandlecheck.h"
#include "base/zonemptytext.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonstring.h"

using zon::EmpSt;
using zon::QueryValue;

extern "C" {

int zonGetInt(void* node) {
  return QueryValue<CzonNode>(node, -1, [](CzonNode& n) { return n.GetInt(); });
}
double zonGetDouble(void* node) {
  return QueryValue<CzonNode>(node, -1.0, [](CzonNode& n) { return n.GetDouble(); });
}
float zonGetFloat(void* node) {
  return QueryValue<CzonNode>(node, -1.0F, [](CzonNode& n) { return n.GetFloat(); });
}
void zonPasGetDoubleProc(void* node, double* out) {
  const double value = zonGetDouble(node);
  if (out != nullptr) *out = value;
}
void zonPasGetFloatProc(void* node, float* out) {
  const float value = zonGetFloat(node);
  if (out != nullptr) *out = value;
}
int zonGetBool(void* node) {
  return QueryValue<CzonNode>(node, 0, [](CzonNode& n) { return n.GetBool(); });
}
const char* zonGetString(void* node) {
  return QueryValue<CzonNode, const char*>(node, EmpSt(), [](CzonNode& n) {
    // GetString has to make a std::string. A class of the host can override it.
    if (typeid(n) == typeid(CzonString)) {
      return zon::NodeAccess::GetChars(static_cast<CzonString&>(n));
    }
    return n.GetString().c_str();
  });
}

int zonGetString2(void* node, char* buffer, int size) {
  return zon::CopyOut(zonGetString(node), buffer, size);
}

}  // extern "C"
