"""lettrix.render and the lettrix program, given the same settings, draw the same pixels."""

import numpy as np
import pytest

import lettrix
from lettrix import _keywords

# Every preset, and combinations that reach every kind of value: tuples, colour tuples, stops with
# weights, switches over a preset, layout options, a fixed canvas and a generated texture.
CASES = [(p.sample_text, dict(preset=p.name, size=64)) for p in lettrix.presets()] + [
    ("Two\nlines", dict(size=48, face_color=(200, 30, 40), outline_width=3, outline_color="#102030", shadow_blur=4,
                        align="right", line_spacing=1.4, letter_spacing=2.5, padding=4, background=(240, 240, 250, 255),
                        shadow_zoom=(1.1, 0.9), shadow_offset=(3, -2), features="kern=0")),
    ("Mix", dict(size=72, face_stops=["#FF0000", ("#00FF00", 3), (0, 0, 255, 200)], face_gradient="linear:30",
                 outline_width=2, outline_colors=("#000000", (255, 255, 0)), extrude=True, extrude_shading="flat",
                 shadow_offset=(12, 9), shadow_color=(20, 20, 20, 255), face_blur=1, wrap=120)),
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
