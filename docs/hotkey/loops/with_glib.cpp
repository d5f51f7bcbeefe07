// with_glib: a hot key in a program with GLib's main loop, until SIGINT or SIGTERM.
#include <glib-unix.h>
#include <glib.h>

#include "HotKey.h"

namespace {

struct DesktopSource {
  GSource source;
  seldial::platform::ServedDesktop* desktop;
};

gboolean prepare(GSource* source, gint* timeout) {
  *timeout = -1;
  reinterpret_cast<DesktopSource*>(source)->desktop->dispatch();  // before each wait
  return FALSE;
}

gboolean dispatch(GSource* source, GSourceFunc /*function*/, gpointer /*data*/) {
  reinterpret_cast<DesktopSource*>(source)->desktop->dispatch();
  return G_SOURCE_CONTINUE;
}

gboolean quit(gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_CONTINUE;
}

}  // namespace

int main() {
  const auto desktop = desktopWithHotKey();
  if (!desktop) return 1;

  // Without a check function, GLib dispatches a source whose descriptor is ready.
  GSourceFuncs functions{prepare, nullptr, dispatch, nullptr, nullptr, nullptr};
  GSource* const source = g_source_new(&functions, sizeof(DesktopSource));
  reinterpret_cast<DesktopSource*>(source)->desktop = desktop.get();
  g_source_add_unix_fd(source, desktop->descriptor(), G_IO_IN);
  g_source_attach(source, nullptr);

  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  g_unix_signal_add(SIGINT, quit, loop);
  g_unix_signal_add(SIGTERM, quit, loop);
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  g_source_destroy(source);
  g_source_unref(source);
}
