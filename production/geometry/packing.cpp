#include "production/geometry/packing.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/pi.h"
#include "production/geometry/index.h"

namespace vex::geometry {

namespace {

// What a chart covers of each column of texels, bleed included: from `low` up to below `high`.
struct Profile {
  std::vector<int> low, high;
};

Profile profileOf(const Chart& chart, float scale, int bleed) {
  const int inner = static_cast<int>(std::ceil(chart.width * scale)) + 1, width = inner + 2 * bleed;
  std::vector<float> least(at(inner), 1e9f), most(at(inner), -1e9f);
  for (const auto& corners : chart.corners)
    for (std::size_t k = 0; k < 3; ++k) {
      Flat p = corners[k], q = corners[(k + 1) % 3];
      if (p.x > q.x) std::swap(p, q);
      const float x0 = p.x * scale, x1 = q.x * scale, y0 = p.y * scale, y1 = q.y * scale;
      // Texels reach half a texel to both sides of their centres; so does what the line covers.
      const int from = static_cast<int>(x0), to = std::min(inner - 1, static_cast<int>(std::ceil(x1)));
      for (int x = from; x <= to; ++x)
        for (const float edge :
             {std::clamp(static_cast<float>(x) - 1, x0, x1), std::clamp(static_cast<float>(x) + 1, x0, x1)}) {
          const float y = x1 > x0 ? y0 + (y1 - y0) * (edge - x0) / (x1 - x0) : y0;
          least[at(x)] = std::min({least[at(x)], y, x1 > x0 ? y : y1});
          most[at(x)] = std::max({most[at(x)], y, x1 > x0 ? y : y1});
        }
    }
  Profile profile;
  for (int x = 0; x < width; ++x) {
    float low = 1e9f, high = -1e9f;
    for (int k = std::max(0, x - 2 * bleed); k <= std::min(inner - 1, x); ++k)
      low = std::min(low, least[at(k)]), high = std::max(high, most[at(k)]);
    profile.low.push_back(static_cast<int>(std::floor(low)));
    profile.high.push_back(static_cast<int>(std::ceil(high)) + 1 + 2 * bleed);
  }
  return profile;
}

}  // namespace

TurnedChart quarterTurns(const Chart& chart) {
  TurnedChart turns{chart, chart, chart, chart};
  for (int i = 1; i < 4; ++i) rotateChart(turns[at(i)], pi / 2 * static_cast<float>(i));
  return turns;
}

std::optional<std::vector<Spot>> pack(const std::vector<TurnedChart>& charts, float scale, int side,
                                      int bleed) {
  std::vector<std::size_t> order(charts.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t p, std::size_t q) {
    return charts[p][0].height * charts[p][0].density > charts[q][0].height * charts[q][0].density;
  });
  std::vector<int> skyline(at(side), 0);
  std::vector<Spot> spots(charts.size());
  for (const std::size_t i : order) {
    int lowestTop = side + 1;
    Profile best;
    for (std::size_t quarters = 0; quarters < 4; ++quarters) {
      const Chart& chart = charts[i][quarters];
      const Profile profile = profileOf(chart, scale * chart.density, bleed);
      const int width = static_cast<int>(profile.low.size());
      const int height = *std::max_element(profile.high.begin(), profile.high.end());
      for (int x = 0; x + width <= side; ++x) {
        int y = 0;
        for (int k = 0; k < width && y + height < lowestTop; ++k)
          y = std::max(y, skyline[at(x + k)] - profile.low[at(k)]);
        if (y + height >= lowestTop) continue;
        lowestTop = y + height;
        best = profile;
        spots[i] = {x, y, quarters};
      }
    }
    if (lowestTop > side) return std::nullopt;
    for (std::size_t k = 0; k < best.high.size(); ++k)
      skyline[at(spots[i].x) + k] = spots[i].y + best.high[k];
  }
  return spots;
}

}  // namespace vex::geometry
