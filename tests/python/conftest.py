"""Shared fixtures of the Python tests: where the sample lessons are."""

import pathlib

import pytest

SOURCE_DIR = pathlib.Path(__file__).resolve().parents[2]


@pytest.fixture
def sample_texts() -> list[str]:
    """The sample lessons of examples/ and the golden lessons of tests/data."""
    files = sorted((SOURCE_DIR / "examples").glob("*.lesson.xml"))
    files += [SOURCE_DIR / "tests" / "data" / "lesson_normal.xml", SOURCE_DIR / "tests" / "data" / "lesson_clear.xml"]
    return [f.read_text(encoding="utf-8") for f in files]
