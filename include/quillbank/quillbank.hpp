#pragma once

// Quillbank: the document model of an authored lesson, stored as XML.

#include <quillbank/enums.hpp>
#include <quillbank/error.hpp>
#include <quillbank/functions.hpp>
#include <quillbank/records.hpp>
#include <quillbank/variant.hpp>
#include <quillbank/xml.hpp>
