"""Writes lettrix/__init__.pyi, the type hints of the package, from the option table of the built module.

Run it with the built package on the path after the option table changes:
    PYTHONPATH=build/native/python /usr/bin/python3 python/make_stub.py
"""

import sys
from pathlib import Path

HEAD = '''"""Type hints of the lettrix package. Made by python/make_stub.py from the option table: do not edit."""

import os
from typing import Any, List, NamedTuple, Optional, Sequence, Tuple, Union

import numpy
from PIL.Image import Image as _PilImage

# '#RRGGBB[AA]', '#RGB', a colour name, or (r, g, b[, a]) with each 0..255.
Colour = Union[str, Tuple[int, int, int], Tuple[int, int, int, int]]

class LettrixError(RuntimeError): ...

class Preset(NamedTuple):
    name: str
    description: str
    options: List[str]
    sample_text: str

def presets() -> List[Preset]: ...
def options() -> List[Any]: ...
'''

TAIL = '''
def save(image: numpy.ndarray, path: Union[str, os.PathLike]) -> None: ...
def to_pil(image: numpy.ndarray) -> _PilImage: ...

class Line(NamedTuple):
    left: float
    right: float
    top: float
    bottom: float
    baseline: float
    text_offset: int
    text_length: int

class Glyph(NamedTuple):
    glyph: int
    font: int
    cluster: int
    line: int
    missing: bool
    x: float
    y: float
    advance: float

class OutlineBlock(NamedTuple):
    block: bytes
    ink: Tuple[int, int, int, int]
    width: float
    height: float
    lines: List[Line]
    glyphs: List[Glyph]
    missing_count: int
    font_files: List[str]

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
) -> OutlineBlock: ...

class Process:
    def __init__(self) -> None: ...
    def close(self) -> None: ...
    def __enter__(self) -> "Process": ...
    def __exit__(self, *args: Any) -> None: ...
    def render(self, block: bytes, buffer: numpy.ndarray) -> bool: ...
    def set_color_face_start(self, alpha: int, red: int, green: int, blue: int) -> None: ...
    def set_color_face_end(self, alpha: int, red: int, green: int, blue: int) -> None: ...
    def set_color_outline_start(self, alpha: int, red: int, green: int, blue: int) -> None: ...
    def set_color_outline_end(self, alpha: int, red: int, green: int, blue: int) -> None: ...
    def set_shadow_color(self, alpha: int, red: int, green: int, blue: int) -> None: ...
    def set_shadow_offset(self, x: int, y: int) -> None: ...
    def set_shadow_zoom(self, x: float, y: float) -> None: ...
    def set_shadow_visible(self, on: int) -> None: ...
    def set_draw_shadow_only(self, on: int) -> None: ...
    def set_shadow_extruded(self, on: int) -> None: ...
    def set_extruded_shadow_color(self, value: int) -> None: ...
    def set_face_blur_level(self, level: int) -> None: ...
    def set_outline_blur_level(self, level: int) -> None: ...
    def set_shadow_blur_level(self, level: int) -> None: ...
    def set_face_fill_type(self, type: int) -> None: ...
    def set_outline_fill_type(self, type: int) -> None: ...
    def set_gradient_face(self, type: int, p1: float = 0.0, p2: float = 0.0) -> None: ...
    def set_gradient_outline(self, type: int, p1: float = 0.0, p2: float = 0.0) -> None: ...
    def set_face_gradient_colors(self, colours: Sequence[int], stops: Optional[Sequence[int]] = None) -> bool: ...
    def set_outline_gradient_colors(self, colours: Sequence[int], stops: Optional[Sequence[int]] = None) -> bool: ...
    def set_face_gradient_fit_mode(self, mode: int) -> None: ...
    def set_outline_gradient_fit_mode(self, mode: int) -> None: ...
    def set_face_user_gradient_area(self, left: int, top: int, right: int, bottom: int) -> bool: ...
    def set_outline_user_gradient_area(self, left: int, top: int, right: int, bottom: int) -> bool: ...
    def set_texture_face(self, pixels: numpy.ndarray) -> bool: ...
    def set_texture_outline(self, pixels: numpy.ndarray) -> bool: ...
    def set_face_texture_tiling(self, mode: int) -> None: ...
    def set_outline_texture_tiling(self, mode: int) -> None: ...
    def set_face_texture_embossed(self, angle: float, a: int, b: int, c: int) -> None: ...
    def enable_face_embossed(self, on: int) -> None: ...
    def enable_outline_3d_border(self, on: int) -> None: ...
    def set_outline_3d_border(self, width: int, depth: int, angle: float) -> None: ...
    def set_outline_thickness(self, thickness: int) -> None: ...
    def set_translation(self, dx: int, dy: int) -> None: ...
    def reset_translation(self) -> None: ...
'''

def _parameters(keywords):
    return "".join(f"    {k.name}: Optional[{k.python_type()}] = None,\n" for k in keywords)


def stub_text() -> str:
    from lettrix import _keywords

    keywords = list(_keywords.KEYWORDS.values())
    drawing = _keywords.drawing_keywords()
    render = (
        "\ndef render(\n    text: Optional[str] = None,\n    *,\n    preset: Optional[str] = None,\n"
        + _parameters(keywords)
        + ") -> numpy.ndarray: ...\n"
    )
    render_block = (
        "\ndef render_block(\n    block: Union[bytes, OutlineBlock],\n    *,\n    preset: Optional[str] = None,\n"
        + _parameters(drawing)
        + ") -> numpy.ndarray: ...\n"
    )
    return HEAD + render + TAIL + render_block


if __name__ == "__main__":
    # This folder holds the package's sources without the native module: import the built package instead.
    here = Path(__file__).resolve().parent
    sys.path = [p for p in sys.path if Path(p or ".").resolve() != here]
    target = here / "lettrix" / "__init__.pyi"
    target.write_text(stub_text())
    print(f"wrote {target}")
