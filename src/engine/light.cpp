#include "engine/light.h"

#include <GL/gl.h>

#include <cmath>

#include "base/report.h"
#include "engine/drawing.h"
#include "engine/glow_textures.h"
#include "engine/vol_light.h"

namespace vex {

Light::~Light() {
  logPrintf("  destroying light %s\n", name);
}

void destroyLight(Light* light) {
  if (light && light->kind == ObjectKind::volLight) {
    delete static_cast<VolLight*>(light);
  } else {
    delete light;
  }
}

void Light::setTarget(const Animation& track) {
  if (track.type != TrackType::position) fatalError("Lights support only position keys");
  target = std::make_unique<Animation>(track);
}

void Light::setAnimParams(float duration, bool loop) {
  Object3D::setAnimParams(duration, loop);
  if (!target) return;
  target->duration = duration;
  target->loop = loop;
}

void Light::update(float seconds) {
  if (const Animation* path = track(TrackType::position)) {
    position = transformPoint(path->getMatrix(seconds), Vector());
  }
  if (target) spotDirection = transformPoint(target->getMatrix(seconds), Vector()) - position;
}

namespace {

// Texture corners: t grows upwards, against `down`.
void drawSprite(const Vector& centre, const Vector& down, const Vector& right, float halfSize) {
  if (drawingUnseen()) return;
  const auto corner = [&](const Vector& offset, float s, float t) {
    const Vector p = centre + offset * halfSize;
    glTexCoord2f(s, t);
    glVertex3f(p.x, p.y, p.z);
  };
  glBegin(GL_QUADS);
  corner(-right - down, 0.0f, 1.0f);
  corner(right - down, 1.0f, 1.0f);
  corner(right + down, 1.0f, 0.0f);
  corner(down - right, 0.0f, 0.0f);
  glEnd();
}

void bindTexture(const char* name) {
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(getTexture(name, false)));
}

// Of the seven glows the one nearest to the colour; 0 for a dark colour, which has none.
int glowOf(const Colour& colour) {
  return (colour.r >= 0.5f ? 4 : 0) + (colour.g >= 0.5f ? 2 : 0) + (colour.b >= 0.5f ? 1 : 0);
}

}  // namespace

void Light::drawFlare(const Vector& down, const Vector& right, float seconds, float alpha) {
  update(seconds);
  for (const GLenum state : {GL_LIGHTING, GL_CULL_FACE, GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T}) glDisable(state);
  glEnable(GL_TEXTURE_2D);
  float size = flareSize;

  if (flareKind == FlareKind::vectorBall) {
    glDepthMask(GL_TRUE);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.0f);
    size *= 0.5f * intensity;
    bindTexture("data\\flare_vectorball");
    glColor4f(colour.r, colour.g, colour.b, alpha);
    drawSprite(position, down, right, size);
    return;
  }
  if (size <= 0.0f) return;

  glDepthMask(GL_FALSE);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  glDisable(GL_ALPHA_TEST);
  if (const int n = glowOf(colour); glow && intensity != 0.0f && n > 0) {
    size *= 0.5f;
    bindTexture(glowTexture(n).c_str());
    glColor4f(1.0f, 1.0f, 1.0f, alpha);
    drawSprite(position, down, right, size);
  }
  if (flareStrength != 0.0f) {
    size *= intensity > 1.0f ? 0.5f * intensity : 0.5f;
    if (flareStrength < 0.0f) glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR);
    bindTexture(flareTexture);
    glColor4f(std::fabs(colour.r * flareStrength) * alpha, std::fabs(colour.g * flareStrength) * alpha,
              std::fabs(colour.b * flareStrength) * alpha, 1.0f);
    drawSprite(position, down, right, size);
  }
}

}  // namespace vex
