#pragma once

// What `quillbank view` puts into its page: the lesson as compact JSON that
// the page's script reads. Arrays stand for records so that a large lesson's
// data stays smaller than its XML:
//
//   {"file": NAME,
//    "lesson": {"title", "identifier", "id", "classification", "props": BAG},
//    "maps": [{"name": TEXT or null, "default": BOOL, "items": [DEPTH, REF, DEPTH, REF, ...]}],
//    "sbs": [[SBID, SHORTID or null, TYPE, TITLE, IDENTIFIER, CLASSIFICATION, BAG, ELEMENTS, MAPS], ...],
//    "findings": [[SEVERITY (0 error, 1 warning), CODE, PLACE, SENTENCE, KIND, INDEX], ...]}
//
// REF is a storyboard's place in "sbs", the identifier as text when the
// lesson lacks it, or null for an item without one; MAPS counts the maps a
// storyboard stands in. KIND says what a finding concerns: 0 the lesson, 1
// the map at INDEX, 2 the storyboard at INDEX.
//
// BAG is [[NAME, TYPE, VALUE] or [NAME, TYPE, VALUE, 1] when base64-encoded,
// ...] in the order the clear form sorts names. TYPE is the PropertyTypes
// number. VALUE: a boolean, a number, a text; a date or colour as the text
// `props` shows; a font [NAME, SIZE, STYLE] (STYLE: 1 bold, 2 italic, 4
// underline); a rectangle [LEFT, TOP, WIDTH, HEIGHT]; an asset [FILE,
// DESCRIPTION, SOURCE]; a location [FROM, TO, MAP] (FROM and TO as REF, ""
// when empty); a nested bag as BAG; a list as ELEMENTS. ELEMENTS is
// [[NAME, TYPE, BAG], ...].

#include <map>
#include <string>

#include <quillbank/lesson.hpp>

#include "check_findings.hpp"
#include "json_report.hpp"

namespace quillbank::tool {

Json ViewData(const std::string& file, const Lesson& lesson, const std::map<std::string, std::string>& shortIds,
              const Findings& findings);

}  // namespace quillbank::tool
