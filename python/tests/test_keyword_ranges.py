"""Every keyword takes the values at the ends of its documented range and refuses those just outside,
with the lettrix program's message; outline_block and Process take their own ranges alike."""

import re

import pytest

import lettrix
from lettrix import _keywords

KEYWORDS = _keywords.KEYWORDS
TEXTURE = lettrix._lettrix.generated_textures().split(",")[0].strip()
# Values for the keywords whose forms are not plain numbers, by form: (accepted, refused).
BY_FORM = {
    "": ([True, False], []),
    "COLOUR": ([(0, 0, 0, 0), (255, 255, 255), "#FFFFFF", "#00000000"], [(256, 0, 0), (0, -1, 0, 0), "#GG0000"]),
    "START,END": ([("#000000", (255, 255, 255, 255))], [("#000000", (0, 0, 256)), "#000000"]),
    "C[:W]": ([["#102030"] * 255, [("#000000", 0), ("#FFFFFF", 1000000)]],
              [[], ["#102030"] * 256, [("#000000", -1), ("#FFFFFF", 1)], [("#000000", 1), ("#FFFFFF", 1000001)]]),
    "L,T,R,B": ([(-32768, -32768, 32767, 32767), (0, 0, 1, 1)], [(5, 0, 5, 10), (-32769, 0, 1, 1), (0, 0, 32768, 1)]),
    "SHAPE": (["vertical", "radial:0,1", "linear:-180", "linear:180"], ["linear:180.001", "radial:-0.001,1", "diagonal"]),
    "FILE|gen:NAME": ([TEXTURE, "some-file.png"], [""]),
    "TAG": (["ar", "sr-Latn"], ["not a tag"]),
    "LIST": (["liga=0,kern", "+smcp"], ["liga=?"]),
    "FILE": (["any.ttf"], []),
    "PATTERN": (["DejaVu Sans"], []),
}


def cases():
    """(name, value) pairs accepted and refused: each numeric range's ends and just outside, in the keyword's
    own shape, each place of a pair on its own; the other forms from BY_FORM; choices and one bogus word."""
    accepted, refused = [], []
    for k in KEYWORDS.values():
        form = "C[:W]" if k.form.startswith("C[:W]") else k.form
        if form in ("PX", "N", "DEGREES", "FACTOR", "X,Y", "DX,DY", "X[,Y]", "WxH|fit"):
            low, high = (float(v) if k.decimal else int(v) for v in re.match(r"^(-?[\d.]+)\.\.(-?[\d.]+)", k.range).groups())
            step = 0.001 if k.decimal else 1
            shaped = (lambda v: v) if form in ("PX", "N", "DEGREES", "FACTOR") else (lambda v: (v, v))
            good, bad = [shaped(low), shaped(high)], [shaped(low - step), shaped(high + step)]
            bad += [(low, high + step)] if form in ("X,Y", "DX,DY", "WxH|fit") else []
        elif form in BY_FORM:
            good, bad = BY_FORM[form]
        else:
            good, bad = form.split("|"), ["bogus"]
        accepted += [(k.name, v) for v in good]
        refused += [(k.name, v) for v in bad]
    return accepted, refused


ACCEPTED, REFUSED = cases()


def case_id(case):
    return f"{case[0]}={repr(case[1])[:37]}"


def test_every_keyword_has_cases():
    no_range = {k.name for k in KEYWORDS.values() if not k.form or k.form in ("FILE", "PATTERN")}
    assert {name for name, _ in ACCEPTED} == {name for name, _ in REFUSED} | no_range == set(KEYWORDS)


@pytest.mark.parametrize("case", ACCEPTED, ids=case_id)
def test_value_at_the_ends_of_its_range_is_accepted(case):
    _keywords.settings_from(None, dict([case]))


@pytest.mark.parametrize("case", REFUSED, ids=case_id)
def test_value_just_outside_its_range_is_refused_as_the_program_refuses_it(run_program, case):
    name, value = case
    with pytest.raises(ValueError) as refused:
        lettrix.render("x", **{name: value})
    message = str(refused.value)
    assert message.startswith(name + ": ") and KEYWORDS[name].range in message
    try:  # a colour tuple out of range has no command-line form
        args = _keywords.command_line(None, {name: value})
    except ValueError:
        return
    code, _, stderr = run_program(args, "x")
    assert code == 2 and message[len(name) + 2:].split("; " + name + " takes")[0] in stderr


@pytest.mark.parametrize("case", [
    ("size", "96"), ("size", True), ("size", [96]), ("face_color", 0xFF0000), ("face_color", (1.0, 0, 0)),
    ("shadow_offset", 5), ("shadow_offset", ("1", "2")), ("canvas", 300), ("bevel", 1), ("emboss", "yes"),
    ("font", 12), ("align", 0), ("face_stops", 7), ("translate", {"x": 1})], ids=case_id)
def test_value_of_the_wrong_type_raises_type_error(case):
    with pytest.raises(TypeError, match=f"^{case[0]}: "):
        lettrix.render("x", **dict([case]))


def test_unknown_and_conflicting_keywords_are_refused():
    for keywords, kind, message in [(dict(outline_widht=3), TypeError, "outline_widht"),
                                    (dict(preset="no-such-preset"), ValueError, "^preset: "),
                                    (dict(face_color="red", face_stops=["red", "blue"]), ValueError, "face_color and face_stops"),
                                    (dict(font="a.ttf", family="DejaVu Sans"), ValueError, "font and family")]:
        with pytest.raises(kind, match=message):
            lettrix.render("x", **keywords)


# outline_block takes the text library's own ranges: (keyword, accepted at the ends, refused just outside).
@pytest.mark.parametrize("name,good,bad", [
    ("size", [1, 2048], [0.99, 2048.01]), ("font_index", [0], [-1, 65536]), ("line_spacing", [0.1, 10], [0.099, 10.001]),
    ("letter_spacing", [-1000, 1000], [-1000.001, 1000.001]), ("wrap", [0, 1, 32767], [-1, 0.5, 32768]),
    ("language", ["ar", "sr-Latn"], ["not a tag"]), ("script", ["Arab", "Latn"], ["Xx1"]),
    ("features", ["liga=0,kern", "+smcp"], ["liga=?"]), ("align", ["left", "centre", "center", "right"], ["middle"]),
    ("direction", ["auto", "ltr", "rtl"], ["up"])], ids=lambda v: v if isinstance(v, str) else "")
def test_outline_block_takes_the_ends_of_its_ranges_and_refuses_just_outside(name, good, bad):
    assert all(lettrix.outline_block("Hx", **{name: value}).block for value in good)
    for value in bad:
        with pytest.raises(ValueError, match=f"^{name}: "):
            lettrix.outline_block("Hx", **{name: value})


# Process's setters with whole-number arguments, as "method(argument, ...)": each argument a byte (B), a
# 32-bit integer (I) or another value (a real number) that a valid call gives as shown. Each byte and
# integer is checked at both ends of its type and just outside.
SETTERS = """set_shadow_visible(on:B) set_draw_shadow_only(on:B) set_shadow_extruded(on:B) set_extruded_shadow_color(value:B)
set_face_blur_level(level:B) set_outline_blur_level(level:B) set_shadow_blur_level(level:B)
set_face_gradient_fit_mode(mode:B) set_outline_gradient_fit_mode(mode:B) enable_face_embossed(on:B)
enable_outline_3d_border(on:B) set_face_fill_type(type:I) set_outline_fill_type(type:I) set_face_texture_tiling(mode:I)
set_outline_texture_tiling(mode:I) set_outline_thickness(thickness:I) set_gradient_face(type:I)
set_gradient_outline(type:I) set_shadow_offset(x:I,y:I) set_translation(dx:I,dy:I)
set_face_user_gradient_area(left:I,top:I,right:I,bottom:I) set_outline_user_gradient_area(left:I,top:I,right:I,bottom:I)
set_face_texture_embossed(0.5,a:B,b:B,c:B) set_outline_3d_border(width:B,depth:B,0.5)""" + "".join(
    f" {m}(alpha:B,red:B,green:B,blue:B)" for m in ("set_color_face_start", "set_color_face_end",
                                                    "set_color_outline_start", "set_color_outline_end",
                                                    "set_shadow_color"))
LIMITS = {"B": (0, 255), "I": (-(2**31), 2**31 - 1)}
PROCESS_ARGUMENTS = [(method, arguments, i, a.split(":")[0], LIMITS[a.split(":")[1]])
                     for method, arguments in re.findall(r"(\w+)\(([^)]*)\)", SETTERS)
                     for i, a in enumerate(arguments.split(",")) if ":" in a]


def test_every_process_setter_with_whole_arguments_is_in_the_table():
    others = {"set_shadow_zoom", "set_face_gradient_colors", "set_outline_gradient_colors", "set_texture_face",
              "set_texture_outline", "reset_translation", "render", "close"}
    assert {c[0] for c in PROCESS_ARGUMENTS} | others == {n for n in dir(lettrix.Process) if not n.startswith("_")}


@pytest.mark.parametrize("method,arguments,position,name,limits", PROCESS_ARGUMENTS,
                         ids=[f"{c[0]}.{c[3]}" for c in PROCESS_ARGUMENTS])
def test_process_setters_take_their_argument_types_range(method, arguments, position, name, limits):
    low, high = limits
    valid = [0.5 if a == "0.5" else 10 if a.startswith("width") else 5 if a.startswith("depth") else 0
             for a in arguments.split(",")]
    with lettrix.Process() as process:
        for value in (low, high, low - 1, high + 1):
            call = lambda: getattr(process, method)(*valid[:position], value, *valid[position + 1:])  # noqa: E731
            if low <= value <= high:
                call()
            else:
                with pytest.raises(ValueError, match=f"^{name}: {value} is out of range \\({low}..{high}\\)"):
                    call()
