#pragma once
// Helpers shared by the model library's source files; not part of its interface.

#include <cstdio>
#include <string>

#include "common_package/glm/src/glm.h"

namespace glmdetail {

// Makes an empty model with the allocator pair in force; throws std::bad_alloc.
GLMmodel* newModel(const char* pathname);

// A group made with the model's allocator pair; throws std::bad_alloc.
GLMgroup* newGroup(GLMmodel* model, const std::string& name);

// Ends the process with status 1 (after the caller has printed its message).
[[noreturn]] void exitProcess();

// A null model is a programming error: prints the operation's name and aborts.
void requireModel(const GLMmodel* model, const char* operation);
// False, with a message, for a model without vertices (such a model can come from a file).
bool hasVertices(const GLMmodel* model, const char* operation);

// Cuts a text to the capacity of a material text field.
std::string cutText(const std::string& text);

// The material of a group, or nullptr when the model has no such material.
GLMmaterial* groupMaterial(GLMmodel* model, const GLMgroup* group);

// Reads a whole file opened through openDataFile; false when reading fails.
bool readWholeFile(FILE* file, std::string* content);

}  // namespace glmdetail
