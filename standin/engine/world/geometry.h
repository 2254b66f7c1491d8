// Vectors and rotations for the scene and its cameras. The scene's axes are the host's: Z is up,
// the front view looks along +Y.
#pragma once

#include <cmath>
#include <numbers>

namespace world {

struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;

    friend Vector operator+(Vector a, Vector b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vector operator-(Vector a, Vector b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Vector operator*(Vector a, double k) { return {a.x * k, a.y * k, a.z * k}; }
    friend bool operator==(const Vector&, const Vector&) = default;
};

inline double Dot(Vector a, Vector b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline double Length(Vector a) {
    return std::sqrt(Dot(a, a));
}
// Component by component.
inline Vector Scaled(Vector a, Vector k) {
    return {a.x * k.x, a.y * k.y, a.z * k.z};
}

inline double Radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}
inline double Degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

// A rotation by its three column vectors: the object's axes in the world.
struct Rotation {
    Vector x{1, 0, 0};
    Vector y{0, 1, 0};
    Vector z{0, 0, 1};

    friend bool operator==(const Rotation&, const Rotation&) = default;
};

inline Vector Rotated(const Rotation& rotation, Vector v) {
    return rotation.x * v.x + rotation.y * v.y + rotation.z * v.z;
}

// `v` turned about a unit axis through the origin, counter-clockwise when the axis points at the
// viewer.
inline Vector Turned(Vector v, Vector axis, double degrees) {
    const double c = std::cos(Radians(degrees));
    const double s = std::sin(Radians(degrees));
    const Vector cross{axis.y * v.z - axis.z * v.y, axis.z * v.x - axis.x * v.z,
                       axis.x * v.y - axis.y * v.x};
    return v * c + cross * s + axis * (Dot(axis, v) * (1 - c));
}
inline Rotation Turned(const Rotation& rotation, Vector axis, double degrees) {
    return {Turned(rotation.x, axis, degrees), Turned(rotation.y, axis, degrees),
            Turned(rotation.z, axis, degrees)};
}

// The angles about X, Y and Z (applied in this order) that make up a rotation, in degrees.
inline Vector EulerAngles(const Rotation& r) {
    const double sine = -r.x.z;
    if (sine > 0.9999999 || sine < -0.9999999) {
        return {0, Degrees(std::asin(sine > 0 ? 1.0 : -1.0)), Degrees(std::atan2(-r.y.x, r.y.y))};
    }
    return {Degrees(std::atan2(r.y.z, r.z.z)), Degrees(std::asin(sine)),
            Degrees(std::atan2(r.x.y, r.x.x))};
}

}  // namespace world
