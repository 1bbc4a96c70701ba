"""Lesson: creation, attributes, parts, XML and JSON forms, copies."""

import json
import re
import threading

import pytest

import quillbank


def normal_form(lesson: quillbank.Lesson) -> str:
    return re.sub(r'documentid="[^"]*"', 'documentid=""', lesson.to_xml_string(), count=1)


def test_a_lesson_is_made_by_calling_its_class() -> None:
    lesson = quillbank.Lesson()
    assert re.fullmatch(r"[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}", lesson.lesson_id)
    assert lesson.title == "New Lesson"
    assert lesson.identifier == ""
    assert lesson.classification == ""
    assert len(lesson.properties) == 0
    assert len(lesson.maps) == 0
    assert len(lesson.storyboards) == 0


def test_get_set_pairs_are_attributes() -> None:
    lesson = quillbank.Lesson()
    lesson.title = "Fractions"
    lesson.lesson_id = "L1"
    lesson.identifier = "MATH-101"
    lesson.classification = "Internal"
    assert (lesson.title, lesson.lesson_id, lesson.identifier, lesson.classification) == (
        "Fractions", "L1", "MATH-101", "Internal")
    assert "<!-- ************ Internal ************ -->" in lesson.to_xml_string()


def test_parts_are_the_same_objects_each_time() -> None:
    lesson = quillbank.Lesson()
    assert lesson.properties is lesson.properties
    assert lesson.storyboards is lesson.storyboards
    assert lesson.maps is lesson.maps
    sb = lesson.storyboards.add(quillbank.Storyboard())
    assert sb is not None
    assert lesson.storyboards[sb.sbid] is sb
    assert next(iter(lesson.storyboards)) is sb


def test_xml_round_trip_of_the_samples(sample_texts: list[str]) -> None:
    assert len(sample_texts) >= 4
    for text in sample_texts:
        lesson = quillbank.Lesson()
        lesson.from_xml_string(text)
        copy = quillbank.Lesson()
        copy.from_xml_string(lesson.to_xml_string())
        assert normal_form(copy) == normal_form(lesson)
        assert normal_form(lesson.clone()) == normal_form(lesson)


def test_json_round_trip_of_the_samples(sample_texts: list[str]) -> None:
    for text in sample_texts:
        lesson = quillbank.Lesson()
        lesson.from_xml_string(text)
        written = lesson.to_json()
        copy = quillbank.Lesson.from_json(written)
        assert normal_form(copy) == normal_form(lesson)
        assert copy.to_json() == written
        assert json.loads(lesson.to_json(indent=2)) == json.loads(written)


def test_bad_xml_raises_form_error_and_leaves_the_lesson() -> None:
    lesson = quillbank.Lesson()
    lesson.title = "kept"
    with pytest.raises(quillbank.FormError) as raised:
        lesson.from_xml_string("<lesson")
    assert raised.value.number == -2147220503
    assert raised.value.source == "Lesson.FromXMLString"
    assert raised.value.description == "XML string could not be parsed."
    assert lesson.title == "kept"
    with pytest.raises(quillbank.Error) as other:
        lesson.from_xml_string("<storyboard/>")
    assert (other.value.number, other.value.source, other.value.description) == (
        -2147220503, "Lesson.FromXMLElement", "Element is not a <lesson> element")


@pytest.mark.parametrize(
    ("text", "description"),
    [
        ('{"version": 1,', "JSON text could not be parsed at byte 15."),
        ('{"version": 1, "titel": "x"}', "JSON of the wrong form at /titel: unknown field."),
        ('{"version": 1, "title": 3}', "JSON of the wrong form at /title: expected a string."),
        ('{"version": 1, "storyboards": [{"sbid": "A", "properties": {"properties": '
         '[{"name": "n", "type": "long", "value": 1e3}]}}]}',
         "JSON of the wrong form at /storyboards/0/properties/properties/0/value: "
         "expected an integer from -2147483648 to 2147483647."),
        ("[" * 5000 + "]" * 5000, "JSON text nests deeper than the limit of 1100 levels at byte 1100."),
    ],
)
def test_bad_json_raises_form_error_naming_the_place(text: str, description: str) -> None:
    with pytest.raises(quillbank.FormError) as raised:
        quillbank.Lesson.from_json(text)
    assert raised.value.number == -2147220503
    assert raised.value.source == "Lesson.FromJSON"
    assert raised.value.description == description
    assert str(raised.value) == description


def test_duplicate_gives_new_identifiers() -> None:
    lesson = quillbank.Lesson()
    sb = lesson.storyboards.add(quillbank.Storyboard())
    assert sb is not None
    copy = lesson.duplicate()
    assert copy.lesson_id != lesson.lesson_id
    assert len(copy.storyboards) == 1
    assert sb.sbid not in copy.storyboards


def test_to_xml_element_needs_a_document() -> None:
    lesson = quillbank.Lesson()
    document = quillbank.xml.Document()
    element = lesson.to_xml_element(document)
    assert element.name == "lesson"
    assert element.get_attribute("title") == "New Lesson"
    copy = quillbank.Lesson()
    copy.from_xml_element(element)
    assert copy.lesson_id == lesson.lesson_id


def test_whole_lessons_are_read_and_written_in_several_threads(sample_texts: list[str]) -> None:
    results: list[str] = []
    errors: list[BaseException] = []
    text = sample_texts[0]

    def work() -> None:
        try:
            for _ in range(20):
                lesson = quillbank.Lesson()
                lesson.from_xml_string(text)
                results.append(quillbank.Lesson.from_json(lesson.to_json()).title)
        except BaseException as error:  # noqa: BLE001 - handed to the main thread
            errors.append(error)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert errors == []
    assert len(results) == 80
