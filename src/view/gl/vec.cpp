#include "view/gl/vec.h"

#include <cassert>

Mat4 multiply(const Mat4& a, const Mat4& b) {
    Mat4 product;
    for (int column = 0; column < 4; column++)
        for (int row = 0; row < 4; row++) {
            float sum = 0.0f;
            for (int k = 0; k < 4; k++) sum += a[k * 4 + row] * b[column * 4 + k];
            product[column * 4 + row] = sum;
        }
    return product;
}

Mat4 lookAt(const Vec3& eye, const Vec3& target, const Vec3& up) {
    const Vec3 forward = normalised(target - eye);
    const Vec3 right = normalised(cross(forward, up));
    const Vec3 upward = cross(right, forward);
    return {
        right.x, upward.x, -forward.x, 0.0f, right.y,          upward.y,          -forward.y,        0.0f,
        right.z, upward.z, -forward.z, 0.0f, -dot(right, eye), -dot(upward, eye), dot(forward, eye), 1.0f};
}

Mat4 orthographic(float halfWidth, float halfHeight, float nearPlane, float farPlane) {
    assert(halfWidth > 0.0f && halfHeight > 0.0f && nearPlane < farPlane);
    Mat4 m = IDENTITY;
    m[0] = 1.0f / halfWidth;
    m[5] = 1.0f / halfHeight;
    m[10] = -2.0f / (farPlane - nearPlane);
    m[14] = -(farPlane + nearPlane) / (farPlane - nearPlane);
    return m;
}

Mat4 perspective(float focal, float aspect, float nearPlane, float farPlane) {
    assert(aspect > 0.0f && nearPlane > 0.0f && nearPlane < farPlane);
    Mat4 m = {};
    m[0] = focal / aspect;
    m[5] = focal;
    m[10] = -(farPlane + nearPlane) / (farPlane - nearPlane);
    m[11] = -1.0f;
    m[14] = -2.0f * farPlane * nearPlane / (farPlane - nearPlane);
    return m;
}

// By the 2x2 minors of the upper and the lower two rows (Laplace), in double: a view's depth range of 2000 to
// 1 would cost single precision half of its digits.
Mat4 inverse(const Mat4& m) {
    std::array<double, 16> a;
    for (int i = 0; i < 16; i++) a[i] = static_cast<double>(m[i]);

    const double s0 = a[0] * a[5] - a[4] * a[1];
    const double s1 = a[0] * a[9] - a[8] * a[1];
    const double s2 = a[0] * a[13] - a[12] * a[1];
    const double s3 = a[4] * a[9] - a[8] * a[5];
    const double s4 = a[4] * a[13] - a[12] * a[5];
    const double s5 = a[8] * a[13] - a[12] * a[9];
    const double c0 = a[2] * a[7] - a[6] * a[3];
    const double c1 = a[2] * a[11] - a[10] * a[3];
    const double c2 = a[2] * a[15] - a[14] * a[3];
    const double c3 = a[6] * a[11] - a[10] * a[7];
    const double c4 = a[6] * a[15] - a[14] * a[7];
    const double c5 = a[10] * a[15] - a[14] * a[11];

    const double scale = 1.0 / (s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0);
    if (!std::isfinite(scale)) return IDENTITY;

    const std::array<double, 16> adjugate = {
        a[5] * c5 - a[9] * c4 + a[13] * c3,   -a[1] * c5 + a[9] * c2 - a[13] * c1,
        a[1] * c4 - a[5] * c2 + a[13] * c0,   -a[1] * c3 + a[5] * c1 - a[9] * c0,
        -a[4] * c5 + a[8] * c4 - a[12] * c3,  a[0] * c5 - a[8] * c2 + a[12] * c1,
        -a[0] * c4 + a[4] * c2 - a[12] * c0,  a[0] * c3 - a[4] * c1 + a[8] * c0,
        a[7] * s5 - a[11] * s4 + a[15] * s3,  -a[3] * s5 + a[11] * s2 - a[15] * s1,
        a[3] * s4 - a[7] * s2 + a[15] * s0,   -a[3] * s3 + a[7] * s1 - a[11] * s0,
        -a[6] * s5 + a[10] * s4 - a[14] * s3, a[2] * s5 - a[10] * s2 + a[14] * s1,
        -a[2] * s4 + a[6] * s2 - a[14] * s0,  a[2] * s3 - a[6] * s1 + a[10] * s0};
    Mat4 result;
    for (int i = 0; i < 16; i++) result[i] = static_cast<float>(adjugate[i] * scale);
    return result;
}

Vec3 transformPoint(const Mat4& m, const Vec3& p) {
    const float w = m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15];
    return {(m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12]) / w,
            (m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13]) / w,
            (m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]) / w};
}
