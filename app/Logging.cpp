#include <ctime>

#include "api/MessageRecords.h"
#include "app/AppDelegate.h"
#include "app/StandardOutput.h"
#include "platform/MainQueue.h"

namespace seldial {
namespace {

constexpr const char* kSubThreadMarker = ">>>SUB THREAD<<< ";

/// The local time of day, as HH:mm:ss.
std::string timeOfDay() {
  const std::time_t now = std::time(nullptr);
  tzset();  // the system's time zone may have changed since the last line
  std::tm local{};
  localtime_r(&now, &local);
  char text[sizeof "HH:mm:ss"];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return text;
}

}  // namespace

void AppDelegate::log(const std::string& message) {
  if (FlagLog) {
    const bool main = ports_.mainQueue->isMainThread();
    printLine((main ? "" : kSubThreadMarker) + ("Log " + timeOfDay() + "> ") + message);
  }
  if (FlagJsonLog) printLine(LogApi{message}.toJSONString());
}

}  // namespace seldial
