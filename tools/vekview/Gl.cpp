#include "Gl.h"

#include <algorithm>
#include <vector>

namespace vekview::gl {

void deleteBuffer(GLuint id) {
    glDeleteBuffers(1, &id);
}
void deleteVertexArray(GLuint id) {
    glDeleteVertexArrays(1, &id);
}
void deleteTexture(GLuint id) {
    glDeleteTextures(1, &id);
}
void deleteFramebuffer(GLuint id) {
    glDeleteFramebuffers(1, &id);
}
void deleteRenderbuffer(GLuint id) {
    glDeleteRenderbuffers(1, &id);
}
void deleteProgram(GLuint id) {
    glDeleteProgram(id);
}

namespace {
// Every glGen* takes a count and where to put the names.
GLuint generated(void (*generate)(GLsizei, GLuint*)) {
    GLuint id = 0;
    generate(1, &id);
    return id;
}
} // namespace

Buffer makeBuffer() {
    return Buffer(generated(glGenBuffers));
}
VertexArray makeVertexArray() {
    return VertexArray(generated(glGenVertexArrays));
}
Texture makeTexture() {
    return Texture(generated(glGenTextures));
}
Framebuffer makeFramebuffer() {
    return Framebuffer(generated(glGenFramebuffers));
}
Renderbuffer makeRenderbuffer() {
    return Renderbuffer(generated(glGenRenderbuffers));
}

namespace {
std::string shaderLog(GLuint shader) {
    GLint size = 0;
    glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &size);
    std::vector<char> text(static_cast<std::size_t>(std::max(size, 1)));
    glGetShaderInfoLog(shader, static_cast<GLsizei>(text.size()), nullptr, text.data());
    return text.data();
}

GLuint compile(const char* name, GLenum kind, const char* source) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (ok != GL_TRUE) {
        const std::string log = shaderLog(shader);
        glDeleteShader(shader);
        throw Error(std::string("shader ") + name + " does not compile: " + log);
    }
    return shader;
}
} // namespace

Program makeProgram(const char* name, const char* vertex, const char* fragment) {
    const GLuint vs = compile(name, GL_VERTEX_SHADER, vertex);
    GLuint fs = 0;
    try {
        fs = compile(name, GL_FRAGMENT_SHADER, fragment);
    } catch (...) {
        glDeleteShader(vs);
        throw;
    }
    Program program(glCreateProgram());
    glAttachShader(program.get(), vs);
    glAttachShader(program.get(), fs);
    glLinkProgram(program.get());
    // Flagged for deletion; they go with the program.
    glDeleteShader(vs);
    glDeleteShader(fs);
    GLint ok = GL_FALSE;
    glGetProgramiv(program.get(), GL_LINK_STATUS, &ok);
    if (ok != GL_TRUE) {
        GLint size = 0;
        glGetProgramiv(program.get(), GL_INFO_LOG_LENGTH, &size);
        std::vector<char> text(static_cast<std::size_t>(std::max(size, 1)));
        glGetProgramInfoLog(program.get(), static_cast<GLsizei>(text.size()), nullptr, text.data());
        throw Error(std::string("shader ") + name + " does not link: " + text.data());
    }
    return program;
}

GLint uniform(const Program& program, const char* name) {
    return glGetUniformLocation(program.get(), name);
}

} // namespace vekview::gl
