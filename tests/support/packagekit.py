"""packagekit.py OUTCOME: stands in for the system's package service on the session bus, until it is ended.

OUTCOME says what a check for updates of "mosa" comes to: "none", "update", or the name of the method that fails.
Other packages and nonsense are always among the updates.
Says "ready" once it can be called; each line that it reads then lets one piece of work finish.
"""

import os
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SERVICE = "org.freedesktop.PackageKit"
TRANSACTION = SERVICE + ".Transaction"


class Transaction(dbus.service.Object):
    """One piece of work."""

    def __init__(self, service, path):
        super().__init__(service.bus, path)
        self._service = service

    def finish(self, method):
        fails = self._service.outcome == method
        if fails:
            self.ErrorCode(dbus.UInt32(2), "The package service has no network.")
        elif method == "GetUpdates":
            for package in ("mosa", "mosaic;9.9;amd64;stable", "mosa;9.8.7;amd64;stable")[:2 + self._service.has_update]:
                self.Package(dbus.UInt32(5), package, "A newer one")
        self.Finished(dbus.UInt32(2 if fails else 1), dbus.UInt32(1))

    @dbus.service.method(TRANSACTION, in_signature="as")
    def SetHints(self, hints):
        pass

    @dbus.service.method(TRANSACTION, in_signature="b")
    def RefreshCache(self, force):
        self._service.started(self, "RefreshCache")

    @dbus.service.method(TRANSACTION, in_signature="t")
    def GetUpdates(self, filters):
        self._service.started(self, "GetUpdates")

    @dbus.service.method(TRANSACTION, in_signature="tas")
    def UpdatePackages(self, flags, packages):
        self.PropertiesChanged(TRANSACTION, {"Percentage": dbus.UInt32(40)}, [])
        self._service.started(self, "UpdatePackages")

    @dbus.service.signal(TRANSACTION, signature="uss")
    def Package(self, info, identifier, summary):
        pass

    @dbus.service.signal(TRANSACTION, signature="us")
    def ErrorCode(self, code, details):
        pass

    @dbus.service.signal(TRANSACTION, signature="uu")
    def Finished(self, code, milliseconds):
        pass

    @dbus.service.signal("org.freedesktop.DBus.Properties", signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass


class PackageKit(dbus.service.Object):
    def __init__(self, bus, outcome):
        super().__init__(bus, "/org/freedesktop/PackageKit")
        self.bus, self.outcome = bus, outcome
        self.has_update = outcome != "none"
        self._count = self._allowed = 0
        self._waiting = []

    @dbus.service.method(SERVICE, out_signature="o")
    def CreateTransaction(self):
        self._count += 1
        path = f"/transaction_{self._count}"
        Transaction(self, path)
        return dbus.ObjectPath(path)

    def started(self, transaction, method):
        self._waiting.append((transaction, method))
        GLib.idle_add(self._proceed)

    def allow(self, *_):
        # Byte by byte: what a buffer holds wakes nobody up.
        byte = os.read(sys.stdin.fileno(), 1)
        self._allowed += byte == b"\n"
        self._proceed()
        return byte != b""

    def _proceed(self):
        if self._allowed and self._waiting:
            self._allowed -= 1
            transaction, method = self._waiting.pop(0)
            transaction.finish(method)
        return False


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    service = PackageKit(bus, sys.argv[1])
    name = dbus.service.BusName(SERVICE, bus)
    GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN, service.allow)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del name


if __name__ == "__main__":
    main()
