"""Property bags and child elements: typed members, natural values, dict manners."""

import datetime
import math

import pytest

import quillbank
from quillbank import AssetData, FontData, LocationData, Rectangle


def test_natural_values_choose_the_property_type() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag["flag"] = True
    bag["count"] = -7
    bag["ratio"] = 0.25
    bag["caption"] = "Halves ½"
    bag["due"] = datetime.datetime(2023, 3, 15, 12, 30, 15)
    bag["font"] = FontData(name="Arial", size=10.5, bold=True)
    bag["frame"] = Rectangle(1, 2, 3, 4)
    bag["picture"] = AssetData("pie.png", "A pie", "library")
    bag["link"] = LocationData(end_point="SB2", map_name="Main")
    inner = quillbank.PersistedPropertyCollection()
    inner["n"] = 1
    bag["nested"] = inner
    bag["list"] = quillbank.ChildElementCollection()
    types = [bag.get_property_type(name) for name in bag]
    assert types == [quillbank.ptBoolean, quillbank.ptLong, quillbank.ptDouble, quillbank.ptString,
                     quillbank.ptDate, quillbank.ptFont, quillbank.ptRectangle, quillbank.ptAsset,
                     quillbank.ptLocation, quillbank.ptPPC, quillbank.ptCEC]
    assert isinstance(types[0], quillbank.PropertyTypes)
    assert bag["flag"] is True
    assert bag["count"] == -7
    assert bag["ratio"] == 0.25
    assert bag["caption"] == "Halves ½"
    assert bag["due"] == datetime.datetime(2023, 3, 15, 12, 30, 15)
    assert bag["font"] == FontData("Arial", 10.5, True, False, False)
    assert bag["frame"] == Rectangle(left=1, top=2, width=3, height=4)
    assert bag["picture"] == AssetData("pie.png", "A pie", "library")
    # A location's start is filled first.
    assert bag["link"] == LocationData("SB2", "", "Main")
    nested = bag["nested"]
    assert isinstance(nested, quillbank.PersistedPropertyCollection)
    assert nested["n"] == 1
    assert nested is not inner  # the bag holds a copy


def test_dict_manners() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag["B"] = 1
    bag["a"] = 2
    assert len(bag) == 2
    assert list(bag) == ["B", "a"]
    assert "b" in bag and "A" in bag and "c" not in bag
    assert 3 not in bag
    with pytest.raises(KeyError):
        bag["missing"]
    del bag["b"]
    assert list(bag) == ["a"]
    with pytest.raises(KeyError):
        del bag["b"]
    with pytest.raises(TypeError):
        bag["x"] = [1, 2]  # type: ignore[assignment]
    with pytest.raises(ValueError):
        bag["big"] = 2**31
    assert bag.get_value("absent") is None


def test_typed_members_with_encodings() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag.set_string("secret", "plain", quillbank.etBase64Encoded)
    bag.set_long("n", 3)
    bag.set_double("d", math.inf)
    bag.set_color("c", 0x80000005)
    assert bag.get_encoding_type("secret") == quillbank.EncodingTypes.etBase64Encoded
    assert bag.get_encoding_type("n") == quillbank.etNotEncoded
    assert bag.get_encoding_type("absent") == -1
    assert bag.get_property_name_array(1) == ["secret"]
    assert bag.get_property_name_array(0) == ["n", "d", "c"]
    assert bag.get_string("secret") == "plain"
    assert bag.get_long("absent", 9) == 9
    assert bag.get_double("d") == math.inf
    assert bag.get_color("c") == 0x80000005
    assert "<encProp" in bag.to_xml_string()
    copy = quillbank.PersistedPropertyCollection()
    copy.from_xml_string(bag.to_xml_string())
    assert copy.get_string("secret") == "plain"
    assert copy.get_encoding_type("secret") == quillbank.etBase64Encoded


def test_set_location_writes_back_into_the_record() -> None:
    bag = quillbank.PersistedPropertyCollection()
    location = LocationData(end_point="SB9")
    bag.set_location("where", location)
    assert location == LocationData("SB9", "", "")


def test_dates_convert_both_ways() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag.set_date("epoch", 0.0)
    bag.set_date("before", -1.25)
    bag.set_date("when", datetime.datetime(2000, 1, 1, 6, 0))
    bag["day"] = datetime.date(2020, 2, 29)
    assert bag.get_date("epoch") == datetime.datetime(1899, 12, 30)
    assert bag.get_date("before") == datetime.datetime(1899, 12, 29, 6, 0)
    assert bag.get_date("when") == datetime.datetime(2000, 1, 1, 6, 0)
    assert bag["day"] == datetime.datetime(2020, 2, 29)
    assert bag.get_date("absent", datetime.datetime(2001, 1, 1)) == datetime.datetime(2001, 1, 1)
    copy = quillbank.PersistedPropertyCollection()
    copy.set_date("before", bag.get_date("before"))
    assert copy.get_date("before") == datetime.datetime(1899, 12, 29, 6, 0)


def test_nested_bags_are_live() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag.set_ppc("inner", quillbank.PersistedPropertyCollection())
    inner = bag.get_ppc("inner")
    assert inner is not None
    inner["x"] = 5
    again = bag.get_ppc("inner")
    assert again is inner
    assert "x" in again
    assert bag.get_ppc("absent") is None
    bag.set_ppc("none", None)
    assert bag.get_value("none") is None


def test_child_elements() -> None:
    element = quillbank.ChildElement()
    element.name = "button"
    element.element_type = "push"
    element.set_boolean("on", True)
    element.set_font("font", quillbank.Functions.new_font_data())
    assert element.ppc_object.name == "button"
    assert element.ppc_object is element.ppc_object
    assert len(element) == 2 and "ON" in element
    assert element.get_font("font") == FontData("Arial", 8.0)
    copy = element.clone()
    assert copy is not element and copy.get_boolean("on")
    element.from_ppc(None)
    assert element.ppc_object.name == "properties" and len(element) == 0
    element.from_xml_string('<ce name="x" type="t"><intProp name="n" value="4"/></ce>')
    assert element.get_long("n") == 4
    assert element.name == "x"
