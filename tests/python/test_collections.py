"""Storyboards, child-element lists and maps: len, iteration, in, [key], identity."""

import pytest

import quillbank


def test_storyboard_collection() -> None:
    storyboards = quillbank.StoryboardCollection()
    first = quillbank.Storyboard()
    second = quillbank.Storyboard()
    assert storyboards.add(first) is first
    storyboards.add(second)
    assert len(storyboards) == 2 and storyboards.count == 2
    assert [sb.sbid for sb in storyboards] == [first.sbid, second.sbid]
    assert first.sbid.lower() in storyboards
    assert first in storyboards
    assert quillbank.Storyboard() not in storyboards
    assert 5 not in storyboards
    assert storyboards[first.sbid.lower()] is first
    with pytest.raises(KeyError):
        storyboards["nope"]
    assert storyboards.item("nope") is None
    storyboards.current_sbid = second.sbid
    assert storyboards.current_sb is second
    # Iterating a snapshot: removing while iterating is safe.
    for sb in storyboards:
        storyboards.remove(sb.sbid)
    assert len(storyboards) == 0
    assert storyboards.current_sb is None


def test_storyboard_members() -> None:
    sb = quillbank.Storyboard()
    sb.title = "Intro"
    sb.sb_type = "page"
    sb.identifier = "P1"
    sb.classification = "Open"
    sb.properties["caption"] = "Hello"
    copy = sb.duplicate("Copy of ")
    assert copy.title == "Copy of Intro" and copy.sbid != sb.sbid
    clone = sb.clone()
    assert clone.sbid == sb.sbid and clone.properties["caption"] == "Hello"
    other = quillbank.Storyboard()
    other.copy_from(sb)
    assert other.title == "Intro" and other.sb_type == "page"
    with pytest.raises(AttributeError):
        sb.sbid = "x"  # type: ignore[misc]


def test_child_element_collection() -> None:
    elements = quillbank.ChildElementCollection()
    a = quillbank.ChildElement()
    b = quillbank.ChildElement()
    elements.append(a)
    elements.append(b)
    elements.append(a)
    assert len(elements) == 3 and elements.length == 2
    assert elements[0] is a and elements[-1] is a and elements[1] is b
    assert list(elements) == [a, b, a]
    assert a in elements and quillbank.ChildElement() not in elements
    with pytest.raises(IndexError):
        elements[3]
    assert elements.item(3) is None
    elements.swap(0, 1)
    assert elements[0] is b
    elements.remove_at(0)
    assert list(elements) == [a, a]
    assert elements.index_of(b) == 0  # not held: 0, as documented


def test_maps() -> None:
    maps = quillbank.LessonMapCollection()
    main = quillbank.LessonMap()
    main.name = "Main"
    main.insert_storyboard("", quillbank.sbitInsertAfter, "A")
    main.insert_storyboard("A", quillbank.sbitInsertAsChild, "B")
    review = quillbank.LessonMap()
    review.name = "Review"
    maps.append(main)
    maps.append(review)
    assert len(maps) == 2 and maps.length == 1
    assert maps["Main"] is main and maps[1] is review and maps[-1] is review
    assert "Review" in maps and main in maps and quillbank.LessonMap() not in maps
    assert [m.name for m in maps] == ["Main", "Review"]
    with pytest.raises(KeyError):
        maps["Other"]
    assert maps.default_map is main  # two maps: the first is the default
    maps.default_map = review
    assert maps.default_map is review
    assert "B" in main and "C" not in main and main.contains("A")
    assert main.to_xml_element().xml == '<map name="Main"><item sbid="A"><item sbid="B"/></item></map>'
    with pytest.raises(quillbank.InvalidCallError) as raised:
        maps.default_map = quillbank.LessonMap()
    assert (raised.value.number, raised.value.source, raised.value.description) == (
        5, "LessonMapCollection.DefaultMap (Set)", "Default map must be a member of the collection")


def test_lesson_collections_hold_the_same_objects() -> None:
    lesson = quillbank.Lesson()
    page = lesson.storyboards.add(quillbank.Storyboard())
    assert page is not None
    page.properties["caption"] = "x"
    for sb in lesson.storyboards:
        assert sb is page
        assert sb.properties is page.properties
