// Small vectors and 4x4 matrices for the picture. World space has y up.
#pragma once

#include <array>
#include <cmath>

struct Vec3 {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
};

inline bool operator==(const Vec3& a, const Vec3& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator*(const Vec3& a, float k) { return {a.x * k, a.y * k, a.z * k}; }
inline float dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(const Vec3& a) { return std::sqrt(dot(a, a)); }
// The vector must not be zero.
inline Vec3 normalised(const Vec3& a) { return a * (1.0f / length(a)); }
inline Vec3 mix(const Vec3& a, const Vec3& b, float t) { return a + (b - a) * t; }

// Column-major, as OpenGL reads it.
using Mat4 = std::array<float, 16>;

constexpr Mat4 IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Mat4 multiply(const Mat4& a, const Mat4& b);
// Right-handed; `eye` and `target` differ, and the line between them is not parallel to `up`.
Mat4 lookAt(const Vec3& eye, const Vec3& target, const Vec3& up);
Mat4 orthographic(float halfWidth, float halfHeight, float nearPlane, float farPlane);
// `focal` is the cotangent of half the vertical field of view; the depth range is OpenGL's.
Mat4 perspective(float focal, float aspect, float nearPlane, float farPlane);
// General inverse; the identity for a matrix that has none.
Mat4 inverse(const Mat4& m);
// (p, 1) through the matrix, divided by w.
Vec3 transformPoint(const Mat4& m, const Vec3& p);
