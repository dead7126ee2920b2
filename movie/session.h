#pragma once
// Begin/End sessions of a movie script: stretches of keyframes during which a channel uses
// another interpolation method, the camera keeps looking at a fixed point, or its up vector
// is held.

#include <string>
#include <vector>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/view.h"
#include "movie/keyframe.h"

enum SessionType {
    SESSION_LIN_POS = 0,
    SESSION_SPL_POS = 1,
    SESSION_LIN_QUAT = 2,
    SESSION_SPL_QUAT = 3,
    SESSION_LIN_FOV = 4,
    SESSION_SPL_FOV = 5,
    SESSION_LIN_ASPECT = 6,
    SESSION_SPL_ASPECT = 7,
    SESSION_FIX_AT_PT = 8,
    SESSION_FIX_HEAD_UP = 9,
    SESSION_ROTATE_ABOUT = 10,
    NUM_SESSION_TYPES = 11
};

// Session names as written in scripts, indexed by type.
extern const char* const kSessionNames[NUM_SESSION_TYPES];

constexpr int kMaxSessions = 256;

struct Session {
    int type = SESSION_LIN_POS;
    int beginKeyFrame = 0;  // index of the keyframe whose block holds the Begin
    int endKeyFrame = 0;    // index of the keyframe whose block holds the End
    Phc fixedPoint;         // FixAtPt
    Vec3 upVector;          // FixHeadUp
    Phc rotationCentre;     // RotateAbout
    Vec3 rotationAxis;      // RotateAbout
    double rotationAngle = 0.0;
};

// The reading state of one script: which session types are open, where they were opened and
// the arguments given with their Begin.
class SessionReader {
  public:
    // quiet leaves out notes that are neither errors nor warnings.
    explicit SessionReader(bool quiet = false);

    // Reads one line of a keyframe block before its separator (first token "Begin" or "End")
    // for the keyframe with the given index and frame number; closed sessions are appended to
    // sessions. 1, or -1 after the message.
    int readSessionLine(const std::vector<std::string>& tokens, int lineNumber, int keyFrameIndex,
                        double frameNumber, std::vector<Session>& sessions);
    // 1 when every session is closed; otherwise -1 after naming the first one left open.
    int checkAllClosed() const;

  private:
    int begin(SessionType type, const std::vector<std::string>& tokens, std::size_t& next,
              int lineNumber, int keyFrameIndex, double frameNumber);
    int end(SessionType type, int lineNumber, int keyFrameIndex, std::vector<Session>& sessions);

    bool quiet_;
    bool open_[NUM_SESSION_TYPES];
    double openFrame_[NUM_SESSION_TYPES];  // frame number of the keyframe that opened it
    Session pending_[NUM_SESSION_TYPES];   // arguments held from Begin until End
};

// Applies the sessions covering keyframe k to its methods, direction and up vector, visiting
// the sessions in the order they were closed. Called once per keyframe after loading.
void applySessions(const std::vector<Session>& sessions, KeyFrame& k);

// Applies the look-at and held-up constraints of the segment starting at keyframe a to a
// view interpolated inside that segment.
void applyConstraints(const std::vector<Session>& sessions, const KeyFrame& a, View& v);
