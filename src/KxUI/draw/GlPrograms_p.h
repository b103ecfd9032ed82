#pragma once

#include <QByteArray>
#include <QOpenGLExtraFunctions>
#include <QString>

#include <array>

namespace Kestrel::UI {

/** The shaders of a drawing context. Made and freed with their context current. */
class GlPrograms {
public:
    enum Program { Picture, Light, Cloud };

    explicit GlPrograms(QOpenGLExtraFunctions& gl);
    /** Frees the programs; the destructor does not, since no context may be current then. */
    void release();

    /** What the compiler said; empty where all programs are made. */
    QString error() const { return m_error; }
    GLuint program(Program which) const { return m_programs[which]; }
    GLint uniform(Program which, const char* name) const;

private:
    GLuint compile(GLenum kind, const QByteArray& text);
    GLuint link(const char* vertexText, const char* fragmentText);

    QOpenGLExtraFunctions& m_gl;
    QString m_error;
    std::array<GLuint, 3> m_programs{};
};

} // namespace Kestrel::UI
