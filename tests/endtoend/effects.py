"""What the sliders of the camera page do to the picture, and the values that their labels state."""

import re

TIMES = {"µs": 1e-6, "ms": 1e-3, "s": 1.0}

# How much more a high value of a slider shows in the picture than a low one, and how much it must.
EFFECTS = {
    "Brightness": (lambda low, high: high.brightness - low.brightness, 10),
    "Contrast": (lambda low, high: high.spread - low.spread, 5),
    "Saturation": (lambda low, high: high.colourfulness - low.colourfulness, 3),
    "Hue": (lambda low, high: high.difference(low), 3),
    "Gamma": (lambda low, high: abs(high.brightness - low.brightness), 5),
    "Sharpness": (lambda low, high: high.detail - low.detail, 0.1),
    "De-noise": (lambda low, high: low.detail - high.detail, 0.02),
    "Exposure Time": (lambda low, high: high.brightness - low.brightness, 10),
    "Gain": (lambda low, high: high.brightness - low.brightness, 10),
    "Target": (lambda low, high: high.brightness - low.brightness, 10),
    "Color Temperature": (lambda low, high: abs(high.channel(0) - low.channel(0)), 0.01),
    "R Gain": (lambda low, high: high.channel(0) - low.channel(0), 0.01),
    "G Gain": (lambda low, high: high.channel(1) - low.channel(1), 0.01),
    "B Gain": (lambda low, high: high.channel(2) - low.channel(2), 0.01),
}


def seconds(text):
    number, unit = text.split()
    return float(number) * TIMES[unit]


def number_in(text):
    return float(re.search(r"-?\d+(\.\d+)?", text)[0])
