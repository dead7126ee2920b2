#include "common_package/glm/src/glm_matrix.h"

#include <cmath>
#include <utility>

namespace glmdetail {

bool invertMatrix4(const double in[16], double out[16]) {
    // Work on rows [A | I] with A read from the column-major input.
    double a[4][8];
    for (int r = 0; r < 4; r++) {
        for (int c = 0; c < 4; c++) {
            a[r][c] = in[c * 4 + r];
            a[r][c + 4] = r == c ? 1.0 : 0.0;
        }
    }
    for (int col = 0; col < 4; col++) {
        int pivot = col;
        for (int r = col + 1; r < 4; r++)
            if (std::fabs(a[r][col]) > std::fabs(a[pivot][col])) pivot = r;
        if (!(std::fabs(a[pivot][col]) > 1e-300)) return false;  // also refuses NaN
        if (pivot != col) std::swap(a[pivot], a[col]);
        double scale = 1.0 / a[col][col];
        for (int c = 0; c < 8; c++)
            a[col][c] *= scale;
        for (int r = 0; r < 4; r++) {
            if (r == col) continue;
            double f = a[r][col];
            if (f == 0.0) continue;
            for (int c = 0; c < 8; c++)
                a[r][c] -= f * a[col][c];
        }
    }
    for (int r = 0; r < 4; r++)
        for (int c = 0; c < 4; c++)
            out[c * 4 + r] = a[r][c + 4];
    return true;
}

}  // namespace glmdetail
