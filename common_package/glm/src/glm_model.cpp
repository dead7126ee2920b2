// Model life cycle, groups, materials by name, directory names and the allocator pair.

#include <cstdlib>
#include <cstring>
#include <new>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"

namespace glmdetail {

AllocatorPair& currentModelAllocator() {
    static AllocatorPair pair;
    return pair;
}

GLMmodel* newModel(const char* pathname) {
    AllocatorPair pair = currentModelAllocator();
    void* memory = pair.allocate(sizeof(GLMmodel));
    if (memory == nullptr) throw std::bad_alloc();
    GLMmodel* model = nullptr;
    try {
        model = new (memory) GLMmodel(GlmAllocator<char>(pair.allocate, pair.release));
        model->pathname = pathname != nullptr ? pathname : "";
    } catch (...) {
        if (model != nullptr) model->~GLMmodel();
        pair.release(memory);
        throw;
    }
    return model;
}

GLMgroup* newGroup(GLMmodel* model, const std::string& name) {
    void* memory = model->allocator.allocateFn(sizeof(GLMgroup));
    if (memory == nullptr) throw std::bad_alloc();
    GLMgroup* group = nullptr;
    try {
        group = new (memory) GLMgroup(model->allocator);
        group->name = name;
    } catch (...) {
        if (group != nullptr) group->~GLMgroup();
        model->allocator.releaseFn(memory);
        throw;
    }
    return group;
}

void exitProcess() {
    std::fflush(stdout);
    std::exit(1);
}

void requireModel(const GLMmodel* model, const char* operation) {
    if (model == nullptr) {
        std::fprintf(stderr, "Err (%s): input model is NULL.\n", operation);
        std::abort();
    }
}

bool hasVertices(const GLMmodel* model, const char* operation) {
    requireModel(model, operation);
    if (model->numvertices == 0 || model->vertices.size() < 3 * (model->numvertices + 1)) {
        std::fprintf(stderr, "Err (%s): the model has no vertices.\n", operation);
        return false;
    }
    return true;
}

std::string cutText(const std::string& text) {
    return text.size() < GLM_TEXT_SIZE ? text : text.substr(0, GLM_TEXT_SIZE - 1);
}

GLMmaterial* groupMaterial(GLMmodel* model, const GLMgroup* group) {
    if (group->material >= model->nummaterials || group->material >= model->materials.size())
        return nullptr;
    return &model->materials[group->material];
}

bool readWholeFile(FILE* file, std::string* content) {
    content->clear();
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof(buffer), file)) > 0)
        content->append(buffer, n);
    return std::ferror(file) == 0;
}

}  // namespace glmdetail

void glmSetAllocator(GLMallocateFunc allocate, GLMreleaseFunc release) {
    glmdetail::AllocatorPair& pair = glmdetail::currentModelAllocator();
    pair.allocate = allocate != nullptr ? allocate : glmdetail::standardAllocate;
    pair.release = release != nullptr ? release : glmdetail::standardRelease;
}

void glmDelete(GLMmodel* model) {
    if (model == nullptr) return;
    for (GLMmaterial& material : model->materials) {
        if (material.textureName != 0) glDeleteTextures(1, &material.textureName);
        material.textureName = 0;
    }
    GLMgroup* group = model->groups;
    while (group != nullptr) {
        GLMgroup* next = group->next;
        group->~GLMgroup();
        model->allocator.releaseFn(group);
        group = next;
    }
    model->groups = nullptr;
    GLMreleaseFunc release = model->allocator.releaseFn;
    model->~GLMmodel();
    release(model);
}

GLMgroup* glmFindGroup(GLMmodel* model, const char* name) {
    glmdetail::requireModel(model, "glmFindGroup");
    if (name == nullptr) return nullptr;
    for (GLMgroup* group = model->groups; group != nullptr; group = group->next)
        if (group->name == name) return group;
    return nullptr;
}

GLMgroup* glmAddGroup(GLMmodel* model, const char* name) {
    glmdetail::requireModel(model, "glmAddGroup");
    GLMgroup* group = glmFindGroup(model, name);
    if (group == nullptr) {
        group = glmdetail::newGroup(model, name != nullptr ? name : "");
        group->next = model->groups;
        model->groups = group;
        model->numgroups++;
    }
    return group;
}

GLuint glmFindMaterial(GLMmodel* model, const char* name) {
    glmdetail::requireModel(model, "glmFindMaterial");
    const char* wanted = name != nullptr ? name : "";
    for (GLuint i = 0; i < model->nummaterials && i < model->materials.size(); i++)
        if (model->materials[i].name == wanted) return i;
    std::fprintf(stderr, "glmFindMaterial():  can't find material \"%s\".\n", wanted);
    return 0;
}

std::string glmDirName(const char* path) {
    if (path == nullptr) return std::string();
    std::string text(path);
    std::size_t slash = text.find_last_of("/\\");
    if (slash == std::string::npos) return std::string();
    return text.substr(0, slash + 1);
}
