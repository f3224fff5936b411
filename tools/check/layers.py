"""Checks that includes point down: from the user interface to the canvas, the core and the
libraries, never up, and from a library only to itself and zowidgets.

The layer of a file of src is the target that its folder's CMakeLists adds it to.
"""

import re

import sources

LAYERS = {"orvo_core": 1, "orvo_canvas": 2, "orvo_ui": 3, "orvo": 4}
SHARED_LIBRARY = "zowidgets"

SRC = sources.ROOT / "src"
LIBS = sources.ROOT / "libs"
TARGET = re.compile(r"(?:target_sources|add_executable)\(\s*(orvo\w*)\s([^)]*)\)")
INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]', re.MULTILINE)


def layers_of_files():
    """The number of the layer of each source file, by path without suffix: a header has the layer
    of the source beside it."""
    layers = {}
    for listing in SRC.rglob("CMakeLists.txt"):
        for target, names in TARGET.findall(listing.read_text()):
            for entry in names.split():
                if entry.endswith((".cpp", ".h", ".ui")):
                    layers[(listing.parent / entry).with_suffix("")] = LAYERS[target]
    return layers


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def header_of(path, bracket, include):
    """The file of src that an include means, or None."""
    places = [path.parent, SRC] if bracket == '"' else [SRC]
    for place in places:
        header = (place / include).resolve()
        if header.is_file() and SRC in header.parents:
            return header
    return None


def check_program(layers):
    for path in sources.files(".h", ".cpp", folders=("src",)):
        layer = layers.get(path.with_suffix(""))
        if layer is None:
            yield f"{sources.name(path)} is in no CMakeLists and so belongs to no layer"
            continue
        for bracket, include in includes(path):
            header = header_of(path, bracket, include)
            if header and layers.get(header.with_suffix(""), 0) > layer:
                yield f"{sources.name(path)} includes {include} from a layer above"


def check_libraries():
    libraries = [folder.name for folder in LIBS.iterdir() if folder.is_dir()]
    for library in libraries:
        for path in sources.files(".h", ".cpp", folders=(f"libs/{library}",)):
            for bracket, include in includes(path):
                other = include.split("/")[0]
                if other in libraries and other not in (library, SHARED_LIBRARY):
                    yield f"{sources.name(path)} includes {include} of another library"
                elif header_of(path, bracket, include):
                    yield f"{sources.name(path)} includes {include} of the program"


sources.report([*check_program(layers_of_files()), *check_libraries()])
