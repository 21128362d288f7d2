// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Triangle meshes, and their loader from MilkShape 3D's binary files (MS3D, versions 3 and 4).
//
// A model is groups of triangles, called meshes, over common vertices. It draws itself, or hands its
// triangles to the geometry code. Materials are loaded but not applied. The program's screens show no models;
// this is for other users of the engine.
#pragma once

#include <memory>
#include <vector>

#include "engine/MacEngine.h"
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
        int vertices[3] = {};  ///< indices into the model's
    };

    /// A group of triangles.
    struct Mesh {
        int material = -1;  ///< index into the model's; -1 is none
        int triangle_count = 0;
        std::unique_ptr<int[]> triangles;  ///< indices into the model's
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

    /// Fills the model from a file. Returns false, and leaves the model as it was, where that fails.
    virtual bool loadModelData(const char* file) = 0;

    /// Draws all meshes with the bound texture, colour and coordinates of the caller.
    void render() const;

    /// Draws one mesh; they count from 1, and nothing is drawn for any other number.
    void render_group(int group) const;

    /// Appends the triangles, `scale` times as large, to `out`: three records each, as one is appended with
    /// every corner that is filled in. Only the third has all corners of the triangle, the first two still
    /// have some of the one before; this is meant.
    void GetPolygons(std::vector<POLYGON3D>& out, float scale) const;

    /// Returns the mean of the corners of all triangles, so that a vertex counts as often as it is used; not
    /// a number without triangles.
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

/// A model from a MilkShape 3D file. The layout is in MilkShape.cpp; animation and joints are left out.
class MilkshapeModel : public Model {
  public:
    /// Refuses files that are no MS3D files of version 3 or 4, that end early, or whose indices lead nowhere.
    bool loadModelData(const char* file) override;
};
