#pragma once

#include <string>

namespace vekhost::test {

/// A file of Open CASCADE's samples or of Assimp's test models, by its path below their
/// directory.
std::string occtFile(const std::string& relative);
std::string assimpFile(const std::string& relative);
bool exists(const std::string& path);

/// A scratch directory of the running test program, removed when the program ends.
std::string scratchDirectory();
/// Writes the first `bytes` bytes of `source` to `target` (all of them when negative),
/// flipping `flips` bytes spread evenly from `from` onwards to a byte that no text format
/// uses.
void copyDamaged(const std::string& source, const std::string& target, long bytes, int flips = 0,
                 long from = 0);

} // namespace vekhost::test
