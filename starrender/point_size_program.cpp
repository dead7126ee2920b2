#define GL_GLEXT_PROTOTYPES
#include "starrender/point_size_program.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glx.h>

#include <cstring>

namespace {

constexpr GLuint kSizeAttribute = 1;  // attribute 0 would stand for the vertex position

// Sizes of 2 pixels or less are drawn as 2, as the fixed pipeline of these renderers does.
const char* const kVertexSource =
    "#version 110\n"
    "attribute float pointSize;\n"
    "void main() {\n"
    "    gl_Position = ftransform();\n"
    "    gl_FrontColor = gl_Color;\n"
    "    gl_PointSize = max(pointSize, 2.0);\n"
    "}\n";

bool allowed = true;

// The renderers whose smooth points the program draws as the fixed pipeline does.
bool faithfulRenderer() {
    const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const char* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    if (version == nullptr || renderer == nullptr || version[0] < '2' || version[1] != '.') {
        return false;
    }
    return std::strstr(renderer, "llvmpipe") != nullptr ||
           std::strstr(renderer, "softpipe") != nullptr;
}

GLuint makeProgram() {
    const GLuint shader = glCreateShader(GL_VERTEX_SHADER);
    if (shader == 0) return 0;
    glShaderSource(shader, 1, &kVertexSource, nullptr);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (ok != GL_TRUE) {
        glDeleteShader(shader);
        return 0;
    }
    const GLuint program = glCreateProgram();
    glAttachShader(program, shader);
    glBindAttribLocation(program, kSizeAttribute, "pointSize");
    glLinkProgram(program);
    glDeleteShader(shader);  // freed with the program
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if (ok != GL_TRUE) {
        glDeleteProgram(program);
        return 0;
    }
    return program;
}

// Programs belong to a context; the few contexts of a process each get their own.
struct ContextProgram {
    GLXContext context = nullptr;
    GLuint program = 0;
    bool tried = false;
};
constexpr int kMaxContexts = 8;
ContextProgram programs[kMaxContexts];

}  // namespace

PointSizeProgram pointSizeProgram() {
    const GLXContext context = glXGetCurrentContext();
    if (!allowed || context == nullptr) return PointSizeProgram{};
    ContextProgram* slot = nullptr;
    for (ContextProgram& p : programs) {
        if (p.context == context) {
            slot = &p;
            break;
        }
    }
    if (slot == nullptr) {
        for (ContextProgram& p : programs) {
            if (p.context == nullptr) {
                slot = &p;
                break;
            }
        }
        if (slot == nullptr) return PointSizeProgram{};  // more contexts than expected
        slot->context = context;
    }
    // A context made anew at the address of a destroyed one has no such program.
    if (slot->tried && slot->program != 0 && glIsProgram(slot->program) != GL_TRUE) {
        slot->tried = false;
    }
    if (!slot->tried) {
        slot->tried = true;
        slot->program = faithfulRenderer() ? makeProgram() : 0;
    }
    if (slot->program == 0) return PointSizeProgram{};
    return PointSizeProgram{slot->program, static_cast<int>(kSizeAttribute)};
}

void allowPointSizeProgram(bool allow) {
    allowed = allow;
}
