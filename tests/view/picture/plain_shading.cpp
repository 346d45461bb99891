#include "view/picture/plain_shading.h"

#include "view/gl/shader_program.h"

static const char* const SCENE_VERTEX_TEXT = R"(#version 330 core
in vec3 aPos, aNrm, aCol, aData;
in vec2 aUV;
uniform mat4 uVP, uLightVP;
out vec3 vPos, vNrm, vCol, vData;
centroid out vec2 vUV;
out vec4 vLight;

void main() {
    gl_Position = uVP * vec4(aPos, 1.0);
    vPos = aPos;
    vNrm = aNrm;
    vCol = aCol;
    vData = aData;
    vUV = aUV;
    vLight = uLightVP * vec4(aPos, 1.0);
}
)";

static const char* const SCENE_FRAGMENT_TEXT = R"(#version 330 core
in vec3 vPos, vNrm, vCol, vData;
centroid in vec2 vUV;
in vec4 vLight;
uniform vec3 uSunDir, uSunCol, uSkyCol, uGroundCol, uFogCol, uCamPos;
uniform float uFogDen, uNight, uShadowTexel;
uniform int uUseShadow;
uniform sampler2DShadow uShadow;
out vec4 oCol;

float hash(vec2 p) {
    return fract(sin(dot(p, vec2(127.1, 311.7))) * 43758.5453);
}

bool within(float value, float low, float high) {
    return low <= value && value <= high;
}

// The share of the sun's light that arrives.
float shadow() {
    if (uUseShadow == 0) return 1.0;
    vec3 p = vLight.xyz / vLight.w * 0.5 + 0.5;
    if (p.z > 1.0 || !within(p.x, 0.0, 1.0) || !within(p.y, 0.0, 1.0)) return 1.0;
    float lit = 0.0;
    for (int y = -1; y <= 1; y++)
        for (int x = -1; x <= 1; x++)
            lit += texture(uShadow, vec3(p.xy + vec2(x, y) * uShadowTexel, p.z - 0.0015));
    return lit / 9.0;
}

// A material changes these.
vec3 base;
float mirrored = 0.0; // share of the sun thrown back
bool onWindow = false;
bool lit = false; // the window, at night

float sunInMirror(vec3 n, vec3 view, float sharpness) {
    return pow(max(dot(reflect(-view, n), uSunDir), 0.0), sharpness);
}

void terrain() {
    base *= 0.94 + 0.12 * hash(floor(vPos.xz * 2.0));
}

void wall(vec3 n) {
    float along = abs(n.x) > 0.5 ? vPos.z : vPos.x;
    onWindow = within(fract(along / 2.4), 0.32, 0.78) && within(fract(vPos.y / 2.8), 0.3, 0.78) && abs(n.y) <= 0.5;
    lit = hash(vec2(floor(along / 2.4), floor(vPos.y / 2.8))) >= 0.33;
    if (onWindow) base = mix(base, vec3(0.18, 0.24, 0.30), 0.75);
    base *= 0.96 + 0.08 * hash(floor(vPos.xz * 3.0) + floor(vPos.y));
}

void roof() {
    float rows = fract(vPos.y * 3.0 + vPos.x * 0.2 + vPos.z * 0.2);
    base *= rows >= 0.35 ? 1.05 : 0.85;
}

void road() {
    float off = abs(vUV.x - 0.5);
    base *= 0.88 + 0.2 * hash(floor(vPos.xz * 4.0));
    if (fract(vUV.y * 0.5) >= 0.5 && off < 0.08) base = vec3(0.92, 0.92, 0.86);
    base = mix(base, vec3(0.8, 0.8, 0.78), smoothstep(0.46, 0.5, off) * 0.5);
}

void glass(vec3 n, vec3 view) {
    float along = abs(n.x) > 0.5 ? vPos.z : vPos.x;
    bool inBand = fract(vPos.y / 3.2) >= 0.5;
    float slant = pow(1.0 - max(dot(n, view), 0.0), 2.0);
    base = mix(base * 0.55, uSkyCol * 1.25 + vec3(0.06, 0.07, 0.09), 0.30 + 0.5 * slant);
    base *= inBand ? 1.08 : 0.92;
    mirrored = sunInMirror(n, view, 60.0) * 0.8;
    onWindow = inBand && abs(n.y) <= 0.5;
    lit = hash(vec2(floor(along / 2.0), floor(vPos.y / 3.2))) >= 0.4;
}

void solarPanel(vec3 n, vec3 view) {
    bool onGrid = fract(vUV.x * 6.0) >= 0.93 || fract(vUV.y * 4.0) >= 0.93;
    base = vec3(0.10, 0.17, 0.34) * (0.85 + 0.3 * hash(floor(vPos.xz)));
    if (onGrid) base = mix(base, vec3(0.62, 0.66, 0.72), 0.7);
    mirrored = sunInMirror(n, view, 30.0) * 0.5;
}

void main() {
    vec3 n = normalize(vNrm);
    vec3 view = normalize(uCamPos - vPos);
    int material = int(vData.x + 0.5);
    float emissive = vData.y;

    base = vCol;
    if (material == 0) terrain();
    if (material == 1) wall(n);
    if (material == 2) roof();
    if (material == 3) road();
    if (material == 5) glass(n, view);
    if (material == 6) solarPanel(n, view);

    float share = shadow();
    vec3 around = mix(uGroundCol, uSkyCol, clamp(n.y * 0.5 + 0.5, 0.0, 1.0));
    vec3 col = base * (around + uSunCol * max(dot(n, uSunDir), 0.0) * share) + uSunCol * mirrored * share;

    if (onWindow && lit && material == 5) col += vec3(1.0, 0.82, 0.55) * emissive * uNight * 0.5;
    if (onWindow && lit && material != 5) col += vec3(1.0, 0.72, 0.38) * emissive * uNight * 0.95;
    if (onWindow && material != 5)
        col = mix(col, col * 0.45 + vec3(0.02, 0.03, 0.06), uNight * (1.0 - emissive) * 0.2);
    if (material >= 7) col += vec3(1.0, 0.95, 0.8) * emissive * (0.4 + 0.6 * uNight);

    float fog = 1.0 - exp(-pow(length(vPos - uCamPos) * uFogDen, 2.0));
    oCol = vec4(mix(col, uFogCol, clamp(fog, 0.0, 1.0)), 1.0);
}
)";

static const char* const WATER_VERTEX_TEXT = R"(#version 330 core
in vec3 aPos;
uniform mat4 uVP;
out vec3 vPos;

void main() {
    gl_Position = uVP * vec4(aPos, 1.0);
    vPos = aPos;
}
)";

static const char* const WATER_FRAGMENT_TEXT = R"(#version 330 core
in vec3 vPos;
uniform float uTime, uFogDen, uNight;
uniform vec3 uSunDir, uSunCol, uSkyCol, uFogCol, uCamPos;
out vec4 oCol;

float wave(float x, float z) {
    return 0.5 * sin(x * 0.35 + uTime * 1.2) + 0.5 * sin(z * 0.42 - uTime * 0.9) +
           0.35 * sin((x + z) * 0.21 + uTime * 0.7);
}

void main() {
    float x = vPos.x;
    float z = vPos.z;
    float height = wave(x, z);
    float slopeX = (wave(x + 0.02, z) - height) / 0.02;
    float slopeZ = (wave(x, z + 0.02) - height) / 0.02;
    vec3 n = normalize(vec3(-slopeX * 0.04, 1.0, -slopeZ * 0.04));
    vec3 view = normalize(uCamPos - vPos);

    vec3 col = mix(vec3(0.05, 0.22, 0.32), vec3(0.12, 0.45, 0.52), 0.4 + 0.06 * height);
    float slant = pow(1.0 - max(dot(n, view), 0.0), 3.0);
    col = mix(col, uSkyCol * 1.1, clamp(slant * 0.8 + 0.1, 0.0, 1.0));
    col += uSunCol * 1.6 * pow(max(dot(reflect(-view, n), uSunDir), 0.0), 120.0);
    float glint = smoothstep(0.92, 1.0, sin(x * 1.7 + uTime * 2.0) * sin(z * 1.3 - uTime * 1.6));
    col += uSunCol * 0.08 * glint * (1.0 - uNight);

    float fog = 1.0 - exp(-pow(length(vPos - uCamPos) * uFogDen, 2.0));
    oCol = vec4(mix(col, uFogCol, clamp(fog, 0.0, 1.0)), 0.93);
}
)";

static const char* const SKY_VERTEX_TEXT = R"(#version 330 core
out vec2 vNdc;

void main() {
    vec2 corners[3] = vec2[3](vec2(-1.0, -1.0), vec2(3.0, -1.0), vec2(-1.0, 3.0));
    vNdc = corners[gl_VertexID];
    gl_Position = vec4(vNdc, 0.9999, 1.0);
}
)";

static const char* const SKY_FRAGMENT_TEXT = R"(#version 330 core
in vec2 vNdc;
uniform vec3 uZenith, uHorizon, uSunDir, uSunCol;
uniform float uSunGlow;
uniform mat4 uInvVP;
out vec4 oCol;

void main() {
    vec4 far = uInvVP * vec4(vNdc, 1.0, 1.0);
    vec3 direction = normalize(far.xyz / far.w);
    vec3 sky = mix(uHorizon, uZenith, pow(clamp(direction.y, 0.0, 1.0), 0.55));
    float sun = max(dot(direction, uSunDir), 0.0);
    float halo = 0.35 * pow(sun, 8.0);
    float disc = 1.5 * pow(sun, 400.0);
    oCol = vec4(sky + uSunCol * (halo + disc) * uSunGlow, 1.0);
}
)";

bool usePlainShading(Renderer& renderer, std::string* log) {
    return linkProgram(renderer.worldProgram, SCENE_VERTEX_TEXT, SCENE_FRAGMENT_TEXT, log) &&
           linkProgram(renderer.waterProgram, WATER_VERTEX_TEXT, WATER_FRAGMENT_TEXT, log) &&
           linkProgram(renderer.skyProgram, SKY_VERTEX_TEXT, SKY_FRAGMENT_TEXT, log);
}
