// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Triangle meshes, and their loader from MilkShape 3D's binary files (MS3D, versions 3 and 4).
//
// A model has one list of vertices and one of triangles; its meshes are groups of these triangles. It draws
// itself, or copies its triangles for the geometry code. Materials are loaded but not applied.
#pragma once

#include <memory>
#include <vector>

#include "engine/polygon.h"
#include "engine/vector3f.h"

/// A mesh model; what fills it is up to the classes derived from it.
class Model {
  public:
    struct Vertex {
        char bone = 0;  ///< never filled
        float location[3] = {};
    };

    /// Arrays in the order of the corners.
    struct Triangle {
        float normals[3][3] = {};
        float s[3] = {};  ///< texture coordinates, 0 .. 1
        float t[3] = {};
        int vertices[3] = {};  ///< indices into the model's vertices
    };

    /// A group of triangles.
    struct Mesh {
        int material = -1;  ///< index into the model's materials; not checked: -1 and others lead to none
        int triangle_count = 0;
        std::unique_ptr<int[]> triangles;  ///< indices into the model's triangles
    };

    /// Colours are red, green, blue, alpha, 0 .. 1.
    struct Material {
        float ambient[4] = {};
        float diffuse[4] = {};
        float specular[4] = {};
        float emissive[4] = {};
        float shininess = 0;
        unsigned int texture = 0;  ///< never filled
        std::unique_ptr<char[]> texture_file;
    };

    virtual ~Model() = default;

    /// Fills the model from a file. Returns false and changes nothing if that fails.
    virtual bool loadModelData(const char* file) = 0;

    /// Draws all meshes with the bound texture, colour and coordinates of the caller.
    void render() const;

    /// Draws one mesh; the first has the number 1. Draws nothing for a number that no mesh has.
    void render_group(int group) const;

    /// Appends the triangles to `out`, multiplied by `scale`: three records for each.
    ///
    /// One record is appended after each corner, so that in the first two the later corners are still those
    /// of the triangle before.
    /// Deliberate: only the third record of a triangle has all its corners.
    void GetPolygons(std::vector<POLYGON3D>& out, float scale) const;

    /// Returns the mean of the corners of all triangles; a vertex counts once for each triangle that uses it.
    /// NaN without triangles.
    vector3f GetCenter() const;

    /// Returns the largest distance of a corner from the centre; 0 without triangles.
    float GetRadius() const;

    int mesh_count = 0;
    std::unique_ptr<Mesh[]> meshes;
    int material_count = 0;
    std::unique_ptr<Material[]> materials;
    int triangle_count = 0;
    std::unique_ptr<Triangle[]> triangles;
    int vertex_count = 0;
    std::unique_ptr<Vertex[]> vertices;

  protected:
    Model() = default;
    Model(Model&& other) noexcept;
    Model& operator=(Model&& other) noexcept;

  private:
    void Swap(Model& other);
    void RenderMesh(const Mesh& mesh) const;
    const Triangle& TriangleOf(const Mesh& mesh, int index) const;
    const float* LocationOf(const Triangle& triangle, int corner) const;
    std::vector<vector3f> Corners() const;
};

/// A model from a MilkShape 3D file. Animation and joints are not read. MilkShape.cpp describes the file.
class MilkshapeModel : public Model {
  public:
    /// Returns false also for files of another kind or version, that end early, or have the index of a vertex
    /// or triangle that does not exist.
    bool loadModelData(const char* file) override;
};
