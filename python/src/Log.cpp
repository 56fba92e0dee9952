#include "Log.h"

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <spdlog/sinks/sink.h>

#include <logging/LoggingManager.h>

#include "text/Text.h"

namespace orvantis::python {
namespace {

struct KeptRecord {
  int level;
  std::string logger;
  std::string text;
};
using KeptRecords = std::vector<KeptRecord>;

// What Python calls the levels of the library; it has none below DEBUG, where tracing belongs.
constexpr int traceLevel = 5;
constexpr int debugLevel = 10;
constexpr int warningLevel = 30;
constexpr int errorLevel = 40;

int levelOf(spdlog::level::level_enum level) {
  switch (level) {
    case spdlog::level::trace:
      return traceLevel;
    case spdlog::level::debug:
    case spdlog::level::info:
      return debugLevel;
    case spdlog::level::warn:
      return warningLevel;
    default:
      return errorLevel;
  }
}

thread_local KeptRecords* recordsOfCall = nullptr;

// What a thread logs that is in no call; the next call to end hands it over.
struct Strays {
  std::mutex mutex;
  KeptRecords records;
};

Strays& strays() {
  static auto* const kept = new Strays();  // never destroyed: threads may log until the process ends
  return *kept;
}

class KeepingSink : public spdlog::sinks::sink {
 public:
  void log(const spdlog::details::log_msg& message) override {
    KeptRecord record{levelOf(message.level),
                      std::string(message.logger_name.data(), message.logger_name.size()),
                      std::string(message.payload.data(), message.payload.size())};
    if (recordsOfCall != nullptr) {
      recordsOfCall->push_back(std::move(record));
      return;
    }
    const std::lock_guard lock(strays().mutex);
    strays().records.push_back(std::move(record));
  }
  void flush() override {}
  void set_pattern(const std::string&) override {}
  void set_formatter(std::unique_ptr<spdlog::formatter>) override {}
};

// Without objects that would be destroyed when Python unwinds a thread's stack.
void handOver(int level, const char* logger, const char* text) {
  PyObject* const logging = PyImport_ImportModule("logging");
  PyObject* const to = logging == nullptr ? nullptr : PyObject_CallMethod(logging, "getLogger", "s", logger);
  PyObject* const done = to == nullptr ? nullptr : PyObject_CallMethod(to, "log", "iss", level, "%s", text);
  if (done == nullptr) {
    // A handler of a user's throws: it is reported as Python reports errors that nobody can catch.
    PyErr_WriteUnraisable(to);
  }
  Py_XDECREF(done);
  Py_XDECREF(to);
  Py_XDECREF(logging);
}

void handOver(const KeptRecords& records) {
  for (const KeptRecord& record : records) {
    const std::string name = toolkit::toUtf8("orvantis" + (record.logger.empty() ? "" : "." + record.logger));
    const std::string text = toolkit::toUtf8(record.text);
    try {
      handOver(record.level, name.c_str(), text.c_str());
    } catch (...) {  // of the unwinding; what is called is in C, and throws nothing else
      standStill();
    }
  }
}

KeptRecords takeStrays() {
  const std::lock_guard lock(strays().mutex);
  return std::exchange(strays().records, {});
}

const std::shared_ptr<KeepingSink>& keepingSink() {
  static const auto* const sink = new std::shared_ptr<KeepingSink>(std::make_shared<KeepingSink>());
  return *sink;
}

LogLevel libraryLevel(int level) {
  if (level <= traceLevel) {
    return LogLevel::Trace;
  }
  if (level <= debugLevel) {
    return LogLevel::Debug;
  }
  return level <= warningLevel ? LogLevel::Warning : LogLevel::Error;
}

}  // namespace

LogScope::LogScope() : isOuter_(recordsOfCall == nullptr) {
  if (isOuter_) {
    static thread_local KeptRecords records;
    recordsOfCall = &records;
  }
}

LogScope::~LogScope() {
  if (!isOuter_) {
    return;
  }
  // Handlers may call into the module themselves: from here on that is a call of its own.
  KeptRecords records = std::exchange(*std::exchange(recordsOfCall, nullptr), {});
  handOver(takeStrays());
  handOver(records);
}

void bindLog(py::module_& module) {
  LoggingManager& manager = LoggingManager::getInstance();
  manager.addSink(keepingSink());
  manager.removeDefaultSink();
  // What is logged while the interpreter ends goes to the error stream again.
  const auto atEnd = [] {
    LoggingManager::getInstance().addDefaultSink();
    LoggingManager::getInstance().removeSink(keepingSink());
  };
  py::module_::import("atexit").attr("register")(py::cpp_function(atEnd));
  module.def(
      "set_log_level", [](int level) { LoggingManager::getInstance().setLevel(libraryLevel(level)); },
      py::arg("level"));
}

}  // namespace orvantis::python
