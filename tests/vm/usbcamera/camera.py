"""The camera behind the USB: its controls, its modes and the flow of its pictures."""

import struct
import threading
import time

import descriptors
import pictures

# Requests of the USB and of its video class.
CLEAR_FEATURE, GET_DESCRIPTOR, GET_CONFIGURATION, GET_INTERFACE = 1, 6, 8, 10
SET_CUR, GET_CUR, GET_MIN, GET_MAX, GET_RES = 0x01, 0x81, 0x82, 0x83, 0x84
GET_LEN, GET_INFO, GET_DEF = 0x85, 0x86, 0x87
OF_CLASS, TO_ENDPOINT = 0x20, 0x02  # in the type of a request
READABLE_AND_WRITABLE = 3
PROBE, COMMIT = 1, 2

PAYLOAD = 16384
PAYLOAD_HEADER = 2
END_OF_HEADER, END_OF_PICTURE = 0x80, 0x02
TICKS = 1e7  # in a second
PATIENCE = 0.5  # seconds for the host to ask for more of a picture

MODE = struct.Struct('<HBBIHHHHHII')


class Mode:
    """A format, a size and a time between pictures, held to those that the camera has."""

    def __init__(self, offered, wish=b''):
        asked = MODE.unpack_from(wish.ljust(MODE.size, b'\0'))
        self.format = asked[1] if asked[1] in offered else descriptors.MJPEG
        sizes = offered[self.format]
        self.frame = min(max(asked[2], 1), len(sizes))
        self.size = sizes[self.frame - 1]
        intervals = descriptors.INTERVALS
        self.interval = asked[3] if asked[3] in intervals else intervals[0]

    def packed(self):
        width, height = self.size
        return MODE.pack(0, self.format, self.frame, self.interval, 0, 0, 0, 0, 0,
                         width * height * 2, PAYLOAD)

    def __str__(self):
        name = 'MJPG' if self.format == descriptors.MJPEG else 'YUYV'
        return f'{name} {self.size[0]}x{self.size[1]} {self.interval}'


class Camera:
    """Answers the control requests of one link after the other. `offered` is what
    descriptors.sizes() gives; `tell(line)` hears what happens."""

    def __init__(self, texts, ids, offered, tell):
        self._offered = offered
        self._tell = tell
        self._descriptors = {(descriptors.DEVICE, 0): descriptors.device(*ids),
                             (descriptors.CONFIGURATION, 0): descriptors.configuration(offered),
                             (descriptors.STRING, 0): descriptors.languages()}
        for number, text in texts.items():
            self._descriptors[descriptors.STRING, number] = descriptors.text(text)
        self._controls = {(c.unit, c.selector): c for c in descriptors.CONTROLS}
        self._changed = threading.Condition()
        self._damages = []  # how the next pictures are damaged
        self._number = 0    # of the next picture
        self.power_on()

    def power_on(self):
        with self._changed:
            self._values = {c.name: c.default for c in descriptors.CONTROLS}
            self._probed = Mode(self._offered)
            self._running = None  # the mode, while pictures are wanted
            self._stalled_starts = 0
            self._starts = 0

    def stall(self, starts):
        """No pictures any more until the stream has been started so often."""
        with self._changed:
            self._stalled_starts = starts

    def damage(self, kind, count):
        with self._changed:
            self._damages += [kind] * count

    # The control endpoint.

    def control(self, setup, data):
        kind, request, value, index, _ = struct.unpack('<BBHHH', setup)
        if kind & OF_CLASS:
            return self._class_request(request, value >> 8, index, data)
        if request == GET_DESCRIPTOR:
            return self._descriptors.get((value >> 8, value & 0xFF))
        if request == CLEAR_FEATURE and kind & 0x1F == TO_ENDPOINT:
            self._stop()
        return {GET_CONFIGURATION: b'\1', GET_INTERFACE: b'\0'}.get(request, b'\0\0'
                                                                      if kind & 0x80 else b'')

    def _class_request(self, request, selector, index, data):
        unit, interface = index >> 8, index & 0xFF
        if interface == descriptors.VIDEO_STREAMING:
            return self._mode_request(request, selector, data)
        control = self._controls.get((unit, selector))
        if control is None:
            return None
        if request == SET_CUR:
            return self._set(control, data)
        return self._ask(control, request)

    def _ask(self, control, request):
        if request == GET_INFO:
            return bytes((READABLE_AND_WRITABLE,))
        if request == GET_LEN:
            return struct.pack('<H', control.length)
        value = {GET_CUR: self._values[control.name], GET_MIN: control.minimum,
                 GET_MAX: control.maximum, GET_RES: control.step,
                 GET_DEF: control.default}.get(request)
        return None if value is None else value.to_bytes(control.length, 'little', signed=value < 0)

    def _set(self, control, data):
        value = int.from_bytes(data[:control.length], 'little', signed=control.minimum < 0)
        if not self._is_taken(control, value):
            self._tell(f'REFUSED {control.name} {value}')
            return None
        self._values[control.name] = value
        self._tell(f'SET {control.name} {value}')
        return b''

    def _is_taken(self, control, value):
        """Cameras refuse what they choose by themselves and what is out of range."""
        masters = {'exposure_time_absolute': ('auto_exposure', descriptors.MANUAL_EXPOSURE),
                   'white_balance_temperature': ('white_balance_automatic', 0)}
        master, manual = masters.get(control.name, (control.name, self._values[control.name]))
        return self._values[master] == manual and control.minimum <= value <= control.maximum

    def _mode_request(self, request, selector, data):
        if selector not in (PROBE, COMMIT):
            return None
        if request == SET_CUR:
            mode = Mode(self._offered, data)
            if selector == PROBE:
                self._probed = mode
            else:
                self._start(mode)
            return b''
        if request == GET_LEN:
            return struct.pack('<H', MODE.size)
        if request == GET_INFO:
            return bytes((READABLE_AND_WRITABLE,))
        return self._probed.packed()

    def _start(self, mode):
        with self._changed:
            self._running = mode
            self._starts += 1
            self._stalled_starts = max(0, self._stalled_starts - 1)
            self._changed.notify_all()
        self._tell(f'STARTED {mode}')

    def _stop(self):
        with self._changed:
            was_running, self._running = self._running, None
        if was_running:
            self._tell('STOPPED')

    # The stream.

    def stream(self, link):
        """Sends pictures while the link is alive. Runs on a thread of its own."""
        toggle = 0
        due = time.monotonic()
        while link.alive:
            with self._changed:
                self._changed.wait_for(self._is_flowing, 0.1)
                mode, start = self._running, self._starts
                flowing = self._is_flowing()
            if not flowing:
                continue
            due = max(due, time.monotonic() - 0.05) + mode.interval / TICKS
            self._send(link, self._next_picture(mode), toggle, start)
            toggle ^= 1
            time.sleep(max(0.0, due - time.monotonic()))

    def _is_flowing(self):
        return self._running is not None and self._stalled_starts == 0

    def _next_picture(self, mode):
        number = self._number
        self._number = (number + 1) % pictures.NUMBERS
        if mode.format == descriptors.YUYV:
            return pictures.yuyv(mode.size, number)
        own_tables = mode.size == descriptors.MJPEG_SIZES[1]
        picture = pictures.jpeg(mode.size, number, own_tables)
        with self._changed:
            damage = self._damages.pop(0) if self._damages else None
        if damage:
            self._tell(f'DAMAGED {number}')
            picture = damage(picture)
        return picture

    def _send(self, link, picture, toggle, start):
        """In payloads with a header each. Gives a picture up when the stream was started anew."""
        length = PAYLOAD - PAYLOAD_HEADER
        for offset in range(0, len(picture), length):
            part = picture[offset:offset + length]
            end = END_OF_PICTURE if offset + length >= len(picture) else 0
            header = bytes((PAYLOAD_HEADER, END_OF_HEADER | end | toggle))
            if not link.transfer(header + part, PATIENCE, lambda: self._is_running(start)):
                return

    def _is_running(self, start):
        with self._changed:
            return self._running is not None and self._starts == start
