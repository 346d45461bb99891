#include "ui/strings.h"

#include <cstddef>

const char* tr(int id) {
    const char* const* row = stringTable + static_cast<ptrdiff_t>(id) * LANGUAGE_COUNT;
    const char* text = row[currentLanguage()];
    return text && *text ? text : row[0];
}
