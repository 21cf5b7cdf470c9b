#include "render/program.h"

#include <atomic>

#include "render/shaderpieces.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

constexpr int longestLog = 1024;  // bytes of a compiler's words that are worth a line

// A shader's name, or 0 if it doesn't compile.
GLuint compileShader(const char* source, GLenum type) {
    const GLuint shader = glCreateShader(type);
    if (shader == 0) return 0;
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled) return shader;
    char reason[longestLog] = {};
    glGetShaderInfoLog(shader, sizeof reason, nullptr, reason);
    ZETLog::instance().error("compileShader %s: %s", type == GL_VERTEX_SHADER ? "vertex" : "fragment", reason);
    glDeleteShader(shader);
    return 0;
}

GLuint linkProgram(GLuint vertexShader, GLuint fragmentShader) {
    const GLuint program = glCreateProgram();
    if (program == 0) return 0;
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    glBindAttribLocation(program, positionAttribute, "a_position");
    glBindAttribLocation(program, texCoordAttribute, "a_texCoord");
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked) return program;
    char reason[longestLog] = {};
    glGetProgramInfoLog(program, sizeof reason, nullptr, reason);
    ZETLog::instance().error("buildProgram link: %s", reason);
    glDeleteProgram(program);
    return 0;
}

}  // namespace

GLuint buildProgram(const char* vertexSource, const char* fragmentSource) {
    const GLuint vertexShader = compileShader(vertexSource, GL_VERTEX_SHADER);
    const GLuint fragmentShader = compileShader(fragmentSource, GL_FRAGMENT_SHADER);
    const GLuint program = vertexShader != 0 && fragmentShader != 0 ? linkProgram(vertexShader, fragmentShader) : 0;
    glDeleteShader(vertexShader);  // 0 is a name that GL ignores
    glDeleteShader(fragmentShader);
    return program;
}

std::string joinFragment(std::initializer_list<const char*> pieces) {
    std::string stage = R"(
#ifdef GL_FRAGMENT_PRECISION_HIGH
precision highp float;
#else
precision mediump float;
#endif
)";
    for (const char* const piece : pieces) stage += piece;
    return stage;
}

void checkFragmentPrecision() {
    static std::atomic<bool> said = false;
    GLint range[2] = {};
    GLint precision = 0;
    glGetShaderPrecisionFormat(GL_FRAGMENT_SHADER, GL_HIGH_FLOAT, range, &precision);
    if (precision != 0 || said.exchange(true)) return;
    ZETLog::instance().error("fragments have no high precision here: large pictures lose detail");
}

int FrameProgram::build(const char* vertexStage, std::initializer_list<const char*> pieces) {
    std::string fragmentStage = joinFragment({frameDeclarations, planeSampling, pictureSampling});
    for (const char* const piece : pieces) fragmentStage += piece;
    name = buildProgram(vertexStage, fragmentStage.c_str());
    if (name == 0) return -1;
    mapMatrixLoc = uniform("u_mapMatrix");
    colorMatrixLoc = uniform("colorMatrix");
    colorOffsetLoc = uniform("colorOffset");
    regionLoc = uniform("region");
    glUseProgram(name);
    glUniform1i(uniform("y_texture"), lumaUnit);
    glUniform1i(uniform("uv_texture"), chromaUnit);
    return 0;
}

void FrameProgram::use(const Frame& frame) const {
    glUseProgram(name);
    glUniformMatrix3fv(colorMatrixLoc, 1, GL_FALSE, frame.color.matrix);
    glUniform3fv(colorOffsetLoc, 1, frame.color.offset);
    glUniform4f(regionLoc, frame.region.x, frame.region.y, frame.region.width, frame.region.height);
}

}  // namespace zet::ZETShow
