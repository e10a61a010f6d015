#include "Shaders.h"

namespace vekview {

namespace {
// World-space clipping against one plane: kept where dot(plane, (p, 1)) >= 0, drawn only
// while GL_CLIP_DISTANCE0 is enabled.
const char* const surfaceVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec4 color;
layout(location = 3) in vec2 texCoord;
uniform mat4 model;
uniform mat4 view;
uniform mat4 projection;
uniform mat3 normalMatrix;
uniform vec4 plane;
uniform uint vertexBase;
out vec3 eyeNormal;
out vec3 eyePosition;
out vec4 vertexColor;
out vec2 uv;
flat out uint vertexIndex;
void main() {
    vec4 world = model * vec4(position, 1.0);
    vec4 eye = view * world;
    gl_ClipDistance[0] = dot(plane, world);
    gl_Position = projection * eye;
    eyeNormal = normalMatrix * normal;
    eyePosition = eye.xyz;
    vertexColor = color;
    uv = texCoord;
    vertexIndex = vertexBase + uint(gl_VertexID);
}
)";

// A light fixed to the viewer from the upper left, two-sided, as the software pictures are
// lit; a facet normal stands in where the mesh has none.
const char* const surfaceFragment = R"(#version 330 core
in vec3 eyeNormal;
in vec3 eyePosition;
in vec4 vertexColor;
in vec2 uv;
uniform vec4 diffuse;
uniform vec3 specular;
uniform float shininess;
uniform bool useVertexColor;
uniform bool useTexture;
uniform sampler2D image;
uniform vec4 highlight;
out vec4 fragColor;
const vec3 light = normalize(vec3(-3.0, 4.0, 6.0));
const float ambient = 0.3;
void main() {
    vec3 n = eyeNormal;
    if (dot(n, n) < 1e-12) n = cross(dFdx(eyePosition), dFdy(eyePosition));
    n = normalize(n);
    vec3 base = useVertexColor ? vertexColor.rgb : diffuse.rgb;
    if (useTexture) base *= texture(image, uv).rgb;
    if (highlight.a > 0.0) base = highlight.rgb;
    float lambert = abs(dot(n, light));
    vec3 view = normalize(-eyePosition);
    vec3 halfway = normalize(light + view);
    float shine = pow(abs(dot(n, halfway)), max(shininess, 1.0));
    vec3 lit = base * (ambient + (1.0 - ambient) * lambert) + specular * shine;
    fragColor = vec4(min(lit, vec3(1.0)), 1.0);
}
)";

const char* const flatVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
uniform mat4 model;
uniform mat4 view;
uniform mat4 projection;
uniform vec4 plane;
uniform float pointSize;
void main() {
    vec4 world = model * vec4(position, 1.0);
    gl_ClipDistance[0] = dot(plane, world);
    gl_Position = projection * (view * world);
    gl_PointSize = pointSize;
}
)";

const char* const flatFragment = R"(#version 330 core
uniform vec4 color;
out vec4 fragColor;
void main() {
    fragColor = color;
}
)";

const char* const idsFragment = R"(#version 330 core
flat in uint vertexIndex;
uniform uint object;
uniform bool edge;
layout(location = 0) out uvec2 faceTarget;
layout(location = 1) out uvec2 edgeTarget;
void main() {
    uvec2 id = uvec2(object, vertexIndex);
    faceTarget = edge ? uvec2(0u) : id;
    edgeTarget = edge ? id : uvec2(0u);
}
)";
} // namespace

Shaders::Shaders()
    : surface(gl::makeProgram("surface", surfaceVertex, surfaceFragment)),
      flat(gl::makeProgram("flat", flatVertex, flatFragment)),
      ids(gl::makeProgram("ids", surfaceVertex, idsFragment)) {
    auto& s = surfaceAt;
    s.model = gl::uniform(surface, "model");
    s.view = gl::uniform(surface, "view");
    s.projection = gl::uniform(surface, "projection");
    s.normalMatrix = gl::uniform(surface, "normalMatrix");
    s.plane = gl::uniform(surface, "plane");
    s.vertexBase = gl::uniform(surface, "vertexBase");
    s.diffuse = gl::uniform(surface, "diffuse");
    s.specular = gl::uniform(surface, "specular");
    s.shininess = gl::uniform(surface, "shininess");
    s.useVertexColor = gl::uniform(surface, "useVertexColor");
    s.useTexture = gl::uniform(surface, "useTexture");
    s.texture = gl::uniform(surface, "image");
    s.highlight = gl::uniform(surface, "highlight");
    auto& f = flatAt;
    f.model = gl::uniform(flat, "model");
    f.view = gl::uniform(flat, "view");
    f.projection = gl::uniform(flat, "projection");
    f.plane = gl::uniform(flat, "plane");
    f.color = gl::uniform(flat, "color");
    f.pointSize = gl::uniform(flat, "pointSize");
    auto& i = idsAt;
    i.model = gl::uniform(ids, "model");
    i.view = gl::uniform(ids, "view");
    i.projection = gl::uniform(ids, "projection");
    i.normalMatrix = gl::uniform(ids, "normalMatrix");
    i.plane = gl::uniform(ids, "plane");
    i.vertexBase = gl::uniform(ids, "vertexBase");
    i.object = gl::uniform(ids, "object");
    i.edge = gl::uniform(ids, "edge");
}

} // namespace vekview
