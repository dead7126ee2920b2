// Reading OBJ files in two passes: the first counts (and reads the material library), the
// second fills the arrays. Both passes read the same tokens, so every face lands in the group
// that counted it.

#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_text.h"
#include "image/data_file.h"

namespace glmdetail {
namespace {

// Element counts above this are refused: the arrays would not fit in memory anyway.
constexpr GLuint kMaxElements = 1u << 28;
// Warnings of one read beyond this count are not printed.
constexpr int kMaxWarnings = 20;

enum class FaceForm { kVertex, kVertexTexture, kVertexTextureNormal, kVertexNormal };

struct Corner {
    long long v = 0, t = 0, n = 0;
};

bool parseCorner(std::string_view token, FaceForm form, Corner* c) {
    *c = Corner();
    if (!parseInt(&token, &c->v)) return false;
    switch (form) {
        case FaceForm::kVertex:
            break;
        case FaceForm::kVertexNormal:
            if (token.substr(0, 2) != "//") return false;
            token.remove_prefix(2);
            if (!parseInt(&token, &c->n)) return false;
            break;
        case FaceForm::kVertexTexture:
        case FaceForm::kVertexTextureNormal:
            if (token.empty() || token.front() != '/') return false;
            token.remove_prefix(1);
            if (!parseInt(&token, &c->t)) return false;
            if (form == FaceForm::kVertexTextureNormal) {
                if (token.empty() || token.front() != '/') return false;
                token.remove_prefix(1);
                if (!parseInt(&token, &c->n)) return false;
            }
            break;
    }
    return token.empty();
}

// The corners of a face line: the first token decides the form, further tokens of the same
// form extend the fan, the first token of another form ends the face.
std::vector<Corner> parseFace(std::string_view rest, FaceForm* form) {
    std::vector<Corner> corners;
    std::vector<std::string_view> tokens = splitWords(rest);
    if (tokens.empty()) return corners;
    std::string_view first = tokens[0];
    Corner c;
    if (first.find("//") != std::string_view::npos) {
        *form = FaceForm::kVertexNormal;
    } else if (parseCorner(first, FaceForm::kVertexTextureNormal, &c)) {
        *form = FaceForm::kVertexTextureNormal;
    } else if (parseCorner(first, FaceForm::kVertexTexture, &c)) {
        *form = FaceForm::kVertexTexture;
    } else {
        *form = FaceForm::kVertex;
    }
    for (std::string_view token : tokens) {
        if (!parseCorner(token, *form, &c)) break;
        corners.push_back(c);
    }
    return corners;
}

class ObjReader {
  public:
    ObjReader(GLMmodel* model, std::string_view text) : model_(model), cursor_(text) {}

    // False when the model cannot be read (a message has been printed).
    bool firstPass();
    void allocate();
    void secondPass();

  private:
    void warn(const char* format, int line);
    bool countElement(GLuint* count, const char* what);
    void readValues(std::string_view rest, int line, float* out, int count, const char* what);
    bool cornerInRange(const Corner& c, FaceForm form, int line);

    GLMmodel* model_;
    TextCursor cursor_;
    int warnings_ = 0;
    // Names looked up by hash while reading, so that files with many groups or materials
    // read in linear time; the results are those of glmAddGroup and glmFindMaterial.
    std::unordered_map<std::string, GLMgroup*> groupsByName_;
    std::unordered_map<std::string, GLuint> materialsByName_;
    GLMgroup* addGroup(const std::string& name);
    GLuint findMaterial(const std::string& name);
};

GLMgroup* ObjReader::addGroup(const std::string& name) {
    auto found = groupsByName_.find(name);
    if (found != groupsByName_.end()) return found->second;
    GLMgroup* group = newGroup(model_, name);  // as glmAddGroup: prepended
    group->next = model_->groups;
    model_->groups = group;
    model_->numgroups++;
    groupsByName_.emplace(name, group);
    return group;
}

GLuint ObjReader::findMaterial(const std::string& name) {
    if (materialsByName_.empty()) {
        for (GLuint i = model_->nummaterials; i-- > 0;)
            materialsByName_[model_->materials[i].name] = i;
    }
    auto found = materialsByName_.find(name);
    if (found != materialsByName_.end()) return found->second;
    return glmFindMaterial(model_, name.c_str());  // prints the message, gives material 0
}

void ObjReader::warn(const char* format, int line) {
    warnings_++;
    if (warnings_ <= kMaxWarnings) std::fprintf(stderr, format, line);
    if (warnings_ == kMaxWarnings + 1)
        std::fprintf(stderr, "glmSecondPass(): further warnings of this file are not shown.\n");
}

bool ObjReader::countElement(GLuint* count, const char* what) {
    if (*count >= kMaxElements) {
        std::fprintf(stderr, "glmFirstPass(): (line %d) more than %u %s; file refused.\n",
                     cursor_.line(), kMaxElements, what);
        return false;
    }
    (*count)++;
    return true;
}

bool ObjReader::firstPass() {
    GLMmodel* model = model_;
    GLMgroup* group = addGroup("default");
    GLuint numvertices = 0, numnormals = 0, numtexcoords = 0, numtriangles = 0;
    std::string_view token;
    while (cursor_.nextToken(&token)) {
        switch (token[0]) {
            case 'v':
                if (token.size() == 1) {
                    if (!countElement(&numvertices, "vertices")) return false;
                } else if (token[1] == 'n') {
                    if (!countElement(&numnormals, "normals")) return false;
                } else if (token[1] == 't') {
                    if (!countElement(&numtexcoords, "texture coordinates")) return false;
                } else {
                    std::fprintf(stderr, "glmFirstPass(): Unknown token \"%s\".\n",
                                 std::string(token).c_str());
                    exitProcess();
                }
                cursor_.restOfLine();
                break;
            case 'm': {
                int line = cursor_.line();
                std::string name(firstWord(cursor_.restOfLine()));
                if (name.empty()) {
                    std::fprintf(stderr,
                                 "glmFirstPass(): (line %d) material library without a name "
                                 "ignored.\n",
                                 line);
                    break;
                }
                model->mtllibname = name;
                glmReadMTL(model, name.c_str());
                break;
            }
            case 'g': {
                std::string name(cursor_.restOfLine());
                group = addGroup(name);
                break;
            }
            case 'f': {
                int line = cursor_.line();
                FaceForm form;
                std::vector<Corner> corners = parseFace(cursor_.restOfLine(), &form);
                if (corners.size() < 3) {
                    std::fprintf(stderr,
                                 "glmFirstPass(): (line %d) face with fewer than three "
                                 "vertices ignored.\n",
                                 line);
                    break;
                }
                GLuint added = static_cast<GLuint>(corners.size() - 2);
                if (numtriangles > kMaxElements - added) {
                    std::fprintf(stderr,
                                 "glmFirstPass(): (line %d) more than %u triangles; file "
                                 "refused.\n",
                                 line, kMaxElements);
                    return false;
                }
                numtriangles += added;
                group->numtriangles += added;
                break;
            }
            default:  // comments, "usemtl" and everything else
                cursor_.restOfLine();
                break;
        }
    }
    model->numvertices = numvertices;
    model->numnormals = numnormals;
    model->numtexcoords = numtexcoords;
    model->numtriangles = numtriangles;
    return true;
}

void ObjReader::allocate() {
    GLMmodel* model = model_;
    model->vertices.assign(3 * (static_cast<std::size_t>(model->numvertices) + 1), 0.0f);
    if (model->numnormals > 0)
        model->normals.assign(3 * (static_cast<std::size_t>(model->numnormals) + 1), 0.0f);
    if (model->numtexcoords > 0)
        model->texcoords.assign(2 * (static_cast<std::size_t>(model->numtexcoords) + 1), 0.0f);
    model->triangles.assign(model->numtriangles, GLMtriangle());
    for (GLMgroup* group = model->groups; group != nullptr; group = group->next) {
        group->triangles.assign(group->numtriangles, 0);
        group->numtriangles = 0;
    }
}

void ObjReader::readValues(std::string_view rest, int line, float* out, int count,
                           const char* what) {
    int n = parseFloats(rest, out, count);
    bool finite = true;
    for (int i = 0; i < n; i++) {
        if (!std::isfinite(out[i])) {
            out[i] = 0.0f;
            finite = false;
        }
    }
    for (int i = n; i < count; i++)
        out[i] = 0.0f;
    if (n < count) {
        std::string message = std::string("glmSecondPass(): (line %d) ") + what +
                              " with missing values; they are set to 0.\n";
        warn(message.c_str(), line);
    }
    if (!finite) warn("glmSecondPass(): (line %d) number that is not finite set to 0.\n", line);
}

bool ObjReader::cornerInRange(const Corner& c, FaceForm form, int line) {
    const GLMmodel* model = model_;
    bool hasT = form == FaceForm::kVertexTexture || form == FaceForm::kVertexTextureNormal;
    bool hasN = form == FaceForm::kVertexNormal || form == FaceForm::kVertexTextureNormal;
    if (c.v < 0 || (hasT && c.t < 0) || (hasN && c.n < 0)) {
        warn(
            "glmSecondPass(): (line %d) negative (relative) face indices are not supported; "
            "face ignored.\n",
            line);
        return false;
    }
    if (c.v < 1 || c.v > model->numvertices || (hasT && (c.t < 1 || c.t > model->numtexcoords)) ||
        (hasN && (c.n < 1 || c.n > model->numnormals))) {
        warn("glmSecondPass(): (line %d) face index out of range; face ignored.\n", line);
        return false;
    }
    return true;
}

void ObjReader::secondPass() {
    GLMmodel* model = model_;
    cursor_.rewind();
    GLMgroup* group = addGroup("default");
    GLuint material = 0;
    GLuint numvertices = 1, numnormals = 1, numtexcoords = 1, numtriangles = 0;
    std::string_view token;
    while (cursor_.nextToken(&token)) {
        switch (token[0]) {
            case 'v': {
                int line = cursor_.line();
                if (token.size() == 1) {
                    if (numvertices <= model->numvertices)
                        readValues(cursor_.restOfLine(), line, &model->vertices[3 * numvertices], 3,
                                   "vertex");
                    numvertices++;
                } else if (token[1] == 'n') {
                    if (numnormals <= model->numnormals)
                        readValues(cursor_.restOfLine(), line, &model->normals[3 * numnormals], 3,
                                   "normal");
                    numnormals++;
                } else if (token[1] == 't') {
                    if (numtexcoords <= model->numtexcoords)
                        readValues(cursor_.restOfLine(), line, &model->texcoords[2 * numtexcoords],
                                   2, "texture coordinate");
                    numtexcoords++;
                } else {
                    cursor_.restOfLine();
                }
                break;
            }
            case 'u': {
                std::string name(firstWord(cursor_.restOfLine()));
                material = findMaterial(name);
                group->material = material;
                break;
            }
            case 'g': {
                std::string name(cursor_.restOfLine());
                auto found = groupsByName_.find(name);
                if (found != groupsByName_.end()) group = found->second;
                group->material = material;
                break;
            }
            case 'f': {
                int line = cursor_.line();
                FaceForm form;
                std::vector<Corner> corners = parseFace(cursor_.restOfLine(), &form);
                if (corners.size() < 3) break;
                bool valid = true;
                for (const Corner& c : corners) {
                    if (!cornerInRange(c, form, line)) {
                        valid = false;
                        break;
                    }
                }
                if (!valid) break;
                for (std::size_t k = 2; k < corners.size(); k++) {
                    if (numtriangles >= model->triangles.size() ||
                        group->numtriangles >= group->triangles.size())
                        break;
                    const Corner* fan[3] = {&corners[0], &corners[k - 1], &corners[k]};
                    GLMtriangle& t = model->triangles[numtriangles];
                    for (int j = 0; j < 3; j++) {
                        t.vindices[j] = static_cast<GLuint>(fan[j]->v);
                        t.tindices[j] = static_cast<GLuint>(fan[j]->t);
                        t.nindices[j] = static_cast<GLuint>(fan[j]->n);
                    }
                    group->triangles[group->numtriangles++] = numtriangles;
                    numtriangles++;
                }
                break;
            }
            default:  // comments, "mtllib" (read in the first pass) and everything else
                cursor_.restOfLine();
                break;
        }
    }
    // Faces refused above leave the arrays shorter than the first pass counted.
    model->numtriangles = numtriangles;
    model->triangles.resize(numtriangles);
    for (GLMgroup* g = model->groups; g != nullptr; g = g->next)
        g->triangles.resize(g->numtriangles);
}

GLMmodel* readObj(const char* fileName, bool quiet) {
    if (fileName == nullptr) {
        if (!quiet) std::fprintf(stderr, "glmReadOBJ() failed: can't open objfile \"\".\n");
        return nullptr;
    }
    FILE* file = openDataFile(fileName, "r");
    if (file == nullptr) {
        if (!quiet)
            std::fprintf(stderr, "glmReadOBJ() failed: can't open objfile \"%s\".\n", fileName);
        return nullptr;
    }
    std::size_t length = std::strlen(fileName);
    if (!quiet && (length < 4 || std::strcmp(fileName + length - 4, ".obj") != 0))
        std::fprintf(stderr, "Warning: glmReadOBJ() : input file does not end with .obj\n\n");

    GLMmodel* model = nullptr;
    try {
        std::string text;
        bool ok = readWholeFile(file, &text);
        std::fclose(file);
        file = nullptr;
        if (!ok) {
            std::fprintf(stderr, "glmReadOBJ() failed: can't read objfile \"%s\".\n", fileName);
            return nullptr;
        }
        model = newModel(fileName);
        ObjReader reader(model, text);
        if (!reader.firstPass()) {
            glmDelete(model);
            return nullptr;
        }
        reader.allocate();
        reader.secondPass();
    } catch (const std::bad_alloc&) {
        if (!quiet) std::fprintf(stderr, "Err: not enough memory!\n\n");
        exitProcess();
    }
    return model;
}

}  // namespace
}  // namespace glmdetail

GLMmodel* glmReadOBJ(const char* fileName) {
    return glmdetail::readObj(fileName, false);
}

GLMmodel* glmReadOBJQuiet(const char* fileName) {
    return glmdetail::readObj(fileName, true);
}
