#!/usr/bin/python3
"""A USB camera in software, for the kernel's own driver: plugged into the virtual host controller,
as root, where vhci-hcd and uvcvideo are loaded.

It is plugged in from the start, and obeys commands on the standard input:

  unplug, plug        with everything as after power-on
  stall N             no pictures until the stream has been started N times
  corrupt N           the next N MJPEG pictures have nonsense in their middle
  truncate N          the next N MJPEG pictures end too early
  deaf, hear          control requests are not answered, and are again
  quit                as the end of the input does

and tells on the standard output what reaches it:

  PLUGGED, UNPLUGGED  once it is done
  STARTED FORMAT WIDTHxHEIGHT INTERVAL, STOPPED
  SET CONTROL VALUE   or REFUSED, when the camera does not take it now
  DAMAGED NUMBER      of a picture
  OBEYED COMMAND      for the others
"""

import argparse
import sys
import threading

import camera
import descriptors
import pictures
import usbip


def tell(line):
    print(line, flush=True)


class Plug:
    """The camera in a port of the machine, and out of it."""

    def __init__(self, port, device):
        self._port, self._device = port, device
        self.link = None
        self._streaming = None

    def insert(self):
        self._device.power_on()
        self.link = usbip.Link(self._port, self._device.control)
        self._streaming = threading.Thread(target=self._device.stream, args=(self.link,),
                                           daemon=True)
        self._streaming.start()
        tell('PLUGGED')

    def pull(self):
        self.link.unplug()
        self._streaming.join()
        tell('UNPLUGGED')


def obey(words, device, plug):
    """One command. False for the one to quit."""
    command, count = words[0], int(words[1]) if len(words) > 1 else 1
    if command == 'quit':
        return False
    if command == 'plug':
        plug.insert()
    elif command == 'unplug':
        plug.pull()
    elif command == 'stall':
        device.stall(count)
    elif command in ('corrupt', 'truncate'):
        device.damage(pictures.corrupt if command == 'corrupt' else pictures.truncated, count)
    elif command in ('deaf', 'hear'):
        plug.link.deaf = command == 'deaf'
    else:
        raise ValueError(f'no such command: {command}')
    if command not in ('plug', 'unplug'):
        tell(f'OBEYED {command}')
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--port', type=int, default=0, help='of the virtual controller, 0 to 7')
    parser.add_argument('--vendor', type=lambda text: int(text, 16), default=0x1209)
    parser.add_argument('--product', type=lambda text: int(text, 16), default=0x0001)
    parser.add_argument('--name', default='Software Camera')
    parser.add_argument('--serial', default='1')
    parser.add_argument('--widest', type=int, default=1920, help='of the pictures on offer')
    options = parser.parse_args()

    texts = {descriptors.MAKER: 'Orvo tests', descriptors.PRODUCT: options.name,
             descriptors.SERIAL: options.serial}
    device = camera.Camera(texts, (options.vendor, options.product),
                           descriptors.sizes(options.widest), tell)
    plug = Plug(options.port, device)
    plug.insert()
    for line in sys.stdin:
        words = line.split()
        if words and not obey(words, device, plug):
            break
    if plug.link.alive:
        plug.pull()


main()
