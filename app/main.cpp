// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The program's entry: window, sound, assets and callbacks, in this order. Everything else happens in the
// callbacks.
#include <GL/freeglut.h>

#include <cstdlib>
#include <ctime>

#include "app/input.h"
#include "app/out_of_memory.h"
#include "app/shell.h"
#include "app/sound_device.h"
#include "app/textures.h"
#include "app/window.h"
#include "engine/Sound.h"
#include "engine/memory.h"

int main(int argc, char** argv) {
    EndClearlyWithoutMemory();
    ReturnFreedMemory();
    ExplainMissingWindow();
    ReadOptions(&argc, argv);
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE);
    glutCreateWindow(kWindowTitle);
    SetWindowClassAndIcon();
    MinimiseAtStart();
    std::srand(static_cast<unsigned int>(std::time(nullptr)));

    // Deliberate: after the window, which stays where and as large as GLUT made it, 300 x 300.
    glutInitWindowSize(300, 300);
    glutInitWindowPosition((glutGet(GLUT_SCREEN_WIDTH) - 300) / 2, (glutGet(GLUT_SCREEN_HEIGHT) - 300) / 2);

    OpenSoundDevice();
    AudioEngine.initialize();

    init();

    glutDisplayFunc(display);
    glutReshapeFunc(reshape);
    glutSpecialFunc(keyboard_down);
    glutSpecialUpFunc(keyboard_up);
    glutMouseFunc(mouse_event);
    glutPassiveMotionFunc(mouse);
    glutMotionFunc(mouse);
    glutMainLoop();
    return 0;
}
