"""The rest of the package: files, Pillow, errors, the outline block and the low-level Process."""

import numpy as np
import pytest
from PIL import Image

import lettrix


def test_files_and_pil_keep_straight_alpha_rgba_and_failures_raise_their_kind(tmp_path):
    word = lettrix.render("Word", size=48)
    assert word.dtype == np.uint8 and word.shape[2] == 4 and word.flags.c_contiguous
    # The default Face is white: straight alpha keeps it white where it is partly covered, too.
    edge = word[(word[..., 3] > 0) & (word[..., 3] < 255)]
    assert len(edge) > 100 and (edge[:, :3] == 255).all()
    lettrix.save(word, tmp_path / "word.png")
    assert np.array_equal(np.array(Image.open(tmp_path / "word.png")), word)
    assert np.array_equal(np.array(lettrix.to_pil(word)), word)
    (folder := tmp_path / "failures").mkdir()
    (folder / "kept.png").write_bytes(b"old")
    (folder / "broken.ttf").write_bytes(b"not a font at all")
    for call, kind, message in [
            (lambda: lettrix.save(word[..., :3].copy(), folder / "kept.png"), ValueError, ""),
            (lambda: lettrix.save(word.astype(np.float32), folder / "kept.png"), TypeError, ""),
            (lambda: lettrix.save(word, folder / "no-such-folder" / "x.png"), OSError, ""),
            (lambda: lettrix.render("x", font=folder / "no-such.ttf"), OSError, "no-such.ttf"),
            (lambda: lettrix.render("x", font=folder / "broken.ttf"), OSError, "broken.ttf"),
            (lambda: lettrix.outline_block("x", font=folder / "broken.ttf"), OSError, "broken.ttf"),
            (lambda: lettrix.render("x", face_texture=folder / "missing.png"), OSError, "missing.png"),
            (lambda: lettrix.render("   "), lettrix.LettrixError, "nothing to draw"),
            (lambda: lettrix.render_block(b"\x00" * 40), lettrix.LettrixError, ""),
            (lambda: lettrix.render_block(lettrix.outline_block("x"), size=40), TypeError, "size")]:
        with pytest.raises(kind, match=message):
            call()
    assert (folder / "kept.png").read_bytes() == b"old" and issubclass(lettrix.LettrixError, RuntimeError)
    assert sorted(p.name for p in folder.iterdir()) == ["broken.ttf", "kept.png"]


def test_outline_block_drawn_by_render_block_and_by_a_process():
    block = lettrix.outline_block("Blocks", size=60)
    assert block.block and len(block.lines) == 1 and block.font_files and block.missing_count == 0
    assert [g.cluster for g in block.glyphs] == list(range(6))
    assert np.array_equal(lettrix.render_block(block, outline_width=2, face_color="navy"),
                          lettrix.render("Blocks", size=60, outline_width=2, face_color="navy"))
    alone = np.zeros((block.ink[3] + 10, block.ink[2] + 10, 4), np.uint8)
    with lettrix.Process() as process:
        process.set_color_face_start(255, 255, 0, 0)
        process.set_translation(5, 5)
        assert process.render(block.block, alone) and not process.render(b"\x00" * 16, alone)
        assert process.set_face_gradient_colors([0xFF0000FF, 0xFFFF0000], [1, 2])
        assert not process.set_face_user_gradient_area(0, 0, 0, 0)
        # Setters take the library's argument types (a byte, a 32-bit integer), refused by name outside them.
        for call, message in [
                (lambda: process.set_face_gradient_colors([]), "colours"),
                (lambda: process.set_color_face_start(0, 0, 256, 0), r"^green: 256 is out of range \(0..255\)"),
                (lambda: process.set_translation(0, -2**31 - 1), r"^dy: -2147483649 is out of range")]:
            with pytest.raises(ValueError, match=message):
                call()
        process.set_translation(-2**31, 2**31 - 1)
    # Blue, green, red, alpha in memory: a red Face has its red in the third byte.
    solid = alone[alone[..., 3] == 255]
    assert len(solid) > 0 and (solid[:, 2] == 255).all() and (solid[:, 0] == 0).all()
    process.set_shadow_offset(1, 1)  # after close: does nothing
    assert not process.render(block.block, alone)

