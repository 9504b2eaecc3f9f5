"""Shared helpers: the lettrix program beside the package, and PNG files read back as arrays."""

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest

ROOT = Path(__file__).resolve().parents[2]


def read_png(path) -> np.ndarray:
    from PIL import Image

    with Image.open(path) as image:
        assert image.mode == "RGBA", f"{path} is {image.mode}, not RGBA"
        return np.array(image)


@pytest.fixture
def run_program(tmp_path):
    """Runs the lettrix program of the same build (LETTRIX_PROGRAM, or the native build's) with options and
    text; returns (exit code, image or None, stderr)."""
    program = Path(os.environ.get("LETTRIX_PROGRAM", ROOT / "build" / "native" / "bin" / "lettrix"))
    if not program.exists():
        pytest.fail(f"the lettrix program is not at {program} (set LETTRIX_PROGRAM)")
    runs = iter(range(1, 10**6))

    def run(args, text=None):
        out = tmp_path / f"program-{next(runs)}.png"
        command = [str(program), *args, "-o", str(out)] + (["--text", text] if text is not None else [])
        done = subprocess.run(command, capture_output=True, text=True, timeout=300)
        return done.returncode, read_png(out) if done.returncode == 0 else None, done.stderr

    return run
