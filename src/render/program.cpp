#include "render/program.h"

#include <atomic>
#include <charconv>

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

// A GLSL constant; the player's locale has no say in it.
std::string literal(float value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific).ptr;
    return {digits, end};
}

// The constants that `planeSampling` reads.
std::string colorConstants(const ColorTransform& color) {
    return "const vec3 levels = vec3(" + literal(color.luma) + ", " + literal(color.lumaOffset) + ", " +
           literal(color.chromaMiddle) + ");\nconst vec4 weights = vec4(" + literal(color.redOfV) + ", " +
           literal(color.greenOfU) + ", " + literal(color.greenOfV) + ", " + literal(color.blueOfU) + ");\n";
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
    ZETLog::instance().warning("fragments have no high precision here: large pictures lose detail");
}

FrameProgram::~FrameProgram() {
    glDeleteProgram(_name);
}

int FrameProgram::build(const ColorTransform& color, const char* vertexStage, std::initializer_list<const char*> pieces,
                        std::initializer_list<const char*> uniforms) {
    _vertexStage = vertexStage;
    _pieces = pieces;
    _uniforms = uniforms;
    return buildFor(color);
}

int FrameProgram::buildFor(const ColorTransform& color) {
    _color = color;
    const std::string colors = colorConstants(color);
    std::string fragmentStage = joinFragment({frameDeclarations, colors.c_str(), planeSampling, lensSampling});
    for (const char* const piece : _pieces) fragmentStage += piece;
    const GLuint program = buildProgram(_vertexStage, fragmentStage.c_str());
    if (program == 0) return -1;
    glDeleteProgram(_name);
    _name = program;
    const auto location = [program](const char* name) { return glGetUniformLocation(program, name); };
    _mapMatrixLoc = location("u_mapMatrix");
    _regionLoc = location("region");
    _uniformLocs.clear();
    for (const char* const name : _uniforms) _uniformLocs.push_back(location(name));
    glUseProgram(program);
    glUniform1i(location("y_texture"), lumaUnit);
    glUniform1i(location("uv_texture"), chromaUnit);
    return 0;
}

void FrameProgram::use(const Frame& frame) {
    if (frame.color != _color) buildFor(frame.color);  // where that fails, the old colours stay, and the log says why
    glUseProgram(_name);
    const RegionMap& region = frame.region;
    glUniform4f(_regionLoc, region.centreX, region.centreY, region.halfWidth, region.halfHeight);
}

}  // namespace zet::ZETShow
