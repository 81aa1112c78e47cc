// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <utility>

namespace quillon {

// Held by whatever runs an exchange or a nested event loop: a retrieve, an update, a firmware run,
// a message box, a dialog, a context menu. While it is held, nothing else starts an exchange and
// the table of boards stays as it is; a request for a new detection waits until the gate opens.
class ExchangeGate {
 public:
  // Holds the gate until it goes out of scope.
  class Hold {
   public:
    explicit Hold(ExchangeGate& gate) : gate_(&gate) { ++gate.holds_; }
    Hold(Hold&& other) noexcept : gate_(std::exchange(other.gate_, nullptr)) {}
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    Hold& operator=(Hold&&) = delete;
    ~Hold() {
      if (gate_ != nullptr) gate_->Release();
    }

   private:
    ExchangeGate* gate_;
  };

  ExchangeGate() = default;
  ExchangeGate(const ExchangeGate&) = delete;
  ExchangeGate& operator=(const ExchangeGate&) = delete;

  bool IsOpen() const { return holds_ == 0; }

  // For what the user starts: a hold if the gate is open, nothing if something else is under way.
  [[nodiscard]] std::optional<Hold> TryEnter() {
    if (!IsOpen()) return std::nullopt;
    return Hold(*this);
  }

  // For what belongs to something that may already hold the gate, as a message box does.
  [[nodiscard]] Hold Enter() { return Hold(*this); }

  // Names what Request() runs. It may run at the end of a hold, deep in somebody's stack, so it
  // should only put work on the event queue.
  void SetAction(std::function<void()> action) { action_ = std::move(action); }

  // Runs the action: now if the gate is open, else once when it opens, however often it was asked.
  void Request();

 private:
  void Release();

  int holds_ = 0;
  bool requested_ = false;
  std::function<void()> action_;
};

}  // namespace quillon
