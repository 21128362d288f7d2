// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fakes themselves: what tests believe of them must be so.

#include "tests/fakes/fakes.h"

#include <GL/glu.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace {

using FakeLog = fakes::Test;
using FakeGl = fakes::Test;
using FakeGlu = fakes::Test;
using FakeGlut = fakes::Test;
using FakeAl = fakes::Test;
using FakeWorld = fakes::Test;

// Says whether the one mistake so far is this one, and forgets it so that the fixture is content.
bool WasTheOnlyMisuse(const std::string& sentence) {
    const std::vector<std::string> misuse = std::exchange(fakes::gl().misuse, {});
    return misuse == std::vector<std::string>{sentence};
}

void UseCanvas() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, 512, 0, 512, -1, 1);
    glMatrixMode(GL_MODELVIEW);
}

// ---- The log ----

TEST_F(FakeLog, HoldsTheCallsOfAllLibrariesInOrder) {
    glFlush();
    glutSwapBuffers();
    alSourcePlay(1);
    std::system("true");

    EXPECT_EQ(fakes::Names(),
              (std::vector<std::string>{"glFlush", "glutSwapBuffers", "alSourcePlay", "system"}));
    EXPECT_EQ(fakes::Log().back().text, "true");
}

TEST_F(FakeLog, WritesLinesAsOneWouldWriteTheCall) {
    glColor4f(1, 0.1F, -0.5F, 1e-9F);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glBegin(GL_TRIANGLES);
    glEnd();
    glutSetWindowTitle("owl");

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glColor4f(1, 0.1, -0.5, 1e-09)", "glBlendFunc(GL_SRC_ALPHA, GL_ONE)",
                                        "glBegin(GL_TRIANGLES)", "glEnd()", "glutSetWindowTitle(\"owl\")"}));
}

TEST_F(FakeLog, FindsCallsByName) {
    glFlush();
    glDepthMask(GL_FALSE);
    glFlush();

    EXPECT_EQ(fakes::Count("glFlush"), 2U);
    EXPECT_EQ(fakes::IndexOf("glFlush"), 0U);
    EXPECT_EQ(fakes::IndexOf("glFlush", 1), 2U);
    EXPECT_EQ(fakes::IndexOf("glFlush", 2), fakes::kNever);
    EXPECT_EQ(fakes::Calls("glDepthMask").at(0).args, (std::vector<double>{0}));
    EXPECT_EQ(fakes::Lines({"glDepthMask"}), (std::vector<std::string>{"glDepthMask(GL_FALSE)"}));
}

// ---- GL ----

TEST_F(FakeGl, CountsAStackUnderflowAsAMistake) {
    glPopMatrix();

    EXPECT_EQ(fakes::gl().modelview.size(), 1U);
    EXPECT_TRUE(WasTheOnlyMisuse("glPopMatrix of the last matrix, GL_MODELVIEW"));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_STACK_UNDERFLOW));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(FakeGl, CountsAStackOverflowAsAMistake) {
    glMatrixMode(GL_PROJECTION);
    for (int i = 0; i < 31; ++i) glPushMatrix();
    EXPECT_TRUE(fakes::gl().misuse.empty());

    glPushMatrix();

    EXPECT_EQ(fakes::gl().projection.size(), 32U);
    EXPECT_TRUE(WasTheOnlyMisuse("glPushMatrix on a full stack, GL_PROJECTION"));
}

TEST_F(FakeGl, CountsStateCallsBetweenBeginAndEndAsMistakes) {
    glBegin(GL_QUADS);
    glBindTexture(GL_TEXTURE_2D, 3);
    glEnd();

    EXPECT_EQ(fakes::gl().bound_texture, 0U);
    EXPECT_TRUE(WasTheOnlyMisuse("glBindTexture between glBegin and glEnd"));
}

TEST_F(FakeGl, CountsEndWithoutBeginAsAMistake) {
    glEnd();

    EXPECT_TRUE(fakes::gl().primitives.empty());
    EXPECT_TRUE(WasTheOnlyMisuse("glEnd without glBegin"));
}

TEST_F(FakeGl, PlacesCornersOnTheCanvas) {
    UseCanvas();
    glTranslatef(100, 200, 0);
    glScalef(10, 20, 1);

    glBegin(GL_POINTS);
    glVertex3f(1, -1, 0);
    glEnd();

    const fakes::Vertex& corner = fakes::gl().primitives.at(0).vertices.at(0);
    EXPECT_NEAR(corner.x, 110, 1e-9);
    EXPECT_NEAR(corner.y, 180, 1e-9);
    EXPECT_EQ(corner.object, (fakes::Vec3{1, -1, 0}));
    EXPECT_EQ(corner.eye, (fakes::Vec3{110, 180, 0}));
}

TEST_F(FakeGl, TurnsCounterClockwise) {
    UseCanvas();
    glTranslatef(100, 100, 0);
    glRotatef(90, 0, 0, 2);

    glBegin(GL_POINTS);
    glVertex2f(10, 0);
    glEnd();

    const fakes::Vertex& corner = fakes::gl().primitives.at(0).vertices.at(0);
    EXPECT_NEAR(corner.x, 100, 1e-9);
    EXPECT_NEAR(corner.y, 110, 1e-9);
}

TEST_F(FakeGl, TurnsAThirdAboutTheDiagonalFromAxisToAxis) {
    glRotatef(120, 1, 1, 1);

    glBegin(GL_POINTS);
    glVertex3f(1, 0, 0);
    glVertex3f(0, 1, 0);
    glVertex3f(0, 0, 1);
    glEnd();

    const fakes::Vec3 expected[] = {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}};
    for (std::size_t corner = 0; corner < 3; ++corner) {
        for (std::size_t axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(fakes::gl().primitives.at(0).vertices.at(corner).eye[axis], expected[corner][axis],
                        1e-6F);
    }
}

TEST_F(FakeGl, KeepsTheStateThatAPrimitiveWasDrawnWith) {
    glBindTexture(GL_TEXTURE_2D, 3);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glDepthMask(GL_FALSE);
    glColor4ub(255, 0, 51, 255);
    glBegin(GL_TRIANGLES);
    glTexCoord2f(0.5F, 1);
    glVertex2f(1, 2);
    glEnd();
    glDisable(GL_BLEND);
    glDepthMask(GL_TRUE);

    const fakes::Primitive primitive = fakes::gl().DrawnWith(3).at(0);
    EXPECT_TRUE(primitive.blend);
    EXPECT_EQ(primitive.blend_source, static_cast<GLenum>(GL_SRC_ALPHA));
    EXPECT_EQ(primitive.blend_destination, static_cast<GLenum>(GL_ONE));
    EXPECT_FALSE(primitive.depth_mask);
    EXPECT_EQ(primitive.color, (fakes::Rgba{1, 0, 0.2F, 1}));
    EXPECT_EQ(primitive.vertices.at(0).texcoord, (fakes::Vec2{0.5F, 1}));
    EXPECT_EQ(fakes::Log().at(primitive.log_index).name, "glEnd");
}

TEST_F(FakeGl, ReadsClientArraysWhenTheyAreDrawn) {
    UseCanvas();
    float places[] = {0, 0, 0, 9, 9, 9, 20, 10, 0};
    const float texcoords[] = {0, 0, 0.25F, 0.5F, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, places);
    glTexCoordPointer(2, GL_FLOAT, 0, texcoords);
    places[3] = 10;

    glDrawArrays(GL_TRIANGLES, 1, 2);

    const fakes::Primitive& primitive = fakes::gl().primitives.at(0);
    ASSERT_EQ(primitive.vertices.size(), 2U);
    EXPECT_EQ(primitive.vertices[0].object, (fakes::Vec3{10, 9, 9}));
    EXPECT_EQ(primitive.vertices[0].texcoord, (fakes::Vec2{0.25F, 0.5F}));
    EXPECT_EQ(fakes::Bounds(primitive), (fakes::Rect{10, 9, 20, 10}));
    EXPECT_EQ(fakes::TexBounds(primitive), (fakes::Rect{0.25, 0.5, 1, 1}));
    EXPECT_TRUE(primitive.from_arrays);
}

TEST_F(FakeGl, ReadsClientArraysWithAStride) {
    const float interleaved[] = {1, 2, -1, -1, 3, 4, -1, -1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 4 * sizeof(float), interleaved);

    glDrawArrays(GL_LINES, 0, 2);

    EXPECT_EQ(fakes::gl().primitives.at(0).vertices.at(1).object, (fakes::Vec3{3, 4, 0}));
}

TEST_F(FakeGl, DrawsNothingWithoutAVertexArray) {
    const float places[] = {0, 0, 0};
    glVertexPointer(3, GL_FLOAT, 0, places);

    glDrawArrays(GL_POINTS, 0, 1);

    EXPECT_TRUE(fakes::gl().primitives.empty());
}

TEST_F(FakeGl, KeepsTexturesAsTheyWereUploaded) {
    const unsigned char pixels[] = {1, 2, 3, 4, 5, 6, 7, 8};
    GLuint names[2] = {};
    glGenTextures(2, names);
    EXPECT_EQ(glIsTexture(names[1]), GL_FALSE);  // not before it was bound
    glBindTexture(GL_TEXTURE_2D, names[1]);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);

    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);

    const fakes::Texture& texture = fakes::gl().textures.at(names[1]);
    EXPECT_EQ(glIsTexture(names[1]), GL_TRUE);
    EXPECT_EQ(texture.width, 2);
    EXPECT_EQ(texture.height, 1);
    EXPECT_EQ(texture.mag_filter, GL_NEAREST);
    EXPECT_EQ(texture.min_filter, GL_NEAREST_MIPMAP_LINEAR);
    EXPECT_EQ(texture.pixels, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(fakes::Calls("glTexImage2D").at(0).blob, texture.pixels);
}

TEST_F(FakeGl, LeavesRowPaddingOutOfUploads) {
    const unsigned char pixels[] = {1, 2, 3, 0, 4, 5, 6, 0};  // rows of one RGB pixel, padded to four bytes

    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 2, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels);

    EXPECT_EQ(fakes::gl().default_texture.pixels, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6}));
}

TEST_F(FakeGl, RefusesTexturesBeyondTheLimit) {
    fakes::gl().max_texture_size = 64;
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);

    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 65, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);

    EXPECT_EQ(limit, 64);
    EXPECT_EQ(fakes::gl().default_texture.width, 0);
    EXPECT_TRUE(WasTheOnlyMisuse("glTexImage2D of a size that GL does not take"));
}

TEST_F(FakeGl, HasNoDepthBufferUnlessTold) {
    float depth = 7;

    glReadPixels(1, 2, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 7.0F);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));

    fakes::gl().depth = 0.25F;
    glReadPixels(1, 2, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 0.25F);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(FakeGl, AnswersQuestionsAboutMatricesStacksAndViewport) {
    glViewport(1, 2, 30, 40);
    glPushMatrix();
    glTranslatef(3, 4, 5);
    GLdouble matrix[16] = {};
    GLint viewport[4] = {};
    GLint depth = 0;

    glGetDoublev(GL_MODELVIEW_MATRIX, matrix);
    glGetIntegerv(GL_VIEWPORT, viewport);
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);

    EXPECT_EQ(matrix[12], 3.0);
    EXPECT_EQ(matrix[13], 4.0);
    EXPECT_EQ(matrix[15], 1.0);
    EXPECT_EQ(viewport[0], 1);
    EXPECT_EQ(viewport[3], 40);
    EXPECT_EQ(depth, 2);
}

TEST_F(FakeGl, IsFreshAfterReset) {
    glPushMatrix();
    glEnable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, 3);

    fakes::Reset();

    EXPECT_EQ(fakes::gl().modelview.size(), 1U);
    EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
    EXPECT_TRUE(fakes::gl().textures.empty());
    EXPECT_TRUE(fakes::Log().empty());
}

// ---- GLU ----

TEST_F(FakeGlu, UnProjectsToTheCanvas) {
    UseCanvas();
    GLdouble modelview[16];
    GLdouble projection[16];
    const GLint viewport[] = {0, 0, 300, 300};
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    GLdouble x = 0;
    GLdouble y = 0;
    GLdouble z = 0;

    EXPECT_EQ(gluUnProject(150, 75, 0.5, modelview, projection, viewport, &x, &y, &z), GL_TRUE);

    EXPECT_NEAR(x, 256, 1e-9);
    EXPECT_NEAR(y, 128, 1e-9);
    EXPECT_NEAR(z, 0, 1e-9);
}

TEST_F(FakeGlu, UnProjectsWhatItProjectsThroughAPerspective) {
    glMatrixMode(GL_PROJECTION);
    gluPerspective(45, 1.5, 1, 99);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 2, -20);
    glRotatef(30, 1, 2, 3);
    GLdouble modelview[16];
    GLdouble projection[16];
    const GLint viewport[] = {10, 20, 600, 400};
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    GLdouble window[3] = {};
    GLdouble object[3] = {};

    gluProject(3, -4, 5, modelview, projection, viewport, &window[0], &window[1], &window[2]);
    gluUnProject(window[0], window[1], window[2], modelview, projection, viewport, &object[0], &object[1],
                 &object[2]);

    EXPECT_NEAR(object[0], 3, 1e-9);
    EXPECT_NEAR(object[1], -4, 1e-9);
    EXPECT_NEAR(object[2], 5, 1e-9);
}

TEST_F(FakeGlu, PerspectiveSeesHalfTheAngleAtTheTopEdge) {
    glMatrixMode(GL_PROJECTION);
    gluPerspective(90, 2, 1, 99);
    glMatrixMode(GL_MODELVIEW);

    glBegin(GL_POINTS);
    glVertex3f(20, 10, -10);
    glVertex3f(0, 0, -1);
    glVertex3f(0, 0, -99);
    glEnd();

    const std::vector<fakes::Vertex>& corners = fakes::gl().primitives.at(0).vertices;
    EXPECT_NEAR(corners[0].x, 512, 1e-9);
    EXPECT_NEAR(corners[0].y, 512, 1e-9);
    EXPECT_NEAR(corners[1].z, -1, 1e-9);
    EXPECT_NEAR(corners[2].z, 1, 1e-9);
}

TEST_F(FakeGlu, RefusesToUnProjectThroughASingularMatrix) {
    const GLdouble zero[16] = {};
    const GLint viewport[] = {0, 0, 300, 300};
    GLdouble x = 7;

    EXPECT_EQ(gluUnProject(1, 1, 1, zero, zero, viewport, &x, &x, &x), GL_FALSE);
    EXPECT_EQ(x, 7.0);
}

TEST_F(FakeGlu, BuildsAllMipmapLevels) {
    const unsigned char pixels[4 * 4 * 4] = {};

    EXPECT_EQ(gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, pixels), 0);

    EXPECT_TRUE(fakes::gl().default_texture.mipmaps);
    EXPECT_EQ(fakes::gl().default_texture.levels, (std::set<int>{0, 1, 2}));
}

// ---- GLUT ----

int fired = 0;

TEST_F(FakeGlut, KeepsCallbacksForTestsToFire) {
    fired = 0;
    glutDisplayFunc([] { ++fired; });
    glutTimerFunc(
        20,
        [](int value) {
            fired += value;
            glutTimerFunc(
                20, [](int) {}, 0);
        },
        10);

    fakes::glut().display();
    fakes::glut().FireTimers();

    EXPECT_EQ(fired, 11);
    EXPECT_EQ(fakes::glut().timers.size(), 1U);
    EXPECT_EQ(fakes::glut().reshape, nullptr);
}

TEST_F(FakeGlut, AnswersAsSetOrByDefault) {
    fakes::glut().get[GLUT_WINDOW_WIDTH] = 640;

    EXPECT_EQ(glutGet(GLUT_WINDOW_WIDTH), 640);
    EXPECT_EQ(glutGet(GLUT_WINDOW_HEIGHT), 300);
    EXPECT_EQ(glutGet(GLUT_WINDOW_HEIGHT), 300);
    EXPECT_EQ(fakes::glut().get_calls[GLUT_WINDOW_HEIGHT], 2);
}

TEST_F(FakeGlut, ReturnsFromTheMainLoop) {
    fired = 0;
    fakes::glut().main_loop = [] { ++fired; };

    glutMainLoop();

    EXPECT_EQ(fired, 1);
}

TEST_F(FakeGlut, NotesWhereBitmapCharactersAreDrawn) {
    UseCanvas();
    glRasterPos3f(30, 40, 0);

    glutBitmapCharacter(GLUT_BITMAP_TIMES_ROMAN_24, 'u');

    ASSERT_EQ(fakes::glut().bitmap_characters.size(), 1U);
    EXPECT_EQ(fakes::glut().bitmap_characters[0].font, GLUT_BITMAP_TIMES_ROMAN_24);
    EXPECT_EQ(fakes::glut().bitmap_characters[0].character, 'u');
    EXPECT_NEAR(fakes::glut().bitmap_characters[0].x, 30, 1e-9);
    EXPECT_NEAR(fakes::glut().bitmap_characters[0].y, 40, 1e-9);
}

// ---- OpenAL ----

TEST_F(FakeAl, KeepsSourcesAndBuffers) {
    const unsigned char bytes[] = {1, 2, 3, 4};
    ALuint source = 0;
    ALuint buffer = 0;
    alGenSources(1, &source);
    alGenBuffers(1, &buffer);
    alBufferData(buffer, AL_FORMAT_STEREO16, bytes, 4, 44100);
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcei(source, AL_LOOPING, AL_TRUE);
    alSourcef(source, AL_GAIN, 0.5F);
    alSourcePlay(source);

    EXPECT_EQ(fakes::al().buffers.at(buffer).data, (std::vector<std::uint8_t>{1, 2, 3, 4}));
    EXPECT_EQ(fakes::al().buffers.at(buffer).frequency, 44100);
    EXPECT_EQ(fakes::al().sources.at(source).buffer, buffer);
    EXPECT_TRUE(fakes::al().sources.at(source).looping);
    EXPECT_EQ(fakes::al().sources.at(source).gain, 0.5F);
    EXPECT_EQ(fakes::al().Playing(), (std::vector<ALuint>{source}));
    ALint state = 0;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    EXPECT_EQ(state, AL_PLAYING);
}

TEST_F(FakeAl, KeepsABufferThatASourceHolds) {
    ALuint source = 0;
    ALuint buffer = 0;
    alGenSources(1, &source);
    alGenBuffers(1, &buffer);
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));

    alDeleteBuffers(1, &buffer);
    EXPECT_EQ(alIsBuffer(buffer), AL_TRUE);
    EXPECT_EQ(alGetError(), AL_INVALID_OPERATION);

    alDeleteSources(1, &source);
    alDeleteBuffers(1, &buffer);
    EXPECT_EQ(alIsSource(source), AL_FALSE);
    EXPECT_EQ(alIsBuffer(buffer), AL_FALSE);
}

TEST_F(FakeAl, HasAnErrorForTheSource0ButNotForTheBuffer0) {
    const ALuint zero = 0;

    alDeleteBuffers(1, &zero);
    EXPECT_EQ(alGetError(), AL_NO_ERROR);
    alDeleteSources(1, &zero);
    EXPECT_EQ(alGetError(), AL_INVALID_NAME);
}

TEST_F(FakeAl, DoesNothingWithoutADevice) {
    fakes::al().has_device = false;
    ALuint source = 77;

    ALCdevice* device = alcOpenDevice(nullptr);
    ALCcontext* context = alcCreateContext(device, nullptr);
    alcMakeContextCurrent(context);
    alGenSources(1, &source);

    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(context, nullptr);
    EXPECT_EQ(source, 77U);
    EXPECT_TRUE(fakes::al().sources.empty());
}

// ---- The world ----

TEST_F(FakeWorld, GivesScriptedRandomNumbersThenItsOwn) {
    fakes::world().rand_values = {5, 0};

    EXPECT_EQ(std::rand(), 5);
    EXPECT_EQ(std::rand(), 0);
    const int own = std::rand();
    EXPECT_GE(own, 0);
    fakes::world().rand_default = 9;
    EXPECT_EQ(std::rand(), 9);
    EXPECT_EQ(fakes::world().rand_calls, 4);
}

TEST_F(FakeWorld, StartsTheRandomSequenceOverAtASeed) {
    std::srand(42);
    const int first = std::rand();
    const int second = std::rand();
    std::srand(42);

    EXPECT_EQ(std::rand(), first);
    EXPECT_EQ(std::rand(), second);
    EXPECT_NE(first, second);
    EXPECT_EQ(fakes::world().seeds, (std::vector<unsigned int>{42, 42}));
}

TEST_F(FakeWorld, TellsTheTimeThatIsSet) {
    fakes::SetLocalTime(2024, 2, 29, 23, 59, 58);
    fakes::world().now += 2;

    const std::time_t now = std::time(nullptr);
    const std::tm local = *std::localtime(&now);

    EXPECT_EQ(local.tm_year, 124);
    EXPECT_EQ(local.tm_mon, 2);
    EXPECT_EQ(local.tm_mday, 1);
    EXPECT_EQ(local.tm_hour, 0);
    EXPECT_EQ(local.tm_min, 0);
    EXPECT_EQ(local.tm_wday, 5);
}

TEST_F(FakeWorld, IsOnAWednesdayMorningByDefault) {
    const std::time_t now = std::time(nullptr);
    const std::tm local = *std::localtime(&now);

    EXPECT_EQ(local.tm_year, 112);
    EXPECT_EQ(local.tm_mon, 4);
    EXPECT_EQ(local.tm_mday, 16);
    EXPECT_EQ(local.tm_hour, 10);
    EXPECT_EQ(local.tm_min, 30);
    EXPECT_EQ(local.tm_wday, 3);
}

TEST_F(FakeWorld, OnlyNotesCommands) {
    fakes::world().system_result = 3;

    EXPECT_EQ(std::system("exit 7"), 3);
    EXPECT_EQ(fakes::world().commands, (std::vector<std::string>{"exit 7"}));
}

}  // namespace
