#include "ui/words/strings.h"

#include <cassert>
#include <cstddef>

const char* textOfRow(const char* const* row, int language) {
    const char* text = row[language];
    return text && *text ? text : row[0];
}

const char* tr(int id) {
    assert(id >= 0 && id < STRING_COUNT);
    return textOfRow(stringTable + static_cast<ptrdiff_t>(id) * LANGUAGE_COUNT, currentLanguage());
}
