"""Decorated text as a NumPy array or a PIL image, in one call.

    >>> import lettrix
    >>> image = lettrix.render("Hello", preset="gold", size=120)   # H x W x 4 uint8, RGBA
    >>> lettrix.save(image, "hello.png")

lettrix.render takes every setting of the lettrix program as a keyword (option names with underscores:
--outline-width is outline_width), with the program's ranges, defaults and presets, and gives the same
pixels. lettrix.outline_block and lettrix.Process are for callers who lay text out, or draw, themselves.

Rendering releases the GIL: threads render at once. Errors: ValueError for a value out of its range,
TypeError for a value of the wrong type, OSError for a font or texture file that cannot be read,
LettrixError for a request that cannot be carried out (text with nothing to draw, an image too large).
"""

from __future__ import annotations

import inspect
import os
from typing import Any, List, NamedTuple, Optional, Tuple, Union

import numpy as np

from . import _keywords, _lettrix
from ._lettrix import LettrixError, Process

__all__ = [
    "render",
    "render_block",
    "save",
    "to_pil",
    "outline_block",
    "OutlineBlock",
    "Line",
    "Glyph",
    "Process",
    "LettrixError",
    "presets",
    "Preset",
    "options",
]


class Preset(NamedTuple):
    """A named bundle of settings: render(text, preset=name)."""

    name: str
    description: str
    options: List[str]  # as the lettrix program spells them, applied in order
    sample_text: str  # the words the gallery draws with it


def presets() -> List[Preset]:
    """Every preset, in the lettrix program's order."""
    return [Preset(name, description, list(args), sample) for name, description, args, sample in _lettrix.presets()]


def options() -> List[_keywords.Keyword]:
    """Every keyword of render: its option, value form, range and default, and help."""
    return list(_keywords.KEYWORDS.values())


def _text_of(text: Optional[str], preset: Optional[str]) -> str:
    if text is None:
        for p in presets():
            if p.name == preset:
                return p.sample_text
        if preset is None:
            raise TypeError("render: text is needed (or a preset, whose sample words are then drawn)")
        return ""  # the preset is refused with the program's message when the settings are made
    if not isinstance(text, str):
        raise TypeError(f"text: expected a string, got {type(text).__name__}")
    return text


def render(text: Optional[str] = None, *, preset: Optional[str] = None, **settings: Any) -> np.ndarray:
    """(Replaced at import by the text made from the option table.)"""
    made = _keywords.settings_from(preset, settings)
    return _lettrix.compose(made, _text_of(text, preset))


def render_block(
    block: Union[bytes, "OutlineBlock"], *, preset: Optional[str] = None, **settings: Any
) -> np.ndarray:
    """Draws an outline block you laid out yourself, with render's drawing keywords.

    block: bytes in GetGlyphOutline's GGO_NATIVE layout (as outline_block makes them), or an OutlineBlock.
    The keywords are render's, less those of the font and layout (which the block already has). Returns
    an H x W x 4 uint8 array, RGBA with straight alpha. LettrixError when the block is malformed or has
    nothing to draw.
    """
    if isinstance(block, OutlineBlock):
        block = block.block
    if not isinstance(block, (bytes, bytearray, memoryview)):
        raise TypeError(f"block: expected bytes or an OutlineBlock, got {type(block).__name__}")
    allowed = {k.name for k in _keywords.drawing_keywords()}
    made = _keywords.settings_from(preset, settings, allowed)
    return _lettrix.render_block(made, bytes(block))


def _checked_image(image: Any) -> np.ndarray:
    if not isinstance(image, np.ndarray) or image.dtype != np.uint8:
        raise TypeError("image: expected a uint8 NumPy array of shape (H, W, 4)")
    if image.ndim != 3 or image.shape[2] != 4 or image.shape[0] < 1 or image.shape[1] < 1:
        raise ValueError(f"image: expected shape (H, W, 4) with H, W >= 1, got {image.shape}")
    return np.ascontiguousarray(image)


def save(image: np.ndarray, path: Union[str, os.PathLike]) -> None:
    """Writes an H x W x 4 uint8 RGBA array (straight alpha) as a PNG file (TGA when the name ends in .tga).

    The file is written under a temporary name and renamed into place, so on failure (OSError) nothing
    is left behind and an existing file keeps its contents.
    """
    if not isinstance(path, (str, os.PathLike)):
        raise TypeError(f"path: expected a file name, got {type(path).__name__}")
    _lettrix.write_image(_checked_image(image), os.fspath(path))


def to_pil(image: np.ndarray) -> PIL.Image.Image:
    """The image as a PIL.Image.Image in mode RGBA (needs Pillow: Debian's python3-pil)."""
    try:
        from PIL import Image
    except ImportError as error:
        raise ImportError("lettrix.to_pil needs Pillow (apt-get install python3-pil)") from error
    return Image.fromarray(_checked_image(image), "RGBA")


class Line(NamedTuple):
    """One line of an OutlineBlock, in visual order from the top; pixels."""

    left: float  # where the pen starts and ends after alignment
    right: float
    top: float  # the line's box: baseline minus the font's ascender, plus its descender
    bottom: float
    baseline: float
    text_offset: int  # the bytes of the UTF-8 text the line shows
    text_length: int


class Glyph(NamedTuple):
    """One glyph of an OutlineBlock, in drawing order."""

    glyph: int  # index in its font
    font: int  # index into OutlineBlock.font_files
    cluster: int  # byte offset in the UTF-8 text of its first character
    line: int  # index into OutlineBlock.lines
    missing: bool  # no installed font has the character: this is the missing-glyph box
    x: float  # origin on the baseline, pixels
    y: float
    advance: float


class OutlineBlock(NamedTuple):
    """Laid-out text: its outline block and how it was laid out."""

    block: bytes  # GetGlyphOutline GGO_NATIVE records, 16.16 pixels, y down; empty when nothing has ink
    ink: Tuple[int, int, int, int]  # left, top, right, bottom: the whole-pixel box the block covers
    width: float  # pen advance of the widest line
    height: float  # first line's top to last line's bottom
    lines: List[Line]
    glyphs: List[Glyph]
    missing_count: int  # characters no installed font has
    font_files: List[str]  # the chosen font first, then fallback fonts used


_ALIGN = {"left": 0, "centre": 1, "center": 1, "right": 2}
_DIRECTION = {"auto": 0, "ltr": 1, "rtl": 2}


def _choice(name: str, value: Any, choices: dict) -> int:
    if not isinstance(value, str):
        raise TypeError(f"{name}: expected a string, got {type(value).__name__}")
    try:
        return choices[value.lower()]
    except KeyError:
        raise ValueError(f"{name}: {value!r} is not one of {', '.join(choices)}") from None


def _optional_text(name: str, value: Any) -> str:
    if value is None:
        return ""
    if not isinstance(value, str):
        raise TypeError(f"{name}: expected a string, got {type(value).__name__}")
    return value


def _real(name: str, value: Any) -> float:
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise TypeError(f"{name}: expected a number, got {type(value).__name__}")
    return float(value)


def _whole(name: str, value: Any) -> int:
    if isinstance(value, bool) or not isinstance(value, int):
        raise TypeError(f"{name}: expected an int, got {type(value).__name__}")
    return value


# What the text library's refusals start with or say, and the keyword of outline_block each is about.
_LAYOUT_REFUSALS = (
    ("pixel size", "size"),
    ("font index", "font_index"),
    ("line spacing", "line_spacing"),
    ("letter spacing", "letter_spacing"),
    ("wrap width", "wrap"),
    ("language tag", "language"),
    ("script tag", "script"),
    ("feature setting", "features"),
    ("UTF-8", "text"),
)


def _refused_keyword(message: str) -> str:
    for words, keyword in _LAYOUT_REFUSALS:
        if words in message:
            return keyword
    return "outline_block"


def outline_block(
    text: str,
    *,
    font: Optional[Union[str, os.PathLike]] = None,
    family: Optional[str] = None,
    font_index: int = 0,
    size: float = 96,
    align: str = "left",
    line_spacing: float = 1.0,
    letter_spacing: float = 0.0,
    wrap: float = 0,
    direction: str = "auto",
    language: Optional[str] = None,
    script: Optional[str] = None,
    features: Optional[str] = None,
    fallback: bool = True,
) -> OutlineBlock:
    """Lays UTF-8 text out with the text library and returns its outline block, lines and glyphs.

    For callers who draw the block themselves (Process.render, render_block). Shaping (kerning,
    ligatures, joined scripts), bidirectional text, lines at line feeds and wrapping, font fallback.

    text: the text; line feeds start new lines.
    font: a TrueType, OpenType (CFF) or collection file. family: a fontconfig pattern
        ("DejaVu Serif:bold"). With neither, render's default font.
    font_index: face within a collection file, 0..65535 (default 0).
    size: em size in pixels, 1..2048 (default 96).
    align: "left" (default), "centre" or "right": each line within the widest.
    line_spacing: factor of the font's line height, 0.1..10 (default 1).
    letter_spacing: pixels added between characters, -1000..1000 (default 0).
    wrap: 0 (default) breaks lines at line feeds only; 1..32767 pixels also breaks at spaces to fit.
    direction: "auto" (default: from the first strong letter), "ltr" or "rtl".
    language: BCP 47 tag ("ar", "hi", "tr"). script: ISO 15924 tag ("Arab") for all the text.
    features: OpenType features in HarfBuzz's syntax ("liga=0,kern", "+smcp").
    fallback: characters the font lacks come from fonts fontconfig finds (default True).

    ValueError for a value out of its range, OSError for a font that cannot be read, LettrixError for
    text that leaves the block's coordinate range.
    """
    if not isinstance(text, str):
        raise TypeError(f"text: expected a string, got {type(text).__name__}")
    if font is not None and family is not None:
        raise ValueError("font and family both given: a font file or a family, not both")
    if font is not None and not isinstance(font, (str, os.PathLike)):
        raise TypeError(f"font: expected a file name, got {type(font).__name__}")
    if not isinstance(fallback, bool):
        raise TypeError(f"fallback: expected True or False, got {type(fallback).__name__}")
    font_file = os.fspath(font) if font is not None else ""
    if font is None and family is None:
        font_file = _lettrix.resolve_font(_lettrix.Settings())
    arguments = (
        text,
        font_file,
        _optional_text("family", family),
        _whole("font_index", font_index),
        _real("size", size),
        _choice("align", align, _ALIGN),
        _real("line_spacing", line_spacing),
        _real("letter_spacing", letter_spacing),
        _real("wrap", wrap),
        _choice("direction", direction, _DIRECTION),
        _optional_text("language", language),
        _optional_text("script", script),
        _optional_text("features", features),
        fallback,
    )
    try:
        laid = _lettrix.lay_out(*arguments)
    except ValueError as error:
        raise ValueError(f"{_refused_keyword(str(error))}: {error}") from None
    block, ink, width, height, lines, glyphs, missing, fonts = laid
    return OutlineBlock(
        block, tuple(ink), width, height, [Line(*l) for l in lines], [Glyph(*g) for g in glyphs], missing, fonts
    )


def _render_doc() -> str:
    lines = [
        "Draws text with the lettrix program's settings and returns an H x W x 4 uint8 NumPy array:",
        "RGBA, straight (not premultiplied) alpha, rows top to bottom.",
        "",
        "text: UTF-8 text; line feeds start new lines. With a preset and no text, the preset's sample words.",
        "preset: a named bundle of settings, applied first; keywords override it. One of:",
        "    " + ", ".join(p.name for p in presets()) + ".",
        "",
        "Every other keyword is an option of the lettrix program (dashes as underscores) with its range and",
        "default; None or left out keeps the default (or the preset's value). Colours are '#RRGGBB[AA]',",
        "'#RGB', a name (" + _lettrix.colour_names() + ") or an (r, g, b[, a]) tuple",
        "of ints 0..255; pairs such as offsets are tuples; switches are True/False.",
        "Generated textures for *_texture: " + _lettrix.generated_textures() + ".",
    ]
    for section, keywords in _keywords.section_lines():
        lines += ["", section + ":"]
        for keyword in keywords:
            lines.append("  " + keyword.describe())
            lines.append("      " + keyword.help)
    lines += [
        "",
        "Raises ValueError for a value outside its range (naming the keyword, with the lettrix program's",
        "message), TypeError for an unknown keyword or a value of the wrong type, OSError for a font or",
        "texture file that cannot be read, LettrixError when there is nothing to draw or the image would",
        "be too large. The GIL is released while drawing.",
    ]
    return "\n".join(lines)


def _with_keywords(function, keywords) -> inspect.Signature:
    """The function's signature with one optional keyword-only parameter for each of the keywords."""
    signature = inspect.signature(function)
    fixed = [p for p in signature.parameters.values() if p.kind is not inspect.Parameter.VAR_KEYWORD]
    for keyword in keywords:
        annotation = f"Optional[{keyword.python_type()}]"
        fixed.append(
            inspect.Parameter(keyword.name, inspect.Parameter.KEYWORD_ONLY, default=None, annotation=annotation)
        )
    return signature.replace(parameters=fixed)


render.__doc__ = _render_doc()
render.__signature__ = _with_keywords(render, _keywords.KEYWORDS.values())
render_block.__signature__ = _with_keywords(render_block, _keywords.drawing_keywords())
