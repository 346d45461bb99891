// The MP3 decoder itself, compiled here and without our warnings.
#define MINIMP3_IMPLEMENTATION
#include <minimp3.h>
