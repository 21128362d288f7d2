// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as a mesh: the input is the file "fuzz.ms3d". It is loaded over an earlier model, drawn, handed
// out as polygons and measured. Whether it loads, and all that is in the model then, is compared with what a
// second, simple-minded parser finds in the same bytes.
#include <GL/gl.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/MilkShape.h"
#include "fuzz/fuzzer.h"

// ---- The GL of the fuzzer ----
//
// These stand before the library's, which has no context: they read what they are given, and count.

namespace {

bool begun = false;
int meshes_drawn = 0;
std::size_t corners_drawn = 0;
volatile float last_number = 0;

}  // namespace

extern "C" void glBegin(GLenum mode) {
    fuzz::Check(!begun && mode == GL_TRIANGLES, "a mesh is begun as triangles");
    begun = true;
    ++meshes_drawn;
}

extern "C" void glNormal3fv(const GLfloat* normal) {
    for (int i = 0; i < 3; ++i) last_number = normal[i];
}

extern "C" void glTexCoord2f(GLfloat /*s*/, GLfloat /*t*/) {}

extern "C" void glVertex3fv(const GLfloat* location) {
    fuzz::Check(begun, "a corner belongs to a mesh");
    for (int i = 0; i < 3; ++i) last_number = location[i];
    ++corners_drawn;
}

extern "C" void glEnd() {
    fuzz::Check(begun, "a mesh that ends has begun");
    begun = false;
}

namespace {

using fuzz::Check;

constexpr char kFile[] = "fuzz.ms3d";
constexpr std::size_t kTextureName = 128;

// ---- A model as bytes, in both ways ----

/// Returns a number as 1, 2 or 4 little-endian bytes.
std::string Number(unsigned number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i));
    return text;
}

std::string Count(int count) {
    Check(0 <= count && count <= 65535, "a count is one of 16 bits");
    return Number(static_cast<unsigned>(count), 2);
}

std::string Index(int index, int count) {
    Check(0 <= index && index < count, "an index is in range");
    return Count(index);
}

std::string Floats(const float* numbers, std::size_t count) {
    return {reinterpret_cast<const char*>(numbers), count * sizeof *numbers};
}

/// Returns an array of a model with its length.
template <typename Record>
std::span<const Record> All(const std::unique_ptr<Record[]>& records, int count) {
    return {records.get(), static_cast<std::size_t>(count)};
}

/// Returns all that is in a model, its indices of vertices and triangles in range.
std::string BytesOf(const Model& model) {
    std::string bytes = Count(model.vertex_count);
    for (const Model::Vertex& vertex : All(model.vertices, model.vertex_count)) {
        Check(vertex.bone == 0, "bones are not filled");
        bytes += Floats(vertex.location, 3);
    }
    bytes += Count(model.triangle_count);
    for (const Model::Triangle& triangle : All(model.triangles, model.triangle_count)) {
        for (const int vertex : triangle.vertices) bytes += Index(vertex, model.vertex_count);
        for (const auto& normal : triangle.normals) bytes += Floats(normal, 3);
        bytes += Floats(triangle.s, 3) + Floats(triangle.t, 3);
    }
    bytes += Count(model.mesh_count);
    for (const Model::Mesh& mesh : All(model.meshes, model.mesh_count)) {
        bytes += Count(mesh.triangle_count);
        for (const int triangle : All(mesh.triangles, mesh.triangle_count)) {
            bytes += Index(triangle, model.triangle_count);
        }
        Check(-128 <= mesh.material && mesh.material <= 127, "a material's index is a byte with a sign");
        bytes += Number(static_cast<unsigned>(mesh.material), 1);
    }
    bytes += Count(model.material_count);
    for (const Model::Material& material : All(model.materials, model.material_count)) {
        Check(material.texture == 0, "textures are not filled");
        bytes += Floats(material.ambient, 4) + Floats(material.diffuse, 4) + Floats(material.specular, 4) +
                 Floats(material.emissive, 4) + Floats(&material.shininess, 1) + material.texture_file.get() +
                 '\0';
    }
    return bytes;
}

// ---- What the file has in it ----

/// A place in a file that moves on with what is read; beyond the end all bytes are 0.
struct Place {
    std::string_view file;
    std::size_t at = 0;

    bool Beyond() const { return at > file.size(); }

    std::string Bytes(std::size_t count) {
        std::string bytes(Beyond() ? std::string_view() : file.substr(at, count));
        bytes.resize(count);
        at += count;
        return bytes;
    }

    unsigned Number(std::size_t count) {
        unsigned number = 0;
        const std::string bytes = Bytes(count);
        for (std::size_t i = 0; i < count; ++i) {
            number |= unsigned{static_cast<unsigned char>(bytes[i])} << (8 * i);
        }
        return number;
    }
};

/// Returns a triangle's three texture coordinates, the other way up.
std::string Inverted(const std::string& bytes) {
    float t[3];
    std::memcpy(t, bytes.data(), sizeof t);
    for (float& number : t) number = 1 - number;
    return Floats(t, 3);
}

/// Returns what BytesOf gives of a file's model; nothing of a file that is to be refused.
std::optional<std::string> ExpectedOf(std::string_view file) {
    Place place{file};
    if (place.Bytes(10) != "MS3D000000") return {};
    const unsigned version = place.Number(4);
    if (version != 3 && version != 4) return {};

    const unsigned vertices = place.Number(2);
    std::string bytes = Number(vertices, 2);
    for (unsigned i = 0; i < vertices && !place.Beyond(); ++i) bytes += place.Bytes(15).substr(1, 12);

    const unsigned triangles = place.Number(2);
    bytes += Number(triangles, 2);
    for (unsigned i = 0; i < triangles && !place.Beyond(); ++i) {
        place.at += 2;
        for (int corner = 0; corner < 3; ++corner) {
            const unsigned vertex = place.Number(2);
            if (vertex >= vertices) return {};
            bytes += Number(vertex, 2);
        }
        bytes += place.Bytes(48);
        bytes += Inverted(place.Bytes(12));
        place.at += 2;
    }

    const unsigned meshes = place.Number(2);
    bytes += Number(meshes, 2);
    for (unsigned i = 0; i < meshes && !place.Beyond(); ++i) {
        place.at += 33;
        const unsigned of_mesh = place.Number(2);
        bytes += Number(of_mesh, 2);
        for (unsigned j = 0; j < of_mesh && !place.Beyond(); ++j) {
            const unsigned triangle = place.Number(2);
            if (triangle >= triangles) return {};
            bytes += Number(triangle, 2);
        }
        bytes += place.Bytes(1);
    }

    const unsigned materials = place.Number(2);
    bytes += Number(materials, 2);
    for (unsigned i = 0; i < materials && !place.Beyond(); ++i) {
        const std::string material = place.Bytes(361);
        bytes += material.substr(32, 68);
        const std::string texture = material.substr(105, kTextureName);
        bytes += texture.substr(0, texture.find('\0')) + '\0';
    }
    if (place.Beyond()) return {};
    return bytes;
}

// ---- What a model can do ----

/// Returns the triangles of all meshes, in the order in which they are drawn.
std::vector<const Model::Triangle*> TrianglesOf(const Model& model) {
    std::vector<const Model::Triangle*> triangles;
    for (const Model::Mesh& mesh : All(model.meshes, model.mesh_count)) {
        for (const int i : All(mesh.triangles, mesh.triangle_count))
            triangles.push_back(&model.triangles.get()[i]);
    }
    return triangles;
}

void CheckDrawn(int meshes, std::size_t triangles) {
    Check(!begun && meshes_drawn == meshes && corners_drawn == 3 * triangles,
          "exactly what is asked for is drawn");
    meshes_drawn = 0;
    corners_drawn = 0;
}

void Draw(const Model& model) {
    model.render();
    CheckDrawn(model.mesh_count, TrianglesOf(model).size());
    for (const int group : {-1, 0, model.mesh_count + 1}) model.render_group(group);
    CheckDrawn(0, 0);
    int group = 0;
    for (const Model::Mesh& mesh : All(model.meshes, model.mesh_count)) {
        model.render_group(++group);
        CheckDrawn(1, static_cast<std::size_t>(mesh.triangle_count));
    }
}

/// Returns a corner of a polygon as bytes.
std::string CornerOf(const POLYGON3D& polygon, int corner) {
    const VERTEX3D& vertex = polygon.vertex[corner];
    const VECTOR3D& normal = polygon.normal[corner];
    const float numbers[] = {vertex.x, vertex.y, vertex.z, normal.x, normal.y, normal.z};
    return Floats(numbers, 6);
}

/// Checks that each polygon has one more corner of its own, and the two others of the polygon before.
void CheckPolygons(const Model& model) {
    constexpr float kScale = 0.5F;
    const std::vector<const Model::Triangle*> triangles = TrianglesOf(model);
    std::vector<POLYGON3D> polygons(1);
    model.GetPolygons(polygons, kScale);
    Check(polygons.size() == 1 + 3 * triangles.size(), "a corner is a polygon");
    std::size_t next = 1;
    for (const Model::Triangle* triangle : triangles) {
        for (int k = 0; k < 3; ++k, ++next) {
            const float* at = model.vertices.get()[triangle->vertices[k]].location;
            const float scaled[] = {at[0] * kScale, at[1] * kScale, at[2] * kScale};
            Check(CornerOf(polygons[next], k) == Floats(scaled, 3) + Floats(triangle->normals[k], 3),
                  "a polygon has its corner");
            for (const int other : {(k + 1) % 3, (k + 2) % 3}) {
                Check(CornerOf(polygons[next], other) == CornerOf(polygons[next - 1], other),
                      "its other corners are those of the polygon before");
            }
        }
    }
}

void CheckMeasures(const Model& model) {
    const vector3f center = model.GetCenter();
    const float radius = model.GetRadius();
    Check(radius >= 0, "a radius is a number, and not negative");
    if (!TrianglesOf(model).empty()) return;
    Check(std::isnan(center.x) && std::isnan(center.y) && std::isnan(center.z) && radius == 0,
          "nothing has no centre");
}

// ---- Seeds ----

std::string Triangle(unsigned a, unsigned b, unsigned c) {
    return Number(0, 2) + Number(a, 2) + Number(b, 2) + Number(c, 2) + std::string(48, '?') +
           std::string(12, '\0') + Number(0, 2);
}

std::string Mesh(const std::vector<unsigned>& triangles, unsigned material) {
    std::string bytes = std::string(33, 'm') + Number(static_cast<unsigned>(triangles.size()), 2);
    for (const unsigned triangle : triangles) bytes += Number(triangle, 2);
    return bytes + Number(material, 1);
}

/// Returns a material's bytes; the name of the texture ends with a NUL, or has 128 bytes.
std::string Material(std::string texture) {
    texture.resize(kTextureName);
    return std::string(32, 'n') + std::string(73, '>') + texture + std::string(128, 'a');
}

std::string Section(const std::vector<std::string>& records) {
    std::string bytes = Number(static_cast<unsigned>(records.size()), 2);
    for (const std::string& record : records) bytes += record;
    return bytes;
}

const std::string kHeader = "MS3D000000" + Number(4, 4);

std::string Vertices() {
    const std::string not_a_number = "\xFF\xFF\xFF\x7F";
    const float huge[] = {3e38F, -3e38F, 1e-40F};
    const float one[] = {1, 1, 1};
    return Section({std::string(15, '\0'), 'v' + Floats(one, 3) + "br", 'v' + Floats(huge, 3) + "br",
                    'v' + not_a_number + not_a_number + not_a_number + "br"});
}

/// Returns a file of four vertices and two triangles with these meshes and materials.
std::string File(const std::vector<std::string>& meshes, const std::vector<std::string>& materials) {
    return kHeader + Vertices() + Section({Triangle(0, 1, 2), Triangle(3, 2, 1)}) + Section(meshes) +
           Section(materials);
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    const std::string good = File({Mesh({0, 1, 1}, 1), Mesh({}, 0xFF)}, {Material("a.bmp"), Material("")});
    const std::string none = Number(0, 2);
    return {
        "",
        "MS3D00000",
        "MS3D000000",
        "MS3D000000" + Number(3, 4) + none + none + none + none,
        "MS3D000000" + Number(2, 4) + none + none + none + none,
        "MS3D000000" + Number(5, 4) + none + none + none + none,
        "MS3D000001" + Number(4, 4) + none + none + none + none,
        kHeader + none + none + none,
        kHeader + Number(65535, 2) + none + none + none,
        kHeader + Vertices() + Number(65535, 2) + none + none,
        kHeader + Vertices() + none + Number(65535, 2) + none,
        kHeader + none + none + none + Number(65535, 2),
        kHeader + Vertices() + Section({Triangle(0, 1, 4)}) + none + none,
        kHeader + none + Section({Triangle(0, 0, 0)}) + none + none,
        good,
        good + "animation",
        good.substr(0, good.size() - 1),
        good.substr(0, good.size() / 2),
        good + good,
        File({Mesh({0}, 0xFF)}, {}),
        File({Mesh({2}, 0xFF)}, {}),
        File({Mesh({0}, 0)}, {}),
        File({Mesh({0}, 0x80)}, {Material("a.bmp")}),
        File({Mesh({0}, 1)}, {Material("a.bmp")}),
        File({Mesh({0}, 0)}, {Material(std::string(kTextureName, 't'))}),
        File(std::vector<std::string>(300, Mesh({0, 1}, 0xFF)), {}),
        File({}, std::vector<std::string>(130, Material("many"))),
    };
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string earlier = File({Mesh({1, 0}, 0), Mesh({1}, 0xFF)}, {Material("earlier.bmp")});
    const fuzz::InOwnFolder here;
    MilkshapeModel model;
    fuzz::WriteFile(kFile, earlier.data(), earlier.size());
    Check(model.loadModelData(kFile), "a good mesh is loaded");
    const std::string before = BytesOf(model);

    fuzz::WriteFile(kFile, data, size);
    const std::optional<std::string> expected = ExpectedOf({reinterpret_cast<const char*>(data), size});
    Check(model.loadModelData(kFile) == expected.has_value(),
          "a mesh is loaded exactly if all of it is there");
    Check(BytesOf(model) == expected.value_or(before), "the model is the file's, or the earlier one");
    Draw(model);
    CheckPolygons(model);
    CheckMeasures(model);
    return 0;
}
