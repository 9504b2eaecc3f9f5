"""Every keyword of lettrix.render takes the values at the ends of its documented range and refuses those
just outside, with the lettrix program's message, the keyword's name and its range."""

import re

import pytest

import lettrix
from lettrix import _keywords

KEYWORDS = _keywords.KEYWORDS
RANGE = re.compile(r"^(-?\d+(?:\.\d+)?)\.\.(-?\d+(?:\.\d+)?)")
FIRST_TEXTURE = lettrix._lettrix.generated_textures().split(",")[0].strip()


def numeric_range(keyword):
    match = RANGE.match(keyword.range)
    assert match, f"{keyword.name}: no range in {keyword.range!r}"
    low, high = float(match.group(1)), float(match.group(2))
    if keyword.decimal:
        return low, high, low - 0.001, high + 0.001
    return int(low), int(high), int(low) - 1, int(high) + 1


def shaped(keyword, value):
    """A number in the keyword's own shape: a single value, or the same value in every place."""
    places = {"X,Y": 2, "DX,DY": 2, "X[,Y]": 2, "WxH|fit": 2}.get(keyword.form, 1)
    return value if places == 1 else (value,) * places


def numeric_cases():
    accepted, refused = [], []
    for keyword in KEYWORDS.values():
        if keyword.form in ("PX", "N", "DEGREES", "FACTOR", "X,Y", "DX,DY", "X[,Y]", "WxH|fit"):
            low, high, below, above = numeric_range(keyword)
            accepted += [(keyword.name, shaped(keyword, low)), (keyword.name, shaped(keyword, high))]
            refused += [(keyword.name, shaped(keyword, below)), (keyword.name, shaped(keyword, above))]
            if keyword.form in ("X,Y", "DX,DY", "WxH|fit"):  # each place is checked on its own
                refused.append((keyword.name, (low, above)))
    return accepted, refused


NUMERIC_ACCEPTED, NUMERIC_REFUSED = numeric_cases()


def choices(form):
    return form.split("|")


# Values for the keywords whose forms are not plain numbers: (accepted, refused).
def other_cases():
    accepted, refused = [], []
    for keyword in KEYWORDS.values():
        name, form = keyword.name, keyword.form
        if not form:
            accepted += [(name, True), (name, False)]
        elif form == "COLOUR":
            accepted += [(name, (0, 0, 0, 0)), (name, (255, 255, 255)), (name, "#FFFFFF"), (name, "#00000000")]
            refused += [(name, (256, 0, 0)), (name, (0, -1, 0, 0)), (name, "#GG0000"), (name, "#1234567")]
        elif form == "START,END":
            accepted += [(name, ("#000000", (255, 255, 255, 255)))]
            refused += [(name, ("#000000", (0, 0, 256))), (name, "#000000")]
        elif form.startswith("C[:W]"):
            accepted += [(name, ["#102030"]), (name, ["#102030"] * 255),
                         (name, [("#000000", 0), ("#FFFFFF", 1000000)])]
            refused += [(name, []), (name, ["#102030"] * 256), (name, [("#000000", -1), ("#FFFFFF", 1)]),
                        (name, [("#000000", 1), ("#FFFFFF", 1000001)])]
        elif form == "L,T,R,B":
            accepted += [(name, (-32768, -32768, 32767, 32767)), (name, (0, 0, 1, 1))]
            refused += [(name, (5, 0, 5, 10)), (name, (0, 10, 10, 10)), (name, (-32769, 0, 1, 1)),
                        (name, (0, 0, 32768, 1))]
        elif form == "SHAPE":
            accepted += [(name, "vertical"), (name, "radial"), (name, "radial:0,1"), (name, "linear:-180"),
                         (name, "linear:180")]
            refused += [(name, "linear:180.001"), (name, "linear:-180.001"), (name, "radial:0,1.001"),
                        (name, "radial:-0.001,1"), (name, "diagonal")]
        elif form == "FILE|gen:NAME":
            accepted += [(name, FIRST_TEXTURE), (name, "some-file.png")]
            refused += [(name, "")]
        elif form == "TAG":
            accepted += [(name, "ar"), (name, "sr-Latn")]
            refused += [(name, "not a tag")]
        elif form == "LIST":
            accepted += [(name, "liga=0,kern"), (name, "+smcp")]
            refused += [(name, "liga=?")]
        elif form in ("FILE", "PATTERN"):
            accepted += [(name, "DejaVu Sans" if form == "PATTERN" else "any.ttf")]
        elif "|" in form and form not in ("WxH|fit",):
            accepted += [(name, choice) for choice in choices(form)]
            refused += [(name, "bogus")]
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


@pytest.mark.parametrize("case", REFUSED, ids=case_id)
def test_value_just_outside_its_range_is_refused_naming_the_keyword(case):
    name, value = case
    with pytest.raises(ValueError) as refused:
        lettrix.render("x", **{name: value})
    message = str(refused.value)
    assert message.startswith(name + ": ")
    keyword = KEYWORDS[name]
    if keyword.range:
        assert keyword.range in message


def program_can_take(case):
    """Whether the refused value has a command-line form (a colour tuple out of range has none)."""
    name, value = case
    try:
        _keywords.option_text(KEYWORDS[name], value)
    except ValueError:
        return False
    return True


@pytest.mark.parametrize("case", [c for c in REFUSED if program_can_take(c)], ids=case_id)
def test_refusal_carries_the_programs_message(run_program, case):
    name, value = case
    with pytest.raises(ValueError) as refused:
        lettrix.render("x", **{name: value})
    code, _, stderr = run_program(_keywords.command_line(None, {name: value}), "x")
    assert code == 2
    program_message = str(refused.value)[len(name) + 2 :].split("; " + name + " takes")[0]
    assert program_message in stderr


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
LAYOUT_ACCEPTED = [(name, v) for name, good, _ in LAYOUT_RANGES for v in good]
LAYOUT_REFUSED = [(name, v) for name, _, bad in LAYOUT_RANGES for v in bad]


@pytest.mark.parametrize("case", LAYOUT_ACCEPTED, ids=case_id)
def test_outline_block_takes_the_ends_of_its_ranges(case):
    name, value = case
    assert lettrix.outline_block("Hx", **{name: value}).block


@pytest.mark.parametrize("case", LAYOUT_REFUSED, ids=case_id)
def test_outline_block_refuses_just_outside_naming_the_keyword(case):
    name, value = case
    with pytest.raises(ValueError, match=f"^{name}: "):
        lettrix.outline_block("Hx", **{name: value})


# Process's setters take the library's argument types: (method, a valid call, the position of a byte or
# 32-bit argument, its name, the type). Each is checked at both ends and just outside.
BYTE, INT32 = (0, 255), (-(2**31), 2**31 - 1)
PROCESS_ARGUMENTS = (
    [(m, (0,), 0, a, BYTE) for m, a in [
        ("set_shadow_visible", "on"), ("set_draw_shadow_only", "on"), ("set_shadow_extruded", "on"),
        ("set_extruded_shadow_color", "value"), ("set_face_blur_level", "level"),
        ("set_outline_blur_level", "level"), ("set_shadow_blur_level", "level"),
        ("set_face_gradient_fit_mode", "mode"), ("set_outline_gradient_fit_mode", "mode"),
        ("enable_face_embossed", "on"), ("enable_outline_3d_border", "on")]]
    + [(m, (0,), 0, a, INT32) for m, a in [
        ("set_face_fill_type", "type"), ("set_outline_fill_type", "type"), ("set_face_texture_tiling", "mode"),
        ("set_outline_texture_tiling", "mode"), ("set_outline_thickness", "thickness"),
        ("set_gradient_face", "type"), ("set_gradient_outline", "type")]]
    + [(m, (0, 0, 0, 0), i, a, BYTE) for m in ("set_color_face_start", "set_color_face_end",
                                                "set_color_outline_start", "set_color_outline_end",
                                                "set_shadow_color")
       for i, a in enumerate(("alpha", "red", "green", "blue"))]
    + [(m, (0, 0), i, a, INT32) for m, names in [("set_shadow_offset", ("x", "y")), ("set_translation", ("dx", "dy"))]
       for i, a in enumerate(names)]
    + [(m, (0, 0, 0, 0), i, a, INT32) for m in ("set_face_user_gradient_area", "set_outline_user_gradient_area")
       for i, a in enumerate(("left", "top", "right", "bottom"))]
    + [("set_face_texture_embossed", (0.5, 0, 0, 0), i, a, BYTE) for i, a in ((1, "a"), (2, "b"), (3, "c"))]
    + [("set_outline_3d_border", (10, 5, 0.5), i, a, BYTE) for i, a in ((0, "width"), (1, "depth"))]
)


def with_value(arguments, position, value):
    changed = list(arguments)
    changed[position] = value
    return changed


@pytest.mark.parametrize("method,arguments,position,name,limits", PROCESS_ARGUMENTS,
                         ids=[f"{c[0]}.{c[3]}" for c in PROCESS_ARGUMENTS])
def test_process_setters_take_their_argument_types_range(method, arguments, position, name, limits):
    low, high = limits
    with lettrix.Process() as process:
        setter = getattr(process, method)
        setter(*with_value(arguments, position, low))
        setter(*with_value(arguments, position, high))
        for outside in (low - 1, high + 1):
            with pytest.raises(ValueError, match=f"^{name}: {outside} is out of range \\({low}..{high}\\)"):
                setter(*with_value(arguments, position, outside))


def test_every_process_setter_with_whole_arguments_is_in_the_table():
    covered = {c[0] for c in PROCESS_ARGUMENTS}
    # Those taking only reals, sequences, arrays or nothing have no integer range to check.
    others = {"set_shadow_zoom", "set_face_gradient_colors", "set_outline_gradient_colors", "set_texture_face",
              "set_texture_outline", "reset_translation", "render", "close"}
    public = {n for n in dir(lettrix.Process) if not n.startswith("_")}
    assert covered | others == public
