"""Reference cycles that pass through the library's objects are released by
Python's garbage collector; objects live as long as Python holds them."""

import gc
import weakref

import quillbank


class Holder:
    """A Python object that takes part in a cycle."""

    def __init__(self) -> None:
        self.bag: object = None
        self.me: object = None


def test_cycles_through_nested_bags_are_collected() -> None:
    bag = quillbank.PersistedPropertyCollection()
    bag.set_ppc("inner", quillbank.PersistedPropertyCollection())
    inner = bag.get_ppc("inner")
    assert inner is not None
    holder = Holder()
    holder.bag = inner
    holder.me = holder
    watch_holder = weakref.ref(holder)
    watch_bag = weakref.ref(bag)
    watch_inner = weakref.ref(inner)
    del holder, bag, inner
    gc.collect()
    assert watch_holder() is None
    assert watch_bag() is None
    assert watch_inner() is None


def test_a_part_outlives_its_lesson_while_python_holds_it() -> None:
    lesson = quillbank.Lesson()
    bag = lesson.properties
    bag["x"] = 1
    watch = weakref.ref(lesson)
    del lesson
    gc.collect()
    assert watch() is None
    assert bag["x"] == 1


def test_the_same_child_is_the_same_python_object_while_it_lives() -> None:
    lesson = quillbank.Lesson()
    sb = quillbank.Storyboard()
    lesson.storyboards.add(sb)
    element = quillbank.ChildElement()
    sb.children.append(element)
    assert sb.children[0] is element
    assert lesson.storyboards[sb.sbid].children[0] is element
