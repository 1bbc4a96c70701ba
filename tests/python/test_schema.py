"""Every JSON written validates against docs/lesson.schema.json."""

import json

import jsonschema  # type: ignore[import]

import quillbank
from conftest import SOURCE_DIR


def validator() -> jsonschema.Draft202012Validator:
    with open(SOURCE_DIR / "docs" / "lesson.schema.json", encoding="utf-8") as f:
        schema = json.load(f)
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def test_written_json_validates(sample_texts: list[str]) -> None:
    check = validator()
    for text in sample_texts:
        lesson = quillbank.Lesson()
        lesson.from_xml_string(text)
        errors = list(check.iter_errors(json.loads(lesson.to_json())))
        assert errors == []


def test_the_schema_refuses_what_the_reader_refuses() -> None:
    check = validator()
    bad = [
        {"version": 1, "titel": "x"},
        {"version": 1, "properties": {"properties": [{"name": "n", "type": "long", "value": "1"}]}},
        {"version": 1, "properties": {"properties": [{"name": "n", "type": "long", "value": 2**31}]}},
        {"version": 1, "maps": {"maps": [{"xml": "<map/>", "name": "M"}]}},
    ]
    for document in bad:
        assert list(check.iter_errors(document)) != []
