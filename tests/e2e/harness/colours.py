"""Contrast, as the rules for accessible pictures count it."""


def luminance(colour):
    """Of (red, green, blue), 0 to 255."""
    parts = [part / 255 for part in colour]
    linear = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(one, other):
    """1 to 21."""
    light, dark = sorted((luminance(one), luminance(other)), reverse=True)
    return (light + 0.05) / (dark + 0.05)
