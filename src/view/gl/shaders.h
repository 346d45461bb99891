// The shader texts: fixed, without includes or definitions, so that a driver's message points at their lines.
#pragma once

extern const char* const WORLD_VERTEX_TEXT;
extern const char* const WORLD_FRAGMENT_TEXT;
extern const char* const SHADOW_VERTEX_TEXT;
extern const char* const SHADOW_FRAGMENT_TEXT;
extern const char* const WATER_VERTEX_TEXT;
extern const char* const WATER_FRAGMENT_TEXT;
extern const char* const SKY_VERTEX_TEXT;
extern const char* const SKY_FRAGMENT_TEXT;
extern const char* const UI_VERTEX_TEXT;
extern const char* const UI_FRAGMENT_TEXT;
