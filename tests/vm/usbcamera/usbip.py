"""A USB device in software, plugged into the kernel's virtual host controller (vhci_hcd).

The kernel speaks the wire format of USB/IP over a socket; here its other end is in the same
process. Fields on the wire are big-endian."""

import collections
import errno
import socket
import struct
import threading
import time

CONTROLLER = '/sys/devices/platform/vhci_hcd.0'
HIGH_SPEED = 3
SUBMIT, UNLINK, SUBMIT_ANSWER, UNLINK_ANSWER = 1, 2, 3, 4
HEADER_SIZE = 48
TO_DEVICE = 0
ATTACH_PATIENCE = 5.0  # seconds; a port is free again a moment after an unplugging


class Link:
    """A plugged-in device until it is unplugged.

    `control(setup, data)` answers a request of the control endpoint with bytes, or with None to
    refuse it. The requests of all other endpoints wait for transfer(). A request is taken off its
    list and answered in one step, under the lock: the kernel drops a device that answers a request
    which was called back meanwhile."""

    def __init__(self, port, control):
        self._control = control
        self._changed = threading.Condition()
        self._waiting = collections.deque()  # numbers of requests for data
        self._ignored = set()                # numbers of control requests without an answer
        self.alive = True
        self.deaf = False
        self._socket, kernel_end = socket.socketpair()
        with kernel_end:
            self._attach(port, kernel_end.fileno())
        self._receiver = threading.Thread(target=self._receive, daemon=True)
        self._receiver.start()

    @staticmethod
    def _attach(port, descriptor):
        end = time.monotonic() + ATTACH_PATIENCE
        while True:
            try:
                with open(f'{CONTROLLER}/attach', 'w', encoding='ascii') as file:
                    file.write(f'{port} {descriptor} {port + 1} {HIGH_SPEED}')
                return
            except OSError:
                if time.monotonic() > end:
                    raise
                time.sleep(0.1)

    def unplug(self):
        self._end()
        self._receiver.join()
        self._socket.close()

    def transfer(self, data, patience, is_wanted):
        """Answers the oldest request for data. False when none came in time, it is unplugged, or
        the data are not wanted any more when the request comes."""
        with self._changed:
            self._changed.wait_for(lambda: self._waiting or not self.alive, patience)
            if not self._waiting or not self.alive or not is_wanted():
                return False
            self._answer(self._waiting.popleft(), data)
            return True

    def _end(self):
        with self._changed:
            self.alive = False
            self._changed.notify_all()
        try:
            self._socket.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass  # the kernel was first

    def _receive(self):
        try:
            while self.alive:
                self._take_request()
        except (EOFError, OSError):
            self._end()

    def _take_request(self):
        header = self._read(HEADER_SIZE)
        command, number, _, direction, endpoint = struct.unpack_from('>5I', header)
        if command == UNLINK:
            self._call_back(number, *struct.unpack_from('>I', header, 20))
            return
        length, = struct.unpack_from('>I', header, 24)
        data = self._read(length) if direction == TO_DEVICE else b''
        if endpoint == 0:
            self._take_control_request(number, header[40:], data, length)
            return
        with self._changed:
            self._waiting.append(number)
            self._changed.notify_all()

    def _take_control_request(self, number, setup, data, length):
        if self.deaf:
            with self._changed:
                self._ignored.add(number)
            return
        answer = self._control(setup, data)
        with self._changed:
            if answer is None:
                self._answer(number, b'', status=-errno.EPIPE)
            else:
                self._answer(number, answer[:length], taken=len(data))

    def _call_back(self, number, target):
        with self._changed:
            found = target in self._waiting or target in self._ignored
            self._ignored.discard(target)
            if target in self._waiting:
                self._waiting.remove(target)
            status = -errno.ECONNRESET if found else 0
            self._send(struct.pack('>5Ii24x', UNLINK_ANSWER, number, 0, 0, 0, status))

    def _answer(self, number, data, status=0, taken=0):
        header = struct.pack('>5Iii3I8x', SUBMIT_ANSWER, number, 0, 0, 0, status,
                             len(data) or taken, 0, 0, 0)
        self._send(header + data)

    def _send(self, data):
        try:
            self._socket.sendall(data)
        except OSError:
            self.alive = False

    def _read(self, length):
        parts = []
        while length > 0:
            part = self._socket.recv(length)
            if not part:
                raise EOFError
            parts.append(part)
            length -= len(part)
        return b''.join(parts)
