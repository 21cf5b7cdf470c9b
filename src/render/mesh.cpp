#include "render/mesh.h"

#include <cstddef>

#include "render/program.h"

namespace zet::ZETShow {

Mesh::~Mesh() {
    if (_vertexBuffer == 0) return;
    releaseArrays();  // what is enabled may point into the buffers
    glDeleteBuffers(1, &_vertexBuffer);
    glDeleteBuffers(1, &_indexBuffer);
}

void Mesh::load(const MeshArrays& arrays) {
    store(arrays.vertices.data(), arrays.vertices.size(), arrays.indices.data(), arrays.indices.size());
}

void Mesh::load(const std::array<MeshVertex, 4>& corners) {
    constexpr GLushort indices[] = {0, 1, 2, 2, 1, 3};
    store(corners.data(), corners.size(), indices, std::size(indices));
}

void Mesh::store(const MeshVertex* vertices, std::size_t vertexCount, const GLushort* indices, std::size_t indexCount) {
    if (_vertexBuffer == 0) {
        glGenBuffers(1, &_vertexBuffer);
        glGenBuffers(1, &_indexBuffer);
    }
    _indexCount = static_cast<GLsizei>(indexCount);
    glBindBuffer(GL_ARRAY_BUFFER, _vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertexCount * sizeof(MeshVertex)), vertices, GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _indexBuffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indexCount * sizeof(GLushort)), indices,
                 GL_STATIC_DRAW);
}

void Mesh::bind() const {
    const auto offset = [](std::size_t bytes) { return reinterpret_cast<const void*>(bytes); };
    glBindBuffer(GL_ARRAY_BUFFER, _vertexBuffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _indexBuffer);
    glVertexAttribPointer(positionAttribute, 3, GL_FLOAT, GL_FALSE, sizeof(MeshVertex),
                          offset(offsetof(MeshVertex, position)));
    glVertexAttribPointer(texCoordAttribute, 2, GL_FLOAT, GL_FALSE, sizeof(MeshVertex),
                          offset(offsetof(MeshVertex, texCoord)));
    glEnableVertexAttribArray(positionAttribute);
    glEnableVertexAttribArray(texCoordAttribute);
}

void Mesh::draw() const {
    glDrawElements(GL_TRIANGLES, _indexCount, GL_UNSIGNED_SHORT, nullptr);
}

void bindArrays(const float* positions, int size, const float* texCoords) {
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glVertexAttribPointer(positionAttribute, size, GL_FLOAT, GL_FALSE, 0, positions);
    glEnableVertexAttribArray(positionAttribute);
    if (!texCoords) {
        glDisableVertexAttribArray(texCoordAttribute);
        return;
    }
    glVertexAttribPointer(texCoordAttribute, 2, GL_FLOAT, GL_FALSE, 0, texCoords);
    glEnableVertexAttribArray(texCoordAttribute);
}

void releaseArrays() {
    glDisableVertexAttribArray(positionAttribute);
    glDisableVertexAttribArray(texCoordAttribute);
}

}  // namespace zet::ZETShow
