#include "framework/command_line.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "framework/framework_state.h"
#include "framework/jitter_tables.h"

namespace {

std::string formatted(const char* format, const char* word) {
    std::string text(format);
    const std::size_t at = text.find("%s");
    if (at != std::string::npos) text.replace(at, 2, word);
    return text;
}

}  // namespace

int decimalValue(const char* word) {
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(word, &end, 10);
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}

int parseCommandLine(int argc, char** argv, CommandLine& out, std::string& error) {
    out = CommandLine{};
    error.clear();
    if (argc <= 1) return -1;

    int i = 1;
    while (i < argc) {
        const char* word = argv[i];
        if (std::strcmp(word, "-jitter") == 0) {
            if (i + 1 >= argc) {
                error = formatted("\nErr: not enough argument after %s\n", word);
                return -1;
            }
            out.jitterSize = decimalValue(argv[i + 1]);
            if (jitterTableFor(out.jitterSize) == nullptr) {
                error = "\nErr: jitterSize not supported!\n\n";
                return -1;
            }
            i += 2;
        } else if (std::strcmp(word, "-dump") == 0 || std::strcmp(word, "-dumpSkip") == 0) {
            const bool skip = word[5] != '\0';
            if (i + 2 >= argc) {
                error = formatted("\nErr: not enough argument after %s\n", word);
                return -1;
            }
            out.movieFileHead = argv[i + 1];
            out.frameNumOffset = decimalValue(argv[i + 2]);
            if (out.frameNumOffset < 0) {
                error = "\nErr: frameNumOffset must be non-negative!\n";
                return -1;
            }
            // A cut head would write the frames somewhere else than asked.
            if (out.movieFileHead.size() > kMovieFileHeadMax) {
                error = "\nErr: movie file head longer than 511 characters!\n";
                return -1;
            }
            if (skip) {
                if (i + 3 >= argc) {
                    error = formatted("\nErr: not enough argument <frameNumSkip> after %s\n", word);
                    return -1;
                }
                out.frameSkip = decimalValue(argv[i + 3]);
                // A negative skip would number frames before the movie's first one.
                if (out.frameSkip < 0) {
                    error = "\nErr: frameSkip must be non-negative!\n";
                    return -1;
                }
                i += 4;
            } else {
                out.frameSkip = 0;
                i += 3;
            }
            out.dumpMode = true;
        } else if (std::strcmp(word, "-double") == 0) {
            out.doubleRate = true;
            ++i;
        } else if (std::strcmp(word, "-fullscreen") == 0) {
            out.fullscreen = true;
            ++i;
        } else if (std::strcmp(word, "-gzip") == 0) {
            out.gzipFrames = true;
            ++i;
        } else {
            break;
        }
    }

    if (i >= argc) {
        error = "\nErr: No script file\n";
        return -1;
    }
    out.scriptFileName = argv[i];
    // A cut path would load another file (or none).
    if (out.scriptFileName.size() > kScriptFileNameMax) {
        error = "\nErr: script file name longer than 511 characters!\n";
        return -1;
    }
    out.firstSceneArg = i + 1;
    return 0;
}

std::string usageText(const char* program) {
    std::string text = "\n";
    text += "Usage : ";
    text += program;
    text += " <option> <movie script> <.star dataset>";
    text += "\n";
    text +=
        "      - any argument after script will go to initScene.\n"
        "\n"
        "   <option> : -dump     <movie file head> <frameNum offset>\n"
        "   <option> : -dumpSkip <movie file head> <frameNum offset> <# frame skip>\n"
        "   <option> : -double\n"
        "                   : double the frame rate\n"
        "   <option> : -jitter   <sample jittering size>\n"
        "                   : jittering sizes (2,3,4,5,6,8,9,12,16)\n"
        "   <option> : -fullscreen to set fullscreen mode\n"
        "   <option> : -gzip to gzip raw ppm frame\n"
        "\n"
        "   Image FileNames : movieFileHead(offset+i).pnm\n"
        "                       where i = frameSkip to totalNumFrame-1\n"
        "                         and frameSkip = 0 for -dump\n"
        "\n";
    return text;
}

std::string titleFor(int argc, char** argv, const std::string& scriptFileName) {
    const std::string word = argc >= 3 ? std::string(argv[2]) : scriptFileName;
    return "skyrama 1.0 [" + word + "]";
}
