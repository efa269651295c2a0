// A wish to stop that long calculations heed while they run.
#pragma once

#include "base/exported.h"

#include <functional>
#include <utility>

namespace KELMO_API kelmo {

/// Thrown out of a calculation that was told to stop. What it was to compute is then incomplete.
struct sStopped {};

/// While this lives, long loops of its thread ask `isWanted` between their rounds, parallel ones on
/// whatever thread they run, and throw sStopped when the answer is yes.
class cStopRequest {
  public:
    /// `question` is asked by several threads at the same time.
    explicit cStopRequest(std::function<bool()> question)
        : isWanted(std::move(question)), outer(std::exchange(current(), this)) {}
    ~cStopRequest() { current() = outer; }
    cStopRequest(const cStopRequest&) = delete;
    cStopRequest& operator=(const cStopRequest&) = delete;

    /// The innermost request of this thread, null if there is none.
    static const cStopRequest*& current() {
        thread_local const cStopRequest* request = nullptr;
        return request;
    }

    /// Makes the request of one thread that of another for the lifetime of the loan.
    class cLoan {
      public:
        /// `request` may be null and must outlive the loan.
        explicit cLoan(const cStopRequest* request) : own(std::exchange(current(), request)) {}
        ~cLoan() { current() = own; }
        cLoan(const cLoan&) = delete;
        cLoan& operator=(const cLoan&) = delete;

      private:
        const cStopRequest* const own;
    };

    /// Throws sStopped if a stop is wanted.
    void check() const {
        if (isWanted()) {
            throw sStopped{};
        }
    }

  private:
    const std::function<bool()> isWanted;
    const cStopRequest* const outer;
};

/// Throws sStopped if this thread has a stop request and a stop is wanted.
inline void stopIfWanted() {
    if (const cStopRequest* const request = cStopRequest::current(); request != nullptr) {
        request->check();
    }
}

/// Asks for a stop now and then, for loops whose rounds take less time than the question.
class cStopCheck {
  public:
    /// Does at every 256th call what stopIfWanted() does.
    void operator()() {
        if (++calls % callsPerQuestion == 0) {
            stopIfWanted();
        }
    }

  private:
    static constexpr unsigned callsPerQuestion = 256;
    unsigned calls = 0;
};

} // namespace kelmo
