#pragma once

#include "render/render.h"
#include "views/parts/dome.h"
#include "views/wallthreeviewmotion.h"

namespace zet::ZETShow {

/// Mode 7: the left and the right of what a wall-mounted lens sees, and below both a panorama of it. No gestures.
class WallThreeViewRender final : public Render {
public:
    WallThreeViewRender(DisplayConfig* config, float touchScale, Display* display);
    ~WallThreeViewRender() override;

    int init() override;
    int createProgram() override;
    /// Always 0, also where there is nothing to draw.
    int render(int surfaceWidth, int surfaceHeight, int frameWidth, int frameHeight, Texture& texture) override;

private:
    int createPanoramaProgram();
    void drawPanes(Texture& texture);
    void drawPane(int p, Texture& texture);
    void drawDome(int p, Texture& texture);
    void drawPanorama(Texture& texture);

    WallThreeViewMotion _motion;

    // Fixed after `init`.
    Dome _dome;
    bool _ready = false;
    GLint _fradLoc = -1;
    GLint _fratioLoc = -1;
    GLuint _panoramaProgram = 0;
    GLint _panoramaMatrixLoc = -1;
    GLint _panoramaPositionLoc = -1;
    GLint _panoramaTexCoordLoc = -1;
    GLint _panoramaYTextureLoc = -1;
    GLint _panoramaUvTextureLoc = -1;
    GLint _panoramaPlaneSizeLoc = -1;

    MatrixState _paneMatrices[3];
};

}  // namespace zet::ZETShow
