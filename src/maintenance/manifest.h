// The manifest that an update server publishes: a small text that says which build lies there.
#pragma once

#include <string>
#include <string_view>

struct UpdateManifest {
    std::string version; // as the player reads it
    std::string date;    // year-month-day, may be empty
    std::string sha256;  // of the setup program, 64 hexadecimal digits in either case
    std::string file;    // the setup program's name beside the manifest
};

// The quoted text behind the first colon behind the first "key" in double quotes. False without one; `out`
// then stays as it was. This is all that is read of the text's form: it looks like a flat JSON object, and
// nothing checks that it is one.
bool manifestField(std::string_view text, std::string_view key, std::string& out);

// False if the hash is none or the file's name could lead out of its folder; `out` then stays as it was.
bool parseManifest(std::string_view text, UpdateManifest& out);

// The text that parseManifest reads as `manifest`. False if there is none: a value holds a double quote, or
// is refused by the reader, or would be taken for a key.
bool formatManifest(const UpdateManifest& manifest, std::string& out);
