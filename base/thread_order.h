// Tells ThreadSanitizer of the order that libraries keep among threads, which it cannot see itself.
#pragma once

#include "base/exported.h"

#if defined(__SANITIZE_THREAD__) || defined(KELMO_TELLS_THREAD_SANITIZER)
#include <sanitizer/tsan_interface.h>
#endif

namespace KELMO_API kelmo {

// The libraries that hand work from thread to thread are not compiled for the sanitizer: it sees
// what is handed over, but not that it was handed over. What is said here must be true of every
// run: an order that is claimed without being kept hides races. In builds without the sanitizer
// nothing happens.

/// Says that whatever this thread has done so far comes before what a thread does that calls
/// takeOver() of this place later.
inline void handOver([[maybe_unused]] const void* place) {
#if defined(__SANITIZE_THREAD__) || defined(KELMO_TELLS_THREAD_SANITIZER)
    __tsan_release(const_cast<void*>(place));
#endif
}

/// Says that whatever threads had done when they called handOver() of this place comes before what
/// this thread does from now on.
inline void takeOver([[maybe_unused]] const void* place) {
#if defined(__SANITIZE_THREAD__) || defined(KELMO_TELLS_THREAD_SANITIZER)
    __tsan_acquire(const_cast<void*>(place));
#endif
}

/// Lives while a thread is at a place that only one is at at a time.
class cVisit {
  public:
    /// Only the address of the place counts.
    explicit cVisit(const void* visitedPlace) : place(visitedPlace) { takeOver(place); }
    ~cVisit() { handOver(place); }
    cVisit(const cVisit&) = delete;
    cVisit& operator=(const cVisit&) = delete;

  private:
    const void* const place;
};

/// Work that one thread, which makes and destroys this, gives to others and waits for: the work
/// comes after whatever that thread did before, and before what it does afterwards. The pieces have
/// no order among each other.
class cForkedWork {
  public:
    cForkedWork() { handOver(&begin); }
    ~cForkedWork() { takeOver(&end); }
    cForkedWork(const cForkedWork&) = delete;
    cForkedWork& operator=(const cForkedWork&) = delete;

    /// Lives while one piece of the work is done, on whatever thread.
    class cPiece {
      public:
        /// `forkedWork` must outlive the piece.
        explicit cPiece(const cForkedWork& forkedWork) : work(forkedWork) { takeOver(&work.begin); }
        ~cPiece() { handOver(&work.end); }
        cPiece(const cPiece&) = delete;
        cPiece& operator=(const cPiece&) = delete;

      private:
        const cForkedWork& work;
    };

  private:
    char begin = 0; ///< only the addresses count
    char end = 0;
};

} // namespace kelmo
