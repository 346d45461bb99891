#include "view/gl/shaders.h"

const char* const WORLD_VERTEX_TEXT = R"(#version 330 core
in vec3 aPos;
in vec3 aNrm;
in vec3 aCol;
in vec3 aData;
in vec2 aUV;
uniform mat4 uVP;
uniform mat4 uLightVP;
out vec3 vPos;
out vec3 vNrm;
out vec3 vCol;
out vec3 vData;
centroid out vec2 vUV; // never a place past the rim of the surface: there a road has dashes
out vec4 vLight;

void main() {
    vPos = aPos;
    vNrm = aNrm;
    vCol = aCol;
    vData = aData;
    vUV = aUV;
    vLight = uLightVP * vec4(aPos, 1.0);
    gl_Position = uVP * vec4(aPos, 1.0);
}
)";

// Makes windows, mottles and road marks from the place in the world, so that a building stays a few plain
// boxes. Hashes and the mirror image stand before the branches, because a software rasteriser walks through
// every branch for every pixel and would reckon those of each material. Squares and cubes, of the water too,
// are multiplied out, since pow is undefined a little below 0.
const char* const WORLD_FRAGMENT_TEXT = R"(#version 330 core
in vec3 vPos;
in vec3 vNrm;
in vec3 vCol;
in vec3 vData; // material, emissive, unused
centroid in vec2 vUV;
in vec4 vLight;
uniform vec3 uSunDir;
uniform vec3 uSunCol;
uniform vec3 uSkyCol;
uniform vec3 uGroundCol;
uniform vec3 uFogCol;
uniform float uFogDen;
uniform float uNight;
uniform vec3 uCamPos;
uniform int uUseShadow;
uniform float uShadowTexel;
uniform sampler2DShadow uShadow;
out vec4 oCol;

float hash(vec2 p) {
    return fract(sin(dot(p, vec2(127.1, 311.7))) * 43758.5453);
}

float shadowTerm() {
    if (uUseShadow == 0) return 1.0;
    vec3 p = vLight.xyz / vLight.w * 0.5 + 0.5;
    if (p.z > 1.0 || p.x < 0.0 || p.x > 1.0 || p.y < 0.0 || p.y > 1.0) return 1.0;
    // The mean of nine filtered samples, a texel apart, from four: where the nine together weigh two neighbouring
    // texels by 1 - f and 1, or by 1 and f, one filtered sample between the two gives both.
    vec2 place = p.xy / uShadowTexel - 0.5;
    vec2 f = fract(place);
    vec2 low = (floor(place) - 0.5 + 1.0 / (2.0 - f)) * uShadowTexel;
    vec2 high = (floor(place) + 1.5 + f / (1.0 + f)) * uShadowTexel;
    float z = p.z - 0.0015;
    float lower = (2.0 - f.x) * texture(uShadow, vec3(low, z)) +
                  (1.0 + f.x) * texture(uShadow, vec3(high.x, low.y, z));
    float upper = (2.0 - f.x) * texture(uShadow, vec3(low.x, high.y, z)) +
                  (1.0 + f.x) * texture(uShadow, vec3(high, z));
    return ((2.0 - f.y) * lower + (1.0 + f.y) * upper) / 9.0;
}

void main() {
    vec3 n = normalize(vNrm);
    vec3 base = vCol;
    float mat = vData.x;
    float emis = vData.y;
    float windowMask = 0.0;
    float litMask = 0.0;
    float spec = 0.0;
    vec3 V = normalize(uCamPos - vPos);
    float slant = 1.0 - max(dot(n, V), 0.0);
    float fres = slant * slant;

    // What several materials need is reckoned once, for a processor that draws walks through every branch.
    bool wall = mat >= 0.5 && mat < 1.5;
    bool road = mat >= 2.5 && mat < 3.5;
    bool glass = mat >= 4.5 && mat < 5.5;
    bool solar = mat >= 5.5 && mat < 6.5;
    float fineness = wall ? 3.0 : road ? 4.0 : solar ? 1.0 : 2.0; // squares to a unit
    float grain = hash(floor(vPos.xz * fineness) + (wall ? floor(vPos.y) : 0.0));
    float along = abs(n.x) > 0.5 ? vPos.z : vPos.x; // the horizontal way along a wall
    float upright = step(0.5, 1.0 - abs(n.y));
    vec2 bay = vec2(along, vPos.y) / (glass ? vec2(2.0, 3.2) : vec2(2.4, 2.8));
    float chance = hash(floor(bay));
    float mirror = pow(max(dot(reflect(-V, n), uSunDir), 0.0), glass ? 60.0 : 30.0);

    if (mat < 0.5) { // terrain: a mottle
        base *= 0.94 + 0.12 * grain;
    } else if (wall) { // a window to each bay
        vec2 part = fract(bay);
        windowMask = step(0.32, part.x) * step(part.x, 0.78) * step(0.3, part.y) * step(part.y, 0.78) * upright;
        litMask = step(0.33, chance);
        base = mix(base, vec3(0.18, 0.24, 0.30), windowMask * 0.75);
        base *= 0.96 + 0.08 * grain;
    } else if (mat < 2.5) { // roof: shingle rows on a slope, gravel on the flat
        float rows = fract(vPos.y * 3.0 + vPos.x * 0.2 + vPos.z * 0.2);
        base *= 0.85 + 0.2 * step(0.35, rows);
    } else if (road) { // pale edge lines; v must pass 1 before a centre dash shows
        float off = abs(vUV.x - 0.5);
        float edge = smoothstep(0.46, 0.5, off);
        float dash = step(0.5, fract(vUV.y * 0.5)) * (1.0 - step(0.08, off));
        vec3 asphalt = base * (0.88 + 0.2 * grain);
        base = mix(asphalt, vec3(0.92, 0.92, 0.86), dash);
        base = mix(base, vec3(0.8, 0.8, 0.78), edge * 0.5);
    } else if (mat < 4.5) {
        // water edge: as it is
    } else if (glass) { // bands that mirror the sky, more so at a flat angle
        float band = step(0.5, fract(bay.y));
        base = mix(base * 0.55, uSkyCol * 1.25 + vec3(0.06, 0.07, 0.09), 0.30 + 0.5 * fres);
        base *= 0.92 + 0.16 * band;
        spec = mirror * 0.8;
        windowMask = band * upright;
        litMask = step(0.4, chance);
    } else if (solar) { // dark cells in a pale grid
        float gx = step(0.93, fract(vUV.x * 6.0));
        float gy = step(0.93, fract(vUV.y * 4.0));
        float grid = clamp(gx + gy, 0.0, 1.0);
        vec3 cell = vec3(0.10, 0.17, 0.34) * (0.85 + 0.3 * grain);
        base = mix(cell, vec3(0.62, 0.66, 0.72), grid * 0.7);
        spec = mirror * 0.5;
    }

    float ndl = max(dot(n, uSunDir), 0.0);
    float sh = shadowTerm();
    float hemi = clamp(n.y * 0.5 + 0.5, 0.0, 1.0);
    vec3 amb = mix(uGroundCol, uSkyCol, hemi);
    vec3 col = base * (amb + uSunCol * ndl * sh) + uSunCol * spec * sh;

    float lamps = windowMask * litMask * emis * uNight;
    if (glass) {
        col += vec3(1.0, 0.82, 0.55) * lamps * 0.5;
    } else {
        col += vec3(1.0, 0.72, 0.38) * lamps * 0.95;
        // The windows of a dark house turn a little blue.
        col = mix(col, col * 0.45 + vec3(0.02, 0.03, 0.06), uNight * (1.0 - emis) * 0.2 * windowMask);
    }
    if (mat > 6.5) col += vec3(1.0, 0.95, 0.8) * emis * (0.4 + 0.6 * uNight);

    float haze = length(vPos - uCamPos) * uFogDen;
    float fog = 1.0 - exp(-haze * haze);
    oCol = vec4(mix(col, uFogCol, clamp(fog, 0.0, 1.0)), 1.0);
}
)";

const char* const SHADOW_VERTEX_TEXT = R"(#version 330 core
in vec3 aPos;
uniform mat4 uLightVP;

void main() {
    gl_Position = uLightVP * vec4(aPos, 1.0);
}
)";

const char* const SHADOW_FRAGMENT_TEXT = R"(#version 330 core

void main() {
}
)";

const char* const WATER_VERTEX_TEXT = R"(#version 330 core
in vec3 aPos;
in vec3 aNrm;
in vec3 aCol;
in vec3 aData;
in vec2 aUV;
uniform mat4 uVP;
out vec3 vPos;
out vec2 vUV;

void main() {
    vPos = aPos;
    vUV = aPos.xz;
    gl_Position = uVP * vec4(aPos, 1.0);
}
)";

const char* const WATER_FRAGMENT_TEXT = R"(#version 330 core
in vec3 vPos;
in vec2 vUV;
uniform float uTime;
uniform vec3 uSunDir;
uniform vec3 uSunCol;
uniform vec3 uSkyCol;
uniform vec3 uFogCol;
uniform float uFogDen;
uniform vec3 uCamPos;
uniform float uNight;
out vec4 oCol;

float wave(vec2 p, float t) {
    return sin(p.x * 0.35 + t * 1.2) * 0.5 + sin(p.y * 0.42 - t * 0.9) * 0.5 +
           sin((p.x + p.y) * 0.21 + t * 0.7) * 0.35;
}

void main() {
    vec2 p = vUV;
    float t = uTime;
    float e = 0.02;
    float h0 = wave(p, t);
    float slopeX = (wave(p + vec2(e, 0.0), t) - h0) / e;
    float slopeZ = (wave(p + vec2(0.0, e), t) - h0) / e;
    vec3 n = normalize(vec3(-slopeX * 0.04, 1.0, -slopeZ * 0.04));
    vec3 V = normalize(uCamPos - vPos);
    float slant = 1.0 - max(dot(n, V), 0.0);
    float fres = slant * slant * slant;

    vec3 col = mix(vec3(0.05, 0.22, 0.32), vec3(0.12, 0.45, 0.52), 0.4 + 0.2 * h0 * 0.3);
    float spec = pow(max(dot(reflect(-V, n), uSunDir), 0.0), 120.0);
    col = mix(col, uSkyCol * 1.1, clamp(fres * 0.8 + 0.1, 0.0, 1.0));
    col += uSunCol * spec * 1.6;
    float glint = smoothstep(0.92, 1.0, sin(p.x * 1.7 + t * 2.0) * sin(p.y * 1.3 - t * 1.6));
    col += uSunCol * glint * 0.08 * (1.0 - uNight);

    float haze = length(vPos - uCamPos) * uFogDen;
    float fog = 1.0 - exp(-haze * haze);
    oCol = vec4(mix(col, uFogCol, clamp(fog, 0.0, 1.0)), 0.93);
}
)";

const char* const SKY_VERTEX_TEXT = R"(#version 330 core
out vec2 vNdc;

// One triangle, larger than the screen.
void main() {
    vec2 p = vec2((gl_VertexID << 1) & 2, gl_VertexID & 2);
    vNdc = p * 2.0 - 1.0;
    gl_Position = vec4(vNdc, 0.9999, 1.0);
}
)";

const char* const SKY_FRAGMENT_TEXT = R"(#version 330 core
in vec2 vNdc;
uniform vec3 uZenith;
uniform vec3 uHorizon;
uniform vec3 uSunDir;
uniform vec3 uSunCol;
uniform float uSunGlow;
uniform mat4 uInvVP;
out vec4 oCol;

void main() {
    // A point of the far plane, taken as a direction: the eye's own place is small beside it.
    vec4 w = uInvVP * vec4(vNdc, 1.0, 1.0);
    vec3 dir = normalize(w.xyz / w.w);
    vec3 col = mix(uHorizon, uZenith, pow(clamp(dir.y, 0.0, 1.0), 0.55));
    float sun = max(dot(dir, uSunDir), 0.0);
    col += uSunCol * (pow(sun, 8.0) * 0.35 + pow(sun, 400.0) * 1.5) * uSunGlow; // halo and disc
    oCol = vec4(col, 1.0);
}
)";

const char* const UI_VERTEX_TEXT = R"(#version 330 core
layout(location = 0) in vec2 aPos; // pixels, y down
layout(location = 1) in vec2 aUV;
layout(location = 2) in vec4 aCol;
uniform vec2 uScreen; // pixels
out vec2 vUV;
out vec4 vCol;

void main() {
    vUV = aUV;
    vCol = aCol;
    gl_Position = vec4(aPos.x / uScreen.x * 2.0 - 1.0, 1.0 - aPos.y / uScreen.y * 2.0, 0.0, 1.0);
}
)";

const char* const UI_FRAGMENT_TEXT = R"(#version 330 core
in vec2 vUV;
in vec4 vCol;
uniform sampler2D uTex;
uniform int uUseTex;
out vec4 oCol;

void main() {
    oCol = vCol;
    if (uUseTex == 1) oCol *= texture(uTex, vUV);
}
)";
