#include <KxUI/draw/GlPrograms_p.h>

#include <QOpenGLContext>

namespace Kestrel::UI {
namespace {

// A rectangle of four corners, counted from the upper left one, in -1..1.
constexpr const char* RectangleText = R"(
uniform vec4 corners; // left, top, right, bottom
out vec2 place;
void main() {
    place = vec2(gl_VertexID & 1, gl_VertexID >> 1);
    gl_Position = vec4(mix(corners.x, corners.z, place.x), mix(corners.y, corners.w, place.y), 0.0, 1.0);
}
)";

constexpr const char* PictureText = R"(
uniform sampler2D picture;
in vec2 place;
out vec4 color;
void main() {
    color = texture(picture, place);
}
)";

// As ToneCurve::light().
constexpr const char* LightText = R"(
uniform sampler2D densities;
uniform vec4 full;
uniform vec4 tone; // gain, scale, least, 1 for the linear curve
in vec2 place;
out vec4 color;
void main() {
    float density = texture(densities, place).r;
    float scaled = (tone.w > 0.5 ? density * tone.x : log2(1.0 + tone.x * density)) * tone.y;
    color = density > 0.0 ? full * min(max(scaled, tone.z), 1.0) : vec4(0.0);
}
)";

// Which pixels belong to a disc is not left to the rasteriser, whose points are rounded in its own way:
// it is only asked for all that might.
constexpr const char* CloudVertexText = R"(
uniform mat4 view;
uniform vec4 viewport; // left, lower edge, width, height, in device pixels
uniform vec2 radii; // device pixels of a logical one, and the largest radius in logical ones
layout(location = 0) in vec4 pointAndRadius;
layout(location = 1) in uint argb;
flat out vec3 rgb;
flat out float radius;
flat out vec2 middle;
void main() {
    gl_Position = view * vec4(pointAndRadius.xyz, 1.0);
    radius = clamp(pointAndRadius.w, 0.0, radii.y) * radii.x;
    gl_PointSize = 2.0 * radius + 2.0;
    middle = viewport.xy + (gl_Position.xy / gl_Position.w + 1.0) / 2.0 * viewport.zw;
    rgb = vec3(float(argb >> 16u & 255u), float(argb >> 8u & 255u), float(argb & 255u)) / 255.0;
}
)";

constexpr const char* CloudFragmentText = R"(
flat in vec3 rgb;
flat in float radius;
flat in vec2 middle;
out vec4 color;
void main() {
    vec2 away = gl_FragCoord.xy - middle;
    bool isUnderMiddle = floor(gl_FragCoord.xy) == floor(middle);
    if (dot(away, away) > radius * radius && !isUnderMiddle)
        discard;
    color = vec4(rgb, 1.0);
}
)";

} // namespace

GlPrograms::GlPrograms(QOpenGLExtraFunctions& gl)
    : m_gl(gl) {
    m_programs[Picture] = link(RectangleText, PictureText);
    m_programs[Light] = link(RectangleText, LightText);
    m_programs[Cloud] = link(CloudVertexText, CloudFragmentText);
}

void GlPrograms::release() {
    for (GLuint& each : m_programs) {
        m_gl.glDeleteProgram(each); // 0 is ignored
        each = 0;
    }
}

GLint GlPrograms::uniform(Program which, const char* name) const {
    return m_gl.glGetUniformLocation(m_programs[which], name);
}

GLuint GlPrograms::compile(GLenum kind, const QByteArray& text) {
    const bool isEmbedded = QOpenGLContext::currentContext()->isOpenGLES();
    const QByteArray head = isEmbedded ? "#version 300 es\nprecision highp float;\n"
                                         "precision highp int;\nprecision highp sampler2D;\n"
                                       : "#version 330 core\n";
    const QByteArray whole = head + text;
    const char* source = whole.constData();
    const GLuint shader = m_gl.glCreateShader(kind);
    m_gl.glShaderSource(shader, 1, &source, nullptr);
    m_gl.glCompileShader(shader);
    GLint isCompiled = 0;
    m_gl.glGetShaderiv(shader, GL_COMPILE_STATUS, &isCompiled);
    if (!isCompiled) {
        QByteArray log(1024, '\0');
        GLsizei length = 0;
        m_gl.glGetShaderInfoLog(shader, GLsizei(log.size()), &length, log.data());
        m_error += QString::fromUtf8(log.left(length));
    }
    return shader;
}

GLuint GlPrograms::link(const char* vertexText, const char* fragmentText) {
    const GLuint vertex = compile(GL_VERTEX_SHADER, vertexText);
    const GLuint fragment = compile(GL_FRAGMENT_SHADER, fragmentText);
    const GLuint program = m_gl.glCreateProgram();
    m_gl.glAttachShader(program, vertex);
    m_gl.glAttachShader(program, fragment);
    m_gl.glLinkProgram(program);
    m_gl.glDeleteShader(vertex);
    m_gl.glDeleteShader(fragment);
    GLint isLinked = 0;
    m_gl.glGetProgramiv(program, GL_LINK_STATUS, &isLinked);
    if (!isLinked && m_error.isEmpty())
        m_error = QStringLiteral("a program could not be linked");
    return program;
}

} // namespace Kestrel::UI
