"""The rest of the package: files, Pillow, errors, the outline block, the low-level Process, help."""

import ast
import inspect
import os
import pydoc
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import lettrix
from lettrix import _keywords
from conftest import read_png

HERE = Path(__file__).resolve().parent


@pytest.fixture(scope="module")
def word():
    return lettrix.render("Word", size=48, outline_width=2, shadow_offset=(3, 3))


def test_render_gives_straight_alpha_rgba(word):
    assert word.dtype == np.uint8 and word.shape[2] == 4 and word.flags.c_contiguous
    assert np.count_nonzero(word[..., 3] == 255) > 0
    # Alone, the default Face is white: straight alpha keeps it white where it is partly covered, too
    # (premultiplied, those pixels would be as dark as they are transparent).
    face = lettrix.render("Word", size=48)
    edge = face[(face[..., 3] > 0) & (face[..., 3] < 255)]
    assert len(edge) > 100
    assert (edge[:, :3] == 255).all()


def test_save_writes_a_png_that_reads_back_identically(tmp_path, word):
    lettrix.save(word, tmp_path / "word.png")
    assert np.array_equal(read_png(tmp_path / "word.png"), word)


def test_save_writes_nothing_on_failure(tmp_path, word):
    target = tmp_path / "kept.png"
    target.write_bytes(b"old")
    with pytest.raises(ValueError):
        lettrix.save(word[..., :3].copy(), target)
    with pytest.raises(TypeError):
        lettrix.save(word.astype(np.float32), target)
    with pytest.raises(OSError):
        lettrix.save(word, tmp_path / "no-such-folder" / "x.png")
    assert target.read_bytes() == b"old"
    assert sorted(p.name for p in tmp_path.iterdir()) == ["kept.png"]


def test_to_pil_gives_an_rgba_image(word):
    image = lettrix.to_pil(word)
    assert image.mode == "RGBA" and image.size == (word.shape[1], word.shape[0])
    assert np.array_equal(np.array(image), word)


def test_unreadable_font_raises_os_error(tmp_path):
    with pytest.raises(OSError, match="no-such.ttf"):
        lettrix.render("x", font=tmp_path / "no-such.ttf")
    broken = tmp_path / "broken.ttf"
    broken.write_bytes(b"not a font at all")
    with pytest.raises(OSError, match="broken.ttf"):
        lettrix.render("x", font=broken)
    with pytest.raises(OSError):
        lettrix.outline_block("x", font=broken)


def test_unreadable_texture_raises_os_error(tmp_path):
    with pytest.raises(OSError, match="missing.png"):
        lettrix.render("x", face_texture=tmp_path / "missing.png")


def test_texture_file_draws_as_the_program_does(tmp_path, run_program):
    texture = np.zeros((8, 8, 4), np.uint8)
    texture[::2, :, 0] = 255
    texture[1::2, :, 2] = 255
    texture[..., 3] = 255
    lettrix.save(texture, tmp_path / "stripes.png")
    keywords = dict(size=64, face_texture=str(tmp_path / "stripes.png"))
    code, theirs, stderr = run_program(_keywords.command_line(None, keywords), "Tx")
    assert code == 0, stderr
    assert np.array_equal(lettrix.render("Tx", **keywords), theirs)


def test_nothing_to_draw_raises_lettrix_error():
    with pytest.raises(lettrix.LettrixError, match="nothing to draw"):
        lettrix.render("   ")
    assert issubclass(lettrix.LettrixError, RuntimeError)


def test_outline_block_drawn_by_render_block_matches_render():
    block = lettrix.outline_block("Blocks", size=60)
    assert block.block and len(block.lines) == 1 and len(block.glyphs) == 6
    assert block.font_files and block.missing_count == 0
    assert [g.cluster for g in block.glyphs] == list(range(6))
    drawn = lettrix.render_block(block, outline_width=2, face_color="navy")
    assert np.array_equal(drawn, lettrix.render("Blocks", size=60, outline_width=2, face_color="navy"))


def test_outline_block_layout_options():
    wrapped = lettrix.outline_block("one two three", size=30, wrap=80)
    assert len(wrapped.lines) > 1
    rtl = lettrix.outline_block("abc", size=30, direction="rtl", align="right")
    assert rtl.lines[0].right == pytest.approx(rtl.width)
    with pytest.raises(ValueError, match="out of range"):
        lettrix.outline_block("x", size=3000)
    with pytest.raises(ValueError):
        lettrix.outline_block("x", align="middle")
    with pytest.raises(TypeError):
        lettrix.outline_block("x", size="big")


def test_render_block_refuses_layout_keywords_and_bad_blocks():
    block = lettrix.outline_block("x", size=30)
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
        with pytest.raises(ValueError, match="alpha"):
            process.set_color_face_start(256, 0, 0, 0)
        with pytest.raises(ValueError, match="colours"):
            process.set_face_gradient_colors([])
        assert not process.render(b"\x00" * 16, buffer)
    # Blue, green, red, alpha in memory: a red Face has its red in the third byte.
    solid = buffer[buffer[..., 3] == 255]
    assert len(solid) > 0 and (solid[:, 2] == 255).all() and (solid[:, 0] == 0).all()
    process.set_shadow_offset(1, 1)  # after close: does nothing
    assert not process.render(block.block, buffer)


def test_help_lists_every_keyword_with_its_range():
    text = pydoc.render_doc(lettrix.render, renderer=pydoc.plaintext)
    parameters = inspect.signature(lettrix.render).parameters
    for keyword in _keywords.KEYWORDS.values():
        assert keyword.name in parameters
        assert keyword.describe() in text
        assert keyword.help in text
    for preset in lettrix.presets():
        assert preset.name in text


def test_every_public_name_has_a_docstring():
    for name in lettrix.__all__:
        assert inspect.getdoc(getattr(lettrix, name)), name
    for name, member in inspect.getmembers(lettrix.Process):
        if not name.startswith("_"):
            assert inspect.getdoc(member), name


def test_built_stub_has_every_keyword_and_name():
    sys.path.insert(0, str(HERE.parent))
    try:
        import make_stub
    finally:
        sys.path.pop(0)
    stub = Path(lettrix.__file__).with_name("__init__.pyi").read_text()
    assert stub == make_stub.stub_text(), "the package's __init__.pyi is older than the package"
    tree = ast.parse(stub)
    declared = {node.name for node in tree.body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}
    assert set(lettrix.__all__) <= declared
    functions = {node.name: node for node in tree.body if isinstance(node, ast.FunctionDef)}
    render = {a.arg for a in functions["render"].args.kwonlyargs}
    block = {a.arg for a in functions["render_block"].args.kwonlyargs}
    assert render == set(_keywords.KEYWORDS) | {"preset"}
    assert block == {k.name for k in _keywords.drawing_keywords()} | {"preset"}
    outline = functions["outline_block"].args
    assert [a.arg for a in outline.kwonlyargs] == list(inspect.signature(lettrix.outline_block).parameters)[1:]
    process = next(node for node in tree.body if isinstance(node, ast.ClassDef) and node.name == "Process")
    methods = {node.name for node in process.body if isinstance(node, ast.FunctionDef)}
    assert {name for name in dir(lettrix.Process) if not name.startswith("_")} <= methods


def test_separate_processes_render_independently(tmp_path):
    script = "import lettrix, sys; lettrix.save(lettrix.render(sys.argv[1], size=40), sys.argv[2])"
    env = dict(os.environ)
    runs = [subprocess.Popen([sys.executable, "-c", script, t, str(tmp_path / f"{t}.png")], env=env)
            for t in ("one", "two")]
    assert [r.wait(timeout=120) for r in runs] == [0, 0]
    for t in ("one", "two"):
        assert np.array_equal(read_png(tmp_path / f"{t}.png"), lettrix.render(t, size=40))
