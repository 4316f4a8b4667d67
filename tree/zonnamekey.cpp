// Relaxed: the counter publishes no other memory.
#include "tree/zonnamekey.h"

#include <atomic>

namespace zon {
namespace {

std::atomic<std::uint32_t> lostNumbers{0};

}  // namespace

void CountLostNumber() {
  lostNumbers.fetch_add(1, std::memory_order_relaxed);
}

std::uint32_t GetLostNumbers() {
  return lostNumbers.load(std::memory_order_relaxed);
}

}  // namespace zon
