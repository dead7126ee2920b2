#include "movie/session.h"

#include <cmath>
#include <cstdio>

#include "movie/script_lines.h"
#include "movie/view_block.h"

const char* const kSessionNames[NUM_SESSION_TYPES] = {
    "LinPos",    "SplPos",    "LinQuat", "SplQuat",   "LinFov",     "SplFov",
    "LinAspect", "SplAspect", "FixAtPt", "FixHeadUp", "RotateAbout"};

namespace {

int findSessionType(const std::string& name) {
    for (int i = 0; i < NUM_SESSION_TYPES; ++i)
        if (name == kSessionNames[i]) return i;
    return -1;
}

// The other member of a method pair (LinPos/SplPos, ...); -1 for the other types.
int pairedType(int type) {
    if (type < 0 || type > SESSION_SPL_ASPECT) return -1;
    return type ^ 1;
}

// Reads count numbers from tokens[next...]; false when a token is missing, not a number, or
// not a finite number of the size view lines accept.
bool readNumbers(const std::vector<std::string>& tokens, std::size_t& next, int count,
                 double* out) {
    for (int i = 0; i < count; ++i) {
        if (next >= tokens.size() || !parseNumber(tokens[next], out[i]) ||
            !(std::fabs(out[i]) <= kViewNumberMax))
            return false;
        ++next;
    }
    return true;
}

}  // namespace

SessionReader::SessionReader(bool quiet) : quiet_(quiet) {
    for (int i = 0; i < NUM_SESSION_TYPES; ++i) {
        open_[i] = false;
        openFrame_[i] = 0.0;
    }
}

int SessionReader::readSessionLine(const std::vector<std::string>& tokens, int lineNumber,
                                   int keyFrameIndex, double frameNumber,
                                   std::vector<Session>& sessions) {
    bool isBegin = !tokens.empty() && tokens[0] == "Begin";
    bool isEnd = !tokens.empty() && tokens[0] == "End";
    if (!isBegin && !isEnd) {
        std::fprintf(stderr, "Err : (line %d) unknown identifier [%s] encountered.\n", lineNumber,
                     tokens.empty() ? "" : tokens[0].c_str());
        std::fprintf(stderr, "      should be [-----] OR [Begin] OR [End].\n");
        return -1;
    }

    std::size_t next = 1;
    while (next < tokens.size()) {
        const std::string& name = tokens[next++];
        if (name[0] == '#') break;  // trailing comment
        int type = findSessionType(name);
        if (type < 0) {
            std::fprintf(stderr, "Err : (line %d) unknown session name [%s] after [%s].\n",
                         lineNumber, name.c_str(), isBegin ? "Begin" : "End");
            std::fprintf(stderr, "      should be [%s]", kSessionNames[0]);
            for (int i = 1; i < NUM_SESSION_TYPES; ++i)
                std::fprintf(stderr, "\n             OR [%s]", kSessionNames[i]);
            std::fprintf(stderr, ".\n");
            return -1;
        }
        int result = isBegin
                         ? begin(static_cast<SessionType>(type), tokens, next, lineNumber,
                                 keyFrameIndex, frameNumber)
                         : end(static_cast<SessionType>(type), lineNumber, keyFrameIndex, sessions);
        if (result < 0) return -1;
    }
    return 1;
}

int SessionReader::begin(SessionType type, const std::vector<std::string>& tokens,
                         std::size_t& next, int lineNumber, int keyFrameIndex, double frameNumber) {
    const char* name = kSessionNames[type];
    if (open_[type]) {
        std::fprintf(stderr,
                     "Err : (line %d) [Begin %s] has been set twice here without [End] "
                     "in-between!.\n",
                     lineNumber, name);
        std::fprintf(stderr,
                     "       You may find your previous [Begin %s] at line: KeyFrame %.0f.\n", name,
                     openFrame_[type]);
        return -1;
    }
    open_[type] = true;
    openFrame_[type] = frameNumber;
    Session& s = pending_[type];
    s = Session();
    s.type = type;
    s.beginKeyFrame = keyFrameIndex;

    int other = pairedType(type);
    if (other >= 0 && open_[other]) {
        std::fprintf(stderr, "Err : (line %d) [Begin %s] and [Begin %s] cannot co-exist\n",
                     lineNumber, name, kSessionNames[other]);
        std::fprintf(stderr, "       You may find your [Begin %s] at line: KeyFrame %.0f.\n",
                     kSessionNames[other], openFrame_[other]);
        return -1;
    }

    double a[8];
    if (type == SESSION_FIX_AT_PT) {
        if (!readNumbers(tokens, next, 4, a)) {
            std::fprintf(stderr,
                         "Err : (line %d) Need 4 numbers for fixed pt (in PHC) after [Begin %s].\n",
                         lineNumber, name);
            return -1;
        }
        s.fixedPoint = {a[0], a[1], a[2], a[3]};
    } else if (type == SESSION_FIX_HEAD_UP || type == SESSION_ROTATE_ABOUT) {
        int count = type == SESSION_FIX_HEAD_UP ? 3 : 8;
        if (!readNumbers(tokens, next, count, a)) {
            std::fprintf(stderr,
                         "Err : (line %d) Need 3 numbers for fixed pt (in PHC) after [Begin %s].\n",
                         lineNumber, name);
            return -1;
        }
        if (type == SESSION_FIX_HEAD_UP) {
            s.upVector = normalized({a[0], a[1], a[2]});
            // A held up vector of zero length would leave the camera without an orientation.
            if (length(s.upVector) == 0.0) {
                std::fprintf(stderr,
                             "Err : (line %d) the up vector after [Begin %s] should be a "
                             "non-zero vector.\n",
                             lineNumber, name);
                return -1;
            }
        } else {
            s.rotationCentre = {a[0], a[1], a[2], a[3]};
            s.rotationAxis = normalized({a[4], a[5], a[6]});
            s.rotationAngle = a[7];
        }
    }
    return 1;
}

int SessionReader::end(SessionType type, int lineNumber, int keyFrameIndex,
                       std::vector<Session>& sessions) {
    const char* name = kSessionNames[type];
    if (!open_[type]) {
        std::fprintf(stderr,
                     "Err : (line %d) [End %s] has been encountered without [Begin %s] before!.\n",
                     lineNumber, name, name);
        return -1;
    }
    open_[type] = false;
    Session s = pending_[type];
    if (s.beginKeyFrame == keyFrameIndex) {
        std::fprintf(stderr,
                     "Warning : (line %d) same [Begin %s] and [End %s] here -- effect ignored.\n",
                     lineNumber, name, name);
        return 1;
    }
    if (static_cast<int>(sessions.size()) >= kMaxSessions) {
        std::fprintf(stderr,
                     "Err: (line %d) too many [Begin-End] sessions in script file (max:%d)\n\n",
                     lineNumber, kMaxSessions);
        return -1;
    }
    s.endKeyFrame = keyFrameIndex;
    sessions.push_back(s);
    if (type == SESSION_ROTATE_ABOUT && !quiet_)
        std::fprintf(stderr, "Note: begin/end RotateAbout is pending.\n");
    return 1;
}

int SessionReader::checkAllClosed() const {
    for (int i = 0; i < NUM_SESSION_TYPES; ++i) {
        if (!open_[i]) continue;
        std::fprintf(stderr, "Err: [Begin %s] encountered in the line with Keyframe %.0f,\n",
                     kSessionNames[i], openFrame_[i]);
        std::fprintf(stderr, "     but correspond [End %s] is missing\n", kSessionNames[i]);
        return -1;
    }
    return 1;
}

namespace {

// Direction from a camera at pos towards point; false (and dir untouched) when the camera
// sits on the point, where no direction is defined.
bool directionTowards(const Phc& point, const Phc& pos, Vec3& dir) {
    Phc d = phcSub(point, pos);
    if (!phcNormalize(d)) return false;
    dir = d.xyz();
    return true;
}

// Up vector made perpendicular to dir, in the plane of dir and the old up.
Vec3 upPerpendicularTo(const Vec3& dir, const Vec3& up) {
    return normalized(cross(cross(dir, up), dir));
}

// Direction made perpendicular to a held up vector.
Vec3 dirPerpendicularTo(const Vec3& up, const Vec3& dir) {
    return normalized(cross(up, cross(dir, up)));
}

}  // namespace

void applySessions(const std::vector<Session>& sessions, KeyFrame& k) {
    const int i = k.index;
    for (std::size_t n = 0; n < sessions.size(); ++n) {
        const Session& s = sessions[n];
        if (s.type <= SESSION_SPL_ASPECT) {
            if (s.beginKeyFrame <= i && i < s.endKeyFrame) {
                switch (s.type) {
                    case SESSION_LIN_POS:
                        k.interpMethod = INTERP_LINEAR;
                        break;
                    case SESSION_SPL_POS:
                        k.interpMethod = INTERP_SPLINE;
                        break;
                    case SESSION_LIN_QUAT:
                        k.interpMethodQuat = INTERP_LINEAR_QUAT;
                        break;
                    case SESSION_SPL_QUAT:
                        k.interpMethodQuat = INTERP_SPLINE_QUAT;
                        break;
                    case SESSION_LIN_FOV:
                        k.interpMethodFovy = INTERP_LINEAR_FOVY;
                        break;
                    case SESSION_SPL_FOV:
                        k.interpMethodFovy = INTERP_SPLINE_FOVY;
                        break;
                    case SESSION_LIN_ASPECT:
                        k.interpMethodAspect = INTERP_LINEAR_ASPECT;
                        break;
                    default:
                        k.interpMethodAspect = INTERP_SPLINE_ASPECT;
                        break;
                }
            }
            continue;
        }
        if (i < s.beginKeyFrame || i > s.endKeyFrame) continue;
        if (s.type == SESSION_FIX_AT_PT) {
            if (i < s.endKeyFrame) k.fixedLookAtSession = static_cast<int>(n);
            directionTowards(s.fixedPoint, k.view.viewPos, k.view.viewDir);
            k.view.viewUp = upPerpendicularTo(k.view.viewDir, k.view.viewUp);
        } else if (s.type == SESSION_FIX_HEAD_UP) {
            if (i < s.endKeyFrame) k.fixedUpSession = static_cast<int>(n);
            k.view.viewUp = s.upVector;
            if (k.fixedLookAtSession < 0)
                k.view.viewDir = dirPerpendicularTo(k.view.viewUp, k.view.viewDir);
            else
                k.view.viewUp = upPerpendicularTo(k.view.viewDir, k.view.viewUp);
        }
    }
}

void applyConstraints(const std::vector<Session>& sessions, const KeyFrame& a, View& v) {
    if (a.fixedUpSession >= 0) {
        v.viewUp = a.view.viewUp;
        v.viewDir = dirPerpendicularTo(v.viewUp, v.viewDir);
    }
    if (a.fixedLookAtSession >= 0 && a.fixedLookAtSession < static_cast<int>(sessions.size())) {
        directionTowards(sessions[a.fixedLookAtSession].fixedPoint, v.viewPos, v.viewDir);
        v.viewUp = upPerpendicularTo(v.viewDir, v.viewUp);
    }
}
