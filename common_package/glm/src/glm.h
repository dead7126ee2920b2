#pragma once
// The model library: polygonal models read from Wavefront OBJ files and their MTL material
// libraries, their geometry operations, writing, and drawing with OpenGL.
//
// Every vertex, normal, texture-coordinate and facet-normal array is 1-based: element 0 of each
// array exists and holds nothing, and index 0 in a triangle means "none". Triangles and
// materials are 0-based (material 0 is "default").

#include <GL/gl.h>

#include <cstdio>
#include <string>
#include <vector>

#include "common_package/glm/src/glm_allocator.h"

template <class T>
using GlmVector = std::vector<T, GlmAllocator<T>>;

// Drawing (and writing) mode flags, combined by bitwise or.
constexpr GLuint GLM_NONE = 0;              // positions only
constexpr GLuint GLM_FLAT = 1 << 0;         // one facet normal per triangle
constexpr GLuint GLM_SMOOTH = 1 << 1;       // a normal per vertex
constexpr GLuint GLM_TEXTURE = 1 << 2;      // texture coordinates and the material's texture
constexpr GLuint GLM_COLOR = 1 << 3;        // diffuse colour as the current colour
constexpr GLuint GLM_MATERIAL = 1 << 4;     // ambient, diffuse, specular, shininess
constexpr GLuint GLM_OPACITY_ALL = 1 << 5;  // opacity scales all four colour components
constexpr GLuint GLM_ZSORT = 1 << 6;        // each group's triangles farthest first
constexpr GLuint GLM_ZSORT_NEG = 1 << 7;    // each group's triangles nearest first

// Lookup-table options of a material's texture line.
constexpr unsigned char GLM_LUT_NONE = 0;
constexpr unsigned char GLM_LUT_PGM = 1;   // "lut_pgm"
constexpr unsigned char GLM_LUT_PPM = 2;   // "lut_ppm"
constexpr unsigned char GLM_LUT_BOTH = 3;  // "lut_both"

// Capacity of a material's text fields, terminating byte included: longer texts are cut.
constexpr std::size_t GLM_TEXT_SIZE = 512;

struct GLMmaterial {
    std::string name = "default";
    GLfloat diffuse[4] = {0.8f, 0.8f, 0.8f, 1.0f};
    GLfloat ambient[4] = {0.2f, 0.2f, 0.2f, 1.0f};
    GLfloat specular[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    GLfloat emissive[4] = {0.0f, 0.0f, 0.0f, 1.0f};  // not set by the reader
    GLfloat shininess = 65.0f;                       // OpenGL scale, 0-128
    GLuint textureName = 0;                          // 0: no texture loaded
    GLenum texEnvMode = GL_MODULATE;
    unsigned char textureToLoad = 0;  // set by a texture line, cleared when loaded
    unsigned char lutOption = GLM_LUT_NONE;
    std::string texEnvName;  // "replace", "decal", "modulate" or "blend"
    std::string textureDir;  // the model's directory
    std::string textureFile;
    std::string alphaFile;
    std::string lutFile;
    GLushort wrapS = GL_REPEAT;
    GLushort wrapT = GL_REPEAT;
};

struct GLMtriangle {
    GLuint vindices[3] = {0, 0, 0};
    GLuint nindices[3] = {0, 0, 0};
    GLuint tindices[3] = {0, 0, 0};
    GLuint findex = 0;
    GLfloat centroid[3] = {0.0f, 0.0f, 0.0f};
};

struct GLMgroup {
    std::string name;
    GLuint numtriangles = 0;
    GlmVector<GLuint> triangles;  // indices into the model's triangle array
    GLuint material = 0;
    GLfloat centroid[3] = {0.0f, 0.0f, 0.0f};
    GlmVector<GLfloat> sortDistances;  // made on the first depth-sorted draw
    GlmVector<GLuint> sortOrder;       // kept between frames
    GLMgroup* next = nullptr;

    explicit GLMgroup(const GlmAllocator<char>& a) : triangles(a), sortDistances(a), sortOrder(a) {}
};

struct GLMmodel {
    std::string pathname;
    std::string mtllibname;  // empty: no material library

    GLuint numvertices = 0;
    GlmVector<GLfloat> vertices;  // 3 x (numvertices + 1)
    GLuint numnormals = 0;
    GlmVector<GLfloat> normals;  // 3 x (numnormals + 1), empty when there are none
    GLfloat smoothingAngle = 0.0f;
    GLuint numtexcoords = 0;
    GlmVector<GLfloat> texcoords;  // 2 x (numtexcoords + 1), empty when there are none
    GLuint numfacetnorms = 0;
    GlmVector<GLfloat> facetnorms;  // 3 x (numfacetnorms + 1), empty when there are none
    GLuint numtriangles = 0;
    GlmVector<GLMtriangle> triangles;
    GLuint nummaterials = 0;
    GlmVector<GLMmaterial> materials;
    GLuint numgroups = 0;
    GLMgroup* groups = nullptr;  // newest group first
    GLfloat position[3] = {0.0f, 0.0f, 0.0f};
    unsigned char centroidsValid = 0;

    GlmAllocator<char> allocator;  // the pair this model and its parts were made with

    explicit GLMmodel(const GlmAllocator<char>& a)
        : vertices(a),
          normals(a),
          texcoords(a),
          facetnorms(a),
          triangles(a),
          materials(a),
          allocator(a) {}
};

// Replaces the (allocate, release) pair used for models made from now on; a null function
// restores the standard one. Models keep the pair they were made with.
void glmSetAllocator(GLMallocateFunc allocate, GLMreleaseFunc release);

// ---- Reading and writing -------------------------------------------------------------------

// Reads a model; prints warnings and errors. Returns nullptr when the file cannot be opened.
GLMmodel* glmReadOBJ(const char* fileName);
// The same without the open-failure message, the extension warning and the reader's own
// memory messages (the exits stay).
GLMmodel* glmReadOBJQuiet(const char* fileName);
// Reads the material library "name", looked for in the model's directory.
void glmReadMTL(GLMmodel* model, const char* name);
// Writes the model to stream, or to fileName when stream is null; mode picks what is written.
void glmWriteOBJ(GLMmodel* model, FILE* stream, const char* fileName, GLuint mode,
                 const char* comment);
// Writes the material library mtllibName in the directory of modelFileName.
void glmWriteMTL(GLMmodel* model, const char* modelFileName, const char* mtllibName);
// Releases the model with everything it holds, texture names included.
void glmDelete(GLMmodel* model);

// ---- Groups, materials, names ----------------------------------------------------------------

GLMgroup* glmFindGroup(GLMmodel* model, const char* name);
GLMgroup* glmAddGroup(GLMmodel* model, const char* name);
// Index of the material with that exact name; 0 (with a message) when there is none.
GLuint glmFindMaterial(GLMmodel* model, const char* name);
// The path up to and including its last "/" or "\\", or the empty string.
std::string glmDirName(const char* path);

// ---- Geometry --------------------------------------------------------------------------------

// Centres on the bounding box and scales by 2 / max(w, h, d); returns the scale factor.
GLfloat glmUnitize(GLMmodel* model);
// Centres on the bounding box and scales the farthest vertex to distance 1; returns the factor.
GLfloat glmUnitizeSphere(GLMmodel* model);
void glmCenter(GLMmodel* model);
void glmRange(GLMmodel* model, GLfloat rangeX[2], GLfloat rangeY[2], GLfloat rangeZ[2]);
void glmDimensions(GLMmodel* model, GLfloat dimensions[3]);
void glmScale(GLMmodel* model, GLfloat factor);
// matrix: 4 x 4, OpenGL column-major order.
void glmTransform(GLMmodel* model, const GLfloat matrix[16]);
void glmReverseWinding(GLMmodel* model);
void glmFacetNormals(GLMmodel* model);
void glmVertexNormals(GLMmodel* model, GLfloat angle);
void glmLinearTexture(GLMmodel* model);
void glmSpheremapTexture(GLMmodel* model);
void glmNegateFacetNormals(GLMmodel* model);
void glmNegateVertexNormals(GLMmodel* model);
void glmNegateNormals(GLMmodel* model);
void glmSubdivide4(GLMmodel* model, GLfloat bulge);
// Merges vertices whose coordinates all differ by at most epsilon; returns the vertex count
// after merging.
GLuint glmWeld(GLMmodel* model, GLfloat epsilon);

// ---- Drawing (needs a current OpenGL context) ------------------------------------------------

void glmDraw(GLMmodel* model, GLuint mode);
void glmDrawOpacity(GLMmodel* model, GLuint mode, GLfloat opacity);
// Compiles glmDraw(model, mode) into a new display list and returns its name.
GLuint glmList(GLMmodel* model, GLuint mode);
void glmDrawNormals(GLMmodel* model, GLuint mode, GLfloat length);
// Loads every material texture still pending.
void glmLoadTextures(GLMmodel* model);
// Replaces a material's texture at once. Returns 0, 1 when no material has that name, or
// GL_INVALID_ENUM when envType is not GL_REPLACE, GL_DECAL, GL_MODULATE or GL_BLEND.
int glmSetTexture(GLMmodel* model, const char* materialName, const char* textureFile,
                  const char* alphaFile, GLenum envType);
// warpS, warpT: GL_REPEAT or GL_CLAMP, applied when the texture is next loaded. Returns 0,
// 1 when no material has that name, GL_INVALID_ENUM for another mode.
int glmSetTexWarpMode(GLMmodel* model, const char* materialName, GLenum warpS, GLenum warpT);
// materialID -1 sets every material. Return 1, or -1 for an ID out of range.
int glmSetMaterialDiffuse(GLMmodel* model, int materialID, const GLfloat rgba[4]);
int glmSetMaterialAmbient(GLMmodel* model, int materialID, const GLfloat rgba[4]);
int glmSetMaterialSpecular(GLMmodel* model, int materialID, const GLfloat rgba[4]);
int glmSetMaterialDiffuse(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                          GLfloat a);
int glmSetMaterialAmbient(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                          GLfloat a);
int glmSetMaterialSpecular(GLMmodel* model, int materialID, GLfloat r, GLfloat g, GLfloat b,
                           GLfloat a);
