#include "ui/text/shape_text.h"

#include <cassert>
#include <cstddef>
#include <string_view>
#include <vector>

using CodePoints = std::vector<uint32_t>;

constexpr uint32_t REPLACEMENT = 0xFFFD;

// --- UTF-8

static size_t sequenceLength(uint8_t lead) {
    if (lead < 0x80) return 1;
    if ((lead & 0xE0u) == 0xC0u) return 2;
    if ((lead & 0xF0u) == 0xE0u) return 3;
    if ((lead & 0xF8u) == 0xF0u) return 4;
    return 0; // no lead byte
}

static CodePoints decode(std::string_view text) {
    CodePoints points;
    points.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        const uint8_t lead = static_cast<uint8_t>(text[i]);
        const size_t length = sequenceLength(lead);
        if (length == 0 || i + length > text.size()) {
            points.push_back(REPLACEMENT);
            i++;
            continue;
        }
        uint32_t point = length == 1 ? lead : lead & (0x7Fu >> length);
        for (size_t k = 1; k < length; k++) point = point << 6 | (static_cast<uint8_t>(text[i + k]) & 0x3Fu);
        points.push_back(point);
        i += length;
    }
    return points;
}

static void encode(std::string& text, uint32_t point) {
    assert(point < 0x200000); // what four bytes hold
    const auto byte = [&](uint32_t value) { text += static_cast<char>(value); };
    if (point < 0x80) return byte(point);
    if (point < 0x800) {
        byte(0xC0u | point >> 6);
    } else {
        if (point < 0x10000) {
            byte(0xE0u | point >> 12);
        } else {
            byte(0xF0u | point >> 18);
            byte(0x80u | (point >> 12 & 0x3Fu));
        }
        byte(0x80u | (point >> 6 & 0x3Fu));
    }
    byte(0x80u | (point & 0x3Fu));
}

static std::string encode(const CodePoints& points) {
    std::string text;
    text.reserve(points.size() * 3);
    for (const uint32_t point : points) encode(text, point);
    return text;
}

// --- Arabic: joining

enum JoinType : uint8_t {
    JOINS_NOTHING,
    JOINS_BEFORE, // only to the letter before it
    JOINS_BOTH
};

struct ArabicLetter {
    uint16_t isolated = 0; // 0: no letter of the table. Final, initial and medial follow.
    JoinType type = JOINS_NOTHING;
};

constexpr uint32_t FIRST_LETTER = 0x0621;
constexpr ArabicLetter NO_LETTER = {};

static constexpr ArabicLetter ARABIC_LETTERS[] = {
    {0xFE80, JOINS_NOTHING}, // U+0621 hamza
    {0xFE81, JOINS_BEFORE},
    {0xFE83, JOINS_BEFORE},
    {0xFE85, JOINS_BEFORE},
    {0xFE87, JOINS_BEFORE},
    {0xFE89, JOINS_BOTH},   // U+0626
    {0xFE8D, JOINS_BEFORE}, // U+0627 alef
    {0xFE8F, JOINS_BOTH},   // U+0628
    {0xFE93, JOINS_BEFORE}, // U+0629
    {0xFE95, JOINS_BOTH},
    {0xFE99, JOINS_BOTH},
    {0xFE9D, JOINS_BOTH},
    {0xFEA1, JOINS_BOTH},
    {0xFEA5, JOINS_BOTH}, // U+062E
    {0xFEA9, JOINS_BEFORE},
    {0xFEAB, JOINS_BEFORE},
    {0xFEAD, JOINS_BEFORE},
    {0xFEAF, JOINS_BEFORE},
    {0xFEB1, JOINS_BOTH},
    {0xFEB5, JOINS_BOTH},
    {0xFEB9, JOINS_BOTH},
    {0xFEBD, JOINS_BOTH},
    {0xFEC1, JOINS_BOTH},
    {0xFEC5, JOINS_BOTH},
    {0xFEC9, JOINS_BOTH},
    {0xFECD, JOINS_BOTH}, // U+063A
    NO_LETTER,
    NO_LETTER,
    NO_LETTER,
    NO_LETTER,
    NO_LETTER,
    NO_LETTER, // U+063B to U+0640
    {0xFED1, JOINS_BOTH},
    {0xFED5, JOINS_BOTH},
    {0xFED9, JOINS_BOTH},
    {0xFEDD, JOINS_BOTH},
    {0xFEE1, JOINS_BOTH},
    {0xFEE5, JOINS_BOTH},
    {0xFEE9, JOINS_BOTH}, // U+0647
    {0xFEED, JOINS_BEFORE},
    {0xFEEF, JOINS_BEFORE},
    {0xFEF1, JOINS_BOTH}, // U+064A
};
static_assert(std::size(ARABIC_LETTERS) == 0x064A - FIRST_LETTER + 1);

static const ArabicLetter& arabicLetter(uint32_t point) {
    if (point < FIRST_LETTER || point >= FIRST_LETTER + std::size(ARABIC_LETTERS)) return NO_LETTER;
    return ARABIC_LETTERS[point - FIRST_LETTER];
}

// Joining looks through these.
static bool isMark(uint32_t point) { return (point >= 0x064B && point <= 0x065F) || point == 0x0670; }

// The isolated ligature of lam with the alef, the final one follows it; 0 for anything else.
static uint32_t lamAlef(uint32_t alef) {
    switch (alef) {
    case 0x0622:
        return 0xFEF5;
    case 0x0623:
        return 0xFEF7;
    case 0x0625:
        return 0xFEF9;
    case 0x0627:
        return 0xFEFB;
    default:
        return 0;
    }
}

static const ArabicLetter& letterAfter(const CodePoints& points, size_t i) {
    for (i++; i < points.size(); i++)
        if (!isMark(points[i])) return arabicLetter(points[i]);
    return NO_LETTER;
}

static CodePoints joinLetters(const CodePoints& points) {
    constexpr uint32_t LAM = 0x0644;
    CodePoints joined;
    joined.reserve(points.size());
    const ArabicLetter* previous = &NO_LETTER; // what the nearest earlier code point that is no mark is
    for (size_t i = 0; i < points.size(); i++) {
        const uint32_t point = points[i];
        const ArabicLetter& letter = arabicLetter(point);
        const bool joinedBefore = previous->type == JOINS_BOTH;
        if (!isMark(point)) previous = &letter;
        if (letter.isolated == 0) {
            joined.push_back(point);
            continue;
        }
        // A mark between lam and alef keeps them apart, because it belongs to the lam alone.
        const bool last = i + 1 == points.size();
        const uint32_t ligature = point == LAM && !last ? lamAlef(points[i + 1]) : 0;
        if (ligature) {
            joined.push_back(ligature + (joinedBefore ? 1 : 0));
            i++;
            previous = &arabicLetter(points[i]);
            continue;
        }
        uint32_t form = joinedBefore && letter.type != JOINS_NOTHING ? 1 : 0; // isolated or final
        if (letter.type == JOINS_BOTH && letterAfter(points, i).type != JOINS_NOTHING) form += 2;
        joined.push_back(letter.isolated + form);
    }
    return joined;
}

// --- Arabic: direction

enum Direction : uint8_t {
    NEUTRAL,
    LEFT_TO_RIGHT,
    RIGHT_TO_LEFT
};

static Direction charDirection(uint32_t point) {
    if (point >= 0x0590 && point <= 0x08FF) return isMark(point) ? NEUTRAL : RIGHT_TO_LEFT;
    if (point >= 0xFB50 && point <= 0xFEFF) return RIGHT_TO_LEFT;
    const bool letter = (point >= 'A' && point <= 'Z') || (point >= 'a' && point <= 'z');
    const bool digit = point >= '0' && point <= '9';
    if (letter || digit || (point >= 0x00C0 && point <= 0x024F)) return LEFT_TO_RIGHT;
    return NEUTRAL;
}

// A neutral takes the side on which both neighbours agree, the only side that it has, or right to left.
static Direction resolveNeutral(Direction last, Direction next) {
    if (last == NEUTRAL && next == NEUTRAL) return RIGHT_TO_LEFT;
    if (last == NEUTRAL) return next;
    if (next == NEUTRAL || next == last) return last;
    return RIGHT_TO_LEFT;
}

static std::vector<Direction> resolveDirections(const CodePoints& points) {
    std::vector<Direction> directions(points.size());
    std::vector<Direction> nextStrong(points.size() + 1, NEUTRAL);
    for (size_t i = points.size(); i-- > 0;) {
        directions[i] = charDirection(points[i]);
        nextStrong[i] = directions[i] == NEUTRAL ? nextStrong[i + 1] : directions[i];
    }
    Direction last = NEUTRAL;
    for (size_t i = 0; i < points.size(); i++) {
        if (directions[i] == NEUTRAL)
            directions[i] = resolveNeutral(last, nextStrong[i]);
        else
            last = directions[i];
    }
    return directions;
}

static uint32_t mirrored(uint32_t point) {
    switch (point) {
    case '(':
        return ')';
    case ')':
        return '(';
    case '<':
        return '>';
    case '>':
        return '<';
    default:
        return point;
    }
}

// Runs of one direction from the last to the first, those from right to left backwards.
static CodePoints reorder(const CodePoints& points) {
    const std::vector<Direction> directions = resolveDirections(points);
    CodePoints ordered;
    ordered.reserve(points.size());
    for (size_t end = points.size(); end > 0;) {
        size_t start = end - 1;
        while (start > 0 && directions[start - 1] == directions[end - 1]) start--;
        if (directions[start] == LEFT_TO_RIGHT)
            ordered.insert(ordered.end(), points.begin() + static_cast<ptrdiff_t>(start),
                           points.begin() + static_cast<ptrdiff_t>(end));
        else
            for (size_t i = end; i-- > start;) ordered.push_back(mirrored(points[i]));
        end = start;
    }
    assert(ordered.size() == points.size());
    return ordered;
}

// --- Devanagari

// The vowel sign i is written after its consonant and stands before it. Of a cluster that is the last one,
// because the text library joins none and draws the stroke between them.
static CodePoints placeVowelSigns(const CodePoints& points) {
    constexpr uint32_t SIGN_I = 0x093F;
    constexpr uint32_t NUKTA = 0x093C;
    const auto isConsonant = [](uint32_t point) { return point >= 0x0915 && point <= 0x0939; };
    CodePoints placed;
    placed.reserve(points.size());
    for (const uint32_t point : points) {
        const size_t count = placed.size();
        size_t back = 0;
        if (point == SIGN_I) {
            if (count >= 2 && placed[count - 1] == NUKTA && isConsonant(placed[count - 2]))
                back = 2;
            else if (count >= 1 && isConsonant(placed[count - 1]))
                back = 1;
        }
        placed.insert(placed.end() - static_cast<ptrdiff_t>(back), point);
    }
    return placed;
}

std::string shapeText(const char* text, uint8_t shapeMode) {
    switch (shapeMode) {
    case SHAPE_ARABIC:
        return encode(reorder(joinLetters(decode(text))));
    case SHAPE_DEVANAGARI:
        return encode(placeVowelSigns(decode(text)));
    default:
        return text;
    }
}
