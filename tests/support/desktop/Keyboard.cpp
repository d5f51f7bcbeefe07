#include "tests/support/desktop/Keyboard.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/support/Waiting.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::tests {
namespace {

constexpr int kDeviceKeyPress = 1;  // offsets from the extension's first event
constexpr int kDeviceKeyRelease = 2;

/// The pause before every press, in milliseconds, in the server. Nobody presses a key in the
/// millisecond in which it was released, and a toolkit would treat such a press as auto-repeat. Nor
/// does anybody click in the millisecond in which a selection was taken.
constexpr xcb_timestamp_t kPause = 1;

bool isXTestDevice(xcb_connection_t* connection, xcb_input_device_id_t device) {
  const auto cookie = xcb_input_xi_get_property(
      connection, device, 0, atom(connection, "XTEST Device"), XCB_ATOM_ANY, 0, 1);
  const auto reply = freed(xcb_input_xi_get_property_reply(connection, cookie, nullptr));
  return reply && reply->num_items == 1 &&
         *static_cast<std::uint8_t*>(xcb_input_xi_get_property_items(reply.get())) == 1;
}

}  // namespace

Keyboard::Keyboard(const std::string& display) : connection_(connectToServer(display)) {
  root_ = rootOf(connection_);
  const auto version = xcb_input_xi_query_version(connection_, 2, 2);
  freed(xcb_input_xi_query_version_reply(connection_, version, nullptr));
  firstInputEvent_ = xcb_get_extension_data(connection_, &xcb_input_id)->first_event;
  findDevices();
}

Keyboard::~Keyboard() {
  xcb_disconnect(connection_);
}

void Keyboard::findDevices() {
  const auto cookie = xcb_input_xi_query_device(connection_, XCB_INPUT_DEVICE_ALL);
  const auto reply = freed(xcb_input_xi_query_device_reply(connection_, cookie, nullptr));
  if (!reply) throw std::runtime_error("the X server does not list its keyboards");
  for (auto it = xcb_input_xi_query_device_infos_iterator(reply.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    const auto device = static_cast<std::uint8_t>(it.data->deviceid);
    if (it.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD) master_ = device;
    if (it.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    (isXTestDevice(connection_, device) ? typing_ : physical_) = device;
  }
  if (master_ == 0 || typing_ == 0 || physical_ == 0) {
    throw std::runtime_error("the X server lacks a keyboard that the test needs");
  }
}

void Keyboard::fake(std::uint8_t type, std::uint8_t key, std::uint8_t device) {
  const bool presses = type == firstInputEvent_ + kDeviceKeyPress || type == XCB_BUTTON_PRESS;
  xcb_test_fake_input(connection_, type, key, presses ? kPause : XCB_CURRENT_TIME, root_, 0, 0,
                      device);
  synchronise();
}

void Keyboard::synchronise() {
  tests::synchronise(connection_);
}

void Keyboard::press(std::uint8_t key) {
  fake(static_cast<std::uint8_t>(firstInputEvent_ + kDeviceKeyPress), key, physical_);
}

void Keyboard::release(std::uint8_t key) {
  fake(static_cast<std::uint8_t>(firstInputEvent_ + kDeviceKeyRelease), key, physical_);
}

void Keyboard::tap(std::uint8_t key) {
  press(key);
  release(key);
}

void Keyboard::hold(std::uint8_t key, std::chrono::milliseconds duration) {
  press(key);
  std::this_thread::sleep_for(duration);  // simulates the user; the test waits for nothing here
  release(key);
}

void Keyboard::press(const std::vector<std::uint8_t>& keys) {
  for (const auto key : keys) press(key);
}

void Keyboard::release(const std::vector<std::uint8_t>& keys) {
  for (const auto key : keys) release(key);
}

void Keyboard::movePointer(std::int16_t x, std::int16_t y) {
  xcb_warp_pointer(connection_, XCB_WINDOW_NONE, root_, 0, 0, 0, 0, x, y);
  synchronise();
}

void Keyboard::waitForTypedDown(const std::set<std::uint8_t>& keys) const {
  const auto deadline = std::chrono::steady_clock::now() + kTimeLimit;
  while (typedDown() != keys) {
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the typed keys did not come to the awaited state");
    }
  }
}

void Keyboard::holdMouseButton(bool held) {
  fake(held ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1, 0);
}

void Keyboard::click(std::int16_t x, std::int16_t y, std::uint8_t button) {
  movePointer(x, y);
  fake(XCB_BUTTON_PRESS, button, 0);
  fake(XCB_BUTTON_RELEASE, button, 0);
}

void Keyboard::swapMouseButtons() {
  const auto before = freed(
      xcb_get_pointer_mapping_reply(connection_, xcb_get_pointer_mapping(connection_), nullptr));
  if (!before || before->map_len < 3) throw std::runtime_error("the mouse lacks a third button");
  auto* const map = xcb_get_pointer_mapping_map(before.get());
  std::swap(map[0], map[2]);
  const auto cookie = xcb_set_pointer_mapping(connection_, before->map_len, map);
  freed(xcb_set_pointer_mapping_reply(connection_, cookie, nullptr));
}

void Keyboard::focusFollowsPointer() {
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_POINTER_ROOT,
                      XCB_CURRENT_TIME);
  synchronise();
}

void Keyboard::unplug() {
  const xcb_input_detach_slave_t change{
      XCB_INPUT_HIERARCHY_CHANGE_TYPE_DETACH_SLAVE, sizeof change / 4, physical_, {}};
  xcb_input_xi_change_hierarchy(connection_, 1,
                                reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change));
  synchronise();
}

void Keyboard::plugIn() {
  const xcb_input_attach_slave_t change{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ATTACH_SLAVE,
                                        sizeof change / 4, physical_, master_};
  xcb_input_xi_change_hierarchy(connection_, 1,
                                reinterpret_cast<const xcb_input_hierarchy_change_t*>(&change));
  synchronise();
}

void Keyboard::remap(std::uint8_t key, xcb_keysym_t symbol) {
  xcb_change_keyboard_mapping(connection_, 1, key, 1, &symbol);
  synchronise();
}

void Keyboard::addMaster(const std::string& name) {
  xcb_input_add_master_t change{};
  change.type = XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER;
  change.name_len = static_cast<std::uint16_t>(name.size());
  change.send_core = change.enable = 1;
  const std::size_t size = (sizeof change + name.size() + 3) / 4 * 4;
  change.len = static_cast<std::uint16_t>(size / 4);
  std::vector<char> request(size);
  std::memcpy(request.data(), &change, sizeof change);
  std::copy(name.begin(), name.end(), request.begin() + sizeof change);
  xcb_input_xi_change_hierarchy(
      connection_, 1, reinterpret_cast<const xcb_input_hierarchy_change_t*>(request.data()));
  synchronise();
}

void Keyboard::typeThroughXTest(std::uint8_t key, bool down) {
  fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, 0);
}

unsigned Keyboard::modifiers() const {
  return state() & 0xFF;
}

unsigned Keyboard::group() const {
  return state() >> 13 & 3;
}

unsigned Keyboard::state() const {
  const auto cookie = xcb_query_pointer(connection_, root_);
  const auto reply = freed(xcb_query_pointer_reply(connection_, cookie, nullptr));
  return reply ? reply->mask : 0;
}

std::set<std::uint8_t> Keyboard::downOn(std::uint8_t device) const {
  std::set<std::uint8_t> result;
  const auto cookie = xcb_input_query_device_state(connection_, device);
  const auto reply = freed(xcb_input_query_device_state_reply(connection_, cookie, nullptr));
  if (!reply) return result;
  for (auto it = xcb_input_query_device_state_classes_iterator(reply.get()); it.rem > 0;
       xcb_input_input_state_next(&it)) {
    if (it.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
    const auto* keys = reinterpret_cast<const xcb_input_key_state_t*>(it.data)->keys;
    for (unsigned key = 0; key < 256; ++key) {
      if ((keys[key / 8] >> (key % 8) & 1) != 0) result.insert(static_cast<std::uint8_t>(key));
    }
  }
  return result;
}

}  // namespace seldial::tests
