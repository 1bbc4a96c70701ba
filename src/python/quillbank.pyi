"""Quillbank: the document model of an authored lesson, stored as XML that
Windows host applications read, and as a lossless JSON form.

Type stub of the compiled module: every class and member with its types.
"""

import datetime
import enum
from typing import Iterator, Optional, Protocol, Union, overload


# The XML document model -----------------------------------------------------

class xml:
    """quillbank.xml: the XML document model the lesson objects read and write.
    (A submodule at run time; described here as a namespace.)"""

    class NodeType(enum.IntEnum):
        """The type of a node."""

        Element = 1
        Attribute = 2
        Text = 3
        CData = 4
        ProcessingInstruction = 7
        Comment = 8
        Document = 9
        DocumentType = 10

    class Node:
        """A node of an XML document (a handle: == compares identity)."""

        text: str
        @property
        def node_type(self) -> _XmlNodeType:
            """The node type."""
        @property
        def name(self) -> str:
            """The node name: an element's name, "#text", "#comment"..."""
        @property
        def value(self) -> str:
            """The text of a text, CDATA or comment node; "" for an element."""
        @property
        def xml(self) -> str:
            """The serialisation of this node alone."""
        @property
        def parent(self) -> Optional[_XmlNode]:
            """The parent node or None."""
        @property
        def first_child(self) -> Optional[_XmlNode]:
            """The first child or None."""
        @property
        def last_child(self) -> Optional[_XmlNode]:
            """The last child or None."""
        @property
        def next_sibling(self) -> Optional[_XmlNode]:
            """The next sibling or None."""
        @property
        def previous_sibling(self) -> Optional[_XmlNode]:
            """The previous sibling or None."""
        def has_child_nodes(self) -> bool:
            """Whether the node has children."""
        @property
        def child_count(self) -> int:
            """The number of children."""
        def child_at(self, index: int) -> Optional[_XmlNode]:
            """The child at a zero-based index, or None."""
        @property
        def owner_document(self) -> _XmlDocument:
            """The document the node belongs to."""
        def append_child(self, child: _XmlNode) -> _XmlNode:
            """Appends child and returns the node now in place."""
        def insert_before(self, child: _XmlNode, reference: Optional[_XmlNode] = None) -> _XmlNode:
            """Inserts child before reference (None appends)."""
        def remove_child(self, child: _XmlNode) -> _XmlNode:
            """Removes child; it stays usable, unattached."""
        def clone_node(self, deep: bool) -> _XmlNode:
            """A copy in the same document, unattached."""
        def is_element(self) -> bool:
            """Whether the node is an element."""
        def __eq__(self, other: object) -> bool: ...

    class Element(Node):
        """An element of an XML document."""

        def get_attribute(self, name: str) -> Optional[str]:
            """The attribute's value, or None when there is no such attribute."""
        def has_attribute(self, name: str) -> bool:
            """Whether the attribute is there."""
        def set_attribute(self, name: str, value: str) -> None:
            """Sets an attribute; a new one goes after the existing ones."""
        def remove_attribute(self, name: str) -> None:
            """Removes an attribute."""
        @property
        def attribute_count(self) -> int:
            """The number of attributes."""
        def set_base64_value(self, data: bytes) -> None:
            """The element's text becomes the base64 of the bytes."""
        def get_base64_value(self) -> bytes:
            """The element's text decoded as base64."""

    class Document:
        """An XML document (a handle: == compares identity)."""

        document_element: Optional[_XmlElement]
        preserve_white_space: bool
        def __init__(self) -> None:
            """A new, empty document."""
        def create_element(self, name: str) -> _XmlElement:
            """A new, unattached element."""
        def create_text_node(self, text: str) -> _XmlNode:
            """A new, unattached text node."""
        def create_comment(self, text: str) -> _XmlNode:
            """A new, unattached comment."""
        def create_cdata_section(self, text: str) -> _XmlNode:
            """A new, unattached CDATA section."""
        def load_xml(self, text: str) -> bool:
            """Replaces the content with the parsed text; False when it does not parse."""
        def parse_root_element(self, text: str) -> Optional[_XmlElement]:
            """The root element of the text parsed on its own, or None."""
        @property
        def xml(self) -> str:
            """The document's text."""
        def __eq__(self, other: object) -> bool: ...

_XmlNodeType = xml.NodeType
_XmlNode = xml.Node
_XmlElement = xml.Element
_XmlDocument = xml.Document

# Errors ---------------------------------------------------------------------

class Error(Exception):
    """The one error the library raises: number, source and description."""

    number: int
    source: str
    description: str
    def __init__(self, number: int, source: str, description: str) -> None: ...

class InvalidCallError(Error):
    """Error 5: the call is not valid in the object's state or for this argument."""

class CounterOverflowError(Error, OverflowError):
    """Error 6: a counter overflowed."""

class TypeMismatchError(Error, TypeError):
    """Error 13: a value has the wrong type for the request."""

class OutOfStackSpaceError(Error, RecursionError):
    """Error 28: runaway recursion, as a bag or list that contains itself."""

class NullArgumentError(Error, ValueError):
    """Error 94: a required object argument is None ("Invalid use of Null")."""

class InvalidArgumentError(Error, ValueError):
    """Error 380: an argument value is not allowed."""

class FormError(Error, ValueError):
    """Error 0x800403E9 (-2147220503): XML or JSON text of the wrong form."""

class DomError(Error):
    """Error 0x80004005 (-2147467259): the XML document model failed."""

class TreeError(Error, LookupError):
    """Errors 35601 and 35602 of a tree."""

ERROR_CLASSES: dict[int, type[Error]]

# Enumerations ---------------------------------------------------------------

class EncodingTypes(enum.IntEnum):
    """How a property is stored in XML: plain, or base64-encoded."""

    etNotEncoded = 0
    etBase64Encoded = 1

class PropertyTypes(enum.IntEnum):
    """The type of a property; ptNone for a name the bag does not hold."""

    ptNone = 0
    ptBoolean = 1
    ptLong = 2
    ptDouble = 3
    ptString = 4
    ptDate = 5
    ptColor = 6
    ptFont = 7
    ptRectangle = 8
    ptAsset = 9
    ptLocation = 10
    ptPPC = 11
    ptCEC = 12

class StoryboardInsertTypes(enum.IntEnum):
    """Where LessonMap.insert_storyboard and insert_map place the new items."""

    sbitInsertBefore = 1
    sbitInsertAfter = 2
    sbitInsertAsChild = 3

class TreeRelationshipConstants(enum.IntEnum):
    """Where a tree's add places a new node relative to an existing one."""

    tvwFirst = 0
    tvwLast = 1
    tvwNext = 2
    tvwPrevious = 3
    tvwChild = 4

etNotEncoded = EncodingTypes.etNotEncoded
etBase64Encoded = EncodingTypes.etBase64Encoded
ptNone = PropertyTypes.ptNone
ptBoolean = PropertyTypes.ptBoolean
ptLong = PropertyTypes.ptLong
ptDouble = PropertyTypes.ptDouble
ptString = PropertyTypes.ptString
ptDate = PropertyTypes.ptDate
ptColor = PropertyTypes.ptColor
ptFont = PropertyTypes.ptFont
ptRectangle = PropertyTypes.ptRectangle
ptAsset = PropertyTypes.ptAsset
ptLocation = PropertyTypes.ptLocation
ptPPC = PropertyTypes.ptPPC
ptCEC = PropertyTypes.ptCEC
sbitInsertBefore = StoryboardInsertTypes.sbitInsertBefore
sbitInsertAfter = StoryboardInsertTypes.sbitInsertAfter
sbitInsertAsChild = StoryboardInsertTypes.sbitInsertAsChild
tvwFirst = TreeRelationshipConstants.tvwFirst
tvwLast = TreeRelationshipConstants.tvwLast
tvwNext = TreeRelationshipConstants.tvwNext
tvwPrevious = TreeRelationshipConstants.tvwPrevious
tvwChild = TreeRelationshipConstants.tvwChild

# Records --------------------------------------------------------------------

class AssetData:
    """An asset: a file with its description and source."""

    filename: str
    description: str
    source: str
    def __init__(self, filename: str = "", description: str = "", source: str = "") -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class FontData:
    """A font: family name, size in points and style."""

    name: str
    size: float
    bold: bool
    italic: bool
    underline: bool
    def __init__(
        self, name: str = "", size: float = 0.0, bold: bool = False, italic: bool = False, underline: bool = False
    ) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class LocationData:
    """A place in a lesson: two storyboard identifiers and a map name."""

    start_point: str
    end_point: str
    map_name: str
    def __init__(self, start_point: str = "", end_point: str = "", map_name: str = "") -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

class Rectangle:
    """A rectangle: left, top, width and height (32-bit integers)."""

    left: int
    top: int
    width: int
    height: int
    def __init__(self, left: int = 0, top: int = 0, width: int = 0, height: int = 0) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...

_Value = Union[
    None,
    bool,
    int,
    float,
    str,
    datetime.datetime,
    FontData,
    Rectangle,
    AssetData,
    LocationData,
    "PersistedPropertyCollection",
    "ChildElementCollection",
]
"""A property value as Python holds it (None for no value)."""

_SettableValue = Union[
    bool,
    int,
    float,
    str,
    datetime.date,
    FontData,
    Rectangle,
    AssetData,
    LocationData,
    "PersistedPropertyCollection",
    "ChildElementCollection",
]
"""What bag[name] = value accepts; the Python type chooses the property type."""

# Functions ------------------------------------------------------------------

class Functions:
    """The library's utility members, all static."""

    @staticmethod
    def ocx_path() -> str:
        """The folder of the loaded library file."""
    @staticmethod
    def ocx_version() -> str:
        """"Major.Minor (Build rrrr)" and any version comments."""
    @staticmethod
    def set_regional_settings(name: str) -> None:
        """Chooses the regional setting ("de-DE") in which numbers, booleans and dates that are not in the library's own written forms are read; raises Error 380 for an unknown name."""
    @staticmethod
    def regional_settings() -> str:
        """The regional setting reading conversions use now ("en-US" unless one was chosen)."""
    @staticmethod
    def ocx_filename() -> str:
        """The full path of the loaded library file."""
    @staticmethod
    def new_guid() -> str:
        """A new GUID: 36 upper-case characters, no braces."""
    @staticmethod
    def empty_guid() -> str:
        """"00000000-0000-0000-0000-000000000000"."""
    @staticmethod
    def html_color_to_ole_color(color: str) -> int:
        """"#RRGGBB" (the hash optional) to 0x00BBGGRR; anything else gives 0."""
    @staticmethod
    def ole_color_to_html_color(color: int) -> str:
        """"#RRGGBB" in upper case; an invalid colour raises error 5."""
    @staticmethod
    def new_asset_data(filename: str = "", description: str = "", source: str = "") -> AssetData:
        """An AssetData."""
    @staticmethod
    def new_font_data(
        name: str = "Arial", size: float = 8.0, bold: bool = False, italic: bool = False, underline: bool = False
    ) -> FontData:
        """A FontData."""
    @staticmethod
    def new_location_data(start_point: str = "", end_point: str = "", map_name: str = "") -> LocationData:
        """A LocationData."""
    @staticmethod
    def new_rectangle(left: int = 0, top: int = 0, width: int = 0, height: int = 0) -> Rectangle:
        """A Rectangle."""
    @staticmethod
    def clean_xml_string(xml_string: str) -> str:
        """Removes the control characters U+0000..U+0019 other than TAB, LF and CR."""
    @staticmethod
    def format_xml_string(xml_string: str) -> str:
        """Indented, with a US-ASCII declaration; the input unchanged when it does not parse."""

# Typed property members shared by bags and child elements -------------------

class _TypedMembers:
    @property
    def count(self) -> int:
        """The number of properties."""
    def exists(self, property_name: str) -> bool:
        """Whether a property of that name (matched without regard to case) exists."""
    def remove(self, property_name: str) -> None:
        """Removes the property; an absent name is ignored."""
    def get_boolean(self, property_name: str, default_value: bool = False) -> bool:
        """The boolean property, or default_value."""
    def set_boolean(self, property_name: str, new_value: bool, encoding_type: int = 0) -> None:
        """Sets a boolean property (replacing one of the same name)."""
    def get_long(self, property_name: str, default_value: int = 0) -> int:
        """The 32-bit integer property, or default_value."""
    def set_long(self, property_name: str, new_value: int, encoding_type: int = 0) -> None:
        """Sets a 32-bit integer property."""
    def get_double(self, property_name: str, default_value: float = 0.0) -> float:
        """The double property, or default_value."""
    def set_double(self, property_name: str, new_value: float, encoding_type: int = 0) -> None:
        """Sets a double property."""
    def get_string(self, property_name: str, default_value: str = "") -> str:
        """The text property, or default_value."""
    def set_string(self, property_name: str, new_value: str, encoding_type: int = 0) -> None:
        """Sets a text property."""
    def get_color(self, property_name: str, default_value: int = 0) -> int:
        """The colour property (0x00BBGGRR), or default_value."""
    def set_color(self, property_name: str, new_value: int, encoding_type: int = 0) -> None:
        """Sets a colour property."""
    def get_font(self, property_name: str, default_value: FontData = ...) -> FontData:
        """The FontData property, or default_value."""
    def set_font(self, property_name: str, new_value: FontData, encoding_type: int = 0) -> None:
        """Sets a font property."""
    def get_rectangle(self, property_name: str, default_value: Rectangle = ...) -> Rectangle:
        """The Rectangle property, or default_value."""
    def set_rectangle(self, property_name: str, new_value: Rectangle, encoding_type: int = 0) -> None:
        """Sets a rectangle property."""
    def get_asset(self, property_name: str, default_value: AssetData = ...) -> AssetData:
        """The AssetData property, or default_value."""
    def set_asset(self, property_name: str, new_value: AssetData, encoding_type: int = 0) -> None:
        """Sets an asset property."""
    def get_location(self, property_name: str, default_value: LocationData = ...) -> LocationData:
        """The LocationData property, or default_value."""
    def set_location(self, property_name: str, new_value: LocationData, encoding_type: int = 0) -> None:
        """Sets a location property; an empty start_point with a filled end_point is moved over, in new_value too."""
    def get_ppc(
        self, property_name: str, default_value: Optional[PersistedPropertyCollection] = None
    ) -> Optional[PersistedPropertyCollection]:
        """The bag held by the property itself (not a copy), or default_value."""
    def set_ppc(
        self, property_name: str, new_value: Optional[PersistedPropertyCollection], encoding_type: int = 0
    ) -> None:
        """Stores a deep copy of the bag (or no bag for None)."""
    def get_cec(
        self, property_name: str, default_value: Optional[ChildElementCollection] = None
    ) -> Optional[ChildElementCollection]:
        """The child-element list held by the property itself (not a copy), or default_value."""
    def set_cec(self, property_name: str, new_value: Optional[ChildElementCollection], encoding_type: int = 0) -> None:
        """Stores a deep copy of the list (or no list for None)."""
    def __len__(self) -> int: ...
    def __contains__(self, property_name: object) -> bool: ...

# The model ------------------------------------------------------------------

class PersistedPropertyCollection(_TypedMembers):
    """A bag of named, typed values, with the manners of a dict: bag[name], bag[name] = value,
    del bag[name], len(), in and iteration over the names."""

    name: str
    def __init__(self) -> None:
        """A new bag named "properties", with no properties."""
    def get_property_name_array(self, encoding_type: int = -1) -> list[str]:
        """The names in their order; with encoding_type 0 or 1 only those of that encoding."""
    def clear(self) -> None:
        """Removes every property; the name is kept."""
    def get_value(self, property_name: str) -> _Value:
        """The property's value as the natural Python value; None when absent."""
    def get_encoding_type(self, property_name: str) -> int:
        """The property's EncodingTypes; -1 when the name is absent."""
    def get_property_type(self, property_name: str) -> PropertyTypes:
        """The property's PropertyTypes; ptNone when the name is absent."""
    def get_date(
        self, property_name: str, default_value: Union[None, datetime.date, float] = None
    ) -> datetime.datetime:
        """The date property, or default_value (1899-12-30 when None)."""
    def set_date(self, property_name: str, new_value: Union[datetime.date, float], encoding_type: int = 0) -> None:
        """Sets a date property from a datetime (or an automation date number)."""
    def clone(self) -> PersistedPropertyCollection:
        """A deep copy with the same name and order."""
    def to_clear_xml_string(self) -> str:
        """The "ppc" element as text, every property plain."""
    def to_xml_string(self) -> str:
        """The "ppc" element as text, in the normal form."""
    def from_xml_string(self, xml_string: str) -> None:
        """Reads a "ppc" element's text; "" resets the bag."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new, unattached "ppc" element of document, every property plain."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new, unattached "ppc" element of document."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Reads a "ppc" element."""
    def __getitem__(self, property_name: str) -> _Value: ...
    def __setitem__(self, property_name: str, value: _SettableValue) -> None: ...
    def __delitem__(self, property_name: str) -> None: ...
    def __iter__(self) -> Iterator[str]: ...

class ChildElement(_TypedMembers):
    """One named, typed element of a storyboard: a type label and an owned property bag."""

    name: str
    element_type: str
    def __init__(self) -> None:
        """A new element: name "", no type, an empty bag."""
    @property
    def ppc_object(self) -> PersistedPropertyCollection:
        """The owned bag itself, not a copy."""
    def clear(self) -> None:
        """Removes every property; the name and the element type are kept."""
    def clone(self) -> ChildElement:
        """A deep copy: no property is shared with this element."""
    def from_ppc(self, ppc: Optional[PersistedPropertyCollection]) -> None:
        """The owned bag becomes a copy of ppc (a new bag named "properties" for None)."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new, unattached "ce" element, every property plain."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new, unattached "ce" element."""
    def to_clear_xml_string(self) -> str:
        """The clear "ce" element as text."""
    def to_xml_string(self) -> str:
        """The "ce" element as text."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Reads a "ce" element."""
    def from_xml_string(self, xml_string: str) -> None:
        """Reads a "ce" element's text; "" gives a new, empty bag named ""."""

class ChildElementCollection:
    """A zero-based list of references to child elements, with the manners of a list."""

    name: str
    def __init__(self) -> None:
        """A new, empty list named "children"."""
    @property
    def length(self) -> int:
        """The index of the last element; -1 when empty."""
    @property
    def count(self) -> int:
        """The number of elements."""
    def item(self, index: int) -> Optional[ChildElement]:
        """The element at index, or None when out of range."""
    def index_of(self, element: Optional[ChildElement]) -> int:
        """The first position of the very object; -1 for None or an empty list, 0 when not held."""
    def append(self, element: Optional[ChildElement]) -> None:
        """Appends a reference; None is ignored."""
    def insert(self, element: Optional[ChildElement], index: int) -> None:
        """Inserts at index; out of range appends."""
    def remove(self, element: Optional[ChildElement]) -> None:
        """Removes the element at index_of(element)."""
    def remove_at(self, index: int) -> None:
        """Removes the element at index."""
    def clear(self) -> None:
        """Drops every element; the name is kept."""
    def swap(self, source_index: int, destination_index: int) -> None:
        """Exchanges two elements when both indexes are in range and differ."""
    def move_previous(self, element: Optional[ChildElement]) -> None:
        """Exchanges the element with the one before."""
    def move_next(self, element: Optional[ChildElement]) -> None:
        """Exchanges the element with the one after."""
    def move_first(self, element: Optional[ChildElement]) -> None:
        """Exchanges the element with the first."""
    def move_last(self, element: Optional[ChildElement]) -> None:
        """Exchanges the element with the last."""
    def move_to(self, element: Optional[ChildElement], destination_index: int) -> None:
        """Exchanges the element with the one at destination_index."""
    def clone(self) -> ChildElementCollection:
        """A deep copy: every entry is cloned."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "cec" element, clear form."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "cec" element."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Reads a "cec" element."""
    def __len__(self) -> int: ...
    def __getitem__(self, index: int) -> ChildElement: ...
    def __contains__(self, element: object) -> bool: ...
    def __iter__(self) -> Iterator[ChildElement]: ...

class Storyboard:
    """One page of a lesson: a read-only identifier, texts, a bag and a child-element list."""

    title: str
    identifier: str
    sb_type: str
    classification: str
    def __init__(self) -> None:
        """A new storyboard with a new sbid and the title "New Storyboard"."""
    @property
    def sbid(self) -> str:
        """The identifier (36-character upper-case GUID text)."""
    @property
    def properties(self) -> PersistedPropertyCollection:
        """The owned bag itself."""
    @property
    def children(self) -> ChildElementCollection:
        """The owned child-element list itself."""
    def clone(self) -> Storyboard:
        """A deep copy with the same sbid."""
    def duplicate(self, new_title_prefix: str = "") -> Storyboard:
        """A deep copy with a new sbid, titled new_title_prefix followed by this title."""
    def copy_from(self, sb: Optional[Storyboard]) -> None:
        """Copies everything but the sbid from sb."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "storyboard" element, clear form."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "storyboard" element."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Resets the storyboard (a new sbid included), then reads a "storyboard" element."""

class StoryboardCollection:
    """A lesson's storyboards in order, keyed by sbid, with a current storyboard:
    len(), iteration, set[sbid] and in (an sbid or a storyboard)."""

    current_sb: Optional[Storyboard]
    current_sbid: str
    def __init__(self) -> None:
        """A new, empty collection."""
    def add(self, sb: Optional[Storyboard]) -> Optional[Storyboard]:
        """Appends sb under its sbid, replacing an entry of that sbid; returns sb."""
    def contains(self, sbid: str) -> bool:
        """Whether a storyboard is held under sbid."""
    @property
    def count(self) -> int:
        """The number of storyboards."""
    def item(self, sbid: str) -> Optional[Storyboard]:
        """The storyboard under sbid, or None."""
    def remove(self, sbid: str) -> None:
        """Removes the entry under sbid; unknown ones are ignored."""
    def clear(self) -> None:
        """Empties the set and clears the current storyboard."""
    def remove_collection(self, storyboards: Optional[StoryboardCollection]) -> None:
        """Removes the entries of every storyboard of storyboards."""
    def add_collection(self, storyboards: Optional[StoryboardCollection], overwrite_existing: bool = True) -> None:
        """Adds every storyboard of storyboards (shared, not copied)."""
    def clone(self, clone_storyboards: bool = True) -> StoryboardCollection:
        """A new collection of clones (or of the same storyboards)."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "storyboards" element, clear form."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "storyboards" element."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Reads a "storyboards" element."""
    def __len__(self) -> int: ...
    def __getitem__(self, sbid: str) -> Storyboard: ...
    def __contains__(self, value: object) -> bool: ...
    def __iter__(self) -> Iterator[Storyboard]: ...

# The tree bridge ------------------------------------------------------------

class _TreeNodeLike(Protocol):
    """What a map reads of a node: key, child and next (attributes or methods)."""

    @property
    def key(self) -> str: ...
    @property
    def child(self) -> Optional[_TreeNodeLike]: ...
    @property
    def next(self) -> Optional[_TreeNodeLike]: ...

class _TreeNodesLike(Protocol):
    """What a map calls of a node collection: add and remove."""

    def add(self, relative: object, relationship: int, key: str, text: str) -> object: ...
    def remove(self, node: object) -> None: ...

class TreeNode:
    """A node of a tree that a map shows itself in."""

    @property
    def key(self) -> str:
        """The node's key (a map stores an sbid here)."""
    @property
    def child(self) -> Optional[TreeNode]:
        """The first child, or None."""
    @property
    def next(self) -> Optional[TreeNode]:
        """The next sibling, or None."""

class TreeNodes:
    """The nodes of a tree."""

    def add(self, relative: object, relationship: int, key: str, text: str) -> object:
        """Adds a node placed by relationship relative to relative; returns it."""
    def remove(self, node: object) -> None:
        """Removes the node with its descendants."""

class MemoryTreeNode(TreeNode):
    """A node of a MemoryTreeNodes tree."""

    @property
    def text(self) -> str:
        """The label shown for the node."""
    @property
    def first_child(self) -> Optional[MemoryTreeNode]:
        """The first child, or None."""
    @property
    def next_sibling(self) -> Optional[MemoryTreeNode]:
        """The next sibling, or None."""
    @property
    def previous_sibling(self) -> Optional[MemoryTreeNode]:
        """The previous sibling, or None."""
    @property
    def last_child(self) -> Optional[MemoryTreeNode]:
        """The last child, or None."""
    @property
    def parent(self) -> Optional[MemoryTreeNode]:
        """The parent, or None for a top-level node."""
    @property
    def children(self) -> int:
        """The number of direct children."""

class MemoryTreeNodes(TreeNodes):
    """A tree of keyed, labelled nodes held in memory."""

    def __init__(self, unique_keys: bool = False) -> None:
        """A new, empty tree; with unique_keys a repeated non-empty key raises error 35602."""
    @property
    def count(self) -> int:
        """The number of nodes at every level."""
    @property
    def first_root(self) -> Optional[MemoryTreeNode]:
        """The first top-level node, or None."""
    def find(self, key: str) -> Optional[MemoryTreeNode]:
        """The first node in document order with the key, or None."""
    def __len__(self) -> int: ...

# Maps -----------------------------------------------------------------------

class LessonMap:
    """A named tree of references to storyboards; `sbid in map` searches every depth."""

    name: str
    def __init__(self) -> None:
        """A new map named "New Map", without items."""
    def clear(self) -> None:
        """Drops every item; the name is kept."""
    def contains(self, sbid: str) -> bool:
        """Whether any item at any depth names sbid."""
    def from_tree_node(self, root_node: Union[None, TreeNode, _TreeNodeLike, object]) -> None:
        """Rebuilds the tree from the descendants of root_node."""
    def to_tree_node(
        self, node_collection: Union[TreeNodes, _TreeNodesLike], root_node: Union[None, TreeNode, _TreeNodeLike, object]
    ) -> None:
        """Empties root_node, then adds a node beneath it per item through node_collection.add."""
    def to_xml_element(self, document: Optional[xml.Document] = None) -> xml.Element:
        """A deep copy of the "map" element, not attached anywhere."""
    def from_xml_element(self, element: xml.Element) -> None:
        """The map becomes a deep copy of a "map" element."""
    def clone(self) -> LessonMap:
        """An independent deep copy, name included."""
    def insert_storyboard(self, root_sbid: str, relation: int, new_sbid: str) -> None:
        """Adds an item naming new_sbid relative to the first item naming root_sbid."""
    def insert_map(self, root_sbid: str, relation: int, new_map: Optional[LessonMap]) -> None:
        """Adds copies of the top-level items of new_map relative to the first item naming root_sbid."""
    def remove_storyboards(self, storyboards: Optional[StoryboardCollection]) -> None:
        """Drops every item whose storyboard is in storyboards."""
    def keep_storyboards(self, storyboards: Optional[StoryboardCollection]) -> None:
        """Drops every item whose storyboard is not in storyboards."""
    def __contains__(self, sbid: object) -> bool: ...

class LessonMapCollection:
    """The ordered maps of a lesson with its default map: len(), iteration,
    maps[i], maps[name] and in (a map or a name)."""

    default_map: Optional[LessonMap]
    def __init__(self) -> None:
        """A new, empty collection without a default map."""
    @property
    def length(self) -> int:
        """The highest index: -1 when empty."""
    @property
    def count(self) -> int:
        """The number of maps."""
    def item(self, name: str) -> Optional[LessonMap]:
        """The first map named name, or None."""
    def item_at(self, index: int) -> Optional[LessonMap]:
        """The map at index, or None."""
    def index_of(self, map: Optional[LessonMap]) -> int:
        """The first index of the very map; -1 when absent."""
    def index_of_name(self, name: str) -> int:
        """The first index of a map named name; -1 when none is."""
    def append(self, map: Optional[LessonMap]) -> None:
        """Appends a map (a reference, not a copy)."""
    def insert(self, map: Optional[LessonMap], index: int) -> None:
        """Places map at index; out of range appends."""
    def remove(self, map: Optional[LessonMap]) -> None:
        """Removes the first occurrence of the very map."""
    def remove_at(self, index: int) -> None:
        """Removes the map at index."""
    def clear(self) -> None:
        """Removes every map and the default."""
    def clone(self) -> LessonMapCollection:
        """A new collection of copies of the maps."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "maps" element."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Reads a "maps" element."""
    def __len__(self) -> int: ...
    @overload
    def __getitem__(self, key: int) -> LessonMap: ...
    @overload
    def __getitem__(self, key: str) -> LessonMap: ...
    def __contains__(self, value: object) -> bool: ...
    def __iter__(self) -> Iterator[LessonMap]: ...

# The lesson -----------------------------------------------------------------

class Lesson:
    """A whole lesson: identity and texts, a property bag, maps and storyboards."""

    lesson_id: str
    title: str
    identifier: str
    classification: str
    def __init__(self) -> None:
        """A new lesson: a new lesson_id, the title "New Lesson", empty texts and parts."""
    @property
    def properties(self) -> PersistedPropertyCollection:
        """The lesson's property bag."""
    @property
    def maps(self) -> LessonMapCollection:
        """The lesson's maps."""
    @property
    def storyboards(self) -> StoryboardCollection:
        """The lesson's storyboards."""
    def to_clear_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "lesson" element of document in the clear form."""
    def to_xml_element(self, document: xml.Document) -> xml.Element:
        """A new "lesson" element of document."""
    def from_xml_element(self, element: xml.Element) -> None:
        """Resets the lesson, then reads a "lesson" element."""
    def to_xml_string(self) -> str:
        """The "lesson" element's text (the normal form)."""
    def to_clear_xml_string(self) -> str:
        """The clear form's text."""
    def from_xml_string(self, xml_string: str) -> None:
        """Reads a lesson's text; "" resets. Text that does not parse raises FormError and changes nothing."""
    def clone(self) -> Lesson:
        """An exact copy: every identifier is kept."""
    def duplicate(self) -> Lesson:
        """A copy with new identifiers, every reference to the old ones rewritten."""
    def to_json(self, indent: Optional[int] = None) -> str:
        """The lossless JSON form: compact, or indented by indent spaces."""
    @staticmethod
    def from_json(json_text: str) -> Lesson:
        """A new lesson read from its JSON form; JSON of the wrong form raises FormError."""
