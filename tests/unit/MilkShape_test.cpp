// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/MilkShape.h"

#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "tests/fakes/fakes.h"
#include "tests/unit/library_calls.h"
#include "tests/unit/limit_memory.h"
#include "tests/unit/limit_process.h"
#include "tests/unit/little_endian.h"
#include "tests/unit/temporary_folder.h"

namespace {

// ---- Files by hand ----

/// What the loader skips: no zero, so that it cannot pass for a field that was read.
std::string Skipped(std::size_t bytes) {
    return std::string(bytes, '\xA7');
}

template <typename Numbers>
std::string Floats(const Numbers& numbers) {
    std::string text;
    for (const float number : numbers) text += Number(std::bit_cast<std::uint32_t>(number), 4);
    return text;
}

using Location = std::array<float, 3>;

struct TriangleRecord {
    std::array<std::uint32_t, 3> vertices{};
    std::array<float, 9> normals{};
    std::array<float, 3> s{};
    std::array<float, 3> t{};
};

struct GroupRecord {
    std::vector<std::uint32_t> triangles;
    int material = -1;
};

struct MaterialRecord {
    std::array<float, 4> ambient{};
    std::array<float, 4> diffuse{};
    std::array<float, 4> specular{};
    std::array<float, 4> emissive{};
    float shininess = 0;
    std::string texture;  ///< at most 128 bytes; fewer get a NUL
};

/// A file as records; at first one with nothing in it.
struct Ms3d {
    std::string identifier = "MS3D000000";
    std::uint32_t version = 4;
    std::vector<Location> vertices;
    std::vector<TriangleRecord> triangles;
    std::vector<GroupRecord> groups;
    std::vector<MaterialRecord> materials;
};

std::string BytesOf(const Location& vertex) {
    return Skipped(1) + Floats(vertex) + Skipped(2);
}

std::string BytesOf(const TriangleRecord& triangle) {
    std::string vertices;
    for (const std::uint32_t vertex : triangle.vertices) vertices += Number(vertex, 2);
    return Skipped(2) + vertices + Floats(triangle.normals) + Floats(triangle.s) + Floats(triangle.t) +
           Skipped(2);
}

std::string BytesOf(const GroupRecord& group) {
    std::string triangles = Number(static_cast<std::uint32_t>(group.triangles.size()), 2);
    for (const std::uint32_t triangle : group.triangles) triangles += Number(triangle, 2);
    return Skipped(33) + triangles + Number(static_cast<std::uint32_t>(group.material), 1);
}

std::string BytesOf(const MaterialRecord& material) {
    std::string texture = material.texture;
    if (texture.size() < 128) texture += '\0';
    texture += Skipped(128 - texture.size());
    return Skipped(32) + Floats(material.ambient) + Floats(material.diffuse) + Floats(material.specular) +
           Floats(material.emissive) + Floats(std::array{material.shininess}) + Skipped(5) + texture +
           Skipped(128);
}

template <typename Record>
std::string Section(const std::vector<Record>& records) {
    std::string bytes = Number(static_cast<std::uint32_t>(records.size()), 2);
    for (const Record& record : records) bytes += BytesOf(record);
    return bytes;
}

std::string BytesOf(const Ms3d& file) {
    return file.identifier + Number(file.version, 4) + Section(file.vertices) + Section(file.triangles) +
           Section(file.groups) + Section(file.materials);
}

// ---- Models ----

constexpr TriangleRecord kFirst = {
    {0, 1, 2}, {10, 11, 12, 13, 14, 15, 16, 17, 18}, {0, 0.25F, 0.5F}, {0, 1, 0.25F}};
constexpr TriangleRecord kSecond = {
    {3, 2, 1}, {20, 21, 22, 23, 24, 25, 26, 27, 28}, {0.75F, 1, 2}, {-1, 0.5F, 2}};

/// Returns four vertices and two triangles, the second before the first in one mesh and the first alone in
/// another.
Ms3d TwoMeshes() {
    Ms3d file;
    file.vertices = {{1, 2, 3}, {-4, 5.5F, 6}, {7, -8, 9}, {100, 200, -300}};
    file.triangles = {kFirst, kSecond};
    file.groups = {{{1, 0}, 1}, {{0}, -1}};
    file.materials = {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}, 17, "feather.bmp"},
                      {{0.1F, 0.2F, 0.3F, 0.4F}, {0.5F, 0, 0, 1}, {0, 0.5F, 0, 1}, {0, 0, 0.5F, 1}, 128, ""}};
    return file;
}

/// Returns one mesh of triangles, whose corners are three vertices of their own each.
Ms3d Mesh(const std::vector<Location>& corners) {
    Ms3d file;
    file.vertices = corners;
    file.groups = {{}};
    for (std::uint32_t i = 0; i + 2 < corners.size(); i += 3) {
        file.triangles.push_back({{i, i + 1, i + 2}, {}, {}, {}});
        file.groups[0].triangles.push_back(i / 3);
    }
    return file;
}

template <typename Numbers>
void Append(std::ostringstream& text, const char* name, const Numbers& numbers) {
    text << ' ' << name;
    for (const auto number : numbers) text << ' ' << number;
}

/// Returns everything in a model as text.
std::string TextOf(const Model& model) {
    std::ostringstream text;
    text << std::hexfloat;
    for (int i = 0; i < model.vertex_count; ++i) {
        text << "vertex, bone " << int{model.vertices[i].bone};
        Append(text, "at", model.vertices[i].location);
        text << '\n';
    }
    for (int i = 0; i < model.triangle_count; ++i) {
        text << "triangle";
        Append(text, "of", model.triangles[i].vertices);
        for (const auto& normal : model.triangles[i].normals) Append(text, "normal", normal);
        Append(text, "s", model.triangles[i].s);
        Append(text, "t", model.triangles[i].t);
        text << '\n';
    }
    for (int i = 0; i < model.mesh_count; ++i) {
        const Model::Mesh& mesh = model.meshes[i];
        text << "mesh of material " << mesh.material;
        Append(text, "of",
               std::vector<int>(mesh.triangles.get(), mesh.triangles.get() + mesh.triangle_count));
        text << '\n';
    }
    for (int i = 0; i < model.material_count; ++i) {
        const Model::Material& material = model.materials[i];
        text << "material " << material.texture << " \"" << material.texture_file.get() << '"';
        Append(text, "ambient", material.ambient);
        Append(text, "diffuse", material.diffuse);
        Append(text, "specular", material.specular);
        Append(text, "emissive", material.emissive);
        text << " shininess " << material.shininess << '\n';
    }
    return text.str();
}

template <typename Number, std::size_t kCount>
std::vector<Number> List(const Number (&array)[kCount]) {
    return {std::begin(array), std::end(array)};
}

class MilkShapeTest : public fakes::Test {
  protected:
    static bool Load(Model& model, const std::string& bytes) {
        WriteFile("owl.ms3d", bytes);
        return model.loadModelData("owl.ms3d");
    }

    static bool Load(Model& model, const Ms3d& file) { return Load(model, BytesOf(file)); }

    static MilkshapeModel Loaded(const Ms3d& file) {
        MilkshapeModel model;
        EXPECT_TRUE(Load(model, file));
        return model;
    }

    static bool Loads(const Ms3d& file) {
        MilkshapeModel model;
        return Load(model, file);
    }

    TemporaryFolder folder_;
};

// ---- What it gives ----

TEST_F(MilkShapeTest, AModelIsEmptyAtFirst) {
    const MilkshapeModel model;

    EXPECT_EQ(model.vertex_count, 0);
    EXPECT_EQ(model.triangle_count, 0);
    EXPECT_EQ(model.mesh_count, 0);
    EXPECT_EQ(model.material_count, 0);
    EXPECT_EQ(model.vertices, nullptr);
    EXPECT_EQ(model.triangles, nullptr);
    EXPECT_EQ(model.meshes, nullptr);
    EXPECT_EQ(model.materials, nullptr);
}

TEST_F(MilkShapeTest, AMeshAndAMaterialAreEmptyAtFirst) {
    const Model::Mesh mesh;
    const Model::Material material;

    EXPECT_EQ(mesh.material, -1);
    EXPECT_EQ(mesh.triangle_count, 0);
    EXPECT_EQ(mesh.triangles, nullptr);
    EXPECT_EQ(material.shininess, 0);
    EXPECT_EQ(material.texture, 0U);
    EXPECT_EQ(material.texture_file, nullptr);
}

TEST_F(MilkShapeTest, AModelThatIsMovedTakesEverythingAlong) {
    MilkshapeModel model = Loaded(TwoMeshes());
    const std::string before = TextOf(model);

    MilkshapeModel moved(std::move(model));

    EXPECT_EQ(TextOf(moved), before);
    MilkshapeModel assigned;
    assigned = std::move(moved);
    EXPECT_EQ(TextOf(assigned), before);
}

TEST_F(MilkShapeTest, LoadsVerticesWithoutTheirBones) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    ASSERT_EQ(model.vertex_count, 4);
    EXPECT_EQ(List(model.vertices[0].location), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(List(model.vertices[1].location), (std::vector<float>{-4, 5.5F, 6}));
    EXPECT_EQ(List(model.vertices[2].location), (std::vector<float>{7, -8, 9}));
    EXPECT_EQ(List(model.vertices[3].location), (std::vector<float>{100, 200, -300}));
    for (int i = 0; i < 4; ++i) EXPECT_EQ(model.vertices[i].bone, 0);
}

TEST_F(MilkShapeTest, LoadsTrianglesWithTheirTUpsideDown) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    ASSERT_EQ(model.triangle_count, 2);
    const Model::Triangle& first = model.triangles[0];
    EXPECT_EQ(List(first.vertices), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(List(first.normals[0]), (std::vector<float>{10, 11, 12}));
    EXPECT_EQ(List(first.normals[1]), (std::vector<float>{13, 14, 15}));
    EXPECT_EQ(List(first.normals[2]), (std::vector<float>{16, 17, 18}));
    EXPECT_EQ(List(first.s), (std::vector<float>{0, 0.25F, 0.5F}));
    EXPECT_EQ(List(first.t), (std::vector<float>{1, 0, 0.75F}));
    const Model::Triangle& second = model.triangles[1];
    EXPECT_EQ(List(second.vertices), (std::vector<int>{3, 2, 1}));
    EXPECT_EQ(List(second.normals[0]), (std::vector<float>{20, 21, 22}));
    EXPECT_EQ(List(second.normals[1]), (std::vector<float>{23, 24, 25}));
    EXPECT_EQ(List(second.normals[2]), (std::vector<float>{26, 27, 28}));
    EXPECT_EQ(List(second.s), (std::vector<float>{0.75F, 1, 2}));
    EXPECT_EQ(List(second.t), (std::vector<float>{2, 0.5F, -1}));
}

TEST_F(MilkShapeTest, LoadsMeshesWithTheirTrianglesAndMaterial) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    ASSERT_EQ(model.mesh_count, 2);
    ASSERT_EQ(model.meshes[0].triangle_count, 2);
    EXPECT_EQ(model.meshes[0].triangles[0], 1);
    EXPECT_EQ(model.meshes[0].triangles[1], 0);
    EXPECT_EQ(model.meshes[0].material, 1);
    ASSERT_EQ(model.meshes[1].triangle_count, 1);
    EXPECT_EQ(model.meshes[1].triangles[0], 0);
    EXPECT_EQ(model.meshes[1].material, -1);
}

TEST_F(MilkShapeTest, LoadsMaterialsWithoutATexture) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    ASSERT_EQ(model.material_count, 2);
    const Model::Material& first = model.materials[0];
    EXPECT_EQ(List(first.ambient), (std::vector<float>{1, 2, 3, 4}));
    EXPECT_EQ(List(first.diffuse), (std::vector<float>{5, 6, 7, 8}));
    EXPECT_EQ(List(first.specular), (std::vector<float>{9, 10, 11, 12}));
    EXPECT_EQ(List(first.emissive), (std::vector<float>{13, 14, 15, 16}));
    EXPECT_EQ(first.shininess, 17);
    EXPECT_EQ(first.texture, 0U);
    EXPECT_STREQ(first.texture_file.get(), "feather.bmp");
    const Model::Material& second = model.materials[1];
    EXPECT_EQ(List(second.ambient), (std::vector<float>{0.1F, 0.2F, 0.3F, 0.4F}));
    EXPECT_EQ(List(second.diffuse), (std::vector<float>{0.5F, 0, 0, 1}));
    EXPECT_EQ(List(second.specular), (std::vector<float>{0, 0.5F, 0, 1}));
    EXPECT_EQ(List(second.emissive), (std::vector<float>{0, 0, 0.5F, 1}));
    EXPECT_EQ(second.shininess, 128);
    EXPECT_EQ(second.texture, 0U);
    EXPECT_STREQ(second.texture_file.get(), "");
}

TEST_F(MilkShapeTest, KeepsEveryBitOfAFloat) {
    constexpr std::array<std::uint32_t, 3> kBits = {0x7FC12345, 0x80000001, 0xFF800000};
    Ms3d file;
    file.vertices = {
        {std::bit_cast<float>(kBits[0]), std::bit_cast<float>(kBits[1]), std::bit_cast<float>(kBits[2])}};

    const MilkshapeModel model = Loaded(file);

    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(model.vertices[0].location[i]), kBits[i]);
    }
}

TEST_F(MilkShapeTest, ATextureNameEndsWithItsNulOrWithItsBytes) {
    const std::string all(128, 'x');
    for (const std::size_t length : {1U, 126U, 127U, 128U}) {
        Ms3d file;
        file.materials = {{{}, {}, {}, {}, 0, all.substr(0, length)}, {{}, {}, {}, {}, 3, "next"}};

        const MilkshapeModel model = Loaded(file);

        EXPECT_EQ(model.materials[0].texture_file.get(), all.substr(0, length));
        EXPECT_STREQ(model.materials[1].texture_file.get(), "next");
        EXPECT_EQ(model.materials[1].shininess, 3);
    }
}

TEST_F(MilkShapeTest, LoadsAFileWithNothingInIt) {
    MilkshapeModel model;

    EXPECT_TRUE(Load(model, Ms3d()));

    EXPECT_EQ(TextOf(model), "");
}

TEST_F(MilkShapeTest, LoadsAMeshWithoutTriangles) {
    Ms3d file = TwoMeshes();
    file.groups = {{{}, 0}, {{1}, -1}};

    const MilkshapeModel model = Loaded(file);

    EXPECT_EQ(model.meshes[0].triangle_count, 0);
    EXPECT_EQ(model.meshes[0].material, 0);
    EXPECT_EQ(model.meshes[1].triangles[0], 1);
}

TEST_F(MilkShapeTest, LoadsAsManyAsCanBeCounted) {
    constexpr int kMost = 65535;
    Ms3d file;
    file.vertices.assign(kMost, {1, 2, 3});
    file.vertices.back() = {4, 5, 6};
    file.triangles.assign(kMost, kFirst);
    file.triangles.back().vertices = {65534, 32768, 65533};
    file.groups.assign(kMost, {});
    file.groups.back().triangles.assign(kMost, 32768);
    file.groups.back().triangles.back() = 65534;
    file.materials.assign(kMost, {});
    file.materials.back().texture = "last";

    const MilkshapeModel model = Loaded(file);

    ASSERT_EQ(model.vertex_count, kMost);
    ASSERT_EQ(model.triangle_count, kMost);
    ASSERT_EQ(model.mesh_count, kMost);
    ASSERT_EQ(model.material_count, kMost);
    EXPECT_EQ(List(model.vertices[kMost - 1].location), (std::vector<float>{4, 5, 6}));
    EXPECT_EQ(List(model.triangles[kMost - 1].vertices), (std::vector<int>{65534, 32768, 65533}));
    ASSERT_EQ(model.meshes[kMost - 1].triangle_count, kMost);
    EXPECT_EQ(model.meshes[kMost - 1].triangles[kMost - 2], 32768);
    EXPECT_EQ(model.meshes[kMost - 1].triangles[kMost - 1], 65534);
    EXPECT_STREQ(model.materials[kMost - 1].texture_file.get(), "last");
}

TEST_F(MilkShapeTest, IgnoresWhatFollowsTheMaterials) {
    const std::string good = BytesOf(TwoMeshes());
    const std::string expected = TextOf(Loaded(TwoMeshes()));
    for (const std::size_t more : {1U, 2U, 1000U}) {
        MilkshapeModel model;
        EXPECT_TRUE(Load(model, good + Skipped(more)));
        EXPECT_EQ(TextOf(model), expected);
    }
}

TEST_F(MilkShapeTest, PathsAreRelativeOrAbsoluteAndUtf8) {
    const std::string name = "perch\xC3\xA9 no.ms3d";
    WriteFile(name, BytesOf(TwoMeshes()));
    MilkshapeModel model;

    EXPECT_TRUE(model.loadModelData(name.c_str()));
    EXPECT_TRUE(model.loadModelData((folder_.Path() / name).c_str()));
}

// ---- Headers ----

TEST_F(MilkShapeTest, TakesVersions3And4Only) {
    for (const std::uint32_t version : {3U, 4U}) {
        Ms3d file = TwoMeshes();
        file.version = version;
        EXPECT_TRUE(Loads(file)) << version;
    }
    for (const std::uint32_t version :
         {0U, 1U, 2U, 5U, 0x104U, 0x10003U, 0x3000000U, 0x4000004U, 0x80000003U, 0xFFFFFFFFU, 0xFFFFFFFCU}) {
        Ms3d file = TwoMeshes();
        file.version = version;
        EXPECT_FALSE(Loads(file)) << version;
    }
}

TEST_F(MilkShapeTest, RefusesAnotherIdentifierWhicheverByteDiffers) {
    for (std::size_t i = 0; i < 10; ++i) {
        Ms3d file = TwoMeshes();
        file.identifier[i] ^= 1;
        EXPECT_FALSE(Loads(file)) << file.identifier;
    }
    Ms3d lower_case = TwoMeshes();
    lower_case.identifier = "ms3d000000";
    EXPECT_FALSE(Loads(lower_case));
}

// ---- Indices ----

TEST_F(MilkShapeTest, RefusesATriangleOfAVertexThatIsNotThere) {
    for (std::size_t corner = 0; corner < 3; ++corner) {
        Ms3d file = TwoMeshes();
        file.triangles[1].vertices[corner] = 3;
        EXPECT_TRUE(Loads(file)) << corner;
        for (const std::uint32_t outside : {4U, 5U, 32768U, 65535U}) {
            file.triangles[1].vertices[corner] = outside;
            EXPECT_FALSE(Loads(file)) << corner << ": " << outside;
        }
    }
}

TEST_F(MilkShapeTest, RefusesATriangleWithoutVerticesEvenIfNoMeshHasIt) {
    Ms3d file;
    file.triangles = {{}};

    EXPECT_FALSE(Loads(file));
}

TEST_F(MilkShapeTest, RefusesAMeshOfATriangleThatIsNotThere) {
    for (std::size_t place = 0; place < 2; ++place) {
        Ms3d file = TwoMeshes();
        file.groups[0].triangles[place] = 1;
        EXPECT_TRUE(Loads(file)) << place;
        for (const std::uint32_t outside : {2U, 3U, 32768U, 65535U}) {
            file.groups[0].triangles[place] = outside;
            EXPECT_FALSE(Loads(file)) << place << ": " << outside;
        }
    }
    Ms3d no_triangles;
    no_triangles.groups = {{{0}, -1}};
    EXPECT_FALSE(Loads(no_triangles));
}

TEST_F(MilkShapeTest, AMeshKeepsTheIndexOfAMaterialThatIsNotThere) {
    for (const bool without_materials : {false, true}) {
        Ms3d file = TwoMeshes();
        if (without_materials) file.materials.clear();
        for (const int material : {-128, -2, -1, 0, 1, 2, 3, 127}) {
            file.groups[0].material = material;
            file.groups[1].material = -1 - material;
            const MilkshapeModel model = Loaded(file);

            ASSERT_EQ(model.mesh_count, 2) << material;
            EXPECT_EQ(model.material_count, without_materials ? 0 : 2);
            EXPECT_EQ(model.meshes[0].material, material);
            EXPECT_EQ(model.meshes[1].material, -1 - material);
        }
    }
}

TEST_F(MilkShapeTest, TheIndexOfAMaterialIsAByteWithASign) {
    Ms3d file = TwoMeshes();
    file.materials.resize(300);
    file.groups[0].material = 127;
    EXPECT_EQ(Loaded(file).meshes[0].material, 127);

    file.groups[0].material = 128;
    ASSERT_TRUE(Loads(file));
    EXPECT_EQ(Loaded(file).meshes[0].material, -128);
}

// ---- Damaged files ----

TEST_F(MilkShapeTest, RefusesAFileThatEndsEarlyWhereverThatIs) {
    const std::string good = BytesOf(TwoMeshes());
    MilkshapeModel model = Loaded(TwoMeshes());
    const std::string before = TextOf(model);

    for (std::size_t length = 0; length < good.size(); ++length) {
        EXPECT_FALSE(Load(model, good.substr(0, length))) << length << " bytes";
    }

    EXPECT_EQ(TextOf(model), before);
}

TEST_F(MilkShapeTest, RefusesCountsThatAreNotInTheFile) {
    const std::string header = "MS3D000000" + Number(3, 4);
    const std::string none = Number(0, 2);
    const std::string vertices = Section(TwoMeshes().vertices);
    const std::string triangles = Section(TwoMeshes().triangles);
    MilkshapeModel model;

    for (const std::uint32_t count : {1U, 65535U}) {
        const std::string many = Number(count, 2);
        EXPECT_FALSE(Load(model, header + many + none + none + none)) << count << " vertices";
        EXPECT_FALSE(Load(model, header + vertices + many + none + none)) << count << " triangles";
        EXPECT_FALSE(Load(model, header + vertices + triangles + many + none)) << count << " meshes";
        EXPECT_FALSE(Load(model, header + vertices + triangles + Number(1, 2) + Skipped(33) + many + none))
            << count << " triangles of a mesh";
        EXPECT_FALSE(Load(model, header + vertices + triangles + none + many)) << count << " materials";
    }
    EXPECT_TRUE(Load(model, header + vertices + triangles + none + none));
}

TEST_F(MilkShapeTest, RefusesWhatIsNoFile) {
    std::filesystem::create_directory("folder");
    WriteFile("empty", "");
    MilkshapeModel model;

    for (const char* name : {"missing", "folder", "folder/", "empty", "", "missing/owl.ms3d"}) {
        EXPECT_FALSE(model.loadModelData(name)) << '"' << name << '"';
    }
}

TEST_F(MilkShapeTest, RefusesWhatCannotBeOpenedOrRead) {
    WriteFile("file.ms3d", BytesOf(TwoMeshes()));
    MilkshapeModel model;
    {
        const FailingCall reading("read", EIO);
        EXPECT_FALSE(model.loadModelData("file.ms3d"));
    }
    ASSERT_EQ(chmod("file.ms3d", 0), 0);
    ASSERT_EQ(chmod(".", 0755), 0);
    const NotRoot nobody;
    ASSERT_TRUE(nobody.Works());

    EXPECT_FALSE(model.loadModelData("file.ms3d"));
}

TEST_F(MilkShapeTest, RefusesANamedPipeWithoutWaitingForItsWriter) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    MilkshapeModel model;

    EXPECT_EXIT(
        {
            alarm(20);  // ends a process that waits
            std::exit(model.loadModelData("pipe") ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

#ifndef __SANITIZE_ADDRESS__  // which ends the process itself where memory is short

TEST_F(MilkShapeTest, AFileLargerThanTheMemoryIsRefusedAndLeavesTheModelAsItWas) {
    MilkshapeModel model = Loaded(TwoMeshes());
    const std::string before = TextOf(model);
    WriteFile("large.ms3d", BytesOf(TwoMeshes()));
    std::filesystem::resize_file("large.ms3d", 2'000'000'000);  // with a hole: takes no place

    EXPECT_EXIT(
        {
            LimitMemory(kGigabyte);
            if (model.loadModelData("large.ms3d")) std::exit(1);
            std::exit(TextOf(model) == before ? 0 : 2);
        },
        testing::ExitedWithCode(0), "");
}

#endif

TEST_F(MilkShapeTest, AFailedLoadLeavesTheModelAsItWas) {
    const std::string other = BytesOf(Mesh({{9, 9, 9}, {8, 8, 8}, {7, 7, 7}}));
    Ms3d bad_vertex = TwoMeshes();
    bad_vertex.triangles[1].vertices[2] = 4;
    Ms3d bad_triangle = TwoMeshes();
    bad_triangle.groups[1].triangles[0] = 2;
    MilkshapeModel model = Loaded(TwoMeshes());
    const std::string before = TextOf(model);
    const auto arrays = [&model] {
        return std::vector<const void*>{model.vertices.get(), model.triangles.get(), model.meshes.get(),
                                        model.materials.get()};
    };
    const std::vector<const void*> arrays_before = arrays();

    for (const std::string& bad :
         {std::string(), "MS3D000001" + other.substr(10), "MS3D000000" + Number(5, 4) + other.substr(14),
          other.substr(0, other.size() - 1), BytesOf(bad_vertex), BytesOf(bad_triangle)}) {
        EXPECT_FALSE(Load(model, bad));
        EXPECT_EQ(TextOf(model), before);
        EXPECT_EQ(arrays(), arrays_before);
    }
    EXPECT_FALSE(model.loadModelData("missing"));
    EXPECT_EQ(TextOf(model), before);
}

// ---- Loading again ----

TEST_F(MilkShapeTest, LoadingAgainReplacesTheModel) {
    MilkshapeModel model = Loaded(TwoMeshes());

    EXPECT_TRUE(Load(model, Mesh({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}})));

    EXPECT_EQ(TextOf(model), TextOf(Loaded(Mesh({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}))));
    EXPECT_EQ(model.vertex_count, 3);
    EXPECT_EQ(model.material_count, 0);
}

TEST_F(MilkShapeTest, LoadingAnEmptyFileEmptiesTheModel) {
    MilkshapeModel model = Loaded(TwoMeshes());

    EXPECT_TRUE(Load(model, Ms3d()));

    EXPECT_EQ(TextOf(model), "");
    model.render();
    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

TEST_F(MilkShapeTest, LoadingTakesNoMemoryBesidesTheModel) {
    // Small enough for malloc's heap, whose bytes are counted: larger arrays are mapped.
    constexpr std::size_t kTimes = 200;
    const std::string good = BytesOf(TwoMeshes());
    Ms3d bad = TwoMeshes();
    bad.groups[1].triangles[0] = 2;
    MilkshapeModel model = Loaded(TwoMeshes());
    WriteFile("good", good);
    WriteFile("short", good.substr(0, good.size() - 1));
    WriteFile("other", "NO" + good);
    WriteFile("version", good.substr(0, 10) + '\x05' + good.substr(11));
    WriteFile("index", BytesOf(bad));

    for (const char* name : {"good", "short", "other", "version", "index"}) {
        model.loadModelData(name);
        const std::size_t before = mallinfo2().uordblks;
        for (std::size_t i = 0; i < kTimes; ++i) model.loadModelData(name);
        EXPECT_LT(mallinfo2().uordblks, before + kTimes) << name;
    }
}

TEST_F(MilkShapeTest, LeavesNoFileOpen) {
    const auto open_files = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    const auto before = open_files();
    MilkshapeModel model;

    EXPECT_TRUE(Load(model, TwoMeshes()));
    EXPECT_FALSE(Load(model, "MS3D"));
    EXPECT_FALSE(model.loadModelData("missing"));

    EXPECT_EQ(open_files(), before);
}

TEST_F(MilkShapeTest, LoadingSaysNothingAndDrawsNothing) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    MilkshapeModel model;

    Load(model, TwoMeshes());
    Load(model, "MS3D");
    model.loadModelData("missing");

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

// ---- Drawing ----

const std::vector<std::string> kFirstMesh = {"glBegin(GL_TRIANGLES)",   "glNormal3fv(20, 21, 22)",
                                             "glTexCoord2f(0.75, 2)",   "glVertex3fv(100, 200, -300)",
                                             "glNormal3fv(23, 24, 25)", "glTexCoord2f(1, 0.5)",
                                             "glVertex3fv(7, -8, 9)",   "glNormal3fv(26, 27, 28)",
                                             "glTexCoord2f(2, -1)",     "glVertex3fv(-4, 5.5, 6)",
                                             "glNormal3fv(10, 11, 12)", "glTexCoord2f(0, 1)",
                                             "glVertex3fv(1, 2, 3)",    "glNormal3fv(13, 14, 15)",
                                             "glTexCoord2f(0.25, 0)",   "glVertex3fv(-4, 5.5, 6)",
                                             "glNormal3fv(16, 17, 18)", "glTexCoord2f(0.5, 0.75)",
                                             "glVertex3fv(7, -8, 9)",   "glEnd()"};
const std::vector<std::string> kSecondMesh = {"glBegin(GL_TRIANGLES)",
                                              "glNormal3fv(10, 11, 12)",
                                              "glTexCoord2f(0, 1)",
                                              "glVertex3fv(1, 2, 3)",
                                              "glNormal3fv(13, 14, 15)",
                                              "glTexCoord2f(0.25, 0)",
                                              "glVertex3fv(-4, 5.5, 6)",
                                              "glNormal3fv(16, 17, 18)",
                                              "glTexCoord2f(0.5, 0.75)",
                                              "glVertex3fv(7, -8, 9)",
                                              "glEnd()"};

TEST_F(MilkShapeTest, RenderDrawsAllMeshesInTheirOrder) {
    const MilkshapeModel model = Loaded(TwoMeshes());
    std::vector<std::string> both = kFirstMesh;
    both.insert(both.end(), kSecondMesh.begin(), kSecondMesh.end());

    model.render();

    EXPECT_EQ(fakes::Lines(), both);
}

TEST_F(MilkShapeTest, RenderGroupDrawsOneMeshCountedFromOne) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    model.render_group(1);
    EXPECT_EQ(fakes::Lines(), kFirstMesh);

    fakes::ClearLog();
    model.render_group(2);
    EXPECT_EQ(fakes::Lines(), kSecondMesh);
}

TEST_F(MilkShapeTest, RenderGroupDrawsNothingForAnyOtherNumber) {
    const MilkshapeModel model = Loaded(TwoMeshes());

    for (const int group : {INT_MIN, -1, 0, 3, 4, INT_MAX}) model.render_group(group);

    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

TEST_F(MilkShapeTest, AMeshWithoutTrianglesIsBegunAndEnded) {
    Ms3d file;
    file.groups = {{}};

    Loaded(file).render();

    EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{"glBegin(GL_TRIANGLES)", "glEnd()"}));
}

TEST_F(MilkShapeTest, AnEmptyModelDrawsNothing) {
    const MilkshapeModel model;

    model.render();
    for (const int group : {-1, 0, 1}) model.render_group(group);

    EXPECT_EQ(fakes::Lines(), std::vector<std::string>{});
}

// ---- Polygons ----

/// Returns the corners and normals of a polygon, which has nothing else.
std::vector<float> Numbers(const POLYGON3D& polygon) {
    std::vector<float> numbers;
    for (int i = 0; i < 3; ++i) {
        const VERTEX3D& vertex = polygon.vertex[i];
        const VECTOR3D& normal = polygon.normal[i];
        for (const float number : {vertex.x, vertex.y, vertex.z, normal.x, normal.y, normal.z}) {
            numbers.push_back(number);
        }
        EXPECT_EQ(std::vector({polygon.color[i].r, polygon.color[i].g, polygon.color[i].b}),
                  std::vector({1.0F, 1.0F, 1.0F}));
        EXPECT_EQ(std::vector({polygon.txtcoord[i].u, polygon.txtcoord[i].v}), std::vector({0.0F, 0.0F}));
    }
    return numbers;
}

TEST_F(MilkShapeTest, ATriangleIsThreePolygonsOfWhichTheLastIsWhole) {
    Ms3d file = TwoMeshes();
    file.groups = {{{0}, -1}};
    std::vector<POLYGON3D> polygons;

    Loaded(file).GetPolygons(polygons, 1);

    ASSERT_EQ(polygons.size(), 3U);
    EXPECT_EQ(Numbers(polygons[0]),
              (std::vector<float>{1, 2, 3, 10, 11, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Numbers(polygons[1]),
              (std::vector<float>{1, 2, 3, 10, 11, 12, -4, 5.5F, 6, 13, 14, 15, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Numbers(polygons[2]),
              (std::vector<float>{1, 2, 3, 10, 11, 12, -4, 5.5F, 6, 13, 14, 15, 7, -8, 9, 16, 17, 18}));
}

TEST_F(MilkShapeTest, APolygonKeepsCornersOfTheTriangleBeforeAlsoOfTheMeshBefore) {
    std::vector<POLYGON3D> polygons;

    Loaded(TwoMeshes()).GetPolygons(polygons, 1);

    const std::vector<float> second = {100, 200, -300, 20, 21,   22, 7,  -8, 9,
                                       23,  24,  25,   -4, 5.5F, 6,  26, 27, 28};
    const std::vector<float> first = {1, 2, 3, 10, 11, 12, -4, 5.5F, 6, 13, 14, 15, 7, -8, 9, 16, 17, 18};
    const auto partly = [](std::vector<float> filled, const std::vector<float>& before,
                           std::ptrdiff_t corners) {
        std::copy(before.begin() + 6 * corners, before.end(), filled.begin() + 6 * corners);
        return filled;
    };
    ASSERT_EQ(polygons.size(), 9U);
    EXPECT_EQ(Numbers(polygons[2]), second);
    EXPECT_EQ(Numbers(polygons[3]), partly(first, second, 1));
    EXPECT_EQ(Numbers(polygons[4]), partly(first, second, 2));
    EXPECT_EQ(Numbers(polygons[5]), first);
    for (std::size_t i = 6; i < 9; ++i) EXPECT_EQ(Numbers(polygons[i]), first) << "the same in the next mesh";
}

TEST_F(MilkShapeTest, ThePolygonsOfTheNextMeshBeginWithCornersOfTheLast) {
    Ms3d file = TwoMeshes();
    file.groups = {{{1}, -1}, {{0}, -1}};
    std::vector<POLYGON3D> polygons;

    Loaded(file).GetPolygons(polygons, 1);

    ASSERT_EQ(polygons.size(), 6U);
    EXPECT_EQ(Numbers(polygons[3]),
              (std::vector<float>{1, 2, 3, 10, 11, 12, 7, -8, 9, 23, 24, 25, -4, 5.5F, 6, 26, 27, 28}));
}

TEST_F(MilkShapeTest, TheScaleIsThatOfCornersAndNotOfNormals) {
    Ms3d file = TwoMeshes();
    file.groups = {{{0}, -1}};
    const MilkshapeModel model = Loaded(file);
    const std::string before = TextOf(model);
    std::vector<POLYGON3D> polygons;

    model.GetPolygons(polygons, -2.5F);
    model.GetPolygons(polygons, 0);

    ASSERT_EQ(polygons.size(), 6U);
    EXPECT_EQ(Numbers(polygons[2]), (std::vector<float>{-2.5F, -5, -7.5F, 10, 11, 12, 10, -13.75F, -15, 13,
                                                        14, 15, -17.5F, 20, -22.5F, 16, 17, 18}));
    EXPECT_EQ(Numbers(polygons[5]),
              (std::vector<float>{0, 0, 0, 10, 11, 12, 0, 0, 0, 13, 14, 15, 0, 0, 0, 16, 17, 18}));
    EXPECT_EQ(TextOf(model), before);
}

TEST_F(MilkShapeTest, PolygonsAreAppendedAndBeginAnewInEveryCall) {
    Ms3d file = TwoMeshes();
    file.groups = {{{0}, -1}};
    const MilkshapeModel model = Loaded(file);
    std::vector<POLYGON3D> polygons(1);
    polygons[0].vertex[2].z = 42;

    model.GetPolygons(polygons, 1);
    model.GetPolygons(polygons, 1);

    ASSERT_EQ(polygons.size(), 7U);
    EXPECT_EQ(polygons[0].vertex[2].z, 42);
    EXPECT_EQ(polygons[1].vertex[2].z, 0);
    for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(Numbers(polygons[i]), Numbers(polygons[i + 3]));
}

TEST_F(MilkShapeTest, AnEmptyModelHasNoPolygons) {
    std::vector<POLYGON3D> polygons;

    MilkshapeModel().GetPolygons(polygons, 1);

    EXPECT_TRUE(polygons.empty());
}

// ---- Centre and radius ----

TEST_F(MilkShapeTest, TheCentreIsTheMeanOfTheCornersAndTheRadiusTheFarthestOfThem) {
    const MilkshapeModel model = Loaded(Mesh({{0, 0, 0}, {6, 0, 0}, {0, 9, 3}}));

    EXPECT_EQ(model.GetCenter(), vector3f(2, 3, 1));
    EXPECT_FLOAT_EQ(model.GetRadius(), std::sqrt(44.0F));  // to (0, 9, 3): 4 + 36 + 4
}

TEST_F(MilkShapeTest, AVertexCountsAsOftenAsItIsUsed) {
    Ms3d file;
    file.vertices = {{0, 0, 0}, {3, 0, 0}, {0, 3, 0}, {0, 0, 9}};
    file.triangles = {{{0, 1, 2}, {}, {}, {}}, {{0, 1, 3}, {}, {}, {}}};
    file.groups = {{{0}, -1}, {{1}, -1}};
    const MilkshapeModel model = Loaded(file);

    EXPECT_EQ(model.GetCenter(), vector3f(1, 0.5F, 1.5F));
    EXPECT_FLOAT_EQ(model.GetRadius(), std::sqrt(57.5F));  // to (0, 0, 9): 1 + 0.25 + 56.25
}

TEST_F(MilkShapeTest, ATriangleCountsAsOftenAsMeshesHaveIt) {
    Ms3d file = Mesh({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {4, 8, -12}, {4, 8, -12}, {4, 8, -12}});
    file.groups = {{{0, 1, 1}, -1}, {{1}, -1}};
    const MilkshapeModel model = Loaded(file);

    EXPECT_EQ(model.GetCenter(), vector3f(3, 6, -9));
    EXPECT_FLOAT_EQ(model.GetRadius(), std::sqrt(126.0F));  // to the origin: 9 + 36 + 81
}

TEST_F(MilkShapeTest, UnusedVerticesAndTrianglesDoNotCount) {
    Ms3d file = Mesh({{0, 0, 0}, {6, 0, 0}, {0, 9, 3}, {1000, 0, 0}, {0, 1000, 0}, {0, 0, 1000}});
    file.vertices.push_back({-5000, 0, 0});
    file.groups[0].triangles = {0};
    const MilkshapeModel model = Loaded(file);

    EXPECT_EQ(model.GetCenter(), vector3f(2, 3, 1));
    EXPECT_FLOAT_EQ(model.GetRadius(), std::sqrt(44.0F));
}

TEST_F(MilkShapeTest, CornersInOnePointHaveTheRadiusZero) {
    const MilkshapeModel model = Loaded(Mesh({{2, 3, 4}, {2, 3, 4}, {2, 3, 4}}));

    EXPECT_EQ(model.GetCenter(), vector3f(2, 3, 4));
    EXPECT_EQ(model.GetRadius(), 0);
}

TEST_F(MilkShapeTest, WithoutTrianglesTheCentreIsNoNumberAndTheRadiusZero) {
    Ms3d no_triangles;
    no_triangles.vertices = {{1, 2, 3}};
    no_triangles.groups = {{}};
    for (const Ms3d& file : {Ms3d(), no_triangles}) {
        const MilkshapeModel model = Loaded(file);
        const vector3f center = model.GetCenter();

        EXPECT_TRUE(std::isnan(center.x));
        EXPECT_TRUE(std::isnan(center.y));
        EXPECT_TRUE(std::isnan(center.z));
        EXPECT_EQ(model.GetRadius(), 0);
    }
}

TEST_F(MilkShapeTest, ACornerThatIsNoNumberLeavesTheRadiusZero) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    const MilkshapeModel model = Loaded(Mesh({{0, 0, 0}, {3, 0, 0}, {kNan, 3, 0}}));

    EXPECT_TRUE(std::isnan(model.GetCenter().x));
    EXPECT_EQ(model.GetCenter().y, 1);
    EXPECT_EQ(model.GetRadius(), 0);
}

}  // namespace
