// Changing material colours after reading.

#include <algorithm>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"

namespace {

enum class ColorKind { kDiffuse, kAmbient, kSpecular };

int setColor(GLMmodel* model, int materialID, const GLfloat rgba[4], ColorKind kind) {
    glmdetail::requireModel(model, "glmSetMaterial");
    const int count =
        static_cast<int>(std::min<std::size_t>(model->nummaterials, model->materials.size()));
    if (rgba == nullptr || materialID < -1 || materialID >= count) {
        std::fprintf(stderr, "Err: materialID is out of range.\n");
        return -1;
    }
    int first = materialID == -1 ? 0 : materialID;
    int last = materialID == -1 ? count - 1 : materialID;
    for (int i = first; i <= last; i++) {
        GLMmaterial& m = model->materials[i];
        GLfloat* target = kind == ColorKind::kDiffuse   ? m.diffuse
                          : kind == ColorKind::kAmbient ? m.ambient
                                                        : m.specular;
        for (int k = 0; k < 4; k++)
            target[k] = rgba[k];
    }
    return 1;
}

}  // namespace

int glmSetMaterialDiffuse(GLMmodel* model, int materialID, const GLfloat rgba[4]) {
    return setColor(model, materialID, rgba, ColorKind::kDiffuse);
}
int glmSetMaterialAmbient(GLMmodel* model, int materialID, const GLfloat rgba[4]) {
    return setColor(model, materialID, rgba, ColorKind::kAmbient);
}
int glmSetMaterialSpecular(GLMmodel* model, int materialID, const GLfloat rgba[4]) {
    return setColor(model, materialID, rgba, ColorKind::kSpecular);
}
int glmSetMaterialDiffuse(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                          GLfloat a) {
    const GLfloat rgba[4] = {r, g, b, a};
    return setColor(model, materialID, rgba, ColorKind::kDiffuse);
}
int glmSetMaterialAmbient(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                          GLfloat a) {
    const GLfloat rgba[4] = {r, g, b, a};
    return setColor(model, materialID, rgba, ColorKind::kAmbient);
}
int glmSetMaterialSpecular(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                           GLfloat a) {
    const GLfloat rgba[4] = {r, g, b, a};
    return setColor(model, materialID, rgba, ColorKind::kSpecular);
}
