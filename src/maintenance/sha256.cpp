#include "maintenance/sha256.h"

#include "maintenance/files.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

constexpr size_t BLOCK_SIZE = 64;        // bytes that one round of the hash takes
constexpr size_t FILE_BLOCK = 64 * 1024; // bytes of one read
constexpr size_t LENGTH_OFFSET = 64 - 8; // of the message length in the last block

// The first 32 bits of the fractions of the cube roots of the first 64 primes.
static constexpr uint32_t ROUND_CONSTANTS[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

struct Sha256 {
    // The first 32 bits of the fractions of the square roots of the first eight primes.
    std::array<uint32_t, 8> words = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                     0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<uint8_t, BLOCK_SIZE> block = {};
    size_t blockUsed = 0;
    uint64_t length = 0; // bytes of the message so far
};

static uint32_t bigEndianWord(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | uint32_t{bytes[3]};
}

static void hashBlock(std::array<uint32_t, 8>& words, const uint8_t* block) {
    std::array<uint32_t, 64> w;
    for (size_t t = 0; t < 16; t++) w[t] = bigEndianWord(block + 4 * t);
    for (size_t t = 16; t < w.size(); t++) {
        const uint32_t s0 = std::rotr(w[t - 15], 7) ^ std::rotr(w[t - 15], 18) ^ (w[t - 15] >> 3);
        const uint32_t s1 = std::rotr(w[t - 2], 17) ^ std::rotr(w[t - 2], 19) ^ (w[t - 2] >> 10);
        w[t] = w[t - 16] + s0 + w[t - 7] + s1;
    }

    auto [a, b, c, d, e, f, g, h] = words;
    for (size_t t = 0; t < w.size(); t++) {
        const uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
        const uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + ROUND_CONSTANTS[t] + w[t];
        const uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
        const uint32_t t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + t1;
        d = c;
        c = b;
        b = a;
        a = t1 + t2;
    }
    const uint32_t added[8] = {a, b, c, d, e, f, g, h};
    for (size_t i = 0; i < words.size(); i++) words[i] += added[i];
}

static void addBytes(Sha256& hash, const void* data, size_t size) {
    assert(hash.blockUsed < BLOCK_SIZE);
    const uint8_t* bytes = static_cast<const uint8_t*>(data);
    hash.length += size;
    while (size > 0) {
        const size_t taken = std::min(size, BLOCK_SIZE - hash.blockUsed);
        std::memcpy(hash.block.data() + hash.blockUsed, bytes, taken);
        hash.blockUsed += taken;
        bytes += taken;
        size -= taken;
        if (hash.blockUsed < BLOCK_SIZE) return;
        hashBlock(hash.words, hash.block.data());
        hash.blockUsed = 0;
    }
}

// Ends the message: a one bit, zeros, and its length in bits.
static std::string digestOf(Sha256& hash) {
    const uint64_t bits = hash.length * 8;
    const uint8_t one = 0x80;
    const uint8_t zero = 0;
    addBytes(hash, &one, 1);
    while (hash.blockUsed != LENGTH_OFFSET) addBytes(hash, &zero, 1);
    for (int shift = 56; shift >= 0; shift -= 8) {
        const uint8_t byte = static_cast<uint8_t>(bits >> shift);
        addBytes(hash, &byte, 1);
    }
    assert(hash.blockUsed == 0); // all of it is hashed

    std::string digest;
    for (const uint32_t word : hash.words) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(word));
        digest += digits;
    }
    return digest;
}

bool sha256File(const std::string& path, std::string& out) {
    std::error_code error; // of the path, because opening a pipe would wait for its writer
    if (!std::filesystem::is_regular_file(nativePath(path), error)) return false;
    std::ifstream file(nativePath(path), std::ios::binary);
    if (!file) return false;

    Sha256 hash;
    std::vector<char> block(FILE_BLOCK);
    while (file) {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        addBytes(hash, block.data(), static_cast<size_t>(file.gcount()));
    }
    if (file.bad()) return false;
    out = digestOf(hash);
    return true;
}

std::string sha256Text(std::string_view text) {
    Sha256 hash;
    addBytes(hash, text.data(), text.size());
    return digestOf(hash);
}

static bool equalWithoutCase(unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); }

bool hashEquals(std::string_view a, std::string_view b) {
    return !a.empty() && std::equal(a.begin(), a.end(), b.begin(), b.end(), equalWithoutCase);
}
