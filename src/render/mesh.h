#pragma once

#include <GLES2/gl2.h>

#include <array>
#include <vector>

namespace zet::ZETShow {

/// Where a vertex lies, and its texture coordinate.
struct MeshVertex {
    float position[3];
    float texCoord[2];
};

/// A shape in memory: indices into the vertices, three a triangle.
struct MeshArrays {
    std::vector<MeshVertex> vertices;
    std::vector<GLushort> indices;
};

/// A shape in buffer objects. Render thread, with the context current.
class Mesh {
public:
    Mesh() = default;
    ~Mesh();
    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;

    /// Replaces what was loaded before.
    void load(const MeshArrays& arrays);
    /// The rectangle of four vertices in triangle-strip order.
    void load(const std::array<MeshVertex, 4>& corners);
    /// Points both attributes at the vertices, until another mesh or array is bound.
    void bind() const;
    /// Draws; the mesh is bound.
    void draw() const;

private:
    void store(const MeshVertex* vertices, std::size_t vertexCount, const GLushort* indices, std::size_t indexCount);

    GLuint _vertexBuffer = 0;
    GLuint _indexBuffer = 0;
    GLsizei _indexCount = 0;
};

/// Points the position attribute at `positions`, of `size` floats each, and the other one, where there are any, at
/// `texCoords`, of 2. They are the caller's memory: `releaseArrays` before it goes. Render thread.
void bindArrays(const float* positions, int size, const float* texCoords);
void releaseArrays();

}  // namespace zet::ZETShow
