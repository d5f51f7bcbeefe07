// The user's keyboard and pointer under sway and other compositors that have virtual ones, for
// scripts/test-desktops; see User.h. Usage: seldial_wlroots_user WIDTH HEIGHT LAYOUT
#include <cstdlib>

#include "tests/desktops/User.h"
#include "tests/support/wayland/UserKeyboard.h"

namespace seldial::tests {
namespace {

// The requests of wlr_virtual_pointer_unstable_v1 up to the last that is used here.
enum PointerRequest : std::uint32_t { kMotion, kMotionAbsolute, kButton, kAxis, kFrame };
const wl_message kPointerRequests[]{{"motion", "uff", nullptr},
                                    {"motion_absolute", "uuuuu", nullptr},
                                    {"button", "uuu", nullptr},
                                    {"axis", "uuf", nullptr},
                                    {"frame", "", nullptr}};
const wl_interface kPointer{"zwlr_virtual_pointer_v1", 1, 5, kPointerRequests, 0, nullptr};
const wl_interface* const kCreateTypes[]{&wl_seat_interface, &kPointer};
const wl_message kManagerRequests[]{
    {"create_virtual_pointer", "?on", const_cast<const wl_interface**>(kCreateTypes)}};
const wl_interface kManager{"zwlr_virtual_pointer_manager_v1", 1, 1, kManagerRequests, 0, nullptr};

/// A pointer of its own on the first output.
class UserPointer final : public WaylandClient {
 public:
  UserPointer(const std::string& socketPath, unsigned width, unsigned height)
      : WaylandClient(socketPath), width_(width), height_(height) {
    auto* const manager = static_cast<wl_proxy*>(global(kManager));
    pointer_ = wl_proxy_marshal_flags(manager, 0, &kPointer, 1, 0, nullptr, nullptr);
    wl_proxy_destroy(manager);
    start();
    synchronise();
  }
  ~UserPointer() {
    stop();
    wl_proxy_destroy(pointer_);
  }
  UserPointer(const UserPointer&) = delete;
  UserPointer& operator=(const UserPointer&) = delete;

  void move(unsigned x, unsigned y) { request(kMotionAbsolute, now(), x, y, width_, height_); }
  void press(std::uint32_t button, bool down) { request(kButton, now(), button, down ? 1 : 0); }

 private:
  static std::uint32_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
  }

  template <class... Arguments>
  void request(PointerRequest what, Arguments... arguments) {
    {
      const auto locked = lock();
      wl_proxy_marshal_flags(pointer_, what, nullptr, 1, 0, arguments...);
      wl_proxy_marshal_flags(pointer_, kFrame, nullptr, 1, 0);
    }
    synchronise();
  }

  const unsigned width_;
  const unsigned height_;
  wl_proxy* pointer_;
};

class WlrootsUser final : public User {
 public:
  WlrootsUser(const std::string& socketPath, unsigned width, unsigned height, const char* layout)
      : keyboard_(socketPath, layout), pointer_(socketPath, width, height) {}

  void changeKey(std::uint32_t key, bool down) override {
    down ? keyboard_.press({key}) : keyboard_.release({key});
  }
  void changeButton(std::uint32_t button, bool down) override { pointer_.press(button, down); }
  void movePointer(unsigned x, unsigned y) override { pointer_.move(x, y); }

 private:
  UserKeyboard keyboard_;
  UserPointer pointer_;
};

}  // namespace
}  // namespace seldial::tests

int main(int argc, char** argv) {
  const char* const directory = std::getenv("XDG_RUNTIME_DIR");
  const char* const name = std::getenv("WAYLAND_DISPLAY");
  if (argc != 4 || directory == nullptr || name == nullptr) return 2;
  const std::string path = std::string(directory) + "/" + name;
  const auto number = [&](int i) { return static_cast<unsigned>(std::stoul(argv[i])); };
  seldial::tests::WlrootsUser(path, number(1), number(2), argv[3]).play();
}
