// Whole files, by path: a reader gets all of one or nothing, and a writer never leaves half of one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Lathe::Serialization {

// False, with an empty text, when the path is null, or the file can't be read to its end or has
// more bytes than the limit.
bool ReadFile(const char* path, std::size_t maxSize, std::string& content);

// Writes a temporary file beside the target, flushes it to the disk and renames it over the target:
// whatever fails, even the power, the target holds the old bytes or the new ones. True when it
// holds the new ones.
//
// A target that is there keeps its mode, and must be writable itself. Of a symbolic link the target
// of the link is written. What is no regular file, such as a pipe, is written directly. So is a
// file whose folder takes no other file, or none of its mode, because to save with less safety
// serves its user better than not to save: there a full disk leaves the old bytes, but a crash may
// leave a mixture.
bool WriteFile(const char* path, std::string_view content);

} // namespace Lathe::Serialization
