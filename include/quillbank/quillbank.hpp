#pragma once

// Quillbank: the document model of an authored lesson, stored as XML.

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/enums.hpp>
#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/lesson.hpp>
#include <quillbank/lesson_map.hpp>
#include <quillbank/lesson_map_collection.hpp>
#include <quillbank/memory_tree.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/records.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/tree_view.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>
