// Switches the hooks and the error code of zon.h off for a thread: for the calls of the second
// interface, which report by a status alone.
#ifndef ZON_BASE_ZONSILENCE_H
#define ZON_BASE_ZONSILENCE_H

namespace zon {

bool IsSilent();

// Sets the state of the thread for as long as it exists.
class Silence {
 public:
  explicit Silence(bool on = true);
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() { state_ = before_; }

 private:
  bool& state_;  // of the thread: it is looked up once
  const bool before_;
};

}  // namespace zon

#endif
