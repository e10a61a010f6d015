#pragma once

#include <epoxy/gl.h>

#include <stdexcept>
#include <string>
#include <utility>

// Owners of OpenGL objects. Each deletes its object when it goes, so that nothing leaks when
// a document is replaced or an error unwinds; they need the context they were made in.
namespace vekview::gl {

/// A failure of the graphics system: a shader that does not compile, a framebuffer the
/// driver does not take.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

template <void (*Delete)(GLuint)>
class Owned {
public:
    Owned() = default;
    explicit Owned(GLuint id) : id(id) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Owned(Owned&& other) noexcept : id(std::exchange(other.id, 0)) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) {
            reset();
            id = std::exchange(other.id, 0);
        }
        return *this;
    }
    ~Owned() { reset(); }

    GLuint get() const { return id; }
    explicit operator bool() const { return id != 0; }
    void reset() {
        if (id != 0) Delete(id);
        id = 0;
    }

private:
    GLuint id = 0;
};

void deleteBuffer(GLuint id);
void deleteVertexArray(GLuint id);
void deleteTexture(GLuint id);
void deleteFramebuffer(GLuint id);
void deleteRenderbuffer(GLuint id);
void deleteProgram(GLuint id);

using Buffer = Owned<deleteBuffer>;
using VertexArray = Owned<deleteVertexArray>;
using Texture = Owned<deleteTexture>;
using Framebuffer = Owned<deleteFramebuffer>;
using Renderbuffer = Owned<deleteRenderbuffer>;
using Program = Owned<deleteProgram>;

Buffer makeBuffer();
VertexArray makeVertexArray();
Texture makeTexture();
Framebuffer makeFramebuffer();
Renderbuffer makeRenderbuffer();

/// Compiles and links a vertex and a fragment shader; throws Error with the driver's log.
Program makeProgram(const char* name, const char* vertex, const char* fragment);
/// Where a uniform of the program is; -1 (ignored by OpenGL) when the compiler dropped it.
GLint uniform(const Program& program, const char* name);

} // namespace vekview::gl
