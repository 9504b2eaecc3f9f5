"""Keyword arguments of lettrix.render, made from the lettrix program's option table.

Every option of the program becomes one keyword (dashes turned to underscores); a pair of switches
("bevel" / "no-bevel") becomes one bool keyword. Python values are turned into the option's text form and
handed to the same code that reads the program's command line, so both accept the same values and refuse
bad ones with the same messages.
"""

from __future__ import annotations

import re
import numbers
import os
from dataclasses import dataclass
from typing import Any, Dict, List, Optional, Tuple

from . import _lettrix

# Value forms whose values are single numbers.
_NUMBER_FORMS = {"PX", "N", "DEGREES", "FACTOR"}
# Value forms that are several numbers separated by commas, and how many.
_NUMBER_LIST_FORMS = {"X,Y": (2, 2), "DX,DY": (2, 2), "X[,Y]": (1, 2), "L,T,R,B": (4, 4)}
_FILE_FORMS = {"FILE", "FILE|gen:NAME"}
# Sections of the font and the layout: an outline block has them already, so render_block takes the rest.
LAYOUT_SECTIONS = ("Text and font", "Layout")
# Options of a layer that each choose its whole fill: giving two of them at once is ambiguous.
_FILL_CHOOSERS = ("color", "colors", "stops", "texture")


@dataclass(frozen=True)
class Keyword:
    """One keyword of lettrix.render and the option(s) it sets."""

    name: str  # the Python keyword: "outline_width"
    option: str  # the program's option: "outline-width"; for a switch pair, the one that sets it
    off_option: Optional[str]  # for a switch pair, the option that clears it ("no-bevel")
    form: str  # the program's value form ("PX", "COLOUR"); empty for a switch
    range: str  # range and default as the program's help shows them
    help: str
    section: str
    decimal: bool  # takes fractions (1.5), not only whole numbers

    @property
    def is_switch(self) -> bool:
        return not self.form

    def python_type(self) -> str:
        """The type hint of the keyword, as the stub and help show it."""
        if self.is_switch:
            return "bool"
        if self.form in _NUMBER_FORMS:
            return "float" if self.decimal else "int"
        if self.form == "COLOUR":
            return "Colour"
        if self.form == "START,END":
            return "Union[str, Tuple[Colour, Colour]]"
        if self.form.startswith("C[:W]"):
            return "Union[str, Sequence[Union[Colour, Tuple[Colour, int]]]]"
        if self.form in _NUMBER_LIST_FORMS:
            low, high = _NUMBER_LIST_FORMS[self.form]
            item = "float" if self.decimal else "int"
            pair = "Tuple[" + ", ".join([item] * high) + "]"
            return f"Union[{item}, {pair}, str]" if low == 1 else f"Union[{pair}, str]"
        if self.form == "WxH|fit":
            return "Union[str, Tuple[int, int]]"
        if self.form in _FILE_FORMS:
            return "Union[str, os.PathLike]"
        return "str"

    def describe(self) -> str:
        """The keyword's line in help(lettrix.render)."""
        kind = "True/False" if self.is_switch else self.form
        text = f"{self.name} ({kind})"
        if self.range:
            text += f": {self.range}"
        return text


def _takes_decimals(option: str, form: str, rng: str) -> bool:
    # The table says a number's range, not whether it may have a fraction: ask the option's own parser
    # with a value half a unit above the range's low end.
    if form not in _NUMBER_FORMS and form not in _NUMBER_LIST_FORMS:
        return False
    match = re.match(r"(-?[0-9.]+)\.\.", rng)
    if not match:
        return False
    value = repr(float(match.group(1)) + 0.5)
    count = _NUMBER_LIST_FORMS.get(form, (1, 1))[1]
    try:
        _lettrix.Settings().set_option(option, ",".join([value] * count))
    except ValueError:
        return False
    return True


def _build() -> Dict[str, Keyword]:
    table = _lettrix.options()
    names = {row[0] for row in table}
    keywords: Dict[str, Keyword] = {}
    for name, _short, section, form, rng, text in table:
        if not form and name.startswith("no-") and name[3:] in names:
            continue  # folded into the keyword of its partner
        off = "no-" + name if not form and "no-" + name in names else None
        python_name = name.replace("-", "_")
        keywords[python_name] = Keyword(python_name, name, off, form, rng, text, section,
                                        _takes_decimals(name, form, rng))
    return keywords


KEYWORDS: Dict[str, Keyword] = _build()


def _type_error(keyword: Keyword, value: Any, wanted: str) -> TypeError:
    return TypeError(f"{keyword.name}: expected {wanted}, got {type(value).__name__} ({value!r})")


def _number_text(keyword: Keyword, value: Any) -> str:
    if isinstance(value, bool) or not isinstance(value, numbers.Real):
        raise _type_error(keyword, value, "a number")
    if isinstance(value, numbers.Integral):
        return str(int(value))
    return repr(float(value))  # shortest exact form; inf and nan are refused by the option's parser


def _colour_text(keyword: Keyword, value: Any) -> str:
    if isinstance(value, str):
        return value
    if isinstance(value, (tuple, list)) and len(value) in (3, 4):
        parts = []
        for channel in value:
            if isinstance(channel, bool) or not isinstance(channel, numbers.Integral):
                raise _type_error(keyword, value, "a colour: '#RRGGBB[AA]', a name, or (r, g, b[, a]) of ints")
            if not 0 <= channel <= 255:
                raise ValueError(f"{tuple(value)!r} is not a colour: each of r, g, b, a is 0..255")
            parts.append(f"{int(channel):02X}")
        return "#" + "".join(parts)
    raise _type_error(keyword, value, "a colour: '#RRGGBB[AA]', a name, or (r, g, b[, a]) of ints")


def _stops_text(keyword: Keyword, value: Any) -> str:
    if isinstance(value, str):
        return value
    if not isinstance(value, (tuple, list)):
        raise _type_error(keyword, value, "colour stops: a string or a list of colours or (colour, weight)")
    stops = []
    for stop in value:
        if isinstance(stop, (tuple, list)) and len(stop) == 2:
            colour, weight = stop
            if isinstance(weight, bool) or not isinstance(weight, numbers.Integral):
                raise _type_error(keyword, stop, "(colour, weight) with a whole weight")
            stops.append(f"{_colour_text(keyword, colour)}:{int(weight)}")
        else:
            stops.append(_colour_text(keyword, stop))
    return ",".join(stops)


def _numbers_text(keyword: Keyword, value: Any) -> str:
    if isinstance(value, str):
        return value
    low, high = _NUMBER_LIST_FORMS[keyword.form]
    if low == 1 and not isinstance(value, (tuple, list)):
        return _number_text(keyword, value)
    if not isinstance(value, (tuple, list)):
        raise _type_error(keyword, value, f"a tuple of {high} numbers")
    return ",".join(_number_text(keyword, v) for v in value)


def _pair_text(keyword: Keyword, value: Any, separator: str, convert, wanted: str) -> str:
    if isinstance(value, str):
        return value
    if isinstance(value, (tuple, list)) and len(value) == 2:
        return separator.join(convert(keyword, v) for v in value)
    raise _type_error(keyword, value, wanted)


def option_text(keyword: Keyword, value: Any) -> str:
    """The option's text for a Python value; TypeError for a value of the wrong type."""
    form = keyword.form
    if form in _NUMBER_FORMS:
        return _number_text(keyword, value)
    if form == "COLOUR":
        return _colour_text(keyword, value)
    if form == "START,END":
        return _pair_text(keyword, value, ",", _colour_text, "two colours (start, end)")
    if form.startswith("C[:W]"):
        return _stops_text(keyword, value)
    if form in _NUMBER_LIST_FORMS:
        return _numbers_text(keyword, value)
    if form == "WxH|fit":
        return _pair_text(keyword, value, "x", _number_text, "'fit' or (width, height)")
    if form in _FILE_FORMS:
        if isinstance(value, (str, os.PathLike)):
            return os.fspath(value)
        raise _type_error(keyword, value, "a file name")
    if isinstance(value, str):
        return value
    raise _type_error(keyword, value, "a string")


def _check_exclusive(given: Dict[str, Any]) -> None:
    chosen = [k for k in ("font", "family") if given.get(k) is not None]
    if len(chosen) > 1:
        raise ValueError("font and family both given: a font file or a family, not both")
    for layer in ("face", "outline"):
        chosen = [f"{layer}_{c}" for c in _FILL_CHOOSERS if given.get(f"{layer}_{c}") is not None]
        if len(chosen) > 1:
            raise ValueError(f"{' and '.join(chosen)} both given: each chooses the whole {layer} fill")


def _set(settings: "_lettrix.Settings", keyword: Keyword, value: Any) -> None:
    if not keyword.is_switch:
        settings.set_option(keyword.option, option_text(keyword, value))
        return
    if not isinstance(value, bool):
        raise _type_error(keyword, value, "True or False")
    if value:
        settings.set_option(keyword.option, "")
    elif keyword.off_option:
        settings.set_option(keyword.off_option, "")


def settings_from(preset: Optional[str], given: Dict[str, Any], allowed=None) -> "_lettrix.Settings":
    """Settings made from a preset and keywords, applied in the program's option order.

    Keywords whose value is None are left out. Raises TypeError for an unknown keyword or a value of
    the wrong type, ValueError (naming the keyword, with the program's message) for a bad value.
    """
    for name in given:
        if name not in KEYWORDS or (allowed is not None and name not in allowed):
            raise TypeError(f"unexpected keyword argument '{name}'")
    _check_exclusive(given)
    settings = _lettrix.Settings()
    if preset is not None:
        if not isinstance(preset, str):
            raise TypeError(f"preset: expected a string, got {type(preset).__name__}")
        try:
            settings.apply_preset(preset)
        except ValueError as error:
            raise ValueError(f"preset: {error}") from None
    for keyword in KEYWORDS.values():
        value = given.get(keyword.name)
        if value is None:
            continue
        try:
            _set(settings, keyword, value)
        except ValueError as error:
            allowed_text = f"; {keyword.name} takes {keyword.form}, {keyword.range}" if keyword.range else ""
            raise ValueError(f"{keyword.name}: {error}{allowed_text}") from None
    return settings


def command_line(preset: Optional[str], given: Dict[str, Any]) -> List[str]:
    """The lettrix program's options for the same preset and keywords (what settings_from applies)."""
    args: List[str] = [] if preset is None else ["--preset", preset]
    for keyword in KEYWORDS.values():
        value = given.get(keyword.name)
        if value is None:
            continue
        if keyword.is_switch:
            if value:
                args.append("--" + keyword.option)
            elif keyword.off_option:
                args.append("--" + keyword.off_option)
        else:
            args += ["--" + keyword.option, option_text(keyword, value)]
    return args


def section_lines() -> List[Tuple[str, List[Keyword]]]:
    """The keywords grouped under the program's help headings, in its order."""
    sections: List[Tuple[str, List[Keyword]]] = []
    for keyword in KEYWORDS.values():
        if not sections or sections[-1][0] != keyword.section:
            sections.append((keyword.section, []))
        sections[-1][1].append(keyword)
    return sections


def drawing_keywords() -> List[Keyword]:
    """The keywords that steer drawing rather than layout: those render_block takes."""
    return [k for k in KEYWORDS.values() if k.section not in LAYOUT_SECTIONS]
