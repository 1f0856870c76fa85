#pragma once

#include <vector>

#include "base/pi.h"
#include "production/image/image.h"

// The film's colours: ink, bone and one hue a movement, as ramps from dark to light.

namespace vex {

inline constexpr image::Colour4 black{0, 0, 0, 1};
inline constexpr image::Colour4 ink{7 / 255.0f, 6 / 255.0f, 10 / 255.0f, 1};
inline constexpr image::Colour4 boneWhite{232 / 255.0f, 220 / 255.0f, 196 / 255.0f, 1};

using Ramp = std::vector<image::Colour4>;

inline const Ramp boneRamp{black,     {0.045f, 0.04f, 0.045f}, {0.19f, 0.165f, 0.15f}, {0.55f, 0.5f, 0.43f},
                           boneWhite, {1, 0.98f, 0.92f}};
inline const Ramp acidRamp{black,
                           {0.02f, 0.042f, 0.018f},
                           {0.11f, 0.2f, 0.045f},
                           {0.4f, 0.6f, 0.1f},
                           {0.79f, 0.93f, 0.38f},
                           {0.98f, 1, 0.85f}};
inline const Ramp violetRamp{black,
                             {0.04f, 0.02f, 0.075f},
                             {0.2f, 0.04f, 0.24f},
                             {0.66f, 0.07f, 0.44f},
                             {0.97f, 0.43f, 0.7f},
                             {1, 0.92f, 0.95f}};
inline const Ramp emberRamp{black,
                            {0.07f, 0.012f, 0.012f},
                            {0.34f, 0.05f, 0.015f},
                            {0.84f, 0.27f, 0.035f},
                            {1, 0.68f, 0.22f},
                            {1, 0.95f, 0.78f}};
inline const Ramp steelRamp{black,
                            {0.025f, 0.03f, 0.05f},
                            {0.12f, 0.14f, 0.21f},
                            {0.4f, 0.46f, 0.58f},
                            {0.8f, 0.86f, 0.93f},
                            {0.97f, 0.98f, 1}};
inline const Ramp tealRamp{black,
                           {0.008f, 0.04f, 0.05f},
                           {0.02f, 0.19f, 0.21f},
                           {0.1f, 0.55f, 0.54f},
                           {0.55f, 0.9f, 0.84f},
                           {0.93f, 1, 0.97f}};
inline const Ramp alarmRamp{black,
                            {0.08f, 0.008f, 0.012f},
                            {0.38f, 0.02f, 0.03f},
                            {0.9f, 0.12f, 0.07f},
                            {1, 0.5f, 0.36f},
                            {1, 0.92f, 0.86f}};
inline const Ramp brassRamp{black,
                            {0.06f, 0.04f, 0.018f},
                            {0.22f, 0.14f, 0.045f},
                            {0.56f, 0.4f, 0.15f},
                            {0.88f, 0.74f, 0.42f},
                            {1, 0.96f, 0.82f}};
inline const Ramp copperRamp{black,
                             {0.05f, 0.022f, 0.016f},
                             {0.27f, 0.11f, 0.055f},
                             {0.74f, 0.37f, 0.19f},
                             {0.99f, 0.72f, 0.50f},
                             {1, 0.95f, 0.87f}};

struct Hue {
  const char* suffix;
  const Ramp& ramp;
};

inline const Hue boneHue{"bone", boneRamp};
inline const Hue acidHue{"acid", acidRamp};
inline const Hue violetHue{"violet", violetRamp};
inline const Hue emberHue{"ember", emberRamp};
inline const Hue tealHue{"teal", tealRamp};

}  // namespace vex
