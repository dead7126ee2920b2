#include "imagereg/image_registration.h"

#include <cstdio>

namespace {

void notAvailable() {
    std::fprintf(stderr, "image registration is not available in this build\n");
}

}  // namespace

bool imageRegistered() {
    return false;
}

void computeRegistration() {
    notAvailable();
}

void readAlignment(const char* path) {
    (void)path;
    notAvailable();
}

void writeAlignment(const char* path) {
    (void)path;
    notAvailable();
}

unsigned loadRegistrationImage(const char* folder, const char* name) {
    (void)folder;
    (void)name;
    notAvailable();
    return 0;
}

void takeRegistrationStar(int j) {
    (void)j;
    notAvailable();
}

int registrationStarHD(int j) {
    (void)j;
    return 0;
}

void drawRegistration(float opacity) {
    (void)opacity;
}

void drawRegistrationOverlay() {}
