// The functions that receive messages and reports at run time. A program of its own: it replaces
// operator new.
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

#include "../treetext.h"
#include "zonx.h"

namespace {

bool refuseMemory = false;

}  // namespace

// Not inlined: g++ warns where it sees only one of a pair.
__attribute__((noinline)) void* operator new(std::size_t size) {
  void* memory = refuseMemory ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
__attribute__((noinline)) void operator delete(void* memory) noexcept {
  std::free(memory);
}
__attribute__((noinline)) void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace {

using host::Texts;

void AddMessage(const char* text, void* context) {
  static_cast<Texts*>(context)->push_back(text);
}
void AddReport(const char* text, int severity, void* context) {
  refuseMemory = false;
  static_cast<Texts*>(context)->push_back(std::to_string(severity) + ": " + text);
}

class SetHooks : public testing::Test {
 protected:
  SetHooks() { zonxSetHooks(AddMessage, AddReport, &texts_); }
  ~SetHooks() override {
    zonxSetHooks(nullptr, nullptr, nullptr);
    host::onReport = nullptr;
    host::Heard();
    host::Reports();
  }

  Texts texts_;
};

TEST_F(SetHooks, ReceiveWhatTheHooksReceive) {
  const std::string faulty = host::WriteFile("50%.zon", "[A");
  const host::File file(zonLoadFile(faulty.c_str(), 0));
  zonLoadFile("/nowhere/50%.zon", 0);
  zonEquivalent(zonGetRoot(file), nullptr, nullptr);
  zonEqvSection(nullptr, nullptr);

  const Texts reports = host::Reports(), messages = host::Messages();
  ASSERT_EQ(reports.size(), 3U);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(reports[0], "1: Error: syntax error\n in " + faulty + " near line 1 position 2");
  EXPECT_EQ(texts_, (Texts{reports[0], reports[1], messages[0], messages[1], reports[2]}));

  zonLoadFile("/nowhere.zon", 1);
  EXPECT_EQ(texts_.size(), 5U) << "a quiet load";
  zonxSetHooks(nullptr, nullptr, nullptr);
  zonLoadFile("/nowhere.zon", 0);
  zonGetInt(nullptr);
  EXPECT_EQ(texts_.size(), 5U) << "switched off";
}

TEST_F(SetHooks, OutOfMemoryLeavesThePattern) {
  host::onReport = [] { refuseMemory = true; };  // the words are filled in after it
  EXPECT_EQ(zonLoadFile("/nowhere/of/a/long/name.zon", 0), nullptr);
  EXPECT_EQ(texts_, Texts{"1: Open error: %"});
  EXPECT_EQ(zonGetErrorGlb(), 1001);
}

TEST_F(SetHooks, ExceptionsEndTheCall) {
  zonxSetHooks([](const char*, void*) { throw 1; },
               [](const char*, int, void*) { throw std::bad_alloc(); }, nullptr);
  const std::string faulty = host::WriteFile("faulty.zon", "[A");
  EXPECT_EQ(zonLoadFile(faulty.c_str(), 0), nullptr);
  EXPECT_EQ(zonGetErrorGlb(), 1003);
  EXPECT_EQ(zonGetLevel(nullptr), -1);
  EXPECT_EQ(zonGetErrorGlb(), 1006);
}

TEST_F(SetHooks, ServeSeveralThreads) {
  std::atomic<int> count{0};
  zonxSetHooks([](const char*, void* context) { ++*static_cast<std::atomic<int>*>(context); },
               nullptr, &count);
  const auto ask = [] { zonGetInt(nullptr); };
  std::thread other(ask);
  ask();
  other.join();
  EXPECT_EQ(count, 2);
}

}  // namespace
