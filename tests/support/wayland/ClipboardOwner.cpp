#include "tests/support/wayland/ClipboardOwner.h"

#include <unistd.h>

#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::tests {
namespace {

constexpr zwlr_data_control_device_v1_listener kDeviceListener{
    [](void* owner, zwlr_data_control_device_v1* /*device*/, zwlr_data_control_offer_v1* offer) {
      static_cast<ClipboardOwner*>(owner)->offers.push_back(offer);
    },
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/,
       zwlr_data_control_offer_v1* /*offer*/) {},
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/) {},
    [](void* /*data*/, zwlr_data_control_device_v1* /*device*/,
       zwlr_data_control_offer_v1* /*offer*/) {}};

constexpr zwlr_data_control_source_v1_listener kSourceListener{
    [](void* owner, zwlr_data_control_source_v1* /*source*/, const char* /*type*/,
       std::int32_t pipe) { static_cast<ClipboardOwner*>(owner)->send(pipe); },
    [](void* owner, zwlr_data_control_source_v1* source) {
      static_cast<ClipboardOwner*>(owner)->cancelled(source);
    }};

}  // namespace

ClipboardOwner::ClipboardOwner(const std::string& socketPath)
    : WaylandClient(socketPath),
      seat_(static_cast<wl_seat*>(global(wl_seat_interface))),
      manager_(static_cast<zwlr_data_control_manager_v1*>(
          global(zwlr_data_control_manager_v1_interface, 2))),
      device_(zwlr_data_control_manager_v1_get_data_device(manager_, seat_)) {
  zwlr_data_control_device_v1_add_listener(device_, &kDeviceListener, this);
  start();
}

ClipboardOwner::~ClipboardOwner() {
  stop();
  for (auto* const offer : offers) zwlr_data_control_offer_v1_destroy(offer);
  for (auto* const source : {clipboard_, primary_}) {
    if (source != nullptr) zwlr_data_control_source_v1_destroy(source);
  }
  zwlr_data_control_device_v1_destroy(device_);
  zwlr_data_control_manager_v1_destroy(manager_);
  wl_seat_destroy(seat_);
}

void ClipboardOwner::own(const std::string& text) {
  {
    const auto locked = lock();
    text_ = text;
    clipboard_ = makeSource();
    primary_ = makeSource();
    zwlr_data_control_device_v1_set_selection(device_, clipboard_);
    zwlr_data_control_device_v1_set_primary_selection(device_, primary_);
  }
  synchronise();
}

zwlr_data_control_source_v1* ClipboardOwner::makeSource() {
  auto* const source = zwlr_data_control_manager_v1_create_data_source(manager_);
  zwlr_data_control_source_v1_add_listener(source, &kSourceListener, this);
  zwlr_data_control_source_v1_offer(source, "text/plain;charset=utf-8");
  return source;
}

void ClipboardOwner::waitForLoss() const {
  waitFor("other owner of the clipboard", [this] { return clipboard_ == nullptr; });
}

void ClipboardOwner::send(int pipe) const {
  if (write(pipe, text_.data(), text_.size()) < 0) std::abort();
  close(pipe);
}

void ClipboardOwner::cancelled(zwlr_data_control_source_v1* source) {
  if (source == clipboard_) clipboard_ = nullptr;
  if (source == primary_) primary_ = nullptr;
  zwlr_data_control_source_v1_destroy(source);
}

}  // namespace seldial::tests
