// The program's entry: window, sound, assets and callbacks, in this order. Everything else happens in the
// callbacks.
#include <AL/alc.h>
#include <GL/freeglut.h>
#include <malloc.h>

#include <cstdlib>
#include <ctime>

#include "app/input.h"
#include "app/shell.h"
#include "app/textures.h"
#include "app/typing.h"
#include "app/window.h"
#include "engine/Sound.h"

namespace {

/// Lets large buffers, such as those of sounds, go back to the system once they are freed. The allocator
/// would keep them for good after a while, and the owl runs for weeks.
void KeepMemorySmall() {
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 512 * 1024);
}

}  // namespace

int main(int argc, char** argv) {
    KeepMemorySmall();
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE);
    glutCreateWindow("Ulmaro Assistant");
    DressWindow();
    std::srand(static_cast<unsigned int>(std::time(nullptr)));

    // Meant to come after the window: they leave it where and as large as GLUT made it, 300 x 300.
    glutInitWindowSize(300, 300);
    glutInitWindowPosition((glutGet(GLUT_SCREEN_WIDTH) - 300) / 2, (glutGet(GLUT_SCREEN_HEIGHT) - 300) / 2);

    ALCdevice* device = alcOpenDevice(nullptr);
    ALCcontext* context = alcCreateContext(device, nullptr);
    alcMakeContextCurrent(context);
    AudioEngine.initialize();

    init();

    glutDisplayFunc(display);
    glutReshapeFunc(reshape);
    glutSpecialFunc(keyboard_down);
    glutSpecialUpFunc(keyboard_up);
    glutMouseFunc(mouse_event);
    glutPassiveMotionFunc(mouse);
    glutMotionFunc(mouse);
    KeepFramesComing(display);
    ListenToTyping();
    glutMainLoop();
    return 0;
}
