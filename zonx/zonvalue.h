// Values of nodes, and of lists that are still text, without a silent conversion.
//
// Each function stores the value and returns ZONX_OK, or returns ZONX_MISSING, ZONX_WRONG_KIND or
// ZONX_OUT_OF_RANGE and stores nothing. Tested by tests/zonx_test.cpp.
#ifndef ZON_ZONX_ZONVALUE_H
#define ZON_ZONX_ZONVALUE_H

#include <cstddef>
#include <string>
#include <string_view>

class CzonNode;

namespace zon {

int ReadValue(const CzonNode& value, long long* out);
int ReadValue(const CzonNode& value, int* out);
int ReadValue(const CzonNode& value, double* out);
int ReadValue(const CzonNode& value, bool* out);
int ReadValue(const CzonNode& value, const char** out);  // of a string
int ReadFilename(const CzonNode& value, std::string* out);
int ReadText(const CzonNode& value, std::string* out);  // as it is written

// A whole number from its text: sign and digits.
int ReadWhole(std::string_view text, long long* out);

// The values of a list of plain values, see reader/zonvaluelist.h. At most `room` are stored.
// *count receives how many there are, or the number of the first that cannot be read.
int ReadPlainValues(std::string_view list, long long* out, std::size_t room, std::size_t* count);
int ReadPlainValues(std::string_view list, int* out, std::size_t room, std::size_t* count);
int ReadPlainValues(std::string_view list, double* out, std::size_t room, std::size_t* count);

}  // namespace zon

#endif
