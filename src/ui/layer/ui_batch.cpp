#include "ui/layer/ui_batch.h"

#include "view/gl/gl.h"
#include "view/gl/shader_program.h"
#include "view/gl/shaders.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

static const void* byteOffset(size_t bytes) {
    return reinterpret_cast<const void*>(bytes); // NOLINT(performance-no-int-to-ptr)
}

bool uiInit(Ui& ui, FontSystem& fonts, std::string* errorText) {
    assert(ui.program == 0 && ui.vao == 0 && ui.vbo == 0);
    ui.fonts = &fonts;
    if (!linkProgram(ui.program, UI_VERTEX_TEXT, UI_FRAGMENT_TEXT, errorText)) return false;
    ui.screenUniform = gl.GetUniformLocation(ui.program, "uScreen");
    ui.textureUniform = gl.GetUniformLocation(ui.program, "uTex");
    ui.useTextureUniform = gl.GetUniformLocation(ui.program, "uUseTex");

    gl.GenVertexArrays(1, &ui.vao);
    gl.GenBuffers(1, &ui.vbo);
    gl.BindVertexArray(ui.vao);
    gl.BindBuffer(GL_ARRAY_BUFFER, ui.vbo);
    const auto attribute = [](GLuint index, GLint floats, size_t offset) {
        gl.EnableVertexAttribArray(index);
        gl.VertexAttribPointer(index, floats, GL_FLOAT, GL_FALSE, sizeof(UiVertex), byteOffset(offset));
    };
    attribute(0, 2, offsetof(UiVertex, x));
    attribute(1, 2, offsetof(UiVertex, u));
    attribute(2, 4, offsetof(UiVertex, r));
    gl.BindVertexArray(0);
    return true;
}

void uiDestroy(Ui& ui) {
    deleteProgram(ui.program);
    if (ui.vbo) gl.DeleteBuffers(1, &ui.vbo);
    if (ui.vao) gl.DeleteVertexArrays(1, &ui.vao);
    ui.vbo = 0;
    ui.vao = 0;
}

void uiBeginFrame(Ui& ui, int width, int height, const Input& input) {
    ui.screenW = std::max(width, 1);
    ui.screenH = std::max(height, 1);
    ui.mouseX = input.mouseX;
    ui.mouseY = input.mouseY;
    ui.mouseDown = input.leftHeld;
    ui.mousePressed = input.leftPressed;
    ui.mouseReleased = input.leftReleased;
    ui.panels.swap(ui.panelsBefore);
    ui.panels.clear();
    ui.vertices.clear();
    ui.commands.clear();
}

void uiFlush(Ui& ui) {
    if (ui.vertices.empty()) return;
    assert(ui.commands.back().first + ui.commands.back().count == ui.vertices.size());

    gl.Disable(GL_DEPTH_TEST);
    gl.Disable(GL_CULL_FACE);
    gl.Disable(GL_SCISSOR_TEST);
    gl.Enable(GL_BLEND);
    gl.BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);

    gl.BindVertexArray(ui.vao);
    gl.BindBuffer(GL_ARRAY_BUFFER, ui.vbo);
    gl.BufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(ui.vertices.size() * sizeof(UiVertex)),
                  ui.vertices.data(), GL_STREAM_DRAW);

    gl.UseProgram(ui.program);
    gl.Uniform2f(ui.screenUniform, static_cast<float>(ui.screenW), static_cast<float>(ui.screenH));
    gl.Uniform1i(ui.textureUniform, 0);
    gl.ActiveTexture(GL_TEXTURE0);
    for (const UiDrawCommand& command : ui.commands) {
        gl.Uniform1i(ui.useTextureUniform, command.texture != 0);
        gl.BindTexture(GL_TEXTURE_2D, command.texture);
        gl.DrawArrays(GL_TRIANGLES, static_cast<GLint>(command.first), static_cast<GLsizei>(command.count));
    }

    gl.BindTexture(GL_TEXTURE_2D, 0);
    gl.BindVertexArray(0);
    gl.Disable(GL_BLEND);
}

UiVertex* uiBatch(Ui& ui, uint32_t texture, uint32_t vertexCount) {
    assert(vertexCount % 3 == 0); // whole triangles
    const size_t first = ui.vertices.size();
    if (!ui.commands.empty() && ui.commands.back().texture == texture)
        ui.commands.back().count += vertexCount;
    else
        ui.commands.push_back({texture, static_cast<uint32_t>(first), vertexCount});
    ui.vertices.resize(first + vertexCount);
    return ui.vertices.data() + first;
}

float uiScale(const Ui& ui) { return uiScale(ui.screenH); }

float uiScale(int screenH) { return std::clamp(static_cast<float>(screenH) / 720.0f, 0.75f, 2.0f); }
