#include "platform/wayland/Clipboard.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "platform/linux/Applications.h"
#include "platform/wayland/ClipboardText.h"
#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

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
    [](void* data, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      self(data).primaryChanged(offer);
    }};

const zwlr_data_control_source_v1_listener kSourceListener{
    [](void* /*data*/, zwlr_data_control_source_v1* /*source*/, const char* /*type*/,
       std::int32_t pipe) { close(pipe); },
    [](void* data, zwlr_data_control_source_v1* source) { self(data).sourceCancelled(source); }};

const wl_callback_listener kTakenListener{
    [](void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
      self(data).ownershipTaken();
    }};

}  // namespace

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

void DataControl::takeOwnership() {
  ownershipTaken_ = false;
  if (!device_) return;
  // The previous source, if any, is then cancelled and destroyed.
  empty_ = zwlr_data_control_manager_v1_create_data_source(display_.dataControl());
  zwlr_data_control_source_v1_add_listener(empty_, &kSourceListener, this);
  zwlr_data_control_source_v1_offer(empty_, kEmptyClipboardType);
  zwlr_data_control_device_v1_set_selection(device_.get(), empty_);
  takeCallback_ = display_.requestCallback();
  wl_callback_add_listener(takeCallback_.get(), &kTakenListener, this);
  display_.willWait();
}

/// All clipboard changes up to our own have been reported.
void DataControl::ownershipTaken() {
  takeCallback_.reset();
  ownershipTaken_ = empty_ != nullptr && device_ != nullptr;
  changed_ = false;
}

std::optional<std::string> DataControl::copiedText() {
  if (!display_.synchronise() || !ownershipTaken_) return {};
  const bool copied = empty_ == nullptr && changed_ && clipboard_ != nullptr;
  if (!copied || offers_[clipboard_] == std::size(kTextTypes)) return {};
  return receive(kTextTypes[offers_[clipboard_]]);
}

std::optional<std::string> DataControl::receive(const char* type) {
  std::array<int, 2> pipe{};
  if (pipe2(pipe.data(), O_CLOEXEC) == -1) return {};
  zwlr_data_control_offer_v1_receive(clipboard_, type, pipe[1]);
  close(pipe[1]);  // libwayland sends a duplicate
  display_.willWait();
  auto text = readClipboardText(pipe[0]);
  close(pipe[0]);
  return text;
}

void DataControl::offerCreated(zwlr_data_control_offer_v1* offer) {
  offers_[offer] = std::size(kTextTypes);
  zwlr_data_control_offer_v1_add_listener(offer, &kOfferListener, this);
}

void DataControl::offerHasType(zwlr_data_control_offer_v1* offer, const char* type) {
  auto& best = offers_[offer];
  best = std::min(best, textTypeRank(type));
}

void DataControl::clipboardChanged(zwlr_data_control_offer_v1* offer) {
  changed_ = true;
  forget(std::exchange(clipboard_, offer));
}

void DataControl::primaryChanged(zwlr_data_control_offer_v1* offer) {
  forget(std::exchange(primary_, offer));
}

void DataControl::forget(zwlr_data_control_offer_v1* offer) {
  if (offers_.erase(offer) > 0) zwlr_data_control_offer_v1_destroy(offer);
}

void DataControl::deviceFinished() {
  if (device_) zwlr_data_control_device_v1_destroy(device_.release());
}

void DataControl::sourceCancelled(zwlr_data_control_source_v1* source) {
  zwlr_data_control_source_v1_destroy(source);
  if (source == empty_) empty_ = nullptr;
}

void WaylandClipboard::clear() {
  data_.takeOwnership();
}

bool WaylandClipboard::copySelection() {
  terminal_ = linux_port::TerminalKind::kNone;
  names_ = focusedProgram_();
  // It is not known here whether Emacs has copied the text that it shows as selected.
  if (linux_port::isUnsupported(names_) || linux_port::takesPrimaryAfterCopying(names_))
    return true;
  for (const auto& name : names_) {
    if (terminal_ == linux_port::TerminalKind::kNone) terminal_ = linux_port::terminalKind(name);
  }
  const bool byCopyKey = terminal_ == linux_port::TerminalKind::kOther;
  return keys_.type(byCopyKey ? Chord::kCopyKey : Chord::kControlInsert);
}

std::optional<std::string> WaylandClipboard::text() {
  auto text = data_.copiedText();
  // Some terminals copy an empty text when nothing is selected.
  if (terminal_ != linux_port::TerminalKind::kNone && text && text->empty()) return {};
  if (text && linux_port::mayBeCurrentLine(names_, *text)) return {};
  return text;
}

}  // namespace seldial::platform::wayland
