#pragma once

#include "engine/vector.h"

// 4x4 transforms of column vectors, stored row by row: a point p becomes M p, a translation stands in
// the last column. Angles are radians.
//
// Two products exist, and they differ: A * B applies A first, then B (it is the product B A); A *= B
// makes A the product A B, which applies B first.

namespace vex {

struct Matrix {
  float m[4][4] = {};  // m[row][column]; all zero by default, not the identity
  float gl[16] = {};   // column by column, filled by toGL

  void setIdentity();

  // Each returns a copy of the new matrix.
  Matrix operator*=(const Matrix& b);
  Matrix operator*=(float s);

  // Column-major copy for glLoadMatrixf and glMultMatrixf; lies in this matrix.
  const float* toGL();

  void invert();  // fatal: "singular matrix!"
  float determinant() const;
  void adjugate();     // in place: the transposed matrix of cofactors
  void print() const;  // four rows to the log
};

Matrix translation(const Vector& v);
Matrix scaling(const Vector& v);

// Turns points by -angle about the axis (of any length but 0) in a right-handed frame: a quarter turn
// about z takes x to -y. Angles nearer to 0 than 0.001 give the identity.
Matrix rotation(const Vector& axis, float angle);

Matrix operator*(const Matrix& a, const Matrix& b);
Matrix operator+(const Matrix& a, const Matrix& b);
Matrix operator-(const Matrix& a, const Matrix& b);

// M p, divided by its weight; p counts as (x, y, z, 1).
Vector transformPoint(const Matrix& matrix, const Vector& p);

}  // namespace vex
