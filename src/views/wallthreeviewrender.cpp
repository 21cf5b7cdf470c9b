// What a person sees: three still pictures of what a lens on a wall sees. At the top left what a camera that is turned
// to the left sees, at the top right the same to the right, and below both, over the whole width, a panorama: across
// it 162 degrees from left to right, up it 98, and what is upright in the scene stands upright in it.

#include "views/wallthreeviewrender.h"

#include <string>

#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const domeStep = R"(
uniform float fratio;
void main() {
    float fir1 = frad * cos(v_texCoord.t);
    float fir = fratio * fir1 + (1.0 - fratio) * evenRadius(v_texCoord.t);
    gl_FragColor = samplePicture(lensPointOpposite(fir, v_texCoord.s));
}
)";

// The equirectangular projection of a half sphere. v_texCoord.s goes down it and t to the right; z is the lens axis.
// The lens is equidistant, and its circle touches the edges of the picture. On the axis itself no direction is
// defined, and none is needed.
const char* const panoramaStep = R"(
const float pi = 3.1415927;
void main() {
    float latitude = pi * v_texCoord.s;
    float longitude = pi * (1.0 - v_texCoord.t);
    float x = -sin(latitude) * cos(longitude);
    float y = cos(latitude);
    float z = sin(latitude) * sin(longitude);
    float Phi_sphere = (x == 0.0 && y == 0.0 ? 0.0 : atan(y, x)) + pi;
    float p = 0.5 * acos(clamp(z, -1.0, 1.0)) / (pi / 2.0);
    vec2 vtmpTextureCoord = vec2(p * cos(Phi_sphere) + 0.5, p * sin(Phi_sphere) + 0.5);
    gl_FragColor = samplePicture(vtmpTextureCoord);
}
)";

constexpr float frad = 0.998f;  // radius of the lens circle as a part of the half texture
constexpr float fratio = 0.0f;  // of the sphere's profile in the lens's; the even one alone counts

// A triangle strip. It lies in the near plane, and its long side, along which s grows, stands upright on the screen.
constexpr float quadVertices[12] = {-1.65f, -1, 0, 1.65f, -1, 0, -1.65f, 1, 0, 1.65f, 1, 0};
constexpr float quadTexCoords[8] = {0, 0, 1, 0, 0, 1, 1, 1};

}  // namespace

WallThreeViewRender::WallThreeViewRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int WallThreeViewRender::init() {
    _dome = makeDome(onFlattenedSphere);
    const int created = createProgram();
    _ready = created == 0;
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int WallThreeViewRender::createProgram() {
    const std::string fragmentStage = std::string("precision highp float;\n") + frameDeclarations + evenRadius +
                                      lensPointOpposite + yuvSampling + domeStep;
    _program = buildProgram(frameVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _fradLoc = glGetUniformLocation(_program, "frad");
    _fratioLoc = glGetUniformLocation(_program, "fratio");
    return _fradLoc >= 0 && _fratioLoc >= 0 ? createPanoramaProgram() : -1;
}

int WallThreeViewRender::createPanoramaProgram() {
    const std::string fragmentStage =
        std::string("precision highp float;\n") + frameDeclarations + yuvSampling + panoramaStep;
    _panoramaProgram = buildProgram(frameVertexStage, fragmentStage.c_str());
    if (_panoramaProgram == 0) return -1;
    _panoramaYTextureLoc = glGetUniformLocation(_panoramaProgram, "y_texture");
    _panoramaPlaneSizeLoc = glGetUniformLocation(_panoramaProgram, "planeSize");
    _panoramaUvTextureLoc = glGetUniformLocation(_panoramaProgram, "uv_texture");
    _panoramaPositionLoc = glGetAttribLocation(_panoramaProgram, "a_position");
    _panoramaTexCoordLoc = glGetAttribLocation(_panoramaProgram, "a_texCoord");
    _panoramaMatrixLoc = glGetUniformLocation(_panoramaProgram, "u_mapMatrix");
    return _panoramaYTextureLoc >= 0 && _panoramaUvTextureLoc >= 0 ? 0 : -1;
}

WallThreeViewRender::~WallThreeViewRender() {
    if (_panoramaProgram != 0) glDeleteProgram(_panoramaProgram);
}

int WallThreeViewRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (!_ready) return 0;
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) _motion.layoutPanes();
    if (!_motion._size._sized) return 0;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawPanes(texture);
    return 0;
}

void WallThreeViewRender::drawPanes(Texture& texture) {
    drawPane(WallThreeViewMotion::panorama, texture);
    drawPane(0, texture);
    drawPane(2, texture);
}

void WallThreeViewRender::drawPane(int p, Texture& texture) {
    const PaneRect& rect = _motion._paneRects[p];
    glViewport(rect.x, rect.y, rect.width, rect.height);
    _viewport = {rect.x, rect.y, rect.width, rect.height};
    MatrixState& matrices = _paneMatrices[p];
    matrixIdentity(matrices._modelMatrix);
    matrices.pushMatrix();
    if (p == WallThreeViewMotion::panorama) {
        drawPanorama(texture);
    } else if (_motion._aspect > 0.0f) {
        drawDome(p, texture);
    }
    matrices.popMatrix();
}

void WallThreeViewRender::drawDome(int p, Texture& texture) {
    MatrixState& matrices = _paneMatrices[p];
    glUseProgram(_program);
    _motion.updatePaneCamera(p, matrices);
    _dome.enable(_positionLoc, _texCoordLoc);
    bindFrameTextures(texture, matrices.computeMvp());
    glUniform1f(_fradLoc, frad);
    glUniform1f(_fratioLoc, fratio);
    _dome.draw(_positionLoc, _texCoordLoc);
}

void WallThreeViewRender::drawPanorama(Texture& texture) {
    MatrixState& matrices = _paneMatrices[WallThreeViewMotion::panorama];
    const auto position = static_cast<GLuint>(_panoramaPositionLoc);
    const auto texCoord = static_cast<GLuint>(_panoramaTexCoordLoc);
    glUseProgram(_panoramaProgram);
    WallThreeViewMotion::updatePanoramaCamera(matrices);
    glUniformMatrix4fv(_panoramaMatrixLoc, 1, GL_FALSE, matrices.computeMvp());
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, quadVertices);
    glEnableVertexAttribArray(texCoord);
    glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, quadTexCoords);
    bindPicture(texture, _panoramaPlaneSizeLoc, _panoramaYTextureLoc, _panoramaUvTextureLoc);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(texCoord);
    glDisableVertexAttribArray(position);
}

}  // namespace zet::ZETShow
