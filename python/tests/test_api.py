"""The rest of the package: files, Pillow, errors, the outline block, the low-level Process, help."""

import ast
import inspect
import pydoc
import sys
from pathlib import Path

import numpy as np
import pytest

import lettrix
from lettrix import _keywords
from conftest import read_png


def test_render_save_and_pil_keep_straight_alpha_rgba(tmp_path):
    word = lettrix.render("Word", size=48)
    assert word.dtype == np.uint8 and word.shape[2] == 4 and word.flags.c_contiguous
    # The default Face is white: straight alpha keeps it white where it is partly covered, too.
    edge = word[(word[..., 3] > 0) & (word[..., 3] < 255)]
    assert len(edge) > 100 and (edge[:, :3] == 255).all()
    lettrix.save(word, tmp_path / "word.png")
    assert np.array_equal(read_png(tmp_path / "word.png"), word)
    image = lettrix.to_pil(word)
    assert image.mode == "RGBA" and np.array_equal(np.array(image), word)


def test_failures_raise_their_kind_and_write_nothing(tmp_path):
    word = lettrix.render("W", size=20)
    target = tmp_path / "kept.png"
    target.write_bytes(b"old")
    for bad, kind in ((word[..., :3].copy(), ValueError), (word.astype(np.float32), TypeError)):
        with pytest.raises(kind):
            lettrix.save(bad, target)
    with pytest.raises(OSError):
        lettrix.save(word, tmp_path / "no-such-folder" / "x.png")
    broken = tmp_path / "broken.ttf"
    broken.write_bytes(b"not a font at all")
    assert target.read_bytes() == b"old"
    assert sorted(p.name for p in tmp_path.iterdir()) == ["broken.ttf", "kept.png"]
    for call, name in ((lambda: lettrix.render("x", font=tmp_path / "no-such.ttf"), "no-such.ttf"),
                       (lambda: lettrix.render("x", font=broken), "broken.ttf"),
                       (lambda: lettrix.outline_block("x", font=broken), "broken.ttf"),
                       (lambda: lettrix.render("x", face_texture=tmp_path / "missing.png"), "missing.png")):
        with pytest.raises(OSError, match=name):
            call()
    with pytest.raises(lettrix.LettrixError, match="nothing to draw"):
        lettrix.render("   ")
    assert issubclass(lettrix.LettrixError, RuntimeError)


def test_texture_file_draws_as_the_program_does(tmp_path, run_program):
    texture = np.zeros((8, 8, 4), np.uint8)
    texture[::2, :, 0] = texture[1::2, :, 2] = texture[..., 3] = 255
    lettrix.save(texture, tmp_path / "stripes.png")
    keywords = dict(size=64, face_texture=str(tmp_path / "stripes.png"))
    code, theirs, stderr = run_program(_keywords.command_line(None, keywords), "Tx")
    assert code == 0, stderr
    assert np.array_equal(lettrix.render("Tx", **keywords), theirs)


def test_outline_block_drawn_by_render_block_matches_render():
    block = lettrix.outline_block("Blocks", size=60)
    assert block.block and len(block.lines) == 1 and block.font_files and block.missing_count == 0
    assert [g.cluster for g in block.glyphs] == list(range(6))
    drawn = lettrix.render_block(block, outline_width=2, face_color="navy")
    assert np.array_equal(drawn, lettrix.render("Blocks", size=60, outline_width=2, face_color="navy"))
    with pytest.raises(TypeError, match="size"):
        lettrix.render_block(block, size=40)
    with pytest.raises(lettrix.LettrixError):
        lettrix.render_block(b"\x00" * 40)


def test_process_draws_a_block_into_a_callers_buffer():
    block = lettrix.outline_block("Pq", size=50)
    _, _, right, bottom = block.ink
    buffer = np.zeros((bottom + 10, right + 10, 4), np.uint8)
    with lettrix.Process() as process:
        process.set_color_face_start(255, 255, 0, 0)
        process.set_translation(5, 5)
        assert process.render(block.block, buffer)
        assert process.set_face_gradient_colors([0xFF0000FF, 0xFFFF0000], [1, 2])
        assert not process.set_face_user_gradient_area(0, 0, 0, 0)
        with pytest.raises(ValueError, match="colours"):
            process.set_face_gradient_colors([])
        assert not process.render(b"\x00" * 16, buffer)
    # Blue, green, red, alpha in memory: a red Face has its red in the third byte.
    solid = buffer[buffer[..., 3] == 255]
    assert len(solid) > 0 and (solid[:, 2] == 255).all() and (solid[:, 0] == 0).all()
    process.set_shadow_offset(1, 1)  # after close: does nothing
    assert not process.render(block.block, buffer)


def test_help_and_stub_name_every_keyword():
    text = pydoc.render_doc(lettrix.render, renderer=pydoc.plaintext)
    parameters = inspect.signature(lettrix.render).parameters
    for keyword in _keywords.KEYWORDS.values():
        assert keyword.name in parameters and keyword.describe() in text and keyword.help in text
    assert all(preset.name in text for preset in lettrix.presets())
    sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
    try:
        import make_stub
    finally:
        sys.path.pop(0)
    stub = Path(lettrix.__file__).with_name("__init__.pyi").read_text()
    assert stub == make_stub.stub_text(), "the package's __init__.pyi is older than the package"
    tree = ast.parse(stub)
    functions = {node.name: node for node in tree.body if isinstance(node, ast.FunctionDef)}
    classes = {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}
    assert set(lettrix.__all__) <= set(functions) | set(classes)
    assert {a.arg for a in functions["render"].args.kwonlyargs} == set(_keywords.KEYWORDS) | {"preset"}
    assert {a.arg for a in functions["render_block"].args.kwonlyargs} == \
        {k.name for k in _keywords.drawing_keywords()} | {"preset"}
    methods = {node.name for node in classes["Process"].body if isinstance(node, ast.FunctionDef)}
    assert {name for name in dir(lettrix.Process) if not name.startswith("_")} <= methods
    for name in lettrix.__all__:
        assert inspect.getdoc(getattr(lettrix, name)), name
