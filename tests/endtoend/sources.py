"""The video sources that the program is driven with, and how each is chosen in the dialog."""

import os
import pathlib
import re
import shlex
import subprocess

import desktop
from widgets import wait_for

CHOICE = "Select video source"


class UsbSource:
    """A camera of the USB tab by its name; the last of the list when no name is given, which is the
    simulated one."""

    environment = {}

    def __init__(self, name=None):
        self.name = name

    def choose(self, program):
        dialog = program.dialog(CHOICE)
        if self.name:
            camera = program.find("list item", re.escape(self.name))
        else:
            program.find("list item")
            camera = dialog.find_all("list item")[-1]
        desktop.click(camera.rect.center, times=2)


class PluggedCamera(UsbSource):
    """A USB camera that only the program sees, by a library that is loaded before it and that has
    the camera plugged in at first."""

    def __init__(self, name, library):
        super().__init__(name)
        port = pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "usb-port"
        os.mkfifo(port)
        self.port = os.open(port, os.O_RDWR)  # no waiting for the other end
        self.environment = {"LD_PRELOAD": f"{library}:libumockdev-preload.so.0",
                            "ORVO_USB_PORT": str(port),
                            "TMPDIR": str(port.parent)}  # a killed program leaves its devices

    def unplug(self):
        os.write(self.port, b"unplug\n")

    def plug(self):
        os.write(self.port, b"plug\n")


class BoxSource:
    """A network box: chosen from the list of the Wi-Fi tab the first time, typed in by its address
    from then on."""

    environment = {}

    def __init__(self, address):
        self.address = address
        self.listed = False

    def choose(self, program):
        program.dialog(CHOICE)
        desktop.click(program.find("page tab", "Wi-Fi").rect.center)
        if self.listed:
            write_into(program, self.address)
            desktop.click(program.button("Connect").rect.center)
        else:
            found = program.find("list item", f".*{re.escape(self.address)}", timeout=20)
            desktop.click(found.rect.center, times=2)
            self.listed = True


class StreamSource:
    """An RTSP stream by its address."""

    environment = {}

    def __init__(self, url):
        self.url = url

    def choose(self, program):
        program.dialog(CHOICE)
        desktop.click(program.find("page tab", "RTSP Stream").rect.center)
        write_into(program, self.url)
        desktop.click(program.button("Connect").rect.center)


def write_into(program, text):
    """Replaces what stands in the input of the tab."""
    field = program.find("text")
    desktop.click(field.rect.center)
    desktop.key("ctrl+a")
    desktop.write(text)
    wait_for(lambda: field.text == text, f"{text} in the input")


class Server:
    """A camera's other end: a process that prints "READY" once it serves, and "PORT n" before when
    it has chosen its port. Ends with the block that it is used in."""

    def __init__(self, command):
        self.process = subprocess.Popen(shlex.split(command), stdout=subprocess.PIPE, text=True)
        self.port = 0

    def __enter__(self):
        for line in self.process.stdout:
            if line.startswith("PORT "):
                self.port = int(line.split()[1])
            elif line.startswith("READY"):
                return self
        self.process.wait()
        raise RuntimeError("the server of the source does not start")

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
