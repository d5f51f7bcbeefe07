// How to make an application copy its selection: keys, which each kind of compositor lets a program
// type in a way of its own.
#pragma once

namespace seldial::platform::wayland {

/// Keys by which applications copy.
enum class Chord {
  kControlInsert,  ///< copies in windows, but may be typed into a terminal
  kCopyKey,        ///< XF86Copy; copies in some programs and means nothing to the others
};

/// Main thread only.
class CopyKeys {
 public:
  virtual ~CopyKeys() = default;

  /// Types a chord into the focused window. Returns before the application has acted. False, with
  /// nothing typed, when that is impossible or not safe at this moment.
  virtual bool type(Chord chord) = 0;
};

}  // namespace seldial::platform::wayland
