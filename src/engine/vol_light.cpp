#include "engine/vol_light.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/pi.h"
#include "base/report.h"
#include "engine/viewer.h"
#include "textures/texture_cache.h"

namespace vex {

VolLight::VolLight(int samples) : size(std::clamp(samples, minDepthSize, maxDepthSize)) {
  kind = ObjectKind::volLight;
  const auto n = static_cast<std::size_t>(size);
  depthBuffer.assign(n * n, 0.0f);
  std::snprintf(beams.name, objectNameSize, "%s.beams", name);
  beams.vertices.resize(n * n + 1);
  beams.faces.resize(n * n - 1);
  beams.blendMode = BlendMode::additive;
  beams.twoSided = true;
  beams.opacity = 1.7f / static_cast<float>(size);
  beams.lit = false;
  buildBeams();
}

VolLight::~VolLight() {
  logPrintf("  destroying VolLight %s\n", name);
}

void VolLight::buildBeams() {
  const auto n = static_cast<std::uint32_t>(size);
  const std::uint32_t apex = n * n;

  // Zigzag over the grid's anti-diagonals: each cell next to the one before.
  std::vector<std::uint32_t> order;
  for (std::uint32_t s = 0; s <= 2 * n - 2; ++s) {
    const std::uint32_t first = s < n ? 0 : s - (n - 1);  // smallest column on this diagonal
    const std::uint32_t last = s < n ? s : n - 1;
    for (std::uint32_t i = first; i <= last; ++i) {
      const std::uint32_t column = s % 2 == 1 ? i : first + last - i;
      order.push_back((s - column) * n + column);
    }
  }
  for (std::size_t k = 0; k < beams.faces.size(); ++k) beams.faces[k].v = {apex, order[k], order[k + 1]};

  // The scene's preparation does not know this mesh.
  beams.vertexCount = apex + 1;
  beams.faceCount = apex - 1;
  beams.positions.assign(3 * beams.vertices.size(), 0.0f);
  beams.normals.assign(3 * beams.vertices.size(), 0.0f);
  beams.uvs.assign(2 * beams.vertices.size(), 0.0f);
  beams.uvs[2 * apex] = 1.0f;
  for (const Face& face : beams.faces)
    beams.indices.insert(beams.indices.end(), face.v.begin(), face.v.end());
}

void VolLight::setBeamTexture(const char* textureName) {
  beams.texture = getTexture(textureName, false);
}

Matrix VolLight::viewMatrix() const {
  return lookAlong(position, spotDirection);
}

void VolLight::prepareBeams(float near) {
  Vector right = cross(spotDirection, {0.0f, 1.0f, 0.0f});
  Vector down = cross(spotDirection, right);
  Vector axis = spotDirection;
  axis.normalize();
  axis *= range;
  const float halfWidth = std::tan(coneAngle / 360.0f * pi) * range;  // at full range
  right.normalize();
  right *= halfWidth;
  down.normalize();
  down *= halfWidth;

  const auto n = static_cast<std::size_t>(size);
  const auto fraction = [this](std::size_t i) {  // -1 to 1 over the samples of a side
    return 2.0f * static_cast<float>(i) / static_cast<float>(size - 1) - 1.0f;
  };
  for (std::size_t i = 0; i < n; ++i) {
    const float* depths = &depthBuffer[(n - 1 - i) * n];
    const Vector rowAxis = axis + down * fraction(i);
    for (std::size_t j = 0; j < n; ++j) {
      // Distance along the axis as a fraction of the range.
      const float k = -1.0f / ((range - near) * depths[j] - range);
      beams.vertices[i * n + j].position = position + (rowAxis + right * fraction(j)) * k;
    }
  }
  beams.vertices[n * n].position = position;

  float* out = beams.positions.data();
  for (const Vertex& vertex : beams.vertices) {
    *out++ = vertex.position.x;
    *out++ = vertex.position.y;
    *out++ = vertex.position.z;
  }
}

void VolLight::drawBeams(float seconds, float alpha) {
  beams.draw(false, seconds, alpha);
}

VolLight* makeVolumetric(Light* source, int samples) {
  auto* light = new VolLight(samples);
  light->spotDirection = source->spotDirection;
  light->range = source->range;
  light->coneAngle = source->coneAngle;
  light->position = source->position;
  std::snprintf(light->name, objectNameSize, "%s", source->name);
  for (const TrackType type : {TrackType::scale, TrackType::rotation, TrackType::position}) {
    if (const Animation* track = source->track(type)) light->addAnimation(*track);
  }
  if (source->target) light->setTarget(*source->target);
  destroyLight(source);
  return light;
}

}  // namespace vex
