"""Type hints of the lettrix package. Made by python/make_stub.py from the option table: do not edit."""

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

def render(
    text: Optional[str] = None,
    *,
    preset: Optional[str] = None,
    font: Optional[Union[str, os.PathLike]] = None,
    family: Optional[str] = None,
    size: Optional[int] = None,
    align: Optional[str] = None,
    line_spacing: Optional[float] = None,
    letter_spacing: Optional[float] = None,
    wrap: Optional[int] = None,
    direction: Optional[str] = None,
    language: Optional[str] = None,
    features: Optional[str] = None,
    canvas: Optional[Union[str, Tuple[int, int]]] = None,
    padding: Optional[int] = None,
    background: Optional[Colour] = None,
    translate: Optional[Union[Tuple[int, int], str]] = None,
    face_color: Optional[Colour] = None,
    face_colors: Optional[Union[str, Tuple[Colour, Colour]]] = None,
    face_stops: Optional[Union[str, Sequence[Union[Colour, Tuple[Colour, int]]]]] = None,
    face_gradient: Optional[str] = None,
    face_gradient_extent: Optional[str] = None,
    face_gradient_area: Optional[Union[Tuple[int, int, int, int], str]] = None,
    face_texture: Optional[Union[str, os.PathLike]] = None,
    face_tiling: Optional[str] = None,
    face_blur: Optional[int] = None,
    emboss: Optional[bool] = None,
    emboss_angle: Optional[float] = None,
    emboss_tint: Optional[Colour] = None,
    outline_width: Optional[int] = None,
    outline_color: Optional[Colour] = None,
    outline_colors: Optional[Union[str, Tuple[Colour, Colour]]] = None,
    outline_stops: Optional[Union[str, Sequence[Union[Colour, Tuple[Colour, int]]]]] = None,
    outline_gradient: Optional[str] = None,
    outline_gradient_extent: Optional[str] = None,
    outline_gradient_area: Optional[Union[Tuple[int, int, int, int], str]] = None,
    outline_texture: Optional[Union[str, os.PathLike]] = None,
    outline_tiling: Optional[str] = None,
    outline_blur: Optional[int] = None,
    bevel: Optional[bool] = None,
    bevel_elevation: Optional[int] = None,
    bevel_passes: Optional[int] = None,
    bevel_angle: Optional[float] = None,
    shadow_color: Optional[Colour] = None,
    shadow_offset: Optional[Union[Tuple[int, int], str]] = None,
    shadow_zoom: Optional[Union[float, Tuple[float, float], str]] = None,
    shadow_blur: Optional[int] = None,
    extrude: Optional[bool] = None,
    extrude_shading: Optional[str] = None,
    shadow: Optional[bool] = None,
    shadow_only: Optional[bool] = None,
) -> numpy.ndarray: ...

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

def render_block(
    block: Union[bytes, OutlineBlock],
    *,
    preset: Optional[str] = None,
    canvas: Optional[Union[str, Tuple[int, int]]] = None,
    padding: Optional[int] = None,
    background: Optional[Colour] = None,
    translate: Optional[Union[Tuple[int, int], str]] = None,
    face_color: Optional[Colour] = None,
    face_colors: Optional[Union[str, Tuple[Colour, Colour]]] = None,
    face_stops: Optional[Union[str, Sequence[Union[Colour, Tuple[Colour, int]]]]] = None,
    face_gradient: Optional[str] = None,
    face_gradient_extent: Optional[str] = None,
    face_gradient_area: Optional[Union[Tuple[int, int, int, int], str]] = None,
    face_texture: Optional[Union[str, os.PathLike]] = None,
    face_tiling: Optional[str] = None,
    face_blur: Optional[int] = None,
    emboss: Optional[bool] = None,
    emboss_angle: Optional[float] = None,
    emboss_tint: Optional[Colour] = None,
    outline_width: Optional[int] = None,
    outline_color: Optional[Colour] = None,
    outline_colors: Optional[Union[str, Tuple[Colour, Colour]]] = None,
    outline_stops: Optional[Union[str, Sequence[Union[Colour, Tuple[Colour, int]]]]] = None,
    outline_gradient: Optional[str] = None,
    outline_gradient_extent: Optional[str] = None,
    outline_gradient_area: Optional[Union[Tuple[int, int, int, int], str]] = None,
    outline_texture: Optional[Union[str, os.PathLike]] = None,
    outline_tiling: Optional[str] = None,
    outline_blur: Optional[int] = None,
    bevel: Optional[bool] = None,
    bevel_elevation: Optional[int] = None,
    bevel_passes: Optional[int] = None,
    bevel_angle: Optional[float] = None,
    shadow_color: Optional[Colour] = None,
    shadow_offset: Optional[Union[Tuple[int, int], str]] = None,
    shadow_zoom: Optional[Union[float, Tuple[float, float], str]] = None,
    shadow_blur: Optional[int] = None,
    extrude: Optional[bool] = None,
    extrude_shading: Optional[str] = None,
    shadow: Optional[bool] = None,
    shadow_only: Optional[bool] = None,
) -> numpy.ndarray: ...
