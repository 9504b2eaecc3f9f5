"""Keywords take the ends of their ranges and are refused just outside, as the lettrix program refuses their
options, with their Python names; wrong types raise TypeError; outline_block and Process take their own ranges."""

import re

import pytest

import lettrix
from lettrix import _keywords


def numeric_ends():
    """(keyword, its range's ends, values just outside them) of each numeric keyword, in its own shape; a
    pair's places each refused on their own."""
    for k in _keywords.KEYWORDS.values():
        if k.form in ("PX", "N", "DEGREES", "FACTOR", "X,Y", "DX,DY", "X[,Y]", "WxH|fit"):
            ends = re.match(r"(-?[\d.]+)\.\.(-?[\d.]+)", k.range).groups()
            low, high = (float(v) if k.decimal else int(v) for v in ends)
            step = 0.001 if k.decimal else 1
            single = k.form in ("PX", "N", "DEGREES", "FACTOR")
            shape = (lambda v, w: v) if single else (lambda v, w: (v, w))
            yield k.name, [shape(low, low), shape(high, high)], \
                [shape(low - step, low), shape(high + step, high)] + ([] if single else [(low, high + step)])


NUMERIC = list(numeric_ends())
# Values just outside each numeric range, then malformed ones (a colour tuple has no command-line form).
REFUSED = [(name, value) for name, _, outside in NUMERIC for value in outside] + [
    ("face_color", (256, 0, 0)), ("face_color", (0, -1, 0, 0)), ("face_color", "#GG0000"), ("face_colors", "#000000"),
    ("face_stops", []), ("face_stops", ["#102030"] * 256), ("face_stops", [("#000000", -1), ("#FFFFFF", 1)]),
    ("face_gradient_area", (5, 0, 5, 10)), ("face_gradient", "radial:-0.001,1"), ("align", "middle"),
    ("language", "not a tag"), ("features", "liga=?")]


@pytest.mark.parametrize("name,ends", [(name, ends) for name, ends, _ in NUMERIC], ids=[n[0] for n in NUMERIC])
def test_numeric_keyword_takes_the_ends_of_its_range(name, ends):
    for value in ends:
        _keywords.settings_from(None, {name: value})


@pytest.mark.parametrize("name,value", REFUSED, ids=[name for name, _ in REFUSED])
def test_value_out_of_range_is_refused_as_the_program_refuses_it(run_program, name, value):
    with pytest.raises(ValueError, match=f"^{name}: .*{re.escape(_keywords.KEYWORDS[name].range)}") as refused:
        lettrix.render("x", **{name: value})
    try:
        args = _keywords.command_line(None, {name: value})
    except ValueError:
        return
    code, _, stderr = run_program(args, "x")
    assert code == 2 and str(refused.value)[len(name) + 2:].split("; " + name + " takes")[0] in stderr


@pytest.mark.parametrize("name,value", [
    ("size", "96"), ("size", True), ("face_color", 0xFF0000), ("face_color", (1.0, 0, 0)), ("shadow_offset", 5),
    ("shadow_offset", ("1", "2")), ("canvas", 300), ("bevel", 1), ("font", 12), ("face_stops", 7), ("translate", {})])
def test_value_of_the_wrong_type_raises_type_error(name, value):
    with pytest.raises(TypeError, match=f"^{name}: "):
        lettrix.render("x", **{name: value})


def test_unknown_and_conflicting_keywords_are_refused():
    for keywords, kind, message in [(dict(outline_widht=3), TypeError, "outline_widht"),
                                    (dict(preset="no-such-preset"), ValueError, "^preset: "),
                                    (dict(face_color="red", face_stops=["red"]), ValueError, "face_color and"),
                                    (dict(font="a.ttf", family="DejaVu Sans"), ValueError, "font and family")]:
        with pytest.raises(kind, match=message):
            lettrix.render("x", **keywords)


# outline_block takes the text library's own ranges: (keyword, accepted at the ends, refused just outside).
@pytest.mark.parametrize("name,good,bad", [
    ("size", [1, 2048], [0.99, 2048.01]), ("font_index", [0], [-1, 65536]),
    ("line_spacing", [0.1, 10], [0.099, 10.001]),
    ("letter_spacing", [-1000, 1000], [-1000.001, 1000.001]), ("wrap", [0, 1, 32767], [-1, 0.5, 32768]),
    ("language", ["ar", "sr-Latn"], ["not a tag"]), ("script", ["Arab", "Latn"], ["Xx1"]),
    ("features", ["liga=0,kern", "+smcp"], ["liga=?"]), ("align", ["left", "centre", "center", "right"], ["middle"]),
    ("direction", ["auto", "ltr", "rtl"], ["up"])], ids=lambda v: v if isinstance(v, str) else "")
def test_outline_block_takes_the_ends_of_its_ranges_and_refuses_just_outside(name, good, bad):
    assert all(lettrix.outline_block("Hx", **{name: value}).block for value in good)
    for value in bad:
        with pytest.raises(ValueError, match=f"^{name}: "):
            lettrix.outline_block("Hx", **{name: value})


# Process's setters take the library's argument types: a byte, or a 32-bit integer, named in the message.
@pytest.mark.parametrize("method,arguments,position,name,low,high", [
    ("set_shadow_blur_level", (0,), 0, "level", 0, 255), ("set_color_face_start", (0, 0, 0, 0), 2, "green", 0, 255),
    ("set_outline_3d_border", (10, 5, 0.5), 1, "depth", 0, 255),
    ("set_translation", (0, 0), 1, "dy", -2**31, 2**31 - 1),
    ("set_outline_user_gradient_area", (0, 0, 0, 0), 3, "bottom", -2**31, 2**31 - 1)])
def test_process_setters_take_their_argument_types_range(method, arguments, position, name, low, high):
    with lettrix.Process() as process:
        for value in (low, high, low - 1, high + 1):
            given = (*arguments[:position], value, *arguments[position + 1:])
            call = lambda: getattr(process, method)(*given)  # noqa: E731
            if low <= value <= high:
                call()
            else:
                with pytest.raises(ValueError, match=f"^{name}: {value} is out of range \\({low}..{high}\\)"):
                    call()
