#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include <tgx/host.h>

#include "host/core/Fixed.h"

namespace tgx::host {

struct Point {
  double x = 0;
  double y = 0;
};

/// Maps (x, y) to (a x + c y + h, b x + d y + v).
struct Matrix {
  double a = 1, b = 0, c = 0, d = 1, h = 0, v = 0;

  Point Map(double x, double y) const { return {a * x + c * y + h, b * x + d * y + v}; }
  double Determinant() const { return a * d - b * c; }
  bool IsIdentity() const { return a == 1 && b == 0 && c == 0 && d == 1 && h == 0 && v == 0; }

  bool IsInvertible() const { return std::isnormal(Determinant()); }
  Matrix Inverse() const {
    const double det = Determinant();
    return {d / det, -b / det, -c / det, a / det, (c * v - d * h) / det, (b * h - a * v) / det};
  }

  ASFixedMatrix Fixed() const { return {ToFixed(a), ToFixed(b), ToFixed(c), ToFixed(d), ToFixed(h), ToFixed(v)}; }
};

inline Matrix FromFixed(const ASFixedMatrix& m) {
  return {FromFixed(m.a), FromFixed(m.b), FromFixed(m.c), FromFixed(m.d), FromFixed(m.h), FromFixed(m.v)};
}

/// First `first`, then `second`.
inline Matrix operator*(const Matrix& first, const Matrix& second) {
  return {first.a * second.a + first.b * second.c,
          first.a * second.b + first.b * second.d,
          first.c * second.a + first.d * second.c,
          first.c * second.b + first.d * second.d,
          first.h * second.a + first.v * second.c + second.h,
          first.h * second.b + first.v * second.d + second.v};
}

/// A bounding box that grows; empty until the first point.
class Box {
 public:
  bool IsEmpty() const { return left_ > right_; }
  void Add(Point p) {
    if (std::isnan(p.x) || std::isnan(p.y)) return;
    left_ = std::min(left_, p.x);
    right_ = std::max(right_, p.x);
    bottom_ = std::min(bottom_, p.y);
    top_ = std::max(top_, p.y);
  }
  void Add(const Box& other) {
    if (other.IsEmpty()) return;
    Add({other.left_, other.bottom_});
    Add({other.right_, other.top_});
  }
  /// The corners of a rectangle in another space.
  void Add(const Matrix& matrix, double left, double bottom, double right, double top) {
    Add(matrix.Map(left, bottom));
    Add(matrix.Map(right, bottom));
    Add(matrix.Map(left, top));
    Add(matrix.Map(right, top));
  }
  ASFixedRect Fixed() const {
    if (IsEmpty()) return {0, 0, 0, 0};
    return {ToFixed(left_), ToFixed(top_), ToFixed(right_), ToFixed(bottom_)};
  }

 private:
  double left_ = std::numeric_limits<double>::infinity();
  double right_ = -std::numeric_limits<double>::infinity();
  double bottom_ = std::numeric_limits<double>::infinity();
  double top_ = -std::numeric_limits<double>::infinity();
};

}  // namespace tgx::host
