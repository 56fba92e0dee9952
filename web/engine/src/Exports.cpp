#include "Exports.h"

#include <cstdlib>
#include <new>

#include <boost/json/object.hpp>

#include "CheckedText.h"
#include "DocumentText.h"
#include "files/Failure.h"
#include "text/JsonText.h"
#include "text/Text.h"

namespace orvantis::engine {
namespace {

void answerWith(const toolkit::Failure& failure) {
  answer() = toolkit::toJson(boost::json::object{{"message", toolkit::toUtf8(failure.what())},
                                                 {"path", toolkit::toUtf8(failure.path())},
                                                 {"line", failure.line()},
                                                 {"column", failure.column()},
                                                 {"reason", toolkit::toUtf8(failure.reason())}});
}

}  // namespace

std::string& answer() {
  static std::string text;
  return text;
}

void answerWithError() {
  try {
    throw;
  } catch (const toolkit::Failure& failure) {
    answerWith(failure);
  } catch (const std::bad_alloc&) {
    answerWith(toolkit::Failure("not enough memory"));
  } catch (const std::exception& error) {
    answerWith(toolkit::Failure(error.what()));
  }
}

}  // namespace orvantis::engine

using namespace orvantis;          // NOLINT(google-build-using-namespace)
using namespace orvantis::engine;  // NOLINT(google-build-using-namespace)

ENGINE_EXPORT const char* engine_text() {
  return answer().data();
}

ENGINE_EXPORT std::size_t engine_text_size() {
  return answer().size();
}

ENGINE_EXPORT void* engine_allocate(std::size_t size) {
  return std::malloc(size);  // NOLINT(cppcoreguidelines-no-malloc): the page frees it
}

ENGINE_EXPORT void engine_release(void* memory) {
  std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc)
}

ENGINE_EXPORT const char* engine_version() {
  return ORVANTIS_VERSION;
}

ENGINE_EXPORT int engine_check(const char* text, std::size_t size) {
  return guarded([&] { answer() = toJson(checked({text, size})); });
}
