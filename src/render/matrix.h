#pragma once

namespace zet::ZETShow {

// Matrices are 16 floats in column-major order, as glUniformMatrix4fv takes them; vectors are columns on the right.
// Angles are degrees. No helper allocates.

/// `result = lhs * rhs`, summed in double. `result` may be one of the two.
void matrixMultiply(float* result, const float* lhs, const float* rhs);
/// The camera at `eye` that looks at `centre`, as gluLookAt defines it.
void matrixLookAt(float* m, float eyeX, float eyeY, float eyeZ, float centreX, float centreY, float centreZ, float upX,
                  float upY, float upZ);
/// `m = m * R`, where R turns by MINUS the angle about the axis, which is taken as it is, not normalised.
void matrixRotate(float* m, float angleDegrees, float x, float y, float z);
/// Moves `m` along its own axes.
void matrixTranslate(float* m, float x, float y, float z);
/// `m = m * diag(sx, sy, sz, 1)`.
void matrixScale(float* m, float sx, float sy, float sz);
void matrixIdentity(float* m);

/// The matrices of one view. New ones are all zero: write model, view and projection before drawing. Render thread.
struct MatrixState {
    /// Overwrites the projection, as glFrustum defines it for a frustum that is symmetric left to right.
    void setFrustum(float left, float right, float bottom, float top, float near, float far);
    /// `_viewMatrix = _viewMatrix * R`, with the sign of `matrixRotate`.
    void rotateView(float angleDegrees, float x, float y, float z);
    /// Projection times view times model.
    const float* computeMvp();

    float _modelMatrix[16] = {};
    float _projectionMatrix[16] = {};
    float _viewMatrix[16] = {};
    float _mvpMatrix[16] = {};
};

}  // namespace zet::ZETShow
