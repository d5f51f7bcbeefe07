#include "tests/support/wayland/Editor.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "xdg-shell-client.h"

namespace seldial::tests {
namespace {

constexpr int kWidth = 64;
constexpr int kBytes = kWidth * kWidth * 4;

constexpr std::array<unsigned, 8> kModifierKeys{KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTALT,
                                                KEY_RIGHTALT, KEY_LEFTSHIFT, KEY_RIGHTSHIFT,
                                                KEY_LEFTMETA, KEY_RIGHTMETA};

Editor& self(void* data) {
  return *static_cast<Editor*>(data);
}

constexpr wl_keyboard_listener kKeyboardListener{
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*format*/, std::int32_t file,
       std::uint32_t /*size*/) { close(file); },
    [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/,
       wl_array* /*keys*/) { self(data).focused = true; },
    [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/) {
      self(data).focused = false;
    },
    [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t serial, std::uint32_t /*time*/,
       std::uint32_t key, std::uint32_t state) { self(data).keyChanged(serial, key, state == 1); },
    [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t depressed,
       std::uint32_t /*latched*/, std::uint32_t /*locked*/,
       std::uint32_t /*group*/) { self(data).modifiers = depressed; },
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::int32_t /*rate*/, std::int32_t /*delay*/) {
    }};

constexpr xdg_wm_base_listener kShellListener{
    [](void* /*data*/, xdg_wm_base* shell, std::uint32_t serial) {
      xdg_wm_base_pong(shell, serial);
    }};

constexpr xdg_surface_listener kSurfaceListener{
    [](void* data, xdg_surface* surface, std::uint32_t serial) {
      self(data).configured(surface, serial);
    }};

// The editor does not paste.
constexpr wl_data_device_listener kDataListener{
    [](void* data, wl_data_device* /*device*/, wl_data_offer* offer) {
      self(data).offers.push_back(offer);
    },
    [](void* /*data*/, wl_data_device* /*device*/, std::uint32_t /*serial*/,
       wl_surface* /*surface*/, wl_fixed_t /*x*/, wl_fixed_t /*y*/, wl_data_offer* /*offer*/) {},
    [](void* /*data*/, wl_data_device* /*device*/) {},
    [](void* /*data*/, wl_data_device* /*device*/, std::uint32_t /*time*/, wl_fixed_t /*x*/,
       wl_fixed_t /*y*/) {},
    [](void* /*data*/, wl_data_device* /*device*/) {},
    [](void* /*data*/, wl_data_device* /*device*/, wl_data_offer* /*offer*/) {}};

constexpr wl_data_source_listener kSourceListener{
    [](void* /*data*/, wl_data_source* /*source*/, const char* /*type*/) {},
    [](void* data, wl_data_source* /*source*/, const char* /*type*/, std::int32_t pipe) {
      self(data).sendText(pipe);
    },
    [](void* data, wl_data_source* source) { self(data).sourceCancelled(source); },
    [](void* /*data*/, wl_data_source* /*source*/) {},
    [](void* /*data*/, wl_data_source* /*source*/) {},
    [](void* /*data*/, wl_data_source* /*source*/, std::uint32_t /*action*/) {}};

}  // namespace

Editor::Editor(const std::string& socketPath, EditorSettings settings)
    : WaylandClient(socketPath),
      settings_(std::move(settings)),
      compositor_(static_cast<wl_compositor*>(global(wl_compositor_interface))),
      shm_(static_cast<wl_shm*>(global(wl_shm_interface))),
      seat_(static_cast<wl_seat*>(global(wl_seat_interface))),
      keyboard_(wl_seat_get_keyboard(seat_)),
      shell_(static_cast<xdg_wm_base*>(global(xdg_wm_base_interface))),
      dataManager_(static_cast<wl_data_device_manager*>(global(wl_data_device_manager_interface))),
      dataDevice_(wl_data_device_manager_get_data_device(dataManager_, seat_)) {
  wl_keyboard_add_listener(keyboard_, &kKeyboardListener, this);
  wl_data_device_add_listener(dataDevice_, &kDataListener, this);
  xdg_wm_base_add_listener(shell_, &kShellListener, this);
  makeWindow();
  start();
  waitFor("focus of the keyboard", [this] { return focused; });
}

Editor::~Editor() {
  stop();
  for (auto* const offer : offers) wl_data_offer_destroy(offer);
  for (auto* const source : sources_) wl_data_source_destroy(source);
  xdg_toplevel_destroy(window_);
  xdg_surface_destroy(shellSurface_);
  wl_surface_destroy(surface_);
  wl_data_device_destroy(dataDevice_);
  wl_data_device_manager_destroy(dataManager_);
  xdg_wm_base_destroy(shell_);
  wl_keyboard_destroy(keyboard_);
  wl_seat_destroy(seat_);
  wl_shm_destroy(shm_);
  wl_compositor_destroy(compositor_);
}

void Editor::makeWindow() {
  surface_ = wl_compositor_create_surface(compositor_);
  shellSurface_ = xdg_wm_base_get_xdg_surface(shell_, surface_);
  xdg_surface_add_listener(shellSurface_, &kSurfaceListener, this);
  window_ = xdg_surface_get_toplevel(shellSurface_);
  static constexpr xdg_toplevel_listener kListener{
      [](void* /*data*/, xdg_toplevel* /*window*/, std::int32_t /*width*/, std::int32_t /*height*/,
         wl_array* /*states*/) {},
      [](void* /*data*/, xdg_toplevel* /*window*/) {},
      [](void* /*data*/, xdg_toplevel* /*window*/, std::int32_t /*width*/,
         std::int32_t /*height*/) {},
      [](void* /*data*/, xdg_toplevel* /*window*/, wl_array* /*capabilities*/) {}};
  xdg_toplevel_add_listener(window_, &kListener, this);
  xdg_toplevel_set_app_id(window_, settings_.applicationId.c_str());
  wl_surface_commit(surface_);
}

/// Attaches a buffer, without which a window is not mapped.
void Editor::configured(xdg_surface* surface, std::uint32_t serial) {
  xdg_surface_ack_configure(surface, serial);
  const int file = memfd_create("picture", MFD_CLOEXEC);
  if (ftruncate(file, kBytes) != 0) std::abort();
  auto* const pool = wl_shm_create_pool(shm_, file, kBytes);
  auto* const buffer =
      wl_shm_pool_create_buffer(pool, 0, kWidth, kWidth, kWidth * 4, WL_SHM_FORMAT_XRGB8888);
  wl_surface_attach(surface_, buffer, 0, 0);
  wl_surface_commit(surface_);
  wl_buffer_destroy(buffer);
  wl_shm_pool_destroy(pool);
  close(file);
}

void Editor::keyChanged(std::uint32_t serial, unsigned key, bool down) {
  if (!down || std::find(kModifierKeys.begin(), kModifierKeys.end(), key) != kModifierKeys.end()) {
    return;
  }
  keys_.push_back({key, modifiers});
  const unsigned needed = settings_.copyKey == KEY_COPY ? 0 : kEditorControl;
  if (key == settings_.copyKey && modifiers == needed && settings_.selected) copy(serial);
}

void Editor::copy(std::uint32_t serial) {
  auto* const source = wl_data_device_manager_create_data_source(dataManager_);
  wl_data_source_add_listener(source, &kSourceListener, this);
  wl_data_source_offer(source, settings_.type.c_str());
  wl_data_device_set_selection(dataDevice_, source, serial);
  sources_.insert(source);
  ++copies_;
}

void Editor::sourceCancelled(wl_data_source* source) {
  sources_.erase(source);
  wl_data_source_destroy(source);
}

void Editor::sendText(int pipe) {
  const auto text = settings_.selected.value_or("");
  for (std::size_t sent = 0; sent < text.size();) {
    const auto count = write(pipe, text.data() + sent, text.size() - sent);
    if (count <= 0) break;
    sent += static_cast<std::size_t>(count);
  }
  close(pipe);
}

void Editor::select(std::optional<std::string> text) {
  const auto locked = lock();
  settings_.selected = std::move(text);
}

std::vector<EditorKey> Editor::keys() const {
  const auto locked = lock();
  return keys_;
}

void Editor::waitForKey(unsigned key, std::size_t times) const {
  waitFor("key in the window", [&] {
    const auto is = [key](const EditorKey& pressed) { return pressed.key == key; };
    return static_cast<std::size_t>(std::count_if(keys_.begin(), keys_.end(), is)) >= times;
  });
}

void Editor::waitForCopies(std::size_t count) {
  waitFor("copy", [&] { return copies_ >= count; });
  synchronise();
}

}  // namespace seldial::tests
