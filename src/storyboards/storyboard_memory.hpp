#pragma once

// Where storyboards are made. A lesson's storyboards come from one pool of
// memory instead of lying between the properties made around them, so that
// work that visits every storyboard (or looks one up and takes a reference)
// touches a few pages instead of one page a storyboard.

#include <memory_resource>

namespace quillbank::storyboards {

// The memory every storyboard is made in: a pool shared by all threads, or
// plain new and delete in builds that check every allocation on its own.
std::pmr::memory_resource* StoryboardMemory();

}  // namespace quillbank::storyboards
