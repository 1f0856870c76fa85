// One picture of a world that has everything in it, drawn from GL state that is wrong in every respect and
// then once more from what the first frame left, beside the same pictures found by casting a ray through each
// pixel.

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "base/clock.h"
#include "base/pi.h"
#include "base/random.h"
#include "base/window_size.h"
#include "engine/particle_system.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/test_scene.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

using Rgba = std::array<float, 4>;

Vector times(const Vector& a, const Vector& b) {
  return {a.x * b.x, a.y * b.y, a.z * b.z};
}

Vector clamped(const Vector& a) {
  return {std::clamp(a.x, 0.0f, 1.0f), std::clamp(a.y, 0.0f, 1.0f), std::clamp(a.z, 0.0f, 1.0f)};
}

Vector rgb(const Rgba& a) {
  return {a[0], a[1], a[2]};
}

Vector rgb(const ColourAlpha& a) {
  return {a.r, a.g, a.b};
}

Vector unit(Vector a) {
  a.normalize();
  return a;
}

// The fixed-function pipeline as its definition has it: light by vertex, colour by fragment.

using Blend = Vector (*)(const Vector& behind, const Vector& colour, float alpha);

Vector over(const Vector& behind, const Vector& colour, float alpha) {
  return behind * (1 - alpha) + colour * alpha;
}

Vector add(const Vector& behind, const Vector& colour, float alpha) {
  return behind + colour * alpha;
}

Vector darken(const Vector& behind, const Vector& colour, float) {
  return times(behind, Vector(1, 1, 1) - colour);
}

struct Corner {
  Vector place, colour, highlight;
};

struct Triangle {
  std::array<Corner, 3> corners;
  Rgba texture;
  float alpha;
  Blend blend;
  bool depthWrites, twoSided, fogged;
};

struct Lamp {
  Vector place, colour;
  float constant, linear;
  Vector axis;
  float halfCone;  // degrees; 180: no spot
};

struct Picture {
  Vector eye, forward, right, up;  // of the screen, of length 1
  float halfHeight;                // at distance 1; the width is twice the height
  Vector ground, fogColour;
  float fogStart, fogEnd;
  std::array<Rgba, boxFaces> walls;
  std::vector<Triangle> triangles;  // in the order of drawing

  Vector at(float x, float y) const {
    const Vector ray = forward + right * ((2 * x / glTestWidth - 1) * 2 * halfHeight) +
                       up * ((2 * y / glTestHeight - 1) * halfHeight);
    Vector colour = wallsAt(ray);
    float nearest = std::numeric_limits<float>::infinity();
    for (const Triangle& triangle : triangles) draw(triangle, ray, colour, nearest);
    return colour;
  }

 private:
  Vector wallsAt(const Vector& ray) const {
    const float toWall[boxFaces] = {ray.y, -ray.y, ray.z, -ray.x, -ray.z, ray.x};
    Vector colour = ground;
    for (std::size_t face = 0; face < boxFaces; ++face) {
      if (toWall[face] <= 0) continue;
      const Vector hit = ray * (10 / toWall[face]);
      if (std::max({std::fabs(hit.x), std::fabs(hit.y), std::fabs(hit.z)}) > 10.1f) continue;
      colour = over(colour, rgb(walls[face]), walls[face][3]);
    }
    return colour;
  }

  void draw(const Triangle& triangle, const Vector& ray, Vector& colour, float& nearest) const {
    const auto& [a, b, c] = triangle.corners;
    const Vector ab = b.place - a.place, ac = c.place - a.place, fromA = eye - a.place;
    const float facing = dot(ab, cross(ray, ac));
    if (facing == 0 || (facing < 0 && !triangle.twoSided)) return;
    const float shareB = dot(fromA, cross(ray, ac)) / facing;
    const float shareC = dot(ray, cross(fromA, ab)) / facing;
    const float distance = dot(ac, cross(fromA, ab)) / facing;
    if (shareB < 0 || shareC < 0 || shareB + shareC > 1 || distance < 1 || distance > nearest) return;
    const auto between = [&](Vector Corner::*part) {
      return a.*part * (1 - shareB - shareC) + b.*part * shareB + c.*part * shareC;
    };
    Vector fragment =
        clamped(times(between(&Corner::colour), rgb(triangle.texture)) + between(&Corner::highlight));
    if (triangle.fogged) {
      const float clear = std::clamp((fogEnd - distance) / (fogEnd - fogStart), 0.0f, 1.0f);
      fragment = over(fogColour, fragment, clear);
    }
    colour = clamped(triangle.blend(colour, fragment, triangle.alpha * triangle.texture[3]));
    if (triangle.depthWrites) nearest = distance;
  }
};

Corner litCorner(const Mesh& mesh, const std::vector<Lamp>& lamps, const Vector& towardsEye,
                 const Vector& place, const Vector& normal) {
  Corner corner{place, rgb(mesh.ambient), {}};
  for (const Lamp& lamp : lamps) {
    Vector toLamp = lamp.place - place;
    float strength = 1 / (lamp.constant + lamp.linear * toLamp.length());
    toLamp.normalize();
    if (lamp.halfCone < 180) {
      const float cosine = dot(-toLamp, unit(lamp.axis));
      strength *= cosine < std::cos(lamp.halfCone / 180 * pi) ? 0 : cosine;
    }
    const float facing = dot(normal, toLamp);
    if (facing <= 0) continue;
    corner.colour += times(rgb(mesh.diffuse), lamp.colour) * (facing * strength);
    if (mesh.shininess <= 0) continue;
    const float glance = std::max(dot(normal, unit(toLamp + towardsEye)), 0.0f);
    corner.highlight += rgb(mesh.specular) * (std::pow(glance, mesh.shininess * 128) * strength);
  }
  corner.colour = clamped(corner.colour);
  corner.highlight = clamped(corner.highlight);
  return corner;
}

// A texture of one colour. Large, so that the black border is narrow where a flare has it uploaded clamped.
int addPaint(const char* name, const Rgba& colour) {
  constexpr int side = 256;
  const auto byte = [](float share) { return static_cast<std::uint32_t>(std::lround(share * 255)); };
  TextureEntry entry;
  entry.width = entry.height = side;
  entry.pixels.assign(side * side,
                      packPixel(byte(colour[0]), byte(colour[1]), byte(colour[2]), byte(colour[3])));
  return addTexture(std::move(entry), name, true);
}

// All state that drawing here depends on, as nothing of it wants it.
void spoilGlState() {
  for (const GLenum state :
       {GL_ALPHA_TEST, GL_CULL_FACE, GL_LIGHTING, GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T, GL_FOG}) {
    glEnable(state);
  }
  for (const GLenum state : {GL_TEXTURE_2D, GL_NORMALIZE}) glDisable(state);
  glDepthFunc(GL_NEVER);
  glDepthMask(GL_FALSE);
  glAlphaFunc(GL_NEVER, 1.0f);
  glBlendFunc(GL_ZERO, GL_ONE);
  glCullFace(GL_FRONT_AND_BACK);
  glFrontFace(GL_CW);
  for (const GLenum coordinate : {GL_S, GL_T}) {
    glTexGeni(coordinate, GL_TEXTURE_GEN_MODE, GL_OBJECT_LINEAR);
  }
  constexpr float odd[4] = {0.9f, 0.1f, 0.8f, 0.3f};
  glFogi(GL_FOG_MODE, GL_EXP);
  glFogf(GL_FOG_DENSITY, 5.0f);
  glFogfv(GL_FOG_COLOR, odd);
  glColor4fv(odd);
  glNormal3fv(odd);
  for (const GLenum name : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}) glMaterialfv(GL_FRONT, name, odd);
  glMaterialf(GL_FRONT, GL_SHININESS, 2.0f);
  glLightModelfv(GL_LIGHT_MODEL_AMBIENT, odd);
  for (GLenum light = GL_LIGHT0; light < GL_LIGHT0 + 8; ++light) {
    glEnable(light);
    glLightfv(light, GL_DIFFUSE, odd);
    glLightfv(light, GL_SPECULAR, odd);
    glLightfv(light, GL_SPOT_DIRECTION, odd);
    glLightf(light, GL_SPOT_CUTOFF, light % 2 ? 5.0f : 180.0f);
    glLightf(light, GL_SPOT_EXPONENT, 9.0f);
    glLightf(light, GL_QUADRATIC_ATTENUATION, 0.01f);
  }
  for (const GLenum mode : {GL_MODELVIEW, GL_PROJECTION}) {
    glMatrixMode(mode);
    glTranslatef(3.0f, 4.0f, 5.0f);
    glRotatef(50.0f, 1.0f, 2.0f, 3.0f);
  }
  glMatrixMode(GL_TEXTURE);
}

void makeBall(Mesh& mesh, const Vector& centre, float radius) {
  constexpr std::uint32_t rows = 10, columns = 16;
  for (std::uint32_t row = 0; row <= rows; ++row) {
    for (std::uint32_t column = 0; column <= columns; ++column) {
      const float down = pi * static_cast<float>(row) / rows;
      const float round = 2 * pi * static_cast<float>(column) / columns;
      const Vector outward(std::sin(down) * std::cos(round), std::cos(down),
                           std::sin(down) * std::sin(round));
      mesh.vertices.push_back(
          {.position = centre + outward * radius, .normal = outward, .u = 0.5f, .v = 0.5f});
    }
  }
  for (std::uint32_t row = 0; row < rows; ++row) {
    for (std::uint32_t column = 0; column < columns; ++column) {
      const std::uint32_t a = row * (columns + 1) + column, below = a + columns + 1;
      mesh.faces.push_back({.v = {a, a + 1, below}});
      mesh.faces.push_back({.v = {a + 1, below + 1, below}});
    }
  }
}

Animation doubled() {
  Animation track;
  track.type = TrackType::scale;
  track.allocKeys(1);
  track.insertKey(0, {2, 2, 2}, 0);
  return track;
}

constexpr float viewerAlpha = 0.8f;
const Vector ground(0.2f, 0.4f, 0.3f);
const Rgba wallColours[boxFaces] = {{0.9f, 0.2f, 0.2f, 0.7f}, {0.2f, 0.9f, 0.2f, 0.7f}, {0, 0, 0, 1},
                                    {0.2f, 0.2f, 0.9f, 0.7f}, {0.5f, 0.6f, 0.7f, 0.7f}, {0, 0, 0, 1}};
const Rgba ballColour{0.9f, 0.8f, 0.7f, 1}, glowColour{0.3f, 0.2f, 0.5f, 0.8f};
const Rgba nearFlareColour{0.7f, 0.9f, 0.4f, 1}, farFlareColour{0.2f, 0.5f, 0.8f, 1};
const Rgba plain{1, 1, 1, 1};
const Rgba veilColours[4] = {
    {0.5f, 0.3f, 0.1f, 0.9f}, {0.6f, 0.2f, 0.4f, 0.9f}, {0.9f, 0.9f, 0.1f, 0.5f}, {0.1f, 0.7f, 0.9f, 0.6f}};

enum LightIndex { nearFlare, spot, farFlare, point, lightCount };
enum MeshIndex { firstVeil, ball = 4, backdrop, hidden, faint, flake, meshCount };

class LitWorld : public GlTest {
 protected:
  TestScene scene{meshCount, lightCount};
  OwnedArray<ParticleSystem> systems = makeParticleSystems(1);
  Vector spotPlace{8, 14, 34}, spotAxis{4, -12, -30};

  void SetUp() override {
    GlTest::SetUp();
    setWindowSize(glTestWidth, glTestHeight);
    randomState() = 1;
    addPaint("decoy", {1, 0, 1, 1});
    setUpView();
    setUpMeshes();
    setUpLights();
    setUpParticles();
    scene.prepare(false);
  }

  void setUpView() {
    Viewer& viewer = *scene.viewers[0];
    viewer.addAnimation(straightPath({3, 4, 40}, {7, 4, 40}));
    viewer.target = {9, 1, 20};
    viewer.fov = 80.0f;  // 60 degrees high
    viewer.farPlane = 120.0f;
    viewer.roll = 0.2f;
    viewer.alpha = viewerAlpha;
    constexpr const char* names[boxFaces] = {"top", "bottom", "north", "west", "south", "east"};
    for (const std::size_t face : {0, 1, 3, 4}) {
      scene.boxTextures[face] = addPaint(names[face], wallColours[face]);
    }
    scene.fogs.allocate(1);
    scene.fogs[0] = new Fog;
    scene.fogs[0]->divisor = 2.0f;
    scene.fogs[0]->colour = {0.7f, 0.6f, 0.9f};
  }

  void setUpMeshes() {
    Mesh& sphere = *scene.meshes[ball];
    sphere.position = {1, 1, 1};
    makeBall(sphere, sphere.position, 3);
    sphere.addAnimation(doubled());
    sphere.addAnimation(straightPath({8, 1, 16}, {16, 1, 16}));
    sphere.lit = true;
    sphere.texture = addPaint("ball", ballColour);
    sphere.diffuse = {0.5f, 0.4f, 0.6f, 0};
    sphere.ambient = {0.1f, 0.15f, 0.05f, 1};
    // Bright enough for a highlight, too dim for white, which some drivers reach only behind the fog.
    sphere.specular = {0.4f, 0.5f, 0.3f, 1};
    sphere.shininess = 0.1f;
    sphere.shineStrength = 1;
    Mesh& wall = *scene.meshes[backdrop];
    makeGrid(wall, 12, 6, {0, -15, 4}, 50, 26);
    wall.lit = true;
    wall.diffuse = {0.9f, 0.5f, 0.6f, 0};
    wall.ambient = {0.05f, 0.1f, 0.15f, 1};
    // Each behind the one before it, and over a part of it.
    struct Veil {
      BlendMode mode;
      Vector corner;
      float width, height;
    };
    int next = firstVeil;
    for (const Veil& veil :
         {Veil{BlendMode::additive, {-3, 1, 26}, 8, 6}, Veil{BlendMode::subtractive, {-1, -2, 24}, 9, 6},
          Veil{BlendMode::transparent, {-6, -1, 22}, 9, 7}, Veil{BlendMode::untouched, {-4, 2, 20}, 10, 7}}) {
      constexpr const char* names[] = {"veil0", "veil1", "veil2", "veil3"};
      Mesh& mesh = *scene.meshes[next];
      makeGrid(mesh, 1, 1, veil.corner, veil.width, veil.height);
      mesh.blendMode = veil.mode;
      mesh.texture = addPaint(names[next - firstVeil], veilColours[next - firstVeil]);
      mesh.diffuse = {0.9f, 0.8f, 1, 0};
      mesh.opacity = 0.75f;
      ++next;
    }
    for (const int index : {hidden, faint}) makeGrid(*scene.meshes[index], 1, 1, {-20, -20, 30}, 60, 60);
    scene.meshes[hidden]->flags = hiddenFlag;
    scene.meshes[faint]->opacity = 0.5f;
    scene.meshes[faint]->alphaRef = 0.45f;  // more than what the viewer leaves
    Mesh& shape = *scene.meshes[flake];
    shape.flags = hiddenFlag;
    shape.position = {50, 50, 50};
    shape.lit = true;
    shape.diffuse = {0.7f, 0.9f, 0.6f, 0};
    shape.ambient = {0.2f, 0.1f, 0.1f, 1};
    for (const Vector& corner : {Vector(0, -2, 2), Vector(0, -2, -2), Vector(0, 3, 0)}) {
      shape.vertices.push_back({.position = shape.position + corner, .normal = {1, 0, 0}});
    }
    shape.faces.push_back({.v = {0, 1, 2}});
  }

  void setUpLights() {
    Light& spotLight = *scene.lights[spot];
    spotLight.active = spotLight.spot = true;
    spotLight.position = spotPlace;
    spotLight.spotDirection = spotAxis;
    spotLight.coneAngle = 50;
    spotLight.range = 10;
    spotLight.intensity = 1.5f;
    spotLight.colour = {1, 0.9f, 0.7f};
    spotLight.addAnimation(straightPath({6, 12, 36}, {26, 12, 36}));
    spotLight.setTarget(straightPath({10, 0, 4}, {50, 0, 4}));
    Light& pointLight = *scene.lights[point];
    pointLight.active = true;
    pointLight.position = {20, 8, 30};
    pointLight.range = 0;
    pointLight.intensity = 0.8f;
    pointLight.colour = {0.3f, 0.5f, 0.9f};
    scene.collectActiveLights();
    Light& close = *scene.lights[nearFlare];
    close.position = {12, 2, 25};
    close.flareSize = 7;
    close.glow = true;
    close.colour = {0.6f, 0.1f, 0.7f};
    close.flareStrength = -0.9f;
    std::snprintf(close.flareTexture, textureNameSize, "near");
    Light& distant = *scene.lights[farFlare];
    distant.position = {14, 0, 12};
    distant.flareSize = 18;
    distant.flareStrength = 0.7f;
    distant.colour = {0.4f, 0.9f, 0.5f};
    addPaint("data\\Light5", glowColour);
    addPaint("near", nearFlareColour);
    addPaint("data\\flare_normal", farFlareColour);
  }

  void setUpParticles() {
    ParticleSystem& system = *systems[0];
    scene.particleSystems = &systems[0];
    system.addShape(scene.meshes[flake]);
    system.rate = 0;
    system.life = 1e6f;
    system.gravity = {};
    system.emit(1, 0);
    Particle& particle = system.particles[0];
    particle.position = {14, -6, 24};
    particle.velocity = {4, 0, 0};
    particle.axis = {0, 1, 0};
    particle.angle = pi / 2;
    particle.spin = 0;
    particle.alpha = 0.9f;
  }

  // What frame `frame` shows, 0 or 1, at scene time `seconds`.
  Picture expected(int frame, float seconds) const {
    Picture picture;
    picture.eye = Vector(3, 4, 40) + Vector(4, 0, 0) * seconds;
    picture.forward = unit(Vector(9, 1, 20) - picture.eye);
    const Vector across = unit(cross(picture.forward, {0, 1, 0})), down = cross(picture.forward, across);
    picture.right = across * std::cos(0.2f) - down * std::sin(0.2f);
    picture.up = -across * std::sin(0.2f) - down * std::cos(0.2f);
    picture.halfHeight = std::tan(pi / 6);
    picture.ground = ground;
    picture.fogColour = {0.7f, 0.6f, 0.9f};
    picture.fogStart = 12;
    picture.fogEnd = 60;
    std::copy_n(wallColours, boxFaces, picture.walls.begin());
    picture.walls[2] = picture.walls[5] = {0, 0, 0, 0};

    const Vector spotNow = frame == 0 ? spotPlace : Vector(6 + 20 * 0.25f, 12, 36);
    const Vector axisNow = frame == 0 ? spotAxis : Vector(10 + 40 * 0.25f, 0, 4) - spotNow;
    const std::vector<Lamp> lamps{{spotNow, {1, 0.9f, 0.7f}, 0, 1 / (10 * 1.5f), axisNow, 25},
                                  {{20, 8, 30}, {0.3f, 0.5f, 0.9f}, 1 / 0.8f, 0, {}, 180}};
    const auto addMesh = [&](int index, const Rgba& texture, Blend blend, float alpha, auto place, auto turn,
                             bool fogged) {
      const Mesh& mesh = *scene.meshes[index];
      for (const Face& face : mesh.faces) {
        Triangle triangle{{}, texture, alpha, blend, mesh.blendMode == BlendMode::opaque, false, fogged};
        for (std::size_t i = 0; i < 3; ++i) {
          const Vertex& vertex = mesh.vertices[face.v[i]];
          triangle.corners[i] =
              mesh.lit ? litCorner(mesh, lamps, -picture.forward, place(vertex.position), turn(vertex.normal))
                       : Corner{place(vertex.position), rgb(mesh.diffuse), {}};
        }
        picture.triangles.push_back(triangle);
      }
    };
    const auto addSprite = [&](const Vector& centre, float half, const Rgba& texture, const Vector& colour,
                               Blend blend, float alpha) {
      const Vector a = centre - across * half - down * half, b = a + across * (2 * half);
      const Vector c = b + down * (2 * half), d = a + down * (2 * half);
      for (const auto& corners : {std::array{a, b, c}, std::array{a, c, d}}) {
        Triangle triangle{{}, texture, alpha, blend, false, true, false};
        for (std::size_t i = 0; i < 3; ++i) triangle.corners[i] = {corners[i], colour, {}};
        picture.triangles.push_back(triangle);
      }
    };
    const auto same = [](const Vector& v) { return v; };
    const Vector ballPlace = Vector(8, 1, 16) + Vector(8, 0, 0) * seconds;
    addMesh(
        ball, ballColour, over, viewerAlpha,
        [&](const Vector& v) { return (v - Vector(1, 1, 1)) * 2 + ballPlace; }, same, true);
    addMesh(backdrop, plain, over, viewerAlpha, same, same, true);
    constexpr Blend veilBlends[] = {add, darken, over, over};
    for (int i = 0; i < 4; ++i) {
      addMesh(firstVeil + i, veilColours[i], veilBlends[i], 0.75f * viewerAlpha, same, same, true);
    }
    const Vector particlePlace = Vector(14, -6, 24) + Vector(2, 0, 0) * static_cast<float>(frame + 1);
    const auto quarterTurn = [](const Vector& v) { return Vector(-v.z, v.y, v.x); };  // about y
    addMesh(
        flake, plain, over, 0.9f * viewerAlpha,
        [&](const Vector& v) { return quarterTurn(v - Vector(50, 50, 50)) + particlePlace; }, quarterTurn,
        false);
    addSprite({12, 2, 25}, 3.5f, glowColour, {1, 1, 1}, add, viewerAlpha);
    addSprite({12, 2, 25}, 1.75f, nearFlareColour, Vector(0.6f, 0.1f, 0.7f) * (0.9f * viewerAlpha), darken,
              1);
    addSprite({14, 0, 12}, 9, farFlareColour, Vector(0.4f, 0.9f, 0.5f) * (0.7f * viewerAlpha), add, 1);
    return picture;
  }
};

// Whether the pixel has the colour of its middle or, at edges, one between those a tenth of a pixel around
// it, but for the rounding of some layers of eight bits each.
bool fits(const std::uint8_t* pixel, const Picture& picture, float x, float y) {
  constexpr float tolerance = 4;
  Vector low = picture.at(x, y), high = low;
  const auto inside = [&] {
    const float least[] = {low.x, low.y, low.z}, most[] = {high.x, high.y, high.z};
    for (int i = 0; i < 3; ++i) {
      const auto value = static_cast<float>(pixel[i]);
      if (value < least[i] * 255 - tolerance || value > most[i] * 255 + tolerance) return false;
    }
    return true;
  };
  if (inside()) return true;
  for (const auto& [dx, dy] :
       {std::array{-0.1f, -0.1f}, std::array{0.1f, -0.1f}, std::array{-0.1f, 0.1f}, std::array{0.1f, 0.1f}}) {
    const Vector near = picture.at(x + dx, y + dy);
    low.set(std::min(low.x, near.x), std::min(low.y, near.y), std::min(low.z, near.z));
    high.set(std::max(high.x, near.x), std::max(high.y, near.y), std::max(high.z, near.z));
  }
  return inside();
}

void expectPicture(const Picture& picture, const char* what) {
  std::vector<std::uint8_t> pixels(glTestWidth * glTestHeight * 4);
  glReadPixels(0, 0, glTestWidth, glTestHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  int wrong = 0;
  for (int y = 0; y < glTestHeight; ++y) {
    for (int x = 0; x < glTestWidth; ++x) {
      const std::uint8_t* pixel = &pixels[static_cast<std::size_t>(4 * (y * glTestWidth + x))];
      const float middleX = static_cast<float>(x) + 0.5f, middleY = static_cast<float>(y) + 0.5f;
      if (fits(pixel, picture, middleX, middleY) || ++wrong > 3) continue;
      const Vector colour = picture.at(middleX, middleY) * 255;
      ADD_FAILURE() << what << " at " << x << ", " << y << ": " << int{pixel[0]} << ' ' << int{pixel[1]}
                    << ' ' << int{pixel[2]} << " instead of " << colour.x << ' ' << colour.y << ' '
                    << colour.z;
    }
  }
  EXPECT_EQ(wrong, 0) << what;
}

TEST_F(LitWorld, IsTheOneThatRaysSee) {
  glClearColor(ground.x, ground.y, ground.z, 1);
  clockAdvanceTo(9.5f);
  for (int frame = 0; frame < 2; ++frame) {
    glClear(GL_COLOR_BUFFER_BIT);
    if (frame == 0) spoilGlState();
    clockAdvanceTo(10.0f + 0.5f * static_cast<float>(frame));
    const float seconds = frame == 0 ? 0.25f : 0.5f;
    scene.render(seconds);
    expectPicture(expected(frame, seconds), frame == 0 ? "first frame" : "second frame");
  }
}

}  // namespace
}  // namespace vex
