#include "tests/support/wayland/ExtDataControl.h"

#include <unistd.h>

#include <cstdlib>

#include "ext-data-control-v1-server.h"
#include "wlr-data-control-unstable-v1-client.h"

namespace seldial::tests {
namespace {

// The generated header has variables with the same names as these structures.
using OfferRequests = struct ext_data_control_offer_v1_interface;
using SourceRequests = struct ext_data_control_source_v1_interface;
using DeviceRequests = struct ext_data_control_device_v1_interface;
using ManagerRequests = struct ext_data_control_manager_v1_interface;

ExtDataControl& self(wl_resource* resource) {
  return *static_cast<ExtDataControl*>(wl_resource_get_user_data(resource));
}

void destroy(wl_client* /*client*/, wl_resource* resource) {
  wl_resource_destroy(resource);
}

wl_resource* make(wl_client* client, const wl_interface& interface, std::uint32_t id) {
  return wl_resource_create(client, &interface, 1, id);
}

constexpr OfferRequests kOffer{
    [](wl_client* /*client*/, wl_resource* offer, const char* /*type*/, std::int32_t pipe) {
      const auto& text = self(offer).textRequested();
      if (write(pipe, text.data(), text.size()) < 0) std::abort();
      close(pipe);
    },
    destroy};

constexpr SourceRequests kSource{[](wl_client* /*client*/, wl_resource* source, const char* type) {
                                   self(source).typeOffered(type);
                                 },
                                 destroy};

constexpr DeviceRequests kDevice{
    [](wl_client* /*client*/, wl_resource* device, wl_resource* source) {
      self(device).clipboardTaken(source);
    },
    destroy, [](wl_client* /*client*/, wl_resource* /*device*/, wl_resource* /*source*/) {}};

constexpr ManagerRequests kManager{
    [](wl_client* client, wl_resource* manager, std::uint32_t id) {
      auto* const source = make(client, ext_data_control_source_v1_interface, id);
      wl_resource_set_implementation(source, &kSource, &self(manager), [](wl_resource* destroyed) {
        self(destroyed).sourceDestroyed(destroyed);
      });
      self(manager).sourceMade();
    },
    [](wl_client* client, wl_resource* manager, std::uint32_t id, wl_resource* /*seat*/) {
      auto* const device = make(client, ext_data_control_device_v1_interface, id);
      wl_resource_set_implementation(device, &kDevice, &self(manager), [](wl_resource* destroyed) {
        self(destroyed).deviceMade(nullptr);
      });
      self(manager).deviceMade(device);
    },
    destroy};

void bindManager(wl_client* client, void* data, std::uint32_t /*version*/, std::uint32_t id) {
  auto* const manager = make(client, ext_data_control_manager_v1_interface, id);
  wl_resource_set_implementation(manager, &kManager, data, nullptr);
}

int refuse(const void* /*implementation*/, void* target, std::uint32_t /*request*/,
           const wl_message* /*message*/, wl_argument* /*arguments*/) {
  wl_client_post_implementation_error(wl_resource_get_client(static_cast<wl_resource*>(target)),
                                      "the newer data control is there");
  return 0;
}

void bindOlder(wl_client* client, void* /*data*/, std::uint32_t version, std::uint32_t id) {
  auto* const manager = wl_resource_create(client, &zwlr_data_control_manager_v1_interface,
                                           static_cast<int>(version), id);
  wl_resource_set_dispatcher(manager, refuse, nullptr, nullptr, nullptr);
}

}  // namespace

ExtDataControl::ExtDataControl(const std::string& socketPath)
    : compositor_(socketPath, BareCompositor::Offer::kSeat, [this](wl_display* display) {
        wl_global_create(display, &zwlr_data_control_manager_v1_interface, 2, nullptr, bindOlder);
        wl_global_create(display, &ext_data_control_manager_v1_interface, 1, this, bindManager);
      }) {}

std::optional<std::vector<std::string>> ExtDataControl::offeredTypes() {
  std::optional<std::vector<std::string>> types;
  compositor_.run([&] {
    if (source_ != nullptr) types = types_;
  });
  return types;
}

void ExtDataControl::clipboardTaken(wl_resource* source) {
  if (source_ != nullptr) ext_data_control_source_v1_send_cancelled(source_);
  source_ = source;
  auto* const offer = makeOffer();
  for (const auto& type : types_) ext_data_control_offer_v1_send_offer(offer, type.c_str());
  ext_data_control_device_v1_send_selection(device_, offer);
  if (readsEach_) requestFirstType();
}

wl_resource* ExtDataControl::makeOffer() {
  auto* const offer = make(wl_resource_get_client(device_), ext_data_control_offer_v1_interface, 0);
  wl_resource_set_implementation(offer, &kOffer, this,
                                 [](wl_resource* destroyed) { self(destroyed).offerDestroyed(); });
  ++offers_;
  ext_data_control_device_v1_send_data_offer(device_, offer);
  return offer;
}

void ExtDataControl::copy(const std::string& text) {
  compositor_.run([&] {
    text_ = text;
    offer("text/plain;charset=utf-8");
  });
}

void ExtDataControl::copyNoText() {
  compositor_.run([&] { offer("image/png"); });
}

void ExtDataControl::offer(const char* type) {
  if (source_ != nullptr) ext_data_control_source_v1_send_cancelled(source_);
  source_ = nullptr;
  auto* const offer = makeOffer();
  ext_data_control_offer_v1_send_offer(offer, type);
  ext_data_control_device_v1_send_selection(device_, offer);
}

void ExtDataControl::readClipboard() {
  compositor_.run([&] { requestFirstType(); });
}

void ExtDataControl::readEachClipboard() {
  compositor_.run([&] { readsEach_ = true; });
}

void ExtDataControl::requestFirstType() {
  int pipe[2];
  if (source_ == nullptr || ::pipe(pipe) != 0) std::abort();
  ext_data_control_source_v1_send_send(source_, types_.front().c_str(), pipe[1]);
  close(pipe[0]);
  close(pipe[1]);
}

void ExtDataControl::select(const std::string& text) {
  compositor_.run([&] {
    text_ = text;
    auto* const offer = makeOffer();
    ext_data_control_offer_v1_send_offer(offer, "text/plain;charset=utf-8");
    ext_data_control_device_v1_send_primary_selection(device_, offer);
  });
}

void ExtDataControl::change(const std::string& text) {
  compositor_.run([&] { text_ = text; });
}

const std::string& ExtDataControl::textRequested() {
  ++requests_;
  return text_;
}

int ExtDataControl::requests() {
  int count = 0;
  compositor_.run([&] { count = requests_; });
  return count;
}

int ExtDataControl::offers() {
  int count = 0;
  compositor_.run([&] { count = offers_; });
  return count;
}

void ExtDataControl::sourceDestroyed(wl_resource* source) {
  if (source == source_) source_ = nullptr;
}

}  // namespace seldial::tests
