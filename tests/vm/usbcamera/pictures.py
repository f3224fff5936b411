"""The pictures that the camera takes: four quarters in red, green, blue and white, and across the
middle a band of eight black and white cells that spell the picture's number, highest bit first."""

import functools
import struct

RED, GREEN, BLUE = (255, 0, 0), (0, 255, 0), (0, 0, 255)
BLACK, WHITE = (0, 0, 0), (255, 255, 255)
BITS = 8
NUMBERS = 1 << BITS

# Of a JPEG picture with colours at half the width.
BLOCK_WIDTH, BLOCK_HEIGHT = 16, 8


def band(height):
    """The rows of the band: from the first to the one after the last."""
    return height * 7 // 16, height * 9 // 16


def cells(number):
    return tuple(WHITE if number >> bit & 1 else BLACK for bit in reversed(range(BITS)))


def stretched(colors, length):
    """The colours side by side, each as wide as the others, over that many columns."""
    return [colors[i * len(colors) // length] for i in range(length)]


def rows(height, step, top, middle, bottom):
    """One of the three for every row, in steps of so many lines."""
    first, end = band(height)
    return [top if y < first else middle if y < end else bottom for y in range(0, height, step)]


def luma(color):
    return 0.299 * color[0] + 0.587 * color[1] + 0.114 * color[2]


def full_range(color):
    """BT.601 as in JPEG, with the middle at 0."""
    y = luma(color)
    return round(y) - 128, round((color[2] - y) / 1.772), round((color[0] - y) / 1.402)


def limited_range(color):
    """BT.601 as in raw video."""
    y = luma(color)
    return (round(16 + y * 219 / 255), round(128 + (color[2] - y) / 1.772 * 224 / 255),
            round(128 + (color[0] - y) / 1.402 * 224 / 255))


@functools.lru_cache(maxsize=None)
def yuyv_row(colors, columns):
    return b''.join(bytes((y, u, y, v)) for y, u, v in
                    map(limited_range, stretched(colors, columns)))


def yuyv(size, number):
    width, height = size
    top, middle, bottom = (yuyv_row(colors, width // 2)
                           for colors in ((RED, GREEN), cells(number), (BLUE, WHITE)))
    return b''.join(rows(height, 1, top, middle, bottom))


# JPEG. All blocks are flat, so that each has only one coefficient, and every row of blocks starts
# anew, so that rows can be put together like bricks.

# Of the standard tables: codes of the lengths of differences, and how many of each length exist.
LUMA_CODES = ('00', '010', '011', '100', '101', '110', '1110', '11110', '111110', '1111110')
CHROMA_CODES = ('00', '01', '10', '110', '1110', '11110', '111110', '1111110', '11111110')
LUMA_LENGTHS = bytes((0, 1, 5, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0))
CHROMA_LENGTHS = bytes((0, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0))
DIFFERENCES = bytes(range(12))
ONE_CODE_OF_TWO_BITS = bytes((0, 1)) + bytes(14)
FLAT = bytes(1)


def coded(difference, codes, end):
    """The bits of a flat block that differs so much from the one before."""
    length = abs(difference).bit_length()
    value = difference if difference > 0 else difference + (1 << length) - 1
    return codes[length] + (f'{value:0{length}b}' if length else '') + end


@functools.lru_cache(maxsize=None)
def jpeg_row(colors, columns, own_tables):
    """A row of blocks. The standard tables have a longer code for a block that is flat."""
    bits = []
    before = (0, 0, 0)
    for color in map(full_range, stretched(colors, columns)):
        change = [new - old for new, old in zip(color, before)]
        luma_end = '00' if own_tables else '1010'
        bits.append(coded(change[0], LUMA_CODES, luma_end) + coded(0, LUMA_CODES, luma_end) +
                    coded(change[1], CHROMA_CODES, '00') + coded(change[2], CHROMA_CODES, '00'))
        before = color
    text = ''.join(bits)
    text += '1' * (-len(text) % 8)
    return int(text, 2).to_bytes(len(text) // 8, 'big').replace(b'\xff', b'\xff\x00')


def segment(marker, content):
    return struct.pack('>BBH', 0xFF, marker, len(content) + 2) + content


def huffman_tables():
    return segment(0xC4, b'\x00' + LUMA_LENGTHS + DIFFERENCES +
                   b'\x10' + ONE_CODE_OF_TWO_BITS + FLAT +
                   b'\x01' + CHROMA_LENGTHS + DIFFERENCES +
                   b'\x11' + ONE_CODE_OF_TWO_BITS + FLAT)


def jpeg_header(size, own_tables):
    width, height = size
    steps = segment(0xDB, b'\x00' + b'\x08' * 64)
    frame = segment(0xC0, struct.pack('>BHHB', 8, height, width, 3) +
                    bytes((1, 0x21, 0, 2, 0x11, 0, 3, 0x11, 0)))
    restarts = segment(0xDD, struct.pack('>H', width // BLOCK_WIDTH))
    scan = segment(0xDA, bytes((3, 1, 0x00, 2, 0x11, 3, 0x11, 0, 63, 0)))
    tables = huffman_tables() if own_tables else b''
    return b'\xff\xd8' + steps + frame + tables + restarts + scan


def jpeg(size, number, own_tables):
    """Without tables of its own the picture counts on the standard ones, as many cameras do."""
    width, height = size
    top, middle, bottom = (jpeg_row(colors, width // BLOCK_WIDTH, own_tables)
                           for colors in ((RED, GREEN), cells(number), (BLUE, WHITE)))
    data = [jpeg_header(size, own_tables)]
    for i, row in enumerate(rows(height, BLOCK_HEIGHT, top, middle, bottom)):
        if i > 0:
            data.append(bytes((0xFF, 0xD0 + (i - 1) % 8)))
        data.append(row)
    return b''.join(data) + b'\xff\xd9'


def truncated(data):
    return data[:len(data) // 2]


def corrupt(data):
    """With bits in the middle that are no code of any table."""
    middle, nonsense = len(data) // 2, b'\xff\x00' * 64
    return data[:middle] + nonsense + data[middle + len(nonsense):]
