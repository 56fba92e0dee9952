#pragma once

#include <cstddef>
#include <string>

/// A function that a page calls: numbers and addresses only. engine.ts names all of them.
#define ENGINE_EXPORT extern "C" __attribute__((used, visibility("default")))

namespace orvantis::engine {

/// The text of the last answer, or why there was none; until the next call.
std::string& answer();

/// Keeps what is being thrown as the answer: an object with message, path, line, column and reason.
void answerWithError();

/// @return what `work` returns; `failed` when it throws, and why is then the answer
template <typename Result, typename Work>
Result guarded(Result failed, Work work) {
  try {
    answer().clear();
    return work();
  } catch (...) {
    answerWithError();
    return failed;
  }
}

/// The same for work that gives nothing. @return 0, or 1 when it throws
template <typename Work>
int guarded(Work work) {
  return guarded(1, [&] {
    work();
    return 0;
  });
}

}  // namespace orvantis::engine
