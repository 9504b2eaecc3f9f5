"""The lettrix program of the same build, run with options and a text."""

import os
import subprocess
from pathlib import Path

import numpy as np
import pytest
from PIL import Image

PROGRAM = Path(os.environ.get("LETTRIX_PROGRAM", Path(__file__).resolve().parents[2] / "build/native/bin/lettrix"))


@pytest.fixture
def run_program(tmp_path):
    """Runs the program with options and text; returns (exit code, its RGBA image or None, stderr)."""
    def run(args, text):
        out = tmp_path / f"program-{len(list(tmp_path.iterdir()))}.png"
        done = subprocess.run([str(PROGRAM), *args, "-o", str(out), "--text", text], capture_output=True, text=True,
                              timeout=300)
        return done.returncode, np.array(Image.open(out)) if done.returncode == 0 else None, done.stderr
    return run
