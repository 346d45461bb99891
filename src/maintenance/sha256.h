// SHA-256 (FIPS 180-4). A digest is 64 lowercase hexadecimal digits.
#pragma once

#include <string>
#include <string_view>

// False if it is no regular file or link to one, or cannot be opened or read to its end; `out` then stays as
// it was.
bool sha256File(const std::string& path, std::string& out);
std::string sha256Text(std::string_view text);

// Whether two digests are the same, in either case. An empty one equals nothing, because it stands for a
// file that could not be hashed.
bool hashEquals(std::string_view a, std::string_view b);
