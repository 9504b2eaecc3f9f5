"""lettrix.render and the lettrix program, given the same settings, draw the same pixels."""

import numpy as np
import pytest

import lettrix
from lettrix import _keywords

PRESETS = [p.name for p in lettrix.presets()]

# Hand-set combinations that reach every kind of value: tuples, colour tuples, stops with weights,
# switches on and off over a preset, layout options, a fixed canvas and a generated texture.
COMBINATIONS = [
    ("Ag", dict(size=80, face_color=(200, 30, 40), outline_width=3, outline_color="#102030",
                shadow_offset=(5, 6), shadow_blur=4)),
    ("Mix", dict(size=72, face_stops=["#FF0000", ("#00FF00", 3), (0, 0, 255, 200)],
                 face_gradient="linear:30", outline_width=2, outline_colors=("#000000", (255, 255, 0)))),
    ("Two\nlines", dict(size=48, align="right", line_spacing=1.4, letter_spacing=2.5, padding=4,
                        background=(240, 240, 250, 255), shadow_zoom=(1.1, 0.9), shadow_offset=(3, -2))),
    ("Bevel", dict(preset="3d-bevel", bevel=False, shadow=False, size=64, canvas=(420, 140),
                   translate=(-10, 5))),
    ("Tex", dict(size=90, face_texture=lettrix._lettrix.generated_textures().split(",")[0].strip(),
                 face_tiling="stretch", emboss=True, emboss_angle=-90.5, outline_width=4,
                 outline_gradient="radial:0.2,0.9", outline_colors=("red", "blue"))),
    ("Deep", dict(size=60, extrude=True, extrude_shading="flat", shadow_offset=(12, 9),
                  shadow_color=(20, 20, 20, 255), face_blur=1, wrap=120, features="kern=0")),
]


def compare(run_program, text, preset, keywords):
    ours = lettrix.render(text, preset=preset, **keywords)
    code, theirs, stderr = run_program(_keywords.command_line(preset, keywords), text)
    assert code == 0, stderr
    assert ours.dtype == np.uint8 and ours.ndim == 3 and ours.shape[2] == 4
    assert ours.shape == theirs.shape
    differing = np.count_nonzero((ours != theirs).any(axis=2))
    assert differing == 0, f"{differing} pixels differ"


@pytest.mark.parametrize("preset", PRESETS)
def test_every_preset_draws_as_the_program_does(run_program, preset):
    sample = next(p.sample_text for p in lettrix.presets() if p.name == preset)
    compare(run_program, sample, preset, {"size": 64})


@pytest.mark.parametrize("text,keywords", COMBINATIONS, ids=[c[0].replace("\n", " ") for c in COMBINATIONS])
def test_hand_set_combinations_draw_as_the_program_does(run_program, text, keywords):
    keywords = dict(keywords)
    preset = keywords.pop("preset", None)
    compare(run_program, text, preset, keywords)


def test_a_preset_without_text_draws_its_sample_words(run_program):
    preset = lettrix.presets()[0]
    sample = lettrix.render(preset.sample_text, preset=preset.name, size=40)
    assert np.array_equal(lettrix.render(preset=preset.name, size=40), sample)
