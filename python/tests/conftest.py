"""Shared helpers: PNG files read back as arrays, and the lettrix program of the same build."""

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest
from PIL import Image

PROGRAM = Path(os.environ.get("LETTRIX_PROGRAM", Path(__file__).resolve().parents[2] / "build/native/bin/lettrix"))


def read_png(path) -> np.ndarray:
    with Image.open(path) as image:
        assert image.mode == "RGBA", f"{path} is {image.mode}, not RGBA"
        return np.array(image)


@pytest.fixture
def run_program(tmp_path):
    """Runs the program with options and text; returns (exit code, image or None, stderr)."""
    def run(args, text):
        out = tmp_path / f"program-{len(list(tmp_path.iterdir()))}.png"
        done = subprocess.run([str(PROGRAM), *args, "-o", str(out), "--text", text], capture_output=True, text=True,
                              timeout=300)
        return done.returncode, read_png(out) if done.returncode == 0 else None, done.stderr
    return run
