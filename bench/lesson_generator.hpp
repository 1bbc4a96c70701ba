#pragma once

// Lessons made from a size and a seed, for the benchmarks and for any test or
// fuzz target that wants a large, realistic lesson. The same size and seed
// give the same lesson on every machine: every identifier is derived from
// the seed, and the generator uses its own random sequence rather than the
// standard library's distributions, whose results differ between libraries.
//
// A lesson of n storyboards holds:
// - per storyboard about a dozen properties, one of each of the twelve
//   types, about a fifth of them base64-encoded, some texts outside ASCII;
//   nested bags and child lists two levels deep; location properties
//   linking storyboards to each other;
// - per storyboard a handful of child elements, each with properties of
//   its own;
// - three maps, each placing every storyboard once in trees four levels
//   deep, the second of them the default map;
// - a few lesson properties.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <quillbank/quillbank.hpp>

namespace quillbank::bench {

// Sizes used by the benchmarks: S, M and L.
inline constexpr int kSmallLesson = 100;
inline constexpr int kMediumLesson = 1000;
inline constexpr int kLargeLesson = 10000;

// The identifier of storyboard `index` of a lesson made from `seed`: a GUID
// in the form the library writes (36 upper-case characters).
std::string GeneratedSBID(std::uint64_t seed, int index);

// The storyboard identifiers of GenerateLesson(storyboards, seed), in the
// order the storyboards were added.
std::vector<std::string> GeneratedSBIDs(int storyboards, std::uint64_t seed);

// A lesson of `storyboards` storyboards made from `seed`.
std::shared_ptr<Lesson> GenerateLesson(int storyboards, std::uint64_t seed = 1);

// A bag of `count` properties of every type (none encoded, so that the bag
// benchmarks measure the bag rather than the coders), names "p0", "p1", ...
std::shared_ptr<PersistedPropertyCollection> GenerateBag(int count, std::uint64_t seed = 1);

}  // namespace quillbank::bench
