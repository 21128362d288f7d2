// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/MilkShape.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <system_error>
#include <utility>

namespace {

constexpr char kIdentifier[] = "MS3D000000";
constexpr std::size_t kIdentifierBytes = 10;
constexpr std::size_t kTextureNameBytes = 128;

/// Reads little-endian records from a file's bytes, in order. After the first read beyond the end all further
/// reads fail too, and leave the numbers as they are.
class Records {
  public:
    explicit Records(const std::vector<char>& bytes) : bytes_(bytes) {}

    bool Failed() const { return failed_; }

    void Skip(std::size_t count) { Take(count); }

    /// Reads a number, or an array of them.
    template <typename Number>
    void Read(Number& number) {
        const char* from = Take(sizeof number);
        if (from != nullptr) std::memcpy(&number, from, sizeof number);
    }

    template <typename Number>
    Number Next() {
        Number number = 0;
        Read(number);
        return number;
    }

    /// Returns the next bytes; null where the file is shorter.
    const char* Take(std::size_t count) {
        if (failed_ || count > bytes_.size() - at_) {
            failed_ = true;
            return nullptr;
        }
        const char* taken = bytes_.data() + at_;
        at_ += count;
        return taken;
    }

  private:
    const std::vector<char>& bytes_;
    std::size_t at_ = 0;
    bool failed_ = false;
};

/// Returns a file's bytes; none if it cannot be read. The size comes first, because it fails for a named
/// pipe: opening one would block until somebody writes to it.
std::vector<char> ReadFile(const char* name) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(name, error);
    if (error) return {};
    std::ifstream file(name, std::ios::binary);
    if (!file) return {};
    std::vector<char> bytes(size);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file) return {};
    return bytes;
}

/// Reads the number of records in a section, and allocates them.
template <typename Record>
void Allocate(Records& records, int& count, std::unique_ptr<Record[]>& array) {
    count = records.Next<std::uint16_t>();
    array = std::make_unique<Record[]>(static_cast<std::size_t>(count));
}

bool IsIndex(int index, int count) {
    return 0 <= index && index < count;
}

// ---- The sections, in the order of the file ----
//
//   section    bytes                                                              count before it
//   header     10 "MS3D000000", 4 version
//   vertices   15 each                                                            2 bytes
//   triangles  70 each                                                            2 bytes
//   meshes     33 flags and name, 2 count, 2 for each triangle, 1 material        2 bytes
//   materials  361 each                                                           2 bytes
//
// All numbers are little-endian, without padding. The sections after the materials, animation and joints, are
// not read.

bool ReadHeader(Records& records) {
    const char* identifier = records.Take(kIdentifierBytes);
    if (identifier == nullptr || std::memcmp(identifier, kIdentifier, kIdentifierBytes) != 0) return false;
    const auto version = records.Next<std::int32_t>();
    return version == 3 || version == 4;
}

/// A vertex: flags (1 byte), location (3 floats), bone and reference count (1 byte each).
void ReadVertices(Records& records, Model& model) {
    Allocate(records, model.vertex_count, model.vertices);
    for (int i = 0; i < model.vertex_count && !records.Failed(); ++i) {
        records.Skip(1);
        records.Read(model.vertices.get()[i].location);
        records.Skip(2);
    }
}

/// A triangle: flags (2 bytes), three vertices (2 bytes each), normals (9 floats), s and t (3 floats each),
/// smoothing group and group (1 byte each). The file's t runs downwards, GL's upwards. Returns false for the
/// index of a vertex that does not exist.
bool ReadTriangles(Records& records, Model& model) {
    Allocate(records, model.triangle_count, model.triangles);
    for (int i = 0; i < model.triangle_count && !records.Failed(); ++i) {
        Model::Triangle& triangle = model.triangles.get()[i];
        records.Skip(2);
        for (int& vertex : triangle.vertices) {
            vertex = records.Next<std::uint16_t>();
            if (!IsIndex(vertex, model.vertex_count)) return false;
        }
        records.Read(triangle.normals);
        records.Read(triangle.s);
        records.Read(triangle.t);
        for (float& t : triangle.t) t = 1 - t;
        records.Skip(2);
    }
    return true;
}

/// A mesh: flags (1 byte), name (32 bytes), number of triangles and their indices (2 bytes each), material (1
/// byte). Returns false for the index of a triangle that does not exist. Deliberate: that of a material that
/// does not exist is taken as it is, since nothing uses materials.
bool ReadMeshes(Records& records, Model& model) {
    Allocate(records, model.mesh_count, model.meshes);
    for (int i = 0; i < model.mesh_count && !records.Failed(); ++i) {
        Model::Mesh& mesh = model.meshes.get()[i];
        records.Skip(33);
        Allocate(records, mesh.triangle_count, mesh.triangles);
        for (int j = 0; j < mesh.triangle_count; ++j) {
            const int triangle = records.Next<std::uint16_t>();
            if (!IsIndex(triangle, model.triangle_count)) return false;
            mesh.triangles.get()[j] = triangle;
        }
        mesh.material = records.Next<std::int8_t>();  // NOLINT(bugprone-signed-char-misuse): -1 is none
    }
    return true;
}

/// Copies a name up to its NUL, or all its bytes if there is none.
std::unique_ptr<char[]> CopyName(const char* name) {
    const std::size_t length = strnlen(name, kTextureNameBytes);
    auto copy = std::make_unique<char[]>(length + 1);
    std::copy_n(name, length, copy.get());
    return copy;
}

/// A material: name (32 bytes), four colours (4 floats each), shininess, transparency (1 float each), mode (1
/// byte), file names of the texture and of its alpha map (128 bytes each).
void ReadMaterials(Records& records, Model& model) {
    Allocate(records, model.material_count, model.materials);
    for (int i = 0; i < model.material_count && !records.Failed(); ++i) {
        Model::Material& material = model.materials.get()[i];
        records.Skip(32);
        records.Read(material.ambient);
        records.Read(material.diffuse);
        records.Read(material.specular);
        records.Read(material.emissive);
        records.Read(material.shininess);
        records.Skip(5);
        const char* name = records.Take(kTextureNameBytes);
        if (name != nullptr) material.texture_file = CopyName(name);
        records.Skip(128);
    }
}

}  // namespace

// ---- Model ----

Model::Model(Model&& other) noexcept {
    Swap(other);
}

Model& Model::operator=(Model&& other) noexcept {
    Swap(other);
    return *this;
}

void Model::Swap(Model& other) {
    std::swap(mesh_count, other.mesh_count);
    std::swap(meshes, other.meshes);
    std::swap(material_count, other.material_count);
    std::swap(materials, other.materials);
    std::swap(triangle_count, other.triangle_count);
    std::swap(triangles, other.triangles);
    std::swap(vertex_count, other.vertex_count);
    std::swap(vertices, other.vertices);
}

void Model::render() const {
    for (int i = 0; i < mesh_count; ++i) RenderMesh(meshes.get()[i]);
}

void Model::render_group(int group) const {
    if (0 < group && group <= mesh_count) RenderMesh(meshes.get()[group - 1]);
}

void Model::RenderMesh(const Mesh& mesh) const {
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < mesh.triangle_count; ++i) {
        const Triangle& triangle = TriangleOf(mesh, i);
        for (int k = 0; k < 3; ++k) {
            glNormal3fv(triangle.normals[k]);
            glTexCoord2f(triangle.s[k], triangle.t[k]);
            glVertex3fv(LocationOf(triangle, k));
        }
    }
    glEnd();
}

const Model::Triangle& Model::TriangleOf(const Mesh& mesh, int index) const {
    return triangles.get()[mesh.triangles.get()[index]];
}

const float* Model::LocationOf(const Triangle& triangle, int corner) const {
    return vertices.get()[triangle.vertices[corner]].location;
}

void Model::GetPolygons(std::vector<POLYGON3D>& out, float scale) const {
    POLYGON3D polygon;
    for (int i = 0; i < mesh_count; ++i) {
        const Mesh& mesh = meshes.get()[i];
        for (int j = 0; j < mesh.triangle_count; ++j) {
            const Triangle& triangle = TriangleOf(mesh, j);
            for (int k = 0; k < 3; ++k) {
                const float* normal = triangle.normals[k];
                const float* location = LocationOf(triangle, k);
                polygon.normal[k] = {normal[0], normal[1], normal[2]};
                polygon.vertex[k] = {location[0] * scale, location[1] * scale, location[2] * scale};
                out.push_back(polygon);
            }
        }
    }
}

std::vector<vector3f> Model::Corners() const {
    std::vector<vector3f> corners;
    for (int i = 0; i < mesh_count; ++i) {
        const Mesh& mesh = meshes.get()[i];
        for (int j = 0; j < mesh.triangle_count; ++j) {
            for (int k = 0; k < 3; ++k) {
                const float* location = LocationOf(TriangleOf(mesh, j), k);
                corners.emplace_back(location[0], location[1], location[2]);
            }
        }
    }
    return corners;
}

vector3f Model::GetCenter() const {
    const std::vector<vector3f> corners = Corners();
    vector3f sum;
    for (const vector3f& corner : corners) sum = sum + corner;
    const auto count = static_cast<float>(corners.size());
    return {sum.x / count, sum.y / count, sum.z / count};
}

float Model::GetRadius() const {
    const vector3f center = GetCenter();
    float radius = 0;
    for (const vector3f& corner : Corners()) radius = std::max(radius, (corner - center).length());
    return radius;
}

// ---- MilkshapeModel ----

bool MilkshapeModel::loadModelData(const char* file) try {
    const std::vector<char> bytes = ReadFile(file);
    Records records(bytes);
    MilkshapeModel loaded;
    if (!ReadHeader(records)) return false;
    ReadVertices(records, loaded);
    if (!ReadTriangles(records, loaded) || !ReadMeshes(records, loaded)) return false;
    ReadMaterials(records, loaded);
    if (records.Failed()) return false;
    *this = std::move(loaded);
    return true;
} catch (const std::bad_alloc&) {
    return false;  // a file too large for the memory
}
