"""lettrix.render and the lettrix program (of the same build), given the same settings, draw the same pixels and
refuse the same values with the same messages (with the keywords' Python names); wrong types raise TypeError;
outline_block takes the text library's ranges."""

import os
import re
import subprocess
from pathlib import Path

import numpy as np
import pytest
from PIL import Image

import lettrix
from lettrix import _keywords

PROGRAM = Path(os.environ.get("LETTRIX_PROGRAM", Path(__file__).resolve().parents[2] / "build/native/bin/lettrix"))


@pytest.fixture
def run_program(tmp_path):
    """Runs the program with options and text; returns (exit code, its RGBA image or None, stderr)."""
    def run(args, text):
        out = tmp_path / f"program-{len(list(tmp_path.iterdir()))}.png"
        done = subprocess.run([str(PROGRAM), *args, "-o", str(out), "--text", text], capture_output=True, text=True,
                              timeout=300)
        return done.returncode, np.array(Image.open(out)) if done.returncode == 0 else None, done.stderr
    return run


# Every preset, and combinations that reach every kind of value: tuples, colour tuples, stops with
# weights, switches over a preset, layout options, a fixed canvas and a generated texture.
CASES = [(p.sample_text, dict(preset=p.name, size=64)) for p in lettrix.presets()] + [
    ("Two\nlines", dict(size=48, face_stops=["#FF0000", ("#00FF00", 3), (0, 0, 255, 200)], face_gradient="linear:30",
                        outline_width=3, outline_colors=("#000000", (255, 255, 0)), shadow_blur=4, align="right",
                        line_spacing=1.4, letter_spacing=2.5, padding=4, background=(240, 240, 250, 255), wrap=120,
                        shadow_zoom=(1.1, 0.9), shadow_offset=(3, -2), shadow_color=(20, 20, 20, 255), face_blur=1,
                        features="kern=0", extrude=True, extrude_shading="flat")),
    ("Tex", dict(preset="3d-bevel", bevel=False, shadow=False, size=64, canvas=(420, 140), translate=(-10, 5),
                 face_texture=lettrix._lettrix.generated_textures().split(",")[0].strip(), face_tiling="stretch",
                 emboss=True, emboss_angle=-90.5, outline_gradient="radial:0.2,0.9", outline_colors=("red", "blue"))),
]


@pytest.mark.parametrize("text,keywords", CASES, ids=[f"{c[1].get('preset', '')}{c[0][:5]}" for c in CASES])
def test_render_draws_as_the_program_does(run_program, text, keywords):
    keywords = dict(keywords)
    preset = keywords.pop("preset", None)
    code, theirs, stderr = run_program(_keywords.command_line(preset, keywords), text)
    assert code == 0, stderr
    assert np.array_equal(lettrix.render(text, preset=preset, **keywords), theirs)
    if keywords == dict(size=64):  # without a text, a preset draws its sample words
        assert np.array_equal(lettrix.render(preset=preset, size=64), theirs)


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
ENDS = {name: ends for name, ends, _ in NUMERIC}
# Values just outside each numeric range, then malformed ones (a colour tuple has no command-line form).
REFUSED = [(name, value) for name, _, outside in NUMERIC for value in outside] + [
    ("face_color", (256, 0, 0)), ("face_color", (0, -1, 0, 0)), ("face_color", "#GG0000"), ("face_colors", "#000000"),
    ("face_stops", []), ("face_stops", ["#102030"] * 256), ("face_stops", [("#000000", -1), ("#FFFFFF", 1)]),
    ("face_gradient_area", (5, 0, 5, 10)), ("face_gradient", "radial:-0.001,1"), ("align", "middle"),
    ("language", "not a tag"), ("features", "liga=?")]


@pytest.mark.parametrize("name,value", REFUSED, ids=[name for name, _ in REFUSED])
def test_value_out_of_range_is_refused_as_the_program_refuses_it_and_its_ends_are_taken(run_program, name, value):
    for end in ENDS.get(name, []):
        _keywords.settings_from(None, {name: end})
    with pytest.raises(ValueError, match=f"^{name}: .*{re.escape(_keywords.KEYWORDS[name].range)}") as refused:
        lettrix.render("x", **{name: value})
    try:
        args = _keywords.command_line(None, {name: value})
    except ValueError:
        return
    code, _, stderr = run_program(args, "x")
    assert code == 2 and str(refused.value)[len(name) + 2:].split("; " + name + " takes")[0] in stderr


# Wrong types raise TypeError; unknown and conflicting keywords are refused too.
@pytest.mark.parametrize("keywords,kind,message", [({name: value}, TypeError, f"^{name}: ") for name, value in [
    ("size", "96"), ("size", True), ("face_color", 0xFF0000), ("face_color", (1.0, 0, 0)), ("shadow_offset", 5),
    ("shadow_offset", ("1", "2")), ("canvas", 300), ("bevel", 1), ("font", 12), ("face_stops", 7), ("translate", {})]
] + [
    (dict(outline_widht=3), TypeError, "outline_widht"), (dict(preset="no-such-preset"), ValueError, "^preset: "),
    (dict(face_color="red", face_stops=["red"]), ValueError, "face_color and"),
    (dict(font="a.ttf", family="DejaVu Sans"), ValueError, "font and family")])
def test_wrong_unknown_and_conflicting_keywords_are_refused(keywords, kind, message):
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
