#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

const char* const evenRadius = R"(
const float lensRadius = 0.998;
float evenRadius(float t) {
    return lensRadius * (1.0 - t / 1.570795);
}
)";

const char* const poleShrink = R"(
float poleShrink(float t) {
    const float leftAfterOneRadian = 0.8;
    return (leftAfterOneRadian - 1.0) * t + 1.0;
}
)";

const char* const lensPoint = R"(
vec2 lensPoint(float radius, float s) {
    return vec2(radius * sin(s) / 2.0 + 0.5, 0.5 - radius * cos(s) / 2.0);
}
)";

const char* const lensPointOpposite = R"(
vec2 lensPointOpposite(float radius, float s) {
    return vec2(0.5 - radius * sin(s) / 2.0, radius * cos(s) / 2.0 + 0.5);
}
)";

}  // namespace zet::ZETShow
