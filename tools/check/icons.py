"""Checks that every icon name in the sources has a drawing in the theme, and that every file that
a resource list names is there."""

import re
import xml.etree.ElementTree

import sources

THEME = sources.ROOT / "resources" / "icons" / "light-blue" / "scalable"
FROM_THEME = re.compile(
    r'QIcon::fromTheme\(\s*(?:QStringLiteral\(|QLatin1String\()?\s*u?"([^"]+)"')
# Names that reach fromTheme through a table carry one of these prefixes.
PREFIXED = re.compile(r'"((?:mea|cww)-[a-z0-9-]+)"')


def check_icons():
    for path in sources.files(".h", ".cpp", folders=("src", "libs")):
        text = path.read_text(encoding="utf-8")
        for name in sorted({*FROM_THEME.findall(text), *PREFIXED.findall(text)}):
            if not (THEME / f"{name}.svg").is_file():
                yield f"{sources.name(path)} uses the icon {name}, which the theme lacks"


def check_resources():
    for path in sources.files(".qrc"):
        for entry in xml.etree.ElementTree.parse(path).iter("file"):
            if not (path.parent / entry.text).is_file():
                yield f"{sources.name(path)} lists {entry.text}, which is missing"


sources.report([*check_icons(), *check_resources()])
