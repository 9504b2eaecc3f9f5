"""Every keyword of lettrix.render takes the values at the ends of its documented range and refuses those
just outside, with the lettrix program's message, the keyword's name and its range."""

import re

import pytest

import lettrix
from lettrix import _keywords

KEYWORDS = _keywords.KEYWORDS
RANGE = re.compile(r"^(-?\d+(?:\.\d+)?)\.\.(-?\d+(?:\.\d+)?)")
FIRST_TEXTURE = lettrix._lettrix.generated_textures().split(",")[0].strip()


def numeric_cases():
    """The ends of each numeric keyword's range, and the values just outside, in the keyword's own shape."""
    accepted, refused = [], []
    for keyword in KEYWORDS.values():
        if keyword.form in ("PX", "N", "DEGREES", "FACTOR", "X,Y", "DX,DY", "X[,Y]", "WxH|fit"):
            match = RANGE.match(keyword.range)
            assert match, f"{keyword.name}: no range in {keyword.range!r}"
            low, high = float(match.group(1)), float(match.group(2))
            step = 0.001 if keyword.decimal else 1
            if not keyword.decimal:
                low, high = int(low), int(high)
            places = 1 if keyword.form in ("PX", "N", "DEGREES", "FACTOR") else 2
            shaped = (lambda v: v) if places == 1 else (lambda v: (v, v))
            accepted += [(keyword.name, shaped(low)), (keyword.name, shaped(high))]
            refused += [(keyword.name, shaped(low - step)), (keyword.name, shaped(high + step))]
            if keyword.form in ("X,Y", "DX,DY", "WxH|fit"):  # each place is checked on its own
                refused.append((keyword.name, (low, high + step)))
    return accepted, refused


NUMERIC_ACCEPTED, NUMERIC_REFUSED = numeric_cases()


# Values for the keywords whose forms are not plain numbers, by form: (accepted, refused).
BY_FORM = {
    "": ([True, False], []),
    "COLOUR": ([(0, 0, 0, 0), (255, 255, 255), "#FFFFFF", "#00000000"],
               [(256, 0, 0), (0, -1, 0, 0), "#GG0000", "#1234567"]),
    "START,END": ([("#000000", (255, 255, 255, 255))], [("#000000", (0, 0, 256)), "#000000"]),
    "C[:W]": ([["#102030"], ["#102030"] * 255, [("#000000", 0), ("#FFFFFF", 1000000)]],
              [[], ["#102030"] * 256, [("#000000", -1), ("#FFFFFF", 1)], [("#000000", 1), ("#FFFFFF", 1000001)]]),
    "L,T,R,B": ([(-32768, -32768, 32767, 32767), (0, 0, 1, 1)],
                [(5, 0, 5, 10), (0, 10, 10, 10), (-32769, 0, 1, 1), (0, 0, 32768, 1)]),
    "SHAPE": (["vertical", "radial", "radial:0,1", "linear:-180", "linear:180"],
              ["linear:180.001", "linear:-180.001", "radial:0,1.001", "radial:-0.001,1", "diagonal"]),
    "FILE|gen:NAME": ([FIRST_TEXTURE, "some-file.png"], [""]),
    "TAG": (["ar", "sr-Latn"], ["not a tag"]),
    "LIST": (["liga=0,kern", "+smcp"], ["liga=?"]),
    "FILE": (["any.ttf"], []),
    "PATTERN": (["DejaVu Sans"], []),
}


def other_cases():
    accepted, refused = [], []
    for keyword in KEYWORDS.values():
        form = "C[:W]" if keyword.form.startswith("C[:W]") else keyword.form
        if form in BY_FORM:
            good, bad = BY_FORM[form]
        elif "|" in form and form != "WxH|fit":
            good, bad = form.split("|"), ["bogus"]
        else:
            continue
        accepted += [(keyword.name, v) for v in good]
        refused += [(keyword.name, v) for v in bad]
    return accepted, refused


OTHER_ACCEPTED, OTHER_REFUSED = other_cases()
ACCEPTED = NUMERIC_ACCEPTED + OTHER_ACCEPTED
REFUSED = NUMERIC_REFUSED + OTHER_REFUSED


def test_every_keyword_has_cases():
    covered = {name for name, _ in ACCEPTED}
    assert covered == set(KEYWORDS)
    refused = {name for name, _ in REFUSED}
    # A font file, a family pattern and switches have no values to refuse at this stage.
    no_range = {k.name for k in KEYWORDS.values() if not k.form or k.form in ("FILE", "PATTERN")}
    assert refused | no_range == set(KEYWORDS)


def case_id(case):
    name, value = case
    text = repr(value)
    return f"{name}={text if len(text) < 40 else text[:37] + '...'}"


@pytest.mark.parametrize("case", ACCEPTED, ids=case_id)
def test_value_at_the_ends_of_its_range_is_accepted(case):
    name, value = case
    _keywords.settings_from(None, {name: value})


def program_can_take(name, value):
    """Whether the refused value has a command-line form (a colour tuple out of range has none)."""
    try:
        _keywords.option_text(KEYWORDS[name], value)
    except ValueError:
        return False
    return True


@pytest.mark.parametrize("case", REFUSED, ids=case_id)
def test_value_just_outside_its_range_is_refused_as_the_program_refuses_it(run_program, case):
    name, value = case
    with pytest.raises(ValueError) as refused:
        lettrix.render("x", **{name: value})
    message = str(refused.value)
    assert message.startswith(name + ": ")
    assert KEYWORDS[name].range in message
    if program_can_take(name, value):
        code, _, stderr = run_program(_keywords.command_line(None, {name: value}), "x")
        assert code == 2
        assert message[len(name) + 2 :].split("; " + name + " takes")[0] in stderr


WRONG_TYPES = [
    ("size", "96"), ("size", True), ("size", [96]), ("face_color", 0xFF0000), ("face_color", (1.0, 0, 0)),
    ("shadow_offset", 5), ("shadow_offset", ("1", "2")), ("canvas", 300), ("bevel", 1), ("emboss", "yes"),
    ("font", 12), ("align", 0), ("face_stops", 7), ("translate", {"x": 1}),
]


@pytest.mark.parametrize("case", WRONG_TYPES, ids=case_id)
def test_value_of_the_wrong_type_raises_type_error(case):
    name, value = case
    with pytest.raises(TypeError, match=f"^{name}: "):
        lettrix.render("x", **{name: value})


def test_unknown_keyword_and_unknown_preset():
    with pytest.raises(TypeError, match="outline_widht"):
        lettrix.render("x", outline_widht=3)
    with pytest.raises(ValueError, match="^preset: "):
        lettrix.render("x", preset="no-such-preset")


def test_conflicting_keywords_are_refused():
    with pytest.raises(ValueError, match="face_color and face_stops"):
        lettrix.render("x", face_color="red", face_stops=["red", "blue"])
    with pytest.raises(ValueError, match="font and family"):
        lettrix.render("x", font="a.ttf", family="DejaVu Sans")


# outline_block takes the text library's own ranges: (keyword, accepted at the ends, refused just outside).
LAYOUT_RANGES = [
    ("size", [1, 2048], [0.99, 2048.01]),
    ("font_index", [0], [-1, 65536]),
    ("line_spacing", [0.1, 10], [0.099, 10.001]),
    ("letter_spacing", [-1000, 1000], [-1000.001, 1000.001]),
    ("wrap", [0, 1, 32767], [-1, 0.5, 32768]),
    ("language", ["ar", "sr-Latn"], ["not a tag"]),
    ("script", ["Arab", "Latn"], ["Xx1"]),
    ("features", ["liga=0,kern", "+smcp"], ["liga=?"]),
    ("align", ["left", "centre", "center", "right"], ["middle"]),
    ("direction", ["auto", "ltr", "rtl"], ["up"]),
]


@pytest.mark.parametrize("name,good,bad", LAYOUT_RANGES, ids=[c[0] for c in LAYOUT_RANGES])
def test_outline_block_takes_the_ends_of_its_ranges_and_refuses_just_outside(name, good, bad):
    for value in good:
        assert lettrix.outline_block("Hx", **{name: value}).block
    for value in bad:
        with pytest.raises(ValueError, match=f"^{name}: "):
            lettrix.outline_block("Hx", **{name: value})


# Process's setters take the library's argument types: (method, a valid call, the position of a byte or
# 32-bit argument, its name, the type). Each is checked at both ends and just outside.
BYTE, INT32 = (0, 255), (-(2**31), 2**31 - 1)
ONE_BYTE = ("set_shadow_visible:on set_draw_shadow_only:on set_shadow_extruded:on set_extruded_shadow_color:value "
            "set_face_blur_level:level set_outline_blur_level:level set_shadow_blur_level:level "
            "set_face_gradient_fit_mode:mode set_outline_gradient_fit_mode:mode enable_face_embossed:on "
            "enable_outline_3d_border:on")
ONE_INT32 = ("set_face_fill_type:type set_outline_fill_type:type set_face_texture_tiling:mode "
             "set_outline_texture_tiling:mode set_outline_thickness:thickness set_gradient_face:type "
             "set_gradient_outline:type")
COLOURS = "set_color_face_start set_color_face_end set_color_outline_start set_color_outline_end set_shadow_color"
PROCESS_ARGUMENTS = (
    [(m, (0,), 0, a, BYTE) for m, a in (w.split(":") for w in ONE_BYTE.split())]
    + [(m, (0,), 0, a, INT32) for m, a in (w.split(":") for w in ONE_INT32.split())]
    + [(m, (0, 0, 0, 0), i, a, BYTE) for m in COLOURS.split() for i, a in enumerate(("alpha", "red", "green", "blue"))]
    + [(m, (0, 0), i, a, INT32) for m, names in (("set_shadow_offset", "xy"), ("set_translation", ("dx", "dy")))
       for i, a in enumerate(names)]
    + [(m, (0, 0, 0, 0), i, a, INT32) for m in ("set_face_user_gradient_area", "set_outline_user_gradient_area")
       for i, a in enumerate(("left", "top", "right", "bottom"))]
    + [("set_face_texture_embossed", (0.5, 0, 0, 0), i, a, BYTE) for i, a in ((1, "a"), (2, "b"), (3, "c"))]
    + [("set_outline_3d_border", (10, 5, 0.5), i, a, BYTE) for i, a in ((0, "width"), (1, "depth"))]
)


@pytest.mark.parametrize("method,arguments,position,name,limits", PROCESS_ARGUMENTS,
                         ids=[f"{c[0]}.{c[3]}" for c in PROCESS_ARGUMENTS])
def test_process_setters_take_their_argument_types_range(method, arguments, position, name, limits):
    low, high = limits
    with lettrix.Process() as process:
        setter = getattr(process, method)
        for value in (low, high, low - 1, high + 1):
            call = lambda: setter(*arguments[:position], value, *arguments[position + 1:])  # noqa: E731
            if low <= value <= high:
                call()
            else:
                with pytest.raises(ValueError, match=f"^{name}: {value} is out of range \\({low}..{high}\\)"):
                    call()


def test_every_process_setter_with_whole_arguments_is_in_the_table():
    covered = {c[0] for c in PROCESS_ARGUMENTS}
    # Those taking only reals, sequences, arrays or nothing have no integer range to check.
    others = {"set_shadow_zoom", "set_face_gradient_colors", "set_outline_gradient_colors", "set_texture_face",
              "set_texture_outline", "reset_translation", "render", "close"}
    public = {n for n in dir(lettrix.Process) if not n.startswith("_")}
    assert covered | others == public
