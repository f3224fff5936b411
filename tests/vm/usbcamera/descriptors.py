"""What the camera tells of itself: the descriptors of the USB and of its video class, version 1.0.
Fields are little-endian."""

import collections
import struct

MJPEG_SIZES = ((640, 480), (1280, 720), (1920, 1080))
YUYV_SIZES = ((320, 240), (640, 480))
MJPEG, YUYV = 1, 2  # numbers of the formats
INTERVALS = (333333, 666666, 1000000)  # between frames, in units of 100 nanoseconds

VIDEO_CONTROL, VIDEO_STREAMING = 0, 1  # numbers of the interfaces
INPUT, PROCESSING, OUTPUT = 1, 2, 3    # numbers of the units
STREAM_ENDPOINT = 0x81
BULK = 2
PACKET = 512

Control = collections.namedtuple(
    'Control', 'name unit selector bit length minimum maximum default step')

# Of the exposure modes, manual is bit 0 and the aperture's priority, the automatic mode of cameras
# without an aperture, bit 3. Such a control has the mask of its modes for a step.
MANUAL_EXPOSURE, AUTOMATIC_EXPOSURE = 1, 8

CONTROLS = (
    Control('auto_exposure', INPUT, 2, 1, 1, 1, 8, AUTOMATIC_EXPOSURE,
            MANUAL_EXPOSURE | AUTOMATIC_EXPOSURE),
    Control('exposure_time_absolute', INPUT, 4, 3, 4, 1, 5000, 157, 1),
    Control('brightness', PROCESSING, 2, 0, 2, -64, 64, 0, 1),
    Control('contrast', PROCESSING, 3, 1, 2, 0, 64, 32, 1),
    Control('hue', PROCESSING, 6, 2, 2, -40, 40, 0, 1),
    Control('saturation', PROCESSING, 7, 3, 2, 0, 128, 64, 1),
    Control('sharpness', PROCESSING, 8, 4, 2, 0, 6, 3, 1),
    Control('gamma', PROCESSING, 9, 5, 2, 72, 500, 100, 1),
    Control('white_balance_temperature', PROCESSING, 10, 6, 2, 2800, 6500, 4600, 10),
    Control('backlight_compensation', PROCESSING, 1, 8, 2, 0, 2, 1, 1),
    Control('gain', PROCESSING, 4, 9, 2, 0, 100, 0, 1),
    Control('power_line_frequency', PROCESSING, 5, 10, 1, 0, 2, 1, 1),
    Control('white_balance_automatic', PROCESSING, 11, 12, 1, 0, 1, 1, 1),
)

DEVICE, CONFIGURATION, STRING, INTERFACE, ENDPOINT, ASSOCIATION = 1, 2, 3, 4, 5, 11
OF_CLASS = 0x24  # an interface's descriptor that its class defines
MAKER, PRODUCT, SERIAL = 1, 2, 3  # numbers of the texts


def _descriptor(kind, layout, *fields):
    content = struct.pack('<' + layout, *fields)
    return bytes((len(content) + 2, kind)) + content


def sizes(widest):
    """Those of each format, up to that width."""
    return {MJPEG: tuple(size for size in MJPEG_SIZES if size[0] <= widest),
            YUYV: tuple(size for size in YUYV_SIZES if size[0] <= widest)}


def device(vendor, product):
    return _descriptor(DEVICE, 'HBBBBHHHBBBB', 0x0200, 0xEF, 2, 1, 64, vendor, product, 0x0100,
                       MAKER, PRODUCT, SERIAL, 1)


def configuration(offered):
    """`offered` is what sizes() gives."""
    body = (_descriptor(ASSOCIATION, '6B', VIDEO_CONTROL, 2, 0x0E, 3, 0, PRODUCT) +
            _control_interface() + _streaming_interface(offered))
    return _descriptor(CONFIGURATION, 'HBBBBB', 9 + len(body), 2, 1, 0, 0x80, 250) + body


def text(content):
    return _descriptor(STRING, f'{2 * len(content)}s', content.encode('utf-16-le'))


def languages():
    return _descriptor(STRING, 'H', 0x0409)


def _interface(number, endpoints, subclass, name):
    return _descriptor(INTERFACE, '7B', number, 0, endpoints, 0x0E, subclass, 0, name)


def _control_mask(unit):
    return sum(1 << control.bit for control in CONTROLS if control.unit == unit)


def _control_interface():
    camera_terminal = _descriptor(OF_CLASS, 'BBHBBHHHB', 2, INPUT, 0x0201, 0, 0, 0, 0, 0, 3)
    camera_controls = struct.pack('<I', _control_mask(INPUT))[:3]
    units = (bytes((camera_terminal[0] + len(camera_controls),)) + camera_terminal[1:] +
             camera_controls +
             _descriptor(OF_CLASS, 'BBBHBHB', 5, PROCESSING, INPUT, 0, 2,
                         _control_mask(PROCESSING), 0) +
             _descriptor(OF_CLASS, 'BBHBBB', 3, OUTPUT, 0x0101, 0, PROCESSING, 0))
    header = _descriptor(OF_CLASS, 'BHHIBB', 1, 0x0100, 13 + len(units), 48000000, 1,
                         VIDEO_STREAMING)
    return _interface(VIDEO_CONTROL, 0, 1, PRODUCT) + header + units


def _frames(kind, offered):
    frames = b''
    for number, (width, height) in enumerate(offered, 1):
        picture = width * height * 2
        frames += _descriptor(OF_CLASS, f'BBBHHIIIIB{len(INTERVALS)}I', kind, number, 0, width,
                              height, picture * 8 * 10, picture * 8 * 30, picture, INTERVALS[0],
                              len(INTERVALS), *INTERVALS)
    return frames


def _streaming_interface(offered):
    colors = _descriptor(OF_CLASS, '4B', 0x0D, 1, 1, 4)
    yuyv_identifier = bytes.fromhex('5955593200001000800000aa00389b71')
    formats = (_descriptor(OF_CLASS, '9B', 6, MJPEG, len(offered[MJPEG]), 1, 1, 0, 0, 0, 0) +
               _frames(7, offered[MJPEG]) + colors +
               _descriptor(OF_CLASS, 'BBB16s6B', 4, YUYV, len(offered[YUYV]), yuyv_identifier,
                           16, 1, 0, 0, 0, 0) +
               _frames(5, offered[YUYV]) + colors)
    header = _descriptor(OF_CLASS, 'BBHBBBBBBBBB', 1, 2, 15 + len(formats), STREAM_ENDPOINT, 0,
                         OUTPUT, 0, 0, 0, 1, 0, 0)
    return (_interface(VIDEO_STREAMING, 1, 2, 0) + header + formats +
            _descriptor(ENDPOINT, 'BBHB', STREAM_ENDPOINT, BULK, PACKET, 0))
