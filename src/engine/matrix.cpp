#include "engine/matrix.h"

#include <utility>

#include "base/report.h"

namespace vex {

namespace {

// Of the entries in the given rows and columns, expanded along the first of the columns.
float determinant3(const float (&m)[4][4], const int (&rows)[3], const int (&columns)[3]) {
  const auto at = [&](int r, int c) { return m[rows[r]][columns[c]]; };
  return at(0, 0) * (at(1, 1) * at(2, 2) - at(1, 2) * at(2, 1)) -
         at(1, 0) * (at(0, 1) * at(2, 2) - at(0, 2) * at(2, 1)) +
         at(2, 0) * (at(0, 1) * at(1, 2) - at(0, 2) * at(1, 1));
}

constexpr int allBut[4][3] = {{1, 2, 3}, {0, 2, 3}, {0, 1, 3}, {0, 1, 2}};

float cofactor(const Matrix& matrix, int row, int column) {
  const float minor = determinant3(matrix.m, allBut[row], allBut[column]);
  return (row + column) % 2 == 0 ? minor : -minor;
}

// B's rows times A's columns: first a, then b.
Matrix product(const Matrix& b, const Matrix& a) {
  Matrix result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) {
      result.m[r][c] =
          b.m[r][0] * a.m[0][c] + b.m[r][1] * a.m[1][c] + b.m[r][2] * a.m[2][c] + b.m[r][3] * a.m[3][c];
    }
  }
  return result;
}

void swapRows(Matrix& matrix, int r, int s) {
  for (int c = 0; c < 4; ++c) std::swap(matrix.m[r][c], matrix.m[s][c]);
}

void addRow(Matrix& matrix, float factor, int from, int to) {
  for (int c = 0; c < 4; ++c) matrix.m[to][c] += factor * matrix.m[from][c];
}

}  // namespace

void Matrix::setIdentity() {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m[r][c] = r == c ? 1.0f : 0.0f;
  }
}

Matrix Matrix::operator*=(const Matrix& b) {
  *this = product(*this, b);
  return *this;
}

Matrix Matrix::operator*=(float s) {
  for (auto& row : m) {
    for (float& entry : row) entry *= s;
  }
  return *this;
}

const float* Matrix::toGL() {
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) gl[c * 4 + r] = m[r][c];
  }
  return gl;
}

// Gauss-Jordan; rows are exchanged only where a pivot is exactly 0.
void Matrix::invert() {
  Matrix work = *this;
  setIdentity();
  for (int c = 0; c < 4; ++c) {
    int pivot = c;
    while (pivot < 4 && work.m[pivot][c] == 0.0f) ++pivot;
    if (pivot == 4) fatalError("singular matrix!");
    if (pivot != c) {
      swapRows(work, c, pivot);
      swapRows(*this, c, pivot);
    }
    for (int r = c + 1; r < 4; ++r) {
      if (work.m[r][c] == 0.0f) continue;
      const float factor = -work.m[r][c] / work.m[c][c];
      addRow(work, factor, c, r);
      addRow(*this, factor, c, r);
    }
  }
  for (int c = 3; c > 0; --c) {
    for (int r = c - 1; r >= 0; --r) {
      const float factor = -work.m[r][c] / work.m[c][c];
      addRow(work, factor, c, r);
      addRow(*this, factor, c, r);
    }
  }
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m[r][c] /= work.m[r][r];
  }
}

float Matrix::determinant() const {
  float sum = 0.0f;
  for (int r = 0; r < 4; ++r) sum += m[r][0] * cofactor(*this, r, 0);
  return sum;
}

void Matrix::adjugate() {
  const Matrix source = *this;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) m[r][c] = cofactor(source, c, r);
  }
}

void Matrix::print() const {
  for (const auto& row : m) logPrintf("%.2f %.2f %.2f %.2f\n", row[0], row[1], row[2], row[3]);
}

Matrix translation(const Vector& v) {
  Matrix result;
  result.setIdentity();
  result.m[0][3] = v.x;
  result.m[1][3] = v.y;
  result.m[2][3] = v.z;
  return result;
}

Matrix scaling(const Vector& v) {
  Matrix result;
  result.m[0][0] = v.x;
  result.m[1][1] = v.y;
  result.m[2][2] = v.z;
  result.m[3][3] = 1.0f;
  return result;
}

// Through the unit quaternion; the transpose of the usual column-vector rotation.
Matrix rotation(const Vector& axis, float angle) {
  Matrix result;
  if (std::fabs(angle) < 0.001f) {
    result.setIdentity();
    return result;
  }
  const float s = std::sin(angle / 2.0f) / axis.length();
  const float x = axis.x * s;
  const float y = axis.y * s;
  const float z = axis.z * s;
  const float w = std::cos(angle / 2.0f);
  result.m[0][0] = w * w + x * x - y * y - z * z;
  result.m[0][1] = 2.0f * (w * z + x * y);
  result.m[0][2] = 2.0f * (x * z - w * y);
  result.m[1][0] = 2.0f * (x * y - w * z);
  result.m[1][1] = w * w - x * x + y * y - z * z;
  result.m[1][2] = 2.0f * (w * x + y * z);
  result.m[2][0] = 2.0f * (w * y + x * z);
  result.m[2][1] = 2.0f * (y * z - w * x);
  result.m[2][2] = w * w - x * x - y * y + z * z;
  result.m[3][3] = 1.0f;
  return result;
}

Matrix operator*(const Matrix& a, const Matrix& b) {
  return product(b, a);
}

Matrix operator+(const Matrix& a, const Matrix& b) {
  Matrix result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) result.m[r][c] = a.m[r][c] + b.m[r][c];
  }
  return result;
}

Matrix operator-(const Matrix& a, const Matrix& b) {
  Matrix result;
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) result.m[r][c] = a.m[r][c] - b.m[r][c];
  }
  return result;
}

Vector transformPoint(const Matrix& matrix, const Vector& p) {
  const auto row = [&](int r) {
    return matrix.m[r][0] * p.x + matrix.m[r][1] * p.y + matrix.m[r][2] * p.z + matrix.m[r][3];
  };
  const float scale = 1.0f / row(3);
  return {row(0) * scale, row(1) * scale, row(2) * scale};
}

}  // namespace vex
