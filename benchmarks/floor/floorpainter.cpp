// A view with the fewest GL calls: what never changes is made once, and a draw sends only what differs from the draw
// before.

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "floor/views.h"
#include "worker/painter.h"

namespace bench {

namespace {

const char* const plainVertex = R"(
attribute vec4 position;
attribute vec2 numbers;
uniform mat4 matrix;
varying vec2 at;
void main() {
    gl_Position = matrix * position;
    at = numbers;
})";

const char* const sampling = R"(
precision highp float;
uniform sampler2D luma;
uniform sampler2D chroma;
uniform vec4 region;
varying vec2 at;
vec4 picture(vec2 place) {
    float y = texture2D(luma, place).r;
    vec2 uv = texture2D(chroma, place).ra - 0.5;
    return vec4(y + 1.13983 * uv.y, y - 0.39465 * uv.x - 0.58060 * uv.y, y + 2.03211 * uv.x, 1.0);
}
vec4 lens(vec2 place) {
    return picture(region.xy + region.zw * place);
}
)";

constexpr GLuint positionLoc = 0;
constexpr GLuint numbersLoc = 1;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "floor: %s\n", what.c_str());
    std::exit(1);
}

GLuint compile(GLenum type, const std::string& text) {
    const GLuint shader = glCreateShader(type);
    const char* const source = text.c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint done = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &done);
    char log[1000] = "";
    glGetShaderInfoLog(shader, sizeof log, nullptr, log);
    if (!done) fail(log);
    return shader;
}

// Centre and half sides of the lens circle's square in the texture, in whole pixels as the module takes them.
void sendRegion(GLuint program, Size frame) {
    const auto part = [](int share, int whole) {
        return static_cast<float>(share) / 10000.0f * static_cast<float>(whole);
    };
    const int cx = static_cast<int>(part(lensRegion[0], frame.width) + 0.5f);
    const int cy = static_cast<int>(part(lensRegion[1], frame.height) + 0.5f);
    const int rx = static_cast<int>(part(lensRegion[2], frame.width));
    const int ry = static_cast<int>(part(lensRegion[3], frame.height));
    const auto width = static_cast<float>(frame.width);
    const auto height = static_cast<float>(frame.height);
    glUniform4f(glGetUniformLocation(program, "region"), static_cast<float>(cx) / width,
                static_cast<float>(cy) / height, static_cast<float>(rx) / width, static_cast<float>(ry) / height);
}

class FloorPainter final : public Painter {
public:
    FloorPainter(const Scene& scene, const XWindow& window)
        : _frame(scene.frame), _view(makeView(scene.view, scene.window, scene.frame)) {
        openWindow(window);
        makeTextures();
        for (const Draw& draw : _view.draws) makeStep(draw);
        if (_view.depth) glEnable(GL_DEPTH_TEST);
        glEnableVertexAttribArray(positionLoc);
        glEnableVertexAttribArray(numbersLoc);
    }

    ~FloorPainter() override {
        eglMakeCurrent(_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglTerminate(_display);
    }

    void show(const Picture& picture) override {
        upload(picture);
        if (!_view.covers) glClear(_view.depth ? GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT : GL_COLOR_BUFFER_BIT);
        for (std::size_t i = 0; i < _steps.size(); ++i) draw(i);
        eglSwapBuffers(_display, _surface);
        ++_drawn;
    }

    long drawn() const override { return _drawn; }

    std::string about() const override {
        const auto name = [](GLenum what) { return std::string(reinterpret_cast<const char*>(glGetString(what))); };
        return name(GL_RENDERER) + ", " + name(GL_VERSION);
    }

private:
    struct Step {
        GLuint program;
        GLint matrixLoc;
        GLuint mesh;
        GLuint indices;
        GLsizei count;
    };

    void openWindow(const XWindow& window) {
        const EGLint config[] = {EGL_RED_SIZE,
                                 8,
                                 EGL_GREEN_SIZE,
                                 8,
                                 EGL_BLUE_SIZE,
                                 8,
                                 EGL_DEPTH_SIZE,
                                 _view.depth ? 8 : 0,
                                 EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_ES2_BIT,
                                 EGL_NONE};
        const EGLint context[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        EGLint found = 0;
        EGLConfig chosen = nullptr;
        _display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        if (!eglInitialize(_display, nullptr, nullptr)) fail("no EGL");
        eglChooseConfig(_display, config, &chosen, 1, &found);
        if (found < 1) fail("no EGL configuration");
        _context = eglCreateContext(_display, chosen, EGL_NO_CONTEXT, context);
        _surface = eglCreateWindowSurface(_display, chosen, static_cast<EGLNativeWindowType>(window.handle()), nullptr);
        if (!eglMakeCurrent(_display, _surface, _surface, _context)) fail("no EGL context");
        eglSwapInterval(_display, 0);
    }

    void makeTextures() {
        _chroma.resize(static_cast<std::size_t>(_frame.width * _frame.height / 2));
        GLuint textures[2];
        glGenTextures(2, textures);
        for (const int i : {0, 1}) {
            const GLenum format = i == 0 ? GL_LUMINANCE : GL_LUMINANCE_ALPHA;
            glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + i));
            glBindTexture(GL_TEXTURE_2D, textures[i]);
            glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), _frame.width >> i, _frame.height >> i, 0, format,
                         GL_UNSIGNED_BYTE, nullptr);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        }
    }

    // Shares what an earlier draw has made.
    void makeStep(const Draw& draw) {
        Step step{};
        for (std::size_t i = 0; i < _steps.size(); ++i) {
            if (_view.draws[i].mesh == draw.mesh) {
                step.mesh = _steps[i].mesh;
                step.indices = _steps[i].indices;
                step.count = _steps[i].count;
            }
            if (_view.draws[i].fragment == draw.fragment) step.program = _steps[i].program;
        }
        if (step.mesh == 0) makeMesh(draw.mesh(), step);
        if (step.program == 0) step.program = makeProgram(draw);
        step.matrixLoc = glGetUniformLocation(step.program, "matrix");
        _steps.push_back(step);
    }

    static void makeMesh(const Mesh& mesh, Step& step) {
        GLuint buffers[2];
        glGenBuffers(2, buffers);
        step.mesh = buffers[0];
        step.indices = buffers[1];
        step.count = static_cast<GLsizei>(mesh.indices.size());
        glBindBuffer(GL_ARRAY_BUFFER, step.mesh);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.vertices.size() * sizeof(float)),
                     mesh.vertices.data(), GL_STATIC_DRAW);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, step.indices);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.indices.size() * sizeof(std::uint16_t)),
                     mesh.indices.data(), GL_STATIC_DRAW);
    }

    GLuint makeProgram(const Draw& draw) const {
        const GLuint program = glCreateProgram();
        glAttachShader(program, compile(GL_VERTEX_SHADER, draw.vertex ? draw.vertex : plainVertex));
        glAttachShader(program, compile(GL_FRAGMENT_SHADER, std::string(sampling) + draw.fragment));
        glBindAttribLocation(program, positionLoc, "position");
        glBindAttribLocation(program, numbersLoc, "numbers");
        glLinkProgram(program);
        glUseProgram(program);
        glUniform1i(glGetUniformLocation(program, "luma"), 0);
        glUniform1i(glGetUniformLocation(program, "chroma"), 1);
        glUniformMatrix4fv(glGetUniformLocation(program, "light"), 1, GL_FALSE, draw.light.m.data());
        sendRegion(program, _frame);
        return program;
    }

    void upload(const Picture& picture) {
        // The planes as they come from a decoder, U and V woven into one texture.
        const std::uint8_t* const u = picture.u.data();
        const std::uint8_t* const v = picture.v.data();
        std::uint8_t* const __restrict uv = _chroma.data();
        for (std::size_t i = 0; i < picture.u.size(); ++i) {
            uv[2 * i] = u[i];
            uv[2 * i + 1] = v[i];
        }
        glActiveTexture(GL_TEXTURE0);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, _frame.width, _frame.height, GL_LUMINANCE, GL_UNSIGNED_BYTE,
                        picture.y.data());
        glActiveTexture(GL_TEXTURE1);
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, _frame.width / 2, _frame.height / 2, GL_LUMINANCE_ALPHA,
                        GL_UNSIGNED_BYTE, uv);
    }

    // One draw after another, the last one of a picture before the first of the next.
    void draw(std::size_t index) {
        const Step& step = _steps[index];
        if (index != _last) {
            const bool first = _last == none;
            const Rect& viewport = _view.draws[index].viewport;
            glViewport(viewport.x, viewport.y, viewport.width, viewport.height);
            if (first || _steps[_last].mesh != step.mesh) bind(step);
            if (first || _steps[_last].program != step.program) glUseProgram(step.program);
            glUniformMatrix4fv(step.matrixLoc, 1, GL_FALSE, _view.draws[index].matrix.m.data());
            _last = index;
        }
        glDrawElements(GL_TRIANGLES, step.count, GL_UNSIGNED_SHORT, nullptr);
    }

    static void bind(const Step& step) {
        constexpr GLsizei stride = 5 * sizeof(float);
        glBindBuffer(GL_ARRAY_BUFFER, step.mesh);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, step.indices);
        glVertexAttribPointer(positionLoc, 3, GL_FLOAT, GL_FALSE, stride, nullptr);
        glVertexAttribPointer(numbersLoc, 2, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<const void*>(3 * sizeof(float)));
    }

    static constexpr std::size_t none = ~std::size_t{0};

    const Size _frame;
    const View _view;
    std::vector<Step> _steps;
    std::vector<std::uint8_t> _chroma;
    EGLDisplay _display = nullptr;
    EGLContext _context = nullptr;
    EGLSurface _surface = nullptr;
    std::size_t _last = none;  // draw whose state GL has
    long _drawn = 0;
};

}  // namespace

std::unique_ptr<Painter> makePainter(const Scene& scene, const std::vector<std::unique_ptr<XWindow>>& windows) {
    if (windows.size() != 1 || scene.faces != 0) fail("one window and no faces");
    return std::make_unique<FloorPainter>(scene, *windows.front());
}

}  // namespace bench
