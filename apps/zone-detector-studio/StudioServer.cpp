#include "StudioServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>

#include <httplib.h>

#include "Token.h"
#include "detector/Limits.h"
#include "files/AtomicFile.h"
#include "files/Failure.h"
#include "files/FileSource.h"

namespace orvantis::studio {
namespace {

using httplib::Request;
using httplib::Response;

enum Status {
  Good = 200,
  Refused = 403,
  NotFound = 404,
  WrongMethod = 405,
  Changed = 412,
  TooLarge = 413,
  OutOfRange = 416,
  Failed = 500
};

constexpr const char* address = "127.0.0.1";
// The same each time, since a browser keeps unsaved work by host and port.
constexpr int usualPort = 41307;
// Many, because each slow client keeps a thread busy.
constexpr std::size_t numThreads = 64;
// Connections that may wait. The library's default is five, and a client tries again only after a second.
constexpr int mostWaiting = 1024;

void refuse(Response& response, Status status) {
  response.status = status;
  response.set_content("refused\n", "text/plain");
}

void say(Response& response, Status status, const std::string& text) {
  response.status = status;
  response.set_content(text + "\n", "text/plain; charset=utf-8");
}

// Whether there is no range, or one range inside of the file. Otherwise the library would ask for bytes after
// the end.
bool isWithin(const httplib::Ranges& ranges, std::uint64_t size) {
  if (ranges.empty()) {
    return true;
  }
  const auto last = static_cast<std::int64_t>(size);
  const auto [begin, end] = ranges.front();
  const bool isTail = begin == -1;  // the last `end` bytes
  return ranges.size() == 1 && (isTail ? end > 0 && end <= last : begin >= 0 && begin < last && end < last);
}

}  // namespace

class StudioServer::Impl {
 public:
  Impl(SharedFiles files, std::string session)
      : files_(std::move(files)), session_(std::move(session)), token_(newToken()) {
    server_.new_task_queue = [] { return new httplib::ThreadPool(numThreads); };
    // Replaces the library's default options, which would share the port with any other program.
    server_.set_socket_options([this](socket_t socket) { socket_ = socket; });
    server_.set_payload_max_length(filter::detection::documentSizeLimit);
    server_.set_default_headers({{"Cache-Control", "no-store"},
                                 {"Content-Security-Policy", "frame-ancestors 'none'"},
                                 {"Cross-Origin-Resource-Policy", "same-origin"},
                                 {"Referrer-Policy", "no-referrer"},
                                 {"X-Content-Type-Options", "nosniff"}});
    server_.set_pre_routing_handler([this](const Request& request, Response& response) {
      if (isAllowed(request)) {
        return httplib::Server::HandlerResponse::Unhandled;
      }
      refuse(response, Refused);
      return httplib::Server::HandlerResponse::Handled;
    });
    server_.Get(".*", [this](const Request& request, Response& response) {
      get(linkOf(request), request, response);
    });
    server_.Put(".*", [this](const Request& request, Response& response) {
      put(linkOf(request), request, response);
    });
  }

  void bind(int port) {
    const int wanted = port == 0 ? usualPort : port;
    port_ = server_.bind_to_port(address, wanted) ? wanted
            : port == 0                           ? server_.bind_to_any_port(address)
                                                  : -1;
    if (port_ < 0) {
      throw std::runtime_error("port " + std::to_string(port) + " is taken; choose another one with --port");
    }
    ::listen(socket_, mostWaiting);
  }
  std::string link() const { return "http://" + host() + "/" + token_ + "/"; }
  void run() {
    server_.listen_after_bind();
    hasEnded_ = true;
  }
  // The library ignores a stop before it listens.
  void stop() {
    while (!server_.is_running() && !hasEnded_) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    server_.stop();
  }

 private:
  std::string host() const { return std::string(address) + ":" + std::to_string(port_); }

  bool isAllowed(const Request& request) const {
    const bool isThisHost =
        request.get_header_value_count("Host") == 1 && request.get_header_value("Host") == host();
    const bool isThisOrigin =
        !request.has_header("Origin") || request.get_header_value("Origin") == "http://" + host();
    const std::string& path = request.path;
    const std::size_t end = token_.size() + 1;
    return isThisHost && isThisOrigin && path.size() > end && path[0] == '/' && path[end] == '/' &&
           isSame(std::string_view(path).substr(1, token_.size()), token_);
  }

  std::string linkOf(const Request& request) const {
    const std::string link = request.path.substr(token_.size() + 2);
    return link.empty() ? "index.html" : link;
  }

  void get(const std::string& link, const Request& request, Response& response) const {
    if (link == "session.json") {
      response.set_content(session_, "application/json");
      return;
    }
    const auto found = files_.find(link);
    if (found == files_.end()) {
      refuse(response, NotFound);
      return;
    }
    try {
      send(found->second, request, response);
    } catch (const toolkit::Failure& failure) {
      say(response, Failed, failure.what());
    }
  }

  static void send(const SharedFile& file, const Request& request, Response& response) {
    const auto source = std::make_shared<toolkit::FileSource>(file.path);
    const std::uint64_t size = source->size().value_or(0);
    response.set_header("ETag", '"' + versionOf(file.path) + '"');
    if (!isWithin(request.ranges, size)) {
      response.set_header("Content-Range", "bytes */" + std::to_string(size));
      refuse(response, OutOfRange);
      return;
    }
    if (size == 0) {
      response.set_content("", file.type);
      return;
    }
    response.set_content_provider(
        size, file.type, [source](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
          constexpr std::size_t most = std::size_t{1} << 20U;
          const auto bytes = source->bytes(offset, std::min(length, most));
          return !bytes.empty() && sink.write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        });
  }

  // Overwrites only the version that the page has read, because somebody may have edited the file since.
  void put(const std::string& link, const Request& request, Response& response) const {
    const auto found = files_.find(link);
    if (link != documentLink || found == files_.end()) {
      refuse(response, found == files_.end() ? NotFound : WrongMethod);
      return;
    }
    const std::string& path = found->second.path;
    if (request.get_header_value("If-Match") != '"' + versionOf(path) + '"') {
      say(response, Changed, "the file was changed by another program since it was read");
      return;
    }
    try {
      toolkit::writeWhole(path, request.body);
      response.set_header("ETag", '"' + versionOf(path) + '"');
      say(response, Good, "saved");
    } catch (const toolkit::Failure& failure) {
      say(response, Failed, failure.what());
    }
  }

  SharedFiles files_;
  std::string session_;
  std::string token_;
  socket_t socket_ = -1;
  int port_ = -1;
  std::atomic<bool> hasEnded_ = false;
  httplib::Server server_;
};

StudioServer::StudioServer(SharedFiles files, std::string session)
    : impl_(std::make_unique<Impl>(std::move(files), std::move(session))) {}

StudioServer::~StudioServer() = default;

void StudioServer::bind(int port) {
  impl_->bind(port);
}

std::string StudioServer::link() const {
  return impl_->link();
}

void StudioServer::run() {
  impl_->run();
}

void StudioServer::stop() {
  impl_->stop();
}

}  // namespace orvantis::studio
