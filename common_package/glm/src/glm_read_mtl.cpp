// Reading MTL material libraries, with the texture line:
//   Td [lut_pgm|lut_ppm|lut_both LUTFILE] ENV TEXTUREFILE [ALPHAFILE]
// where ENV is replace, decal, modulate or blend (exact case).

#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_text.h"
#include "image/data_file.h"

namespace glmdetail {
namespace {

void readColor(std::string_view rest, GLfloat color[4], std::string_view key, int line) {
    float values[4];
    int n = parseFloats(rest, values, 4);
    if (n < 3) {
        std::fprintf(stderr,
                     "glmReadMTL(): (line %d) %s needs three or four values; line ignored.\n", line,
                     std::string(key).c_str());
        return;
    }
    if (n == 3) values[3] = 1.0f;
    for (int i = 0; i < 4; i++)
        color[i] = values[i];
}

// The texture line of a material; mtllibName is the name shown in messages.
void readTextureLine(GLMmaterial* material, std::string_view rest, const std::string& dir,
                     const char* mtllibName) {
    std::vector<std::string_view> words = splitWords(rest, " \t\r\n");
    std::size_t w = 0;
    if (w < words.size() && words[w].substr(0, 3) == "lut") {
        std::string option(words[w]);
        if (option == "lut_pgm") {
            material->lutOption = GLM_LUT_PGM;
        } else if (option == "lut_ppm") {
            material->lutOption = GLM_LUT_PPM;
        } else if (option == "lut_both") {
            material->lutOption = GLM_LUT_BOTH;
        } else {
            std::fprintf(stderr, "Err (GLM): unknown lut option [%s] in material [%s]\n",
                         option.c_str(), mtllibName);
            exitProcess();
        }
        w++;
        if (w >= words.size()) {
            std::fprintf(stderr, "Err (GLM): missing lut file in material [%s]\n", mtllibName);
            exitProcess();
        }
        material->lutFile = cutText(std::string(words[w]));
        std::fprintf(stderr, "- LUT option [%d] using file [%s]\n", material->lutOption,
                     material->lutFile.c_str());
        w++;
    }
    if (w >= words.size()) {
        std::fprintf(stderr, "Err (GLM): missing tex env in material [%s].\n\n", mtllibName);
        exitProcess();
    }
    std::string env(words[w]);
    if (env != "replace" && env != "decal" && env != "modulate" && env != "blend") {
        std::fprintf(stderr, "Err (GLM): unknown tex env [%s] in material [%s]\n", env.c_str(),
                     mtllibName);
        exitProcess();
    }
    material->texEnvName = env;
    w++;
    if (w >= words.size()) {
        std::fprintf(stderr, "Err (GLM): missing texture file in material [%s].\n\n", mtllibName);
        exitProcess();
    }
    material->textureFile = cutText(std::string(words[w]));
    material->textureDir = cutText(dir);
    w++;
    material->alphaFile = w < words.size() ? cutText(std::string(words[w])) : std::string();
    material->textureToLoad = 1;
}

}  // namespace
}  // namespace glmdetail

void glmReadMTL(GLMmodel* model, const char* name) {
    using namespace glmdetail;
    requireModel(model, "glmReadMTL");
    const char* libName = name != nullptr ? name : "";
    std::string dir = glmDirName(model->pathname.c_str());
    std::string path = dir + libName;
    FILE* file = openDataFile(path.c_str(), "r");
    if (file == nullptr) {
        std::fprintf(stderr, "glmReadMTL() failed: can't open material file \"%s\".\n",
                     path.c_str());
        exitProcess();
    }
    try {
        std::string text;
        bool ok = readWholeFile(file, &text);
        std::fclose(file);
        if (!ok) {
            std::fprintf(stderr, "glmReadMTL() failed: can't open material file \"%s\".\n",
                         path.c_str());
            exitProcess();
        }
        TextCursor cursor(text);
        std::string_view token;
        GLuint count = 1;  // material 0, "default"
        while (cursor.nextToken(&token)) {
            if (token[0] == 'n') count++;
            cursor.restOfLine();
        }

        model->materials.assign(count, GLMmaterial());
        model->nummaterials = count;

        cursor.rewind();
        GLuint index = 0;
        while (cursor.nextToken(&token)) {
            int line = cursor.line();
            GLMmaterial& material = model->materials[index];
            if (token[0] == 'n') {
                if (index + 1 >= count) break;
                index++;
                model->materials[index].name = cutText(std::string(firstWord(cursor.restOfLine())));
            } else if (token == "Ka") {
                readColor(cursor.restOfLine(), material.ambient, token, line);
            } else if (token == "Kd") {
                readColor(cursor.restOfLine(), material.diffuse, token, line);
            } else if (token == "Ks") {
                readColor(cursor.restOfLine(), material.specular, token, line);
            } else if (token == "Ns") {
                float value;
                if (parseFloats(cursor.restOfLine(), &value, 1) == 1)
                    material.shininess = value / 1000.0f * 128.0f;
                else
                    std::fprintf(stderr, "glmReadMTL(): (line %d) Ns needs a value.\n", line);
            } else if (token[0] == 'T') {
                readTextureLine(&material, cursor.restOfLine(), dir, libName);
            } else {
                cursor.restOfLine();
            }
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err: not enough memory!\n\n");
        exitProcess();
    }
}
