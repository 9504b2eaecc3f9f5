"""Threads render at once (the GIL is released while drawing) and get what one thread gets."""

import threading

import numpy as np

import lettrix

TEXTS = ["Alpha", "Bravo", "Charlie", "Delta", "Echo", "Foxtrot", "Golf", "Hotel"]
SETTINGS = dict(size=72, outline_width=3, shadow_offset=(4, 5), shadow_blur=6, face_colors=("gold", "red"))


def run_all(threads):
    for t in threads:
        t.start()
    for t in threads:
        t.join()


def test_eight_threads_draw_what_one_thread_draws():
    alone = [lettrix.render(t, **SETTINGS) for t in TEXTS]
    together = [None] * len(TEXTS)
    start = threading.Barrier(len(TEXTS))

    def draw(i):
        start.wait()
        together[i] = lettrix.render(TEXTS[i], **SETTINGS)

    run_all([threading.Thread(target=draw, args=(i,)) for i in range(len(TEXTS))])
    for text, a, b in zip(TEXTS, alone, together):
        assert b is not None and np.array_equal(a, b), text


def test_threads_sharing_one_process_take_turns():
    block = lettrix.outline_block("Turns", size=48)
    _, _, right, bottom = block.ink
    expected = np.zeros((bottom + 8, right + 8, 4), np.uint8)
    with lettrix.Process() as process:
        process.set_shadow_blur_level(3)
        assert process.render(block.block, expected)
        buffers = [np.zeros_like(expected) for _ in range(8)]
        run_all([threading.Thread(target=process.render, args=(block.block, b)) for b in buffers])
    for b in buffers:
        assert np.array_equal(b, expected)
