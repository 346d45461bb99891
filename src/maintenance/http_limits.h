// How long an answer may be. Its stated length is asked, so that nothing is fetched in vain, and then what
// really comes, because it may be more.
#pragma once

#include "maintenance/platform.h"

#include <algorithm>
#include <charconv>
#include <string_view>

// In bytes. A text has a limit of its own beside that of all answers.
inline uint64_t lengthLimit(const HttpOptions& options, const std::string* body) {
    return body ? std::min<uint64_t>(HTTP_BODY_LIMIT, options.fileLimit) : options.fileLimit;
}

// The number at the begin of a header's text; 0 without one, and the largest of all for what is larger.
inline uint64_t readLength(std::string_view text) {
    uint64_t length = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), length);
    return result.ec == std::errc::result_out_of_range ? UINT64_MAX : length;
}
