// Material textures: loading on first use, replacing a texture, wrap modes.

#include <GL/gl.h>

#include <strings.h>

#include <cstring>
#include <memory>
#include <string>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_lut.h"
#include "common_package/glm/src/glm_texture_file.h"
#include "common_package/glm/src/texture_upload.h"

namespace {

bool envFromName(const std::string& name, GLenum* mode) {
    static const struct {
        const char* name;
        GLenum mode;
    } kModes[] = {{"replace", GL_REPLACE},
                  {"decal", GL_DECAL},
                  {"modulate", GL_MODULATE},
                  {"blend", GL_BLEND}};
    for (const auto& m : kModes) {
        if (strcasecmp(name.c_str(), m.name) == 0) {
            *mode = m.mode;
            return true;
        }
    }
    return false;
}

const char* envName(GLenum mode) {
    switch (mode) {
        case GL_REPLACE:
            return "replace";
        case GL_DECAL:
            return "decal";
        case GL_MODULATE:
            return "modulate";
        case GL_BLEND:
            return "blend";
        default:
            return nullptr;
    }
}

GLMmaterial* findMaterial(GLMmodel* model, const char* name) {
    if (name == nullptr) return nullptr;
    for (GLuint i = 0; i < model->nummaterials && i < model->materials.size(); i++)
        if (model->materials[i].name == name) return &model->materials[i];
    return nullptr;
}

void loadMaterialTexture(GLMmaterial* material) {
    ImageBuffer image = glmdetail::readMaterialImage(material->textureDir, material->textureFile,
                                                     material->alphaFile);
    GLuint name = 0;
    glGenTextures(1, &name);
    if (name == 0) {
        std::fprintf(stderr, "Err: please initialize the GLUT environment\n");
        std::fprintf(stderr, "     before calling readObj if you want to use texture.\n");
        glmdetail::exitProcess();
    }
    glBindTexture(GL_TEXTURE_2D, name);
    GLenum env;
    if (!envFromName(material->texEnvName, &env)) {
        std::fprintf(stderr, "Err: unknown texEnv parameter [%s]\n", material->texEnvName.c_str());
        glmdetail::exitProcess();
    }
    material->texEnvMode = env;

    if (material->lutOption != GLM_LUT_NONE) {
        std::fprintf(stderr, "Apply LUTFILE [%s] using option [%d]\n", material->lutFile.c_str(),
                     material->lutOption);
        std::string joined = material->textureDir + material->lutFile;
        std::unique_ptr<LUT> lut = readLUT(material->lutFile.c_str(), true);
        if (!lut) lut = readLUTVerbose(joined.c_str());
        if (!lut) {
            std::fprintf(stderr, "Err (GLM): failed to read lut file at [%s] or [%s]\n",
                         material->lutFile.c_str(), joined.c_str());
            glmdetail::exitProcess();
        }
        if (applyLUT(lut.get(), image.pixels.data(), image.width, image.height, image.components,
                     false) != 1) {
            std::fprintf(stderr, "Err (GLM): failed to apply LUT on texture [%s]\n",
                         material->textureFile.c_str());
            glmdetail::exitProcess();
        }
    }

    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, material->wrapS);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, material->wrapT);
    glmdetail::setTextureFilterChain();
    glmdetail::buildMipmaps(image);
    material->textureName = name;
}

}  // namespace

void glmLoadTextures(GLMmodel* model) {
    glmdetail::requireModel(model, "glmLoadTextures");
    for (GLuint i = 0; i < model->nummaterials && i < model->materials.size(); i++) {
        GLMmaterial& material = model->materials[i];
        if (!material.textureToLoad) continue;
        material.textureToLoad = 0;
        loadMaterialTexture(&material);
    }
}

int glmSetTexture(GLMmodel* model, const char* materialName, const char* textureFile,
                  const char* alphaFile, GLenum envType) {
    glmdetail::requireModel(model, "glmSetTexture");
    const char* env = envName(envType);
    if (env == nullptr) {
        std::fprintf(stderr, "Err (glmSetTexture) : invalid envType (see gltexenv)!\n");
        return GL_INVALID_ENUM;
    }
    GLMmaterial* material = findMaterial(model, materialName);
    if (material == nullptr) {
        std::fprintf(stderr, "Err (glmSetTexture) : material name [%s] not found in model!\n",
                     materialName != nullptr ? materialName : "");
        return 1;
    }
    if (material->textureName != 0) glDeleteTextures(1, &material->textureName);
    material->textureName = 0;
    material->texEnvName = env;
    material->textureFile = glmdetail::cutText(textureFile != nullptr ? textureFile : "");
    material->alphaFile = glmdetail::cutText(alphaFile != nullptr ? alphaFile : "");
    // New textures are looked for beside the material library as the model names it.
    material->textureDir = glmdetail::cutText(glmDirName(model->mtllibname.c_str()));
    material->textureToLoad = 0;
    loadMaterialTexture(material);
    return 0;
}

int glmSetTexWarpMode(GLMmodel* model, const char* materialName, GLenum warpS, GLenum warpT) {
    glmdetail::requireModel(model, "glmSetTexWarpMode");
    if (warpS != GL_REPEAT && warpS != GL_CLAMP) {
        std::fprintf(stderr, "Err (glmSetTexWarpMode): unknown warpS_mode!\n");
        return GL_INVALID_ENUM;
    }
    if (warpT != GL_REPEAT && warpT != GL_CLAMP) {
        std::fprintf(stderr, "Err (glmSetTexWarpMode): unknown warpT_mode!\n");
        return GL_INVALID_ENUM;
    }
    GLMmaterial* material = findMaterial(model, materialName);
    if (material == nullptr) {
        std::fprintf(stderr, "Err (glmSetTexWarpMode) : material name [%s] not found in model!\n",
                     materialName != nullptr ? materialName : "");
        return 1;
    }
    material->wrapS = static_cast<GLushort>(warpS);
    material->wrapT = static_cast<GLushort>(warpT);
    return 0;
}
