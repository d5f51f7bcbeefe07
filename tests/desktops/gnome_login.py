"""What GNOME Shell asks of logind and of the display manager before it can lock the screen, on the system bus of
scripts/test-desktops. Prints a line once it is there."""
from gi.repository import Gio, GLib

SESSION = "/org/freedesktop/login1/session/test"
INTERFACES = Gio.DBusNodeInfo.new_for_xml("""<node>
<interface name="org.gnome.DisplayManager.Manager">
  <property name="Version" type="s" access="read"/>
</interface>
<interface name="org.freedesktop.login1.Manager">
  <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
</interface>
<interface name="org.freedesktop.login1.Session">
  <property name="Id" type="s" access="read"/>
  <property name="Active" type="b" access="read"/>
  <method name="SetLockedHint"><arg type="b" direction="in"/></method>
</interface></node>""")
PROPERTIES = {"Version": GLib.Variant("s", "48.0"), "Id": GLib.Variant("s", "test"), "Active": GLib.Variant("b", True)}

bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)


def answer(_connection, _sender, _path, _interface, method, _arguments, call):
    call.return_value(GLib.Variant("(o)", (SESSION,)) if method == "GetSession" else None)


def value(_connection, _sender, _path, _interface, name):
    return PROPERTIES[name]


for path, interface in (("/org/gnome/DisplayManager/Manager", "org.gnome.DisplayManager.Manager"),
                        ("/org/freedesktop/login1", "org.freedesktop.login1.Manager"),
                        (SESSION, "org.freedesktop.login1.Session")):
    bus.register_object(path, INTERFACES.lookup_interface(interface), answer, value, None)
for name in ("org.gnome.DisplayManager", "org.freedesktop.login1"):
    Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.MainLoop().run()
