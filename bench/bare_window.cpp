// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The least that a GLUT program with the same pictures does: opens a window and the sound device, reads and
// uploads the pictures, and draws each of them once, in a cell of its own, so that all together fill the
// window once.
//
// usage: bare_window PICTURE ...      (raw pictures of the current folder: width, height, RGBA rows)
#include <AL/alc.h>
#include <GL/freeglut.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

std::vector<GLuint> textures;

/// Reads and uploads a picture. A file that is none ends the program with status 2.
void Upload(const char* path, std::vector<unsigned char>& pixels) {
    std::uint32_t size[2] = {};
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr || std::fread(size, sizeof size, 1, file) != 1) std::exit(2);
    pixels.resize(std::size_t{4} * size[0] * size[1]);
    if (std::fread(pixels.data(), 1, pixels.size(), file) != pixels.size()) std::exit(2);
    std::fclose(file);

    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, static_cast<GLsizei>(size[0]), static_cast<GLsizei>(size[1]), 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    textures.push_back(texture);
}

void DrawCell(float left, float bottom, float edge) {
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0);
    glVertex2f(left, bottom);
    glTexCoord2f(1, 0);
    glVertex2f(left + edge, bottom);
    glTexCoord2f(1, 1);
    glVertex2f(left + edge, bottom + edge);
    glTexCoord2f(0, 1);
    glVertex2f(left, bottom + edge);
    glEnd();
}

void Display() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(textures.size()))));
    const float edge = 2.0F / static_cast<float>(columns);
    for (std::size_t i = 0; i < textures.size(); ++i) {
        glBindTexture(GL_TEXTURE_2D, textures[i]);
        DrawCell(-1 + edge * static_cast<float>(i % columns), -1 + edge * static_cast<float>(i / columns),
                 edge);
    }
    glFlush();
    glFinish();
    glutSwapBuffers();
}

}  // namespace

int main(int argc, char** argv) {
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE);
    glutCreateWindow("Bare window");
    alcMakeContextCurrent(alcCreateContext(alcOpenDevice(nullptr), nullptr));
    {
        std::vector<unsigned char> pixels;
        for (int i = 1; i < argc; ++i) Upload(argv[i], pixels);
    }
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glutDisplayFunc(Display);
    glutMainLoop();
    return 0;
}
