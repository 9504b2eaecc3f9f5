#include "compose/generated_textures.h"

#include <cmath>
#include <cstdint>

#include "compose/option_table.h"

namespace lx::compose {
namespace {

constexpr int32_t kSize = 256;

uint32_t Hash(int32_t x, int32_t y, uint32_t seed) {
  uint32_t h =
      static_cast<uint32_t>(x) * 0x8da6b343u ^ static_cast<uint32_t>(y) * 0xd8163841u ^ seed * 0xcb1ab31fu;
  h ^= h >> 13;
  h *= 0x5bd1e995u;
  h ^= h >> 15;
  return h;
}

double Lattice(int32_t x, int32_t y, int32_t periodX, int32_t periodY, uint32_t seed) {
  x = ((x % periodX) + periodX) % periodX;
  y = ((y % periodY) + periodY) % periodY;
  return (Hash(x, y, seed) & 0xFFFFFF) / 16777216.0;
}

double Smooth(double t) {
  return t * t * (3.0 - 2.0 * t);
}

// Value noise on a lattice of periodX by periodY cells spread over the texture, so it tiles.
double Noise(double u, double v, int32_t periodX, int32_t periodY, uint32_t seed) {
  const double x = u * periodX, y = v * periodY;
  const double fx = std::floor(x), fy = std::floor(y);
  const int32_t ix = static_cast<int32_t>(fx), iy = static_cast<int32_t>(fy);
  const double tx = Smooth(x - fx), ty = Smooth(y - fy);
  const double a = Lattice(ix, iy, periodX, periodY, seed), b = Lattice(ix + 1, iy, periodX, periodY, seed);
  const double c = Lattice(ix, iy + 1, periodX, periodY, seed),
               d = Lattice(ix + 1, iy + 1, periodX, periodY, seed);
  const double top = a + (b - a) * tx, bottom = c + (d - c) * tx;
  return top + (bottom - top) * ty;
}

// Octaves of noise, each twice as fine and half as strong; 0..1.
double Fractal(double u, double v, int32_t periodX, int32_t periodY, int octaves, uint32_t seed) {
  double sum = 0.0, weight = 0.5, total = 0.0;
  for (int i = 0; i < octaves; ++i) {
    sum += Noise(u, v, periodX << i, periodY << i, seed + static_cast<uint32_t>(i)) * weight;
    total += weight;
    weight *= 0.5;
  }
  return sum / total;
}

double Fract(double v) {
  return v - std::floor(v);
}
double Clamp01(double v) {
  return v < 0.0 ? 0.0 : (v > 1.0 ? 1.0 : v);
}

struct Rgb {
  double r, g, b;
};

Rgb Mix(const Rgb& a, const Rgb& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

uint32_t ToPixel(const Rgb& c) {
  auto byte = [](double v) { return static_cast<uint8_t>(Clamp01(v / 255.0) * 255.0 + 0.5); };
  return PackPixel(byte(c.r), byte(c.g), byte(c.b), 255);
}

// Planks of wood with wavy growth rings running across.
Rgb Wood(double u, double v) {
  const double warp = Fractal(u, v, 3, 3, 4, 11) * 3.0;
  const double rings = Fract(v * 10.0 + warp);
  double ring = rings < 0.5 ? rings * 2.0 : (1.0 - rings) * 2.0;
  ring = ring * ring * ring;
  const double grain = Fractal(u, v, 4, 64, 3, 29);
  const Rgb light{214, 160, 98}, dark{118, 68, 32};
  return Mix(light, dark, Clamp01(ring * 0.75 + grain * 0.45 - 0.1));
}

// White marble with soft grey-green veins.
Rgb Marble(double u, double v) {
  const double turbulence = Fractal(u, v, 4, 4, 5, 7);
  const double t = Fract((u + v) * 2.0 + turbulence * 2.2);
  const double wave = t < 0.5 ? t * 2.0 : (1.0 - t) * 2.0;
  const double vein = Clamp01(1.0 - wave * 5.0);
  const double cloud = Fractal(u, v, 8, 8, 3, 3);
  const Rgb base = Mix(Rgb{246, 244, 238}, Rgb{222, 220, 214}, cloud);
  return Mix(base, Rgb{96, 110, 104}, vein * 0.85);
}

// Brushed steel: long fine streaks.
Rgb Brushed(double u, double v) {
  const double streak = Fractal(u, v, 2, 96, 3, 5);
  const double sheen = Fractal(u, v, 2, 2, 2, 17);
  const double g = 150.0 + streak * 70.0 + sheen * 30.0;
  return {g, g + 3.0, g + 8.0};
}

// Flecked granite.
Rgb Granite(double u, double v) {
  const double n = Fractal(u, v, 32, 32, 3, 23);
  const double fleck = Noise(u, v, 96, 96, 41);
  Rgb c = Mix(Rgb{170, 160, 158}, Rgb{112, 104, 104}, n);
  if (fleck > 0.78) c = Mix(c, Rgb{40, 36, 38}, (fleck - 0.78) * 4.5);
  if (fleck < 0.12) c = Mix(c, Rgb{236, 226, 220}, (0.12 - fleck) * 8.0);
  return c;
}

// Two-colour squares of 32 pixels.
Rgb Checker(double u, double v) {
  const int cx = static_cast<int>(u * 8.0), cy = static_cast<int>(v * 8.0);
  return ((cx + cy) & 1) ? Rgb{40, 40, 48} : Rgb{230, 230, 236};
}

struct Generator {
  const char* name;
  Rgb (*colour)(double u, double v);
};

constexpr Generator kGenerators[] = {
    {"wood", Wood}, {"marble", Marble}, {"brushed", Brushed}, {"granite", Granite}, {"checker", Checker},
};

}  // namespace

std::string GeneratedTextureList() {
  std::string names;
  for (const Generator& g : kGenerators) {
    if (!names.empty()) names += ", ";
    names += std::string(kGeneratedPrefix) + g.name;
  }
  return names;
}

bool IsGeneratedTexture(const std::string& name) {
  for (const Generator& g : kGenerators) {
    if (name == g.name) return true;
  }
  return false;
}

Image GenerateTexture(const std::string& name) {
  for (const Generator& g : kGenerators) {
    if (name != g.name) continue;
    Image image(kSize, kSize);
    for (int32_t y = 0; y < kSize; ++y) {
      for (int32_t x = 0; x < kSize; ++x) {
        image.at(x, y) = ToPixel(g.colour(static_cast<double>(x) / kSize, static_cast<double>(y) / kSize));
      }
    }
    return image;
  }
  return Image();
}

}  // namespace lx::compose
