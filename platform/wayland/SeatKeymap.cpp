#include "platform/wayland/SeatKeymap.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace seldial::platform::wayland {
namespace {

/// The difference between the key codes of XKB and those of evdev.
constexpr std::uint32_t kFirstKey = 8;

SeatKeymap& self(void* data) {
  return *static_cast<SeatKeymap*>(data);
}

const wl_seat_listener kSeatListener{
    [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
      self(data).capabilitiesChanged(capabilities);
    },
    [](void* /*data*/, wl_seat* /*seat*/, const char* /*name*/) {}};

// Without a window there are no events other than the keymap.
const wl_keyboard_listener kKeyboardListener{
    [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t format, std::int32_t file,
       std::uint32_t size) { self(data).keymapChanged(format, file, size); },
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/,
       wl_array* /*keys*/) {},
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
       wl_surface* /*surface*/) {},
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t /*time*/,
       std::uint32_t /*key*/, std::uint32_t /*state*/) {},
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/,
       std::uint32_t /*depressed*/, std::uint32_t /*latched*/, std::uint32_t /*locked*/,
       std::uint32_t /*group*/) {},
    [](void* /*data*/, wl_keyboard* /*keyboard*/, std::int32_t /*rate*/, std::int32_t /*delay*/) {
    }};

/// Maps the text of a file into memory.
class MappedText {
 public:
  MappedText(int file, std::uint32_t size)
      : size_(size),
        address_(file != -1 && size != 0 ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0)
                                         : MAP_FAILED) {}
  ~MappedText() {
    if (address_ != MAP_FAILED) munmap(address_, size_);
  }
  MappedText(const MappedText&) = delete;
  MappedText& operator=(const MappedText&) = delete;

  /// The text without the NUL byte at its end; empty if there is none.
  [[nodiscard]] std::string_view text() const {
    if (address_ == MAP_FAILED) return {};
    const auto* const characters = static_cast<const char*>(address_);
    return {characters, strnlen(characters, size_)};
  }

 private:
  std::size_t size_;
  void* address_;
};

std::shared_ptr<xkb_context> makeContext() {
  return {xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref};
}

template <class Visit>
void visitKeys(xkb_keymap* keymap, Visit visit) {
  xkb_keymap_key_for_each(
      keymap,
      [](xkb_keymap* /*keymap*/, xkb_keycode_t key, void* function) {
        (*static_cast<Visit*>(function))(key);
      },
      &visit);
}

bool hasSymbolAt(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t layout,
                 xkb_level_index_t level, xkb_keysym_t wanted) {
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, level, &symbols);
  return count == 1 && *symbols == wanted;
}

/// Whether the key has the symbol in any layout, with any modifiers.
bool hasSymbolAnywhere(xkb_keymap* keymap, xkb_keycode_t key, xkb_keysym_t symbol) {
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap, key);
       ++layout) {
    const auto levels = xkb_keymap_num_levels_for_key(keymap, key, layout);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
      if (hasSymbolAt(keymap, key, layout, level, symbol)) return true;
    }
  }
  return false;
}

/// The evdev code of the first key that has the symbol in the first layout without modifiers.
std::optional<std::uint32_t> findKey(xkb_keymap* keymap, xkb_keysym_t symbol) {
  std::optional<std::uint32_t> found;
  visitKeys(keymap, [&](xkb_keycode_t key) {
    if (!found && key >= kFirstKey && hasSymbolAt(keymap, key, 0, 0, symbol))
      found = key - kFirstKey;
  });
  return found;
}

}  // namespace

KeymapFile::~KeymapFile() {
  if (file_ != -1) close(file_);
}

KeymapFile::KeymapFile(KeymapFile&& other) noexcept
    : file_(std::exchange(other.file_, -1)), size_(std::exchange(other.size_, 0)) {}

KeymapFile& KeymapFile::operator=(KeymapFile&& other) noexcept {
  std::swap(file_, other.file_);
  std::swap(size_, other.size_);
  return *this;
}

KeymapFile KeymapFile::systemKeymap() {
  const auto context = makeContext();
  const std::shared_ptr<xkb_keymap> keymap(
      xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS),
      xkb_keymap_unref);
  if (!keymap) return {};
  const std::unique_ptr<char, decltype(&std::free)> text(
      xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
  if (!text) return {};
  const auto size = static_cast<std::uint32_t>(std::strlen(text.get()) + 1);
  KeymapFile result(memfd_create("keymap", MFD_CLOEXEC), size);
  if (!result || write(result.file(), text.get(), size) != static_cast<ssize_t>(size)) return {};
  return result;
}

std::shared_ptr<xkb_keymap> KeymapFile::read() const {
  const MappedText mapped(file_, size_);
  const auto context = makeContext();
  return {xkb_keymap_new_from_buffer(context.get(), mapped.text().data(), mapped.text().size(),
                                     XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS),
          xkb_keymap_unref};
}

bool KeymapFile::equals(const KeymapFile& other) const {
  if (size_ != other.size_) return false;
  return MappedText(file_, size_).text() == MappedText(other.file_, other.size_).text();
}

ChordKeys chordKeys(xkb_keymap& keymap) {
  const auto control = xkb_keymap_mod_get_index(&keymap, XKB_MOD_NAME_CTRL);
  const auto left = findKey(&keymap, XKB_KEY_Control_L);
  return {left ? left : findKey(&keymap, XKB_KEY_Control_R), findKey(&keymap, XKB_KEY_Insert),
          findKey(&keymap, XKB_KEY_XF86Copy), control != XKB_MOD_INVALID ? 1U << control : 0U};
}

SeatKeymap::SeatKeymap(Display& display) : display_(display) {
  wl_seat_add_listener(display.seat(), &kSeatListener, this);
  display.synchronise();  // reports that the seat has a keyboard
  display.synchronise();  // reports its keymap
}

const KeymapFile& SeatKeymap::file() const {
  if (!file_) file_ = KeymapFile::systemKeymap();
  return file_;
}

void SeatKeymap::capabilitiesChanged(std::uint32_t capabilities) {
  if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
    keyboard_.reset();
  } else if (!keyboard_) {
    keyboard_.reset(wl_seat_get_keyboard(display_.seat()));
    wl_keyboard_add_listener(keyboard_.get(), &kKeyboardListener, this);
  }
}

void SeatKeymap::keymapChanged(std::uint32_t format, int file, std::uint32_t size) {
  KeymapFile keymap(file, size);
  if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || file_.equals(keymap)) return;
  file_ = std::move(keymap);
  ++generation_;
  if (changed_) changed_();
}

std::function<bool(const std::string& name)> SeatKeymap::symbolsOf(std::uint32_t key) const {
  return [keymap = file().read(), key](const std::string& name) {
    return keymap &&
           hasSymbolAnywhere(keymap.get(), key,
                             xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE));
  };
}

std::string SeatKeymap::symbolName(std::uint32_t key) const {
  const auto keymap = file().read();
  if (!keymap) return {};
  const xkb_keysym_t* symbols = nullptr;
  if (xkb_keymap_key_get_syms_by_level(keymap.get(), key, 0, 0, &symbols) != 1) return {};
  std::array<char, 64> name{};
  xkb_keysym_get_name(*symbols, name.data(), name.size());
  return name.data();
}

}  // namespace seldial::platform::wayland
