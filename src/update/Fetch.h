// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace quillon {

// How long a request may take from its beginning to its end, name look-up and redirects included.
constexpr std::chrono::seconds kFetchLimit{10};
// How many redirects one request follows.
constexpr int kMostRedirects = 5;
// What servers are told of who asks.
constexpr char kFetchAgent[] = "Update search";

enum class FetchEnd : std::uint8_t {
  kNotOpened,   // no good answer began, or it did not end in time, or the request was stopped
  kReadFailed,  // a good answer began, and nothing of its text could be read
  kText,        // text, perhaps empty; an answer that was cut off counts as far as it came
};

struct Fetched {
  FetchEnd end = FetchEnd::kNotOpened;
  std::string text{};  // not more than was asked for
};

// Asks web servers, one question at a time, never from a cache and through the system's proxies.
class Fetch {
 public:
  Fetch() = default;
  Fetch(const Fetch&) = delete;
  Fetch& operator=(const Fetch&) = delete;
  virtual ~Fetch() = default;

  // Asks for the text at an http or https address and takes at most `limit` bytes of it. Turns the
  // event loop meanwhile: windows are painted and may be closed, timers and hot-plug events come,
  // but what the user clicks and types is lost. Whoever calls sees to it that nothing replaces what
  // it works on. A Get() inside of another is not opened. Not for destroying this in it: Stop().
  virtual Fetched Get(const QString& address, std::size_t limit) = 0;

  // Ends the Get() that is under way at once, as not opened. Does nothing without one.
  virtual void Stop() = 0;

  // Whether a look-up of a name or of a proxy may still be under way that no Get() waits for any
  // more. The system offers no end to it, and would keep the program from ending.
  virtual bool LeavesWorkBehind() const = 0;
};

// The real one of this platform. Costs nothing before the first Get().
std::unique_ptr<Fetch> MakeFetch();

}  // namespace quillon
