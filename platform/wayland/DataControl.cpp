#include "platform/wayland/DataControl.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/x11/copy/SelectionText.h"
#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// The types of UTF-8 text, best first. All are one text; programs differ in what they offer.
constexpr std::array kTextTypes{"text/plain;charset=utf-8", "text/plain;charset=UTF-8",
                                "UTF8_STRING", "text/plain"};

/// What our empty clipboard offers: a clipboard without any type is one that clipboard managers
/// fill with an old text again.
constexpr const char* kEmptyType = "application/x-seldial-empty";

/// How long an owner may take for each piece of the text.
constexpr milliseconds kPatience{1000};

/// How long all of it may take: the main thread waits, and an owner can send byte by byte.
constexpr milliseconds kTimeLimit{5000};

/// The longest text that is read.
constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

DataControl& self(void* data) {
  return *static_cast<DataControl*>(data);
}

const zwlr_data_control_offer_v1_listener kOfferListener{
    [](void* data, zwlr_data_control_offer_v1* offer, const char* type) {
      self(data).offerHasType(offer, type);
    }};

const zwlr_data_control_device_v1_listener kDeviceListener{
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).offerCreated(offer);
    },
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).clipboardChanged(offer);
    },
    [](void* data, zwlr_data_control_device_v1* /*device*/) { self(data).deviceFinished(); },
    // Not sent in version 1.
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/,
       zwlr_data_control_offer_v1* /*offer*/) {}};

const zwlr_data_control_source_v1_listener kSourceListener{
    [](void* /*data*/, zwlr_data_control_source_v1* /*source*/, const char* /*type*/,
       std::int32_t pipe) { close(pipe); },
    [](void* data, zwlr_data_control_source_v1* source) { self(data).sourceCancelled(source); }};

}  // namespace

std::optional<std::string> readToEnd(int pipe, Clock::time_point deadline) {
  std::string text;
  std::vector<char> buffer(64UL * 1024);
  for (auto left = deadline - Clock::now(); left.count() > 0; left = deadline - Clock::now()) {
    pollfd readable{pipe, POLLIN, 0};
    const auto patience = std::min<Clock::duration>(left, kPatience);
    const int ready =
        poll(&readable, 1, static_cast<int>(std::chrono::ceil<milliseconds>(patience).count()));
    if (ready == -1 && errno == EINTR) continue;
    if (ready != 1) return {};
    const auto count = read(pipe, buffer.data(), buffer.size());
    if (count == 0) return text;
    if (count == -1 && errno == EINTR) continue;
    if (count == -1 || static_cast<std::size_t>(count) > kMostBytes - text.size()) return {};
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return {};
}

DataControl::DataControl(Display& display)
    : display_(display),
      device_(zwlr_data_control_manager_v1_get_data_device(display.dataControl(), display.seat())) {
  zwlr_data_control_device_v1_add_listener(device_.get(), &kDeviceListener, this);
}

DataControl::~DataControl() {
  if (empty_ != nullptr) zwlr_data_control_source_v1_destroy(empty_);
  for (const auto& [offer, type] : offers_) zwlr_data_control_offer_v1_destroy(offer);
  if (device_) zwlr_data_control_device_v1_destroy(device_.release());
}

bool DataControl::takeEmpty() {
  taken_ = false;
  if (!device_) return false;
  // The previous source, if there still is one, is cancelled and destroyed then.
  empty_ = zwlr_data_control_manager_v1_create_data_source(display_.dataControl());
  zwlr_data_control_source_v1_add_listener(empty_, &kSourceListener, this);
  zwlr_data_control_source_v1_offer(empty_, kEmptyType);
  zwlr_data_control_device_v1_set_selection(device_.get(), empty_);
  // The clipboard's changes up to our own are told before this returns.
  taken_ = display_.synchronise() && empty_ != nullptr && device_ != nullptr;
  changed_ = false;
  return taken_;
}

std::optional<std::string> DataControl::copiedText() {
  if (!taken_ || !display_.synchronise()) return {};
  const bool copied = empty_ == nullptr && changed_ && clipboard_ != nullptr;
  if (!copied || offers_[clipboard_] == kTextTypes.size()) return {};
  auto text = receive(kTextTypes[offers_[clipboard_]]);
  if (text) text = x11::repairedUtf8(*std::move(text));
  return text;
}

std::optional<std::string> DataControl::receive(const char* type) {
  std::array<int, 2> pipe{};
  if (pipe2(pipe.data(), O_CLOEXEC) == -1) return {};
  zwlr_data_control_offer_v1_receive(clipboard_, type, pipe[1]);
  display_.synchronise();  // the descriptor has been sent
  close(pipe[1]);
  auto text = readToEnd(pipe[0], Clock::now() + kTimeLimit);
  close(pipe[0]);
  return text;
}

void DataControl::offerCreated(zwlr_data_control_offer_v1* offer) {
  offers_[offer] = kTextTypes.size();
  zwlr_data_control_offer_v1_add_listener(offer, &kOfferListener, this);
}

void DataControl::offerHasType(zwlr_data_control_offer_v1* offer, const char* type) {
  const auto* const found = std::find(kTextTypes.begin(), kTextTypes.end(), std::string_view(type));
  auto& best = offers_[offer];
  best = std::min(best, static_cast<std::size_t>(found - kTextTypes.begin()));
}

void DataControl::clipboardChanged(zwlr_data_control_offer_v1* offer) {
  changed_ = true;
  if (auto* const before = std::exchange(clipboard_, offer)) {
    offers_.erase(before);
    zwlr_data_control_offer_v1_destroy(before);
  }
}

void DataControl::deviceFinished() {
  if (device_) zwlr_data_control_device_v1_destroy(device_.release());
}

void DataControl::sourceCancelled(zwlr_data_control_source_v1* source) {
  zwlr_data_control_source_v1_destroy(source);
  if (source == empty_) empty_ = nullptr;
}

}  // namespace seldial::platform::wayland
