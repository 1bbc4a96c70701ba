"""The error convention: quillbank.Error with number, source and description,
and a subclass for each documented number."""

import pickle

import pytest

import quillbank


def test_error_is_an_exception_with_its_three_parts() -> None:
    error = quillbank.Error(5, "X.Y", "text")
    assert isinstance(error, Exception)
    assert (error.number, error.source, error.description) == (5, "X.Y", "text")
    assert str(error) == "text"
    copy = pickle.loads(pickle.dumps(error))
    assert (copy.number, copy.source, copy.description) == (5, "X.Y", "text")


def test_each_number_has_its_subclass() -> None:
    assert quillbank.ERROR_CLASSES[380] is quillbank.InvalidArgumentError
    assert issubclass(quillbank.InvalidArgumentError, ValueError)
    assert issubclass(quillbank.TypeMismatchError, TypeError)
    assert issubclass(quillbank.OutOfStackSpaceError, RecursionError)
    for cls in quillbank.ERROR_CLASSES.values():
        assert issubclass(cls, quillbank.Error)


def test_invalid_argument() -> None:
    a_map = quillbank.LessonMap()
    with pytest.raises(quillbank.InvalidArgumentError) as raised:
        a_map.insert_storyboard("A", quillbank.sbitInsertBefore, "")
    assert (raised.value.number, raised.value.source, raised.value.description) == (
        380, "LessonMap.InsertStoryboard", "NewSBID cannot be ''.")


def test_null_argument() -> None:
    a_map = quillbank.LessonMap()
    a_map.from_xml_element(quillbank.xml.Document().create_element("map"))
    with pytest.raises(quillbank.NullArgumentError) as raised:
        a_map.name
    assert (raised.value.number, raised.value.source, raised.value.description) == (
        94, "LessonMap.Name", "Invalid use of Null")


def test_out_of_stack_space_for_a_list_that_holds_itself() -> None:
    lesson = quillbank.Lesson()
    sb = lesson.storyboards.add(quillbank.Storyboard())
    assert sb is not None
    element = quillbank.ChildElement()
    element.set_cec("loop", quillbank.ChildElementCollection())
    loop = element.get_cec("loop")
    assert loop is not None
    loop.append(element)
    sb.children.append(element)
    with pytest.raises(quillbank.OutOfStackSpaceError) as raised:
        lesson.to_json()
    assert (raised.value.number, raised.value.source, raised.value.description) == (
        28, "Lesson.ToJSON", "Out of stack space")
    loop.clear()


def test_tree_errors() -> None:
    tree = quillbank.MemoryTreeNodes(unique_keys=True)
    tree.add(None, quillbank.tvwLast, "k", "text")
    with pytest.raises(quillbank.TreeError) as raised:
        tree.add(None, quillbank.tvwLast, "k", "again")
    assert raised.value.number == 35602


def test_regional_setting_is_chosen_and_an_unknown_one_refused() -> None:
    assert quillbank.Functions.regional_settings() == "en-US"
    bag = quillbank.PersistedPropertyCollection()
    bag.from_xml_string('<ppc name=""><floatProp name="f" value="1,5"/></ppc>')
    assert bag.get_double("f", 0.0) == 15.0
    try:
        quillbank.Functions.set_regional_settings("de-DE")
        assert quillbank.Functions.regional_settings() == "de-DE"
        bag.from_xml_string('<ppc name=""><floatProp name="f" value="1,5"/></ppc>')
        assert bag.get_double("f", 0.0) == 1.5
        with pytest.raises(quillbank.InvalidArgumentError) as caught:
            quillbank.Functions.set_regional_settings("xx-YY")
        assert caught.value.number == 380
        assert caught.value.source == "Functions.SetRegionalSettings"
        assert quillbank.Functions.regional_settings() == "de-DE"
    finally:
        quillbank.Functions.set_regional_settings("en-US")
