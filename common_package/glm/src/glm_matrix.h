#pragma once
// 4 x 4 matrices in OpenGL column-major order (element (row r, column c) at [c * 4 + r]).

namespace glmdetail {

// Inverts by Gauss-Jordan elimination with partial pivoting; false for a singular matrix
// (out is then unchanged).
bool invertMatrix4(const double in[16], double out[16]);

}  // namespace glmdetail
