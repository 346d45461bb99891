#include "view/gl/vec.h"

#include <gtest/gtest.h>

#include <limits>

static void expectNear(const Vec3& a, const Vec3& b, float tolerance) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

static const Vec3 EYE = {100.0f, 80.0f, 300.0f};
static const Vec3 TARGET = {130.0f, 10.0f, 250.0f};
static const Vec3 UP = {0.0f, 1.0f, 0.0f};

TEST(Vec, CrossProductIsRightHanded) {
    EXPECT_EQ(cross(Vec3{1, 0, 0}, Vec3{0, 1, 0}), (Vec3{0, 0, 1}));
    EXPECT_EQ(cross(Vec3{0, 1, 0}, Vec3{0, 0, 1}), (Vec3{1, 0, 0}));
}

TEST(Vec, ProductAppliesTheRightMatrixFirst) {
    Mat4 move = IDENTITY;
    move[12] = 5.0f;
    Mat4 grow = IDENTITY;
    grow[0] = 2.0f;
    expectNear(transformPoint(multiply(grow, move), {1, 2, 3}), {12, 2, 3}, 0.0f);
    expectNear(transformPoint(multiply(move, grow), {1, 2, 3}), {7, 2, 3}, 0.0f);
}

TEST(Vec, LookAtPutsTheEyeAtTheOriginAndTheTargetAheadOnMinusZ) {
    const Mat4 view = lookAt(EYE, TARGET, UP);
    expectNear(transformPoint(view, EYE), {0, 0, 0}, 1e-4f);
    expectNear(transformPoint(view, TARGET), {0, 0, -length(TARGET - EYE)}, 1e-4f);
    EXPECT_GT(transformPoint(view, TARGET + UP).y, 0.9f * 0.6f); // up stays up
    EXPECT_GT(transformPoint(view, TARGET + cross(TARGET - EYE, UP)).x, 0.0f);
}

TEST(Vec, OrthographicMapsItsBoxToTheUnitCube) {
    const Mat4 m = orthographic(260.0f, 130.0f, 1.0f, 1400.0f);
    expectNear(transformPoint(m, {260, -130, -1}), {1, -1, -1}, 1e-5f);
    expectNear(transformPoint(m, {-260, 130, -1400}), {-1, 1, 1}, 1e-5f);
}

TEST(Vec, PerspectiveMapsItsFrustumToTheUnitCube) {
    const float focal = 2.3652222f;
    const Mat4 m = perspective(focal, 1.5f, 2.0f, 4000.0f);
    expectNear(transformPoint(m, {1.5f * 2.0f / focal, -2.0f / focal, -2.0f}), {1, -1, -1}, 1e-5f);
    expectNear(transformPoint(m, {0, 0, -4000}), {0, 0, 1}, 1e-5f);
}

TEST(Vec, InverseOfAWholeViewTakesScreenPointsBackToTheWorld) {
    const Mat4 viewProj =
        multiply(perspective(2.3652222f, 16.0f / 9.0f, 2.0f, 4000.0f), lookAt(EYE, TARGET, UP));
    const Mat4 back = inverse(viewProj);
    for (const Vec3& p : {TARGET, Vec3{140, 20, 200}, Vec3{700, 5, -40}})
        expectNear(transformPoint(back, transformPoint(viewProj, p)), p, 2e-3f * length(p - EYE));
    const Mat4 product = multiply(viewProj, back);
    for (int i = 0; i < 16; i++) EXPECT_NEAR(product[i], IDENTITY[i], 1e-3f) << i;
}

TEST(Vec, InverseIsGeneral) {
    const Mat4 m = {2, 0, 1, 3, 1, 4, 0, 0.5f, 0, 1, 5, 0, 1, 1, 0, 2};
    const Mat4 left = multiply(inverse(m), m);
    const Mat4 right = multiply(m, inverse(m));
    for (int i = 0; i < 16; i++) {
        EXPECT_NEAR(left[i], IDENTITY[i], 1e-5f) << i;
        EXPECT_NEAR(right[i], IDENTITY[i], 1e-5f) << i;
    }
}

TEST(Vec, AMatrixWithoutInverseGivesTheIdentity) {
    EXPECT_EQ(inverse(Mat4{}), IDENTITY);
    EXPECT_EQ(inverse(Mat4{1, 2, 3, 4, 2, 4, 6, 8, 0, 0, 1, 0, 0, 0, 0, 1}), IDENTITY);
    Mat4 wild = IDENTITY;
    wild[5] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(inverse(wild), IDENTITY);
}

TEST(Vec, TransformDividesByW) {
    Mat4 m = IDENTITY;
    m[15] = 4.0f;
    expectNear(transformPoint(m, {4, 8, 12}), {1, 2, 3}, 0.0f);
}
