// Fuzzes the incoming channel: clients that connect, send chunks and disconnect in any order. The
// input is a script, see Script. The output of the application must be what a second, simpler
// implementation expects.
#include <iconv.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "api/MessageRecords.h"
#include "app/AppDelegate.h"
#include "app/GDUnixSocketEventsCS.h"
#include "fuzz/Check.h"
#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeyCenter.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlatformDoubles.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace {

using seldial::SetHotKeyApi;

/// Whether iconv can decode it.
bool isText(std::string bytes) {
  const iconv_t converter = iconv_open("UTF-32", "UTF-8");
  std::string decoded(bytes.size() * 4 + 8, '\0');
  char* in = bytes.data();
  char* out = decoded.data();
  std::size_t inLeft = bytes.size();
  std::size_t outLeft = decoded.size();
  const bool valid = iconv(converter, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  return valid && inLeft == 0;
}

/// Whether the text is a valid JSON array, on which the application aborts.
bool isArray(const std::string& text) {
  return text.find('\0') == std::string::npos &&
         nlohmann::json::parse(text, nullptr, false).is_array();
}

/// The expected output of the application, without the times.
class ExpectedChannel {
 public:
  std::string printed;

  void accept(const std::string& id) {
    log("Unix socket server; did accept client with id: " + id);
    log("Unix socket now taking input from client: " + id + ".");
    if (!input_.empty()) {
      log("Unix socket input string from previous client " + client_ + " did contain " + input_ +
          "; PURGED !!!");
    }
    client_ = id;
    input_.clear();
  }

  void receive(const std::string& id, const std::string& bytes) {
    if (!isText(bytes)) {
      log("Unix socket server; did receive nothing; from client with id: " + id + ".");
      return;
    }
    log("Unix socket server; did receive: " + bytes + "; from client with id: " + id);
    if (id == client_) {
      input_ += bytes;
    } else {
      log("Unix socket received message from unrecognized client.");
    }
  }

  [[nodiscard]] bool abortsAtDisconnectOf(const std::string& id) const {
    return id == client_ && isArray(input_);
  }

  void disconnect(const std::string& id) {
    log("Unix socket server; client with id did disconnect: " + id);
    if (id != client_) return;
    log("Process Unix socket input string.");
    process();
    client_.clear();
    input_.clear();
  }

 private:
  void process() {
    if (input_.empty()) return error("empty string on standard input stream");
    const auto record = SetHotKeyApi::fromJSONString(input_);
    if (!record.Command) return error("command tag not found");
    std::string lower = *record.Command;
    for (char& letter : lower) {
      if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 32);
    }
    if (lower == "sethotkey") return setHotKey(record);
    error("invalid command: " + *record.Command);
  }

  void setHotKey(const SetHotKeyApi& record) {
    log("process set hotkey");
    if (hasHotKey_) log("unregister current hotkey");
    hasHotKey_ = record.VirtualKey != 65535;
    if (!hasHotKey_) {
      printed += R"({"failreason":"invalid virtual key value","response":"HotkeyState",)"
                 R"("result":false})"
                 "\n";
      return;
    }
    log("ReadPasteBoardDelay: " + std::to_string(record.ReadDelay));
    printed += R"({"response":"HotkeyState","result":true})"
               "\n";
  }

  void error(const std::string& message) {
    log(message);
    printed += seldial::ErrorApi{message}.toJSONString().string() + "\n";
  }
  void log(const std::string& message) { printed += "Log 00:00:00> " + message + "\n"; }

  std::string client_;
  std::string input_;
  bool hasHotKey_ = false;
};

/// Replaces the digits of all times: those after "Log " and in "datetime".
std::string withoutTimes(std::string text) {
  const auto blank = [&text](std::string_view before, std::size_t length) {
    for (auto at = text.find(before); at != std::string::npos; at = text.find(before, at + 1)) {
      const std::size_t end = std::min(at + before.size() + length, text.size());
      for (std::size_t index = at + before.size(); index < end; ++index) {
        if (text[index] >= '0' && text[index] <= '9') text[index] = '0';
      }
    }
  };
  blank("Log ", 8);
  blank(R"("datetime":")", 24);
  return text;
}

/// The steps of the input. A step is a byte. Its two lowest bits are the action, the next two the
/// client: 0 accept, 1 receive (a length byte and the bytes follow), 2 disconnect, 3 run the main
/// thread.
class Script {
 public:
  explicit Script(std::string_view input) : input_(input) {}

  void run() {
    while (!input_.empty()) step();
    mainQueue_->drain();
    CHECK(withoutTimes(output_.text()) == withoutTimes(expected_.printed));
  }

 private:
  std::uint8_t takeByte() {
    if (input_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(input_[0]);
    input_.remove_prefix(1);
    return byte;
  }

  void step() {
    const std::uint8_t byte = takeByte();
    const std::string id(1, static_cast<char>('A' + (byte >> 2U) % 4));
    switch (byte % 4) {
      case 0:
        events_->unixSocketServerDidAcceptClientWithID(*server_, id);
        return expected_.accept(id);
      case 1: {
        const std::string bytes(input_.substr(0, takeByte()));
        input_.remove_prefix(std::min(bytes.size(), input_.size()));
        if (bytes.empty()) return;  // the library never reports an empty chunk
        events_->unixSocketServerDidReceiveData(*server_, bytes, id);
        return expected_.receive(id, bytes);
      }
      case 2:
        if (expected_.abortsAtDisconnectOf(id)) return;
        events_->unixSocketServerClientWithIDDidDisconnect(*server_, id);
        return expected_.disconnect(id);
      default:
        mainQueue_->drain();
    }
  }

  std::string_view input_;
  ExpectedChannel expected_;
  seldial::tests::CapturedOutput output_;
  const std::shared_ptr<seldial::tests::ManualMainQueue> mainQueue_ =
      std::make_shared<seldial::tests::ManualMainQueue>();
  const std::shared_ptr<seldial::tests::RecordingApplication> application_ =
      std::make_shared<seldial::tests::RecordingApplication>();
  const std::shared_ptr<seldial::tests::FakeHotKeyEvents> hotKeys_ =
      std::make_shared<seldial::tests::FakeHotKeyEvents>();
  const std::shared_ptr<seldial::tests::FakeClipboard> clipboard_ =
      std::make_shared<seldial::tests::FakeClipboard>();
  const std::shared_ptr<seldial::AppDelegate> app_ = [this] {
    const seldial::platform::Ports ports{
        application_, mainQueue_, [this] {
          return seldial::platform::DesktopPorts{hotKeys_, clipboard_};
        }};
    auto app = seldial::AppDelegate::init(ports);
    app->connectToDesktop();
    seldial::QKHotKeyCenter::sharedHotKeyCenter()->init();
    app->FlagLog = true;
    return app;
  }();
  const std::shared_ptr<seldial::GDUnixSocketEventsCS> events_ = app_->unixSocketEvents();
  const std::shared_ptr<seldial::GDUnixSocketServer> server_ =
      seldial::GDUnixSocketServer::initWithSocketPath("/tmp/unused");
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script({reinterpret_cast<const char*>(data), size}).run();
  return 0;
}
