// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The least that a GLUT program with as many pictures does: opens a window, uploads the bytes, draws nothing.
//
// usage: bare_window PICTURES EDGE      (PICTURES textures of EDGE x EDGE RGBA pixels)
#include <GL/freeglut.h>

#include <cstdlib>
#include <vector>

namespace {

void Display() {
    glutSwapBuffers();
}

}  // namespace

int main(int argc, char** argv) {
    glutInit(&argc, argv);
    if (argc < 3) return 2;
    const int pictures = std::atoi(argv[1]);
    const int edge = std::atoi(argv[2]);
    glutInitDisplayMode(GLUT_DOUBLE);
    glutCreateWindow("Bare window");
    const std::vector<unsigned char> pixels(
        static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge) * 4, 127);
    for (int i = 0; i < pictures; ++i) {
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, edge, edge, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    }
    glutDisplayFunc(Display);
    glutMainLoop();
    return 0;
}
