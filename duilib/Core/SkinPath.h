#pragma once
// Paths inside a skin: split, with "." and ".." resolved, for the builder's includes and the
// images controls name.
#include <string>
#include <vector>

namespace mivo::duilib::detail {

// Appends the "\"- or "/"-separated parts of `path` to `parts`, resolving "." and "..";
// false when ".." would climb above what `parts` held, or for a part of dots and blanks only
// (Windows would trim it into ".." or nothing).
bool AppendPathParts(const std::wstring& path, std::vector<std::wstring>& parts);

}  // namespace mivo::duilib::detail
