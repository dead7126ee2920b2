// Drawing models with OpenGL: shading, texture, colour or material, opacity and depth sorting.

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_matrix.h"
#include "common_package/glm/src/glm_zsort.h"

namespace {

// Each mode conflict is reported once per process.
struct OnceWarning {
    bool shown = false;
    void operator()(const char* message) {
        if (shown) return;
        shown = true;
        std::fputs(message, stderr);
    }
};

GLuint resolveDrawMode(const GLMmodel* model, GLuint mode) {
    static OnceWarning noFacetNormals, noNormals, noTexcoords, flatAndSmooth, bothSorts,
        colorNoMaterials, materialNoMaterials, colorAndMaterial;
    if ((mode & GLM_FLAT) && model->numfacetnorms == 0) {
        noFacetNormals(
            "glmDraw() warning: flat render mode requested with no facet normals defined.\n");
        mode &= ~GLM_FLAT;
    }
    if ((mode & GLM_SMOOTH) && model->numnormals == 0) {
        noNormals("glmDraw() warning: smooth render mode requested with no normals defined.\n");
        mode &= ~GLM_SMOOTH;
    }
    if ((mode & GLM_TEXTURE) && model->numtexcoords == 0) {
        noTexcoords(
            "glmDraw() warning: texture render mode requested with no texture coordinates "
            "defined.\n");
        mode &= ~GLM_TEXTURE;
    }
    if ((mode & GLM_FLAT) && (mode & GLM_SMOOTH)) {
        flatAndSmooth("glmDraw() warning: flat render mode requested (assume smooth).\n");
        mode &= ~GLM_FLAT;
    }
    if ((mode & GLM_ZSORT) && (mode & GLM_ZSORT_NEG)) {
        bothSorts(
            "glmDraw() warning: GLM_ZSORT and GLM_ZSORT_NEG render mode requested (assume "
            "GLM_ZSORT).\n");
        mode &= ~GLM_ZSORT_NEG;
    }
    if ((mode & GLM_COLOR) && model->nummaterials == 0) {
        colorNoMaterials(
            "glmDraw() warning: color render mode requested with no materials defined.\n");
        mode &= ~GLM_COLOR;
    }
    if ((mode & GLM_MATERIAL) && model->nummaterials == 0) {
        materialNoMaterials(
            "glmDraw() warning: material render mode requested with no materials defined.\n");
        mode &= ~GLM_MATERIAL;
    }
    if ((mode & GLM_COLOR) && (mode & GLM_MATERIAL)) {
        colorAndMaterial(
            "glmDraw() warning: color and material render mode requested using only material "
            "mode.\n");
        mode &= ~GLM_COLOR;
    }
    return mode;
}

// Element i of a 1-based array of `width` floats, or slot 0 for an index it does not hold.
const GLfloat* element(const GlmVector<GLfloat>& array, GLuint count, GLuint i, int width) {
    if (i > count || static_cast<std::size_t>(width) * i + width > array.size()) i = 0;
    return array.data() + static_cast<std::size_t>(width) * i;
}

void scaleColor(const GLfloat in[4], GLfloat opacity, bool all, GLfloat out[4]) {
    for (int k = 0; k < 4; k++)
        out[k] = in[k];
    if (all)
        for (int k = 0; k < 4; k++)
            out[k] *= opacity;
    else
        out[3] *= opacity;
}

void eyeInModel(GLfloat eye[3]) {
    double modelview[16], inverse[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    eye[0] = eye[1] = eye[2] = 0.0f;
    if (!glmdetail::invertMatrix4(modelview, inverse)) return;
    for (int k = 0; k < 3; k++)
        eye[k] = static_cast<GLfloat>(inverse[12 + k]);
}

void drawTriangle(const GLMmodel* model, const GLMtriangle& t, GLuint mode) {
    if (mode & GLM_FLAT) glNormal3fv(element(model->facetnorms, model->numfacetnorms, t.findex, 3));
    for (int j = 0; j < 3; j++) {
        if (mode & GLM_SMOOTH)
            glNormal3fv(element(model->normals, model->numnormals, t.nindices[j], 3));
        if (mode & GLM_TEXTURE)
            glTexCoord2fv(element(model->texcoords, model->numtexcoords, t.tindices[j], 2));
        glVertex3fv(element(model->vertices, model->numvertices, t.vindices[j], 3));
    }
}

}  // namespace

void glmDraw(GLMmodel* model, GLuint mode) {
    glmDrawOpacity(model, mode, 1.0f);
}

void glmDrawOpacity(GLMmodel* model, GLuint mode, GLfloat opacity) {
    glmdetail::requireModel(model, "glmDrawOpacity");
    if (!(opacity >= 0.0f && opacity <= 1.0f)) {
        std::fprintf(stderr, "glmDrawOpacity() warning: opacity out of range [0,1]\n");
        opacity = opacity < 0.0f ? 0.0f : 1.0f;
    }
    if (model->numvertices == 0) return;

    glPushAttrib(GL_ENABLE_BIT | GL_LIGHTING_BIT | GL_CURRENT_BIT | GL_COLOR_BUFFER_BIT |
                 GL_TEXTURE_BIT);
    mode = resolveDrawMode(model, mode);
    if (mode & GLM_COLOR)
        glEnable(GL_COLOR_MATERIAL);
    else if (mode & GLM_MATERIAL)
        glDisable(GL_COLOR_MATERIAL);

    glmLoadTextures(model);

    const bool sorted = (mode & (GLM_ZSORT | GLM_ZSORT_NEG)) != 0;
    GLfloat eye[3] = {0.0f, 0.0f, 0.0f};
    if (sorted) {
        eyeInModel(eye);
        if (!model->centroidsValid) glmdetail::computeCentroids(model);
    }
    const bool all = (mode & GLM_OPACITY_ALL) != 0;

    for (GLMgroup* group = model->groups; group != nullptr; group = group->next) {
        const std::size_t n = std::min<std::size_t>(group->numtriangles, group->triangles.size());
        if (n == 0) continue;
        const GLMmaterial* material = glmdetail::groupMaterial(model, group);

        if ((mode & GLM_TEXTURE) && material != nullptr && material->textureName != 0) {
            glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, material->texEnvMode);
            glBindTexture(GL_TEXTURE_2D, material->textureName);
            glEnable(GL_TEXTURE_2D);
        } else {
            glDisable(GL_TEXTURE_2D);
        }
        if ((mode & GLM_MATERIAL) && material != nullptr) {
            GLfloat color[4];
            scaleColor(material->ambient, opacity, all, color);
            glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, color);
            scaleColor(material->diffuse, opacity, all, color);
            glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, color);
            scaleColor(material->specular, opacity, all, color);
            glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, color);
            glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS,
                        std::max(0.0f, std::min(128.0f, material->shininess)));
        }
        if ((mode & GLM_COLOR) && material != nullptr) {
            GLfloat color[4];
            scaleColor(material->diffuse, opacity, all, color);
            glColor4fv(color);
        }

        if (sorted) {
            if (!glmdetail::sortGroup(group, model, eye)) break;
            glBegin(GL_TRIANGLES);
            if (mode & GLM_ZSORT) {
                for (std::size_t k = n; k-- > 0;) {
                    GLuint t = group->sortOrder[k];
                    if (t < model->triangles.size()) drawTriangle(model, model->triangles[t], mode);
                }
            } else {
                for (std::size_t k = 0; k < n; k++) {
                    GLuint t = group->sortOrder[k];
                    if (t < model->triangles.size()) drawTriangle(model, model->triangles[t], mode);
                }
            }
            glEnd();
        } else {
            glBegin(GL_TRIANGLES);
            for (std::size_t k = 0; k < n; k++) {
                GLuint t = group->triangles[k];
                if (t < model->triangles.size()) drawTriangle(model, model->triangles[t], mode);
            }
            glEnd();
        }
    }
    glPopAttrib();
}

GLuint glmList(GLMmodel* model, GLuint mode) {
    glmdetail::requireModel(model, "glmList");
    // Textures are made before compiling, so that their upload is not recorded in the list.
    glmLoadTextures(model);
    GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glmDraw(model, mode);
    glEndList();
    return list;
}

void glmDrawNormals(GLMmodel* model, GLuint mode, GLfloat length) {
    static bool warned = false;
    auto warn = [](const char* message) {
        if (warned) return;
        warned = true;
        std::fputs(message, stderr);
    };
    if (!(mode & (GLM_FLAT | GLM_SMOOTH))) return;
    if (model == nullptr) {
        warn("glmDrawNormals: input model is NULL.\n");
        return;
    }
    if (model->numvertices == 0) {
        warn("glmDrawNormals: no vertices in input model.\n");
        return;
    }
    if ((mode & GLM_FLAT) && (mode & GLM_SMOOTH)) {
        warn("glmDrawNormals: contradictory mode; both GLM_FLAT and GLM_SMOOTH are on.\n");
        return;
    }
    if ((mode & GLM_FLAT) && model->numfacetnorms == 0) {
        warn(
            "glmDrawNormals() warning: face normals rendering requested with no facet normals "
            "defined.\n");
        return;
    }
    if ((mode & GLM_SMOOTH) && model->numnormals == 0) {
        warn(
            "glmDrawNormals() warning: vertex normals rendering requested with no vertex "
            "normals defined.\n");
        return;
    }
    glBegin(GL_LINES);
    for (const GLMtriangle& t : model->triangles) {
        if (mode & GLM_FLAT) {
            GLfloat c[3] = {0.0f, 0.0f, 0.0f};
            for (int j = 0; j < 3; j++) {
                const GLfloat* v = element(model->vertices, model->numvertices, t.vindices[j], 3);
                for (int k = 0; k < 3; k++)
                    c[k] += v[k] / 3.0f;
            }
            const GLfloat* n = element(model->facetnorms, model->numfacetnorms, t.findex, 3);
            glVertex3fv(c);
            glVertex3f(c[0] + length * n[0], c[1] + length * n[1], c[2] + length * n[2]);
        } else {
            for (int j = 0; j < 3; j++) {
                const GLfloat* v = element(model->vertices, model->numvertices, t.vindices[j], 3);
                const GLfloat* n = element(model->normals, model->numnormals, t.nindices[j], 3);
                glVertex3fv(v);
                glVertex3f(v[0] + length * n[0], v[1] + length * n[1], v[2] + length * n[2]);
            }
        }
    }
    glEnd();
}
