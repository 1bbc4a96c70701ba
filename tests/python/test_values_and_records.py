"""Records, enumerations, Functions and the XML handles."""

import enum

import pytest

import quillbank
from quillbank import AssetData, FontData, LocationData, Rectangle


def test_records_are_small_classes_with_fields_and_equality() -> None:
    font = FontData(name="Arial", size=9.5, italic=True)
    assert (font.name, font.size, font.bold, font.italic, font.underline) == ("Arial", 9.5, False, True, False)
    font.bold = True
    assert font == FontData("Arial", 9.5, True, True, False)
    assert font != FontData()
    assert repr(Rectangle(1, 2, 3, 4)) == "Rectangle(left=1, top=2, width=3, height=4)"
    assert repr(AssetData("a")) == "AssetData(filename='a', description='', source='')"
    assert LocationData("A", "B", "M").map_name == "M"
    with pytest.raises(TypeError):
        hash(font)


def test_enumerations_are_int_enums() -> None:
    for cls in (quillbank.EncodingTypes, quillbank.PropertyTypes, quillbank.StoryboardInsertTypes,
                quillbank.TreeRelationshipConstants, quillbank.xml.NodeType):
        assert issubclass(cls, enum.IntEnum)
    assert quillbank.ptCEC == 12 and quillbank.PropertyTypes(4) is quillbank.ptString
    assert quillbank.sbitInsertAsChild.name == "sbitInsertAsChild"


def test_functions() -> None:
    functions = quillbank.Functions
    assert functions.empty_guid() == "00000000-0000-0000-0000-000000000000"
    assert len(functions.new_guid()) == 36
    assert functions.html_color_to_ole_color("#336699") == 0x996633
    assert functions.ole_color_to_html_color(0x996633) == "#336699"
    assert functions.new_rectangle(1, 2) == Rectangle(1, 2, 0, 0)
    assert functions.new_font_data() == FontData("Arial", 8.0)
    assert functions.clean_xml_string("a\x01b") == "ab"
    assert functions.ocx_version().startswith("2.0 (Build 0001)")
    assert ".so" in functions.ocx_filename()
    with pytest.raises(quillbank.InvalidCallError):
        functions.ole_color_to_html_color(0xFFFFFFFF)


def test_xml_handles() -> None:
    document = quillbank.xml.Document()
    assert document.load_xml('<a x="1"><b/>text<!--c--></a>')
    root = document.document_element
    assert root is not None and root.name == "a" and root.get_attribute("x") == "1"
    assert root.get_attribute("y") is None
    assert root.child_count == 3
    first = root.first_child
    assert isinstance(first, quillbank.xml.Element)
    assert first.node_type == quillbank.xml.NodeType.Element
    comment = root.child_at(2)
    assert comment is not None and comment.node_type == quillbank.xml.NodeType.Comment
    assert root.first_child == root.child_at(0)
    element = document.create_element("data")
    element.set_base64_value(b"\x00\x01\xff")
    assert element.get_base64_value() == b"\x00\x01\xff"
    assert not document.load_xml("<broken")
    assert document.document_element is None


def test_every_public_class_and_member_is_documented() -> None:
    missing = []
    for module in (quillbank, quillbank.xml):
        for name, cls in vars(module).items():
            if not isinstance(cls, type) or name.startswith("_"):
                continue
            if not (cls.__doc__ or "").strip():
                missing.append(name)
            for attribute, value in vars(cls).items():
                if attribute.startswith("_"):
                    continue
                if not (getattr(value, "__doc__", None) or "").strip():
                    missing.append(f"{name}.{attribute}")
    assert missing == []
