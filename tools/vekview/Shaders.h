#pragma once

#include "Gl.h"

namespace vekview {

// Vertex attribute locations shared by every program and the vertex arrays that feed them.
constexpr GLuint attribPosition = 0;
constexpr GLuint attribNormal = 1;
constexpr GLuint attribColor = 2;
constexpr GLuint attribTexCoord = 3;

/// The viewer's three programs with the uniforms it sets. Needs a current context.
struct Shaders {
    Shaders();

    /// Lit, coloured, textured or highlighted triangles.
    gl::Program surface;
    struct {
        GLint model, view, projection, normalMatrix, plane, vertexBase;
        GLint diffuse, specular, shininess, useVertexColor, useTexture, texture, highlight;
    } surfaceAt{};

    /// Flat colour: edges, caps, markers.
    gl::Program flat;
    struct {
        GLint model, view, projection, plane, color, pointSize;
    } flatAt{};

    /// What lies under each pixel: an object key plus one and the vertex that ends the
    /// primitive, into the face target or, for lines, the edge target.
    gl::Program ids;
    struct {
        GLint model, view, projection, normalMatrix, plane, vertexBase, object, edge;
    } idsAt{};
};

} // namespace vekview
