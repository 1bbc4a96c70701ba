#pragma once

// Quillbank: the document model of an authored lesson, stored as XML.

#include <quillbank/child_element.hpp>
#include <quillbank/child_element_collection.hpp>
#include <quillbank/enums.hpp>
#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/persisted_property_collection.hpp>
#include <quillbank/records.hpp>
#include <quillbank/storyboard.hpp>
#include <quillbank/storyboard_collection.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>
