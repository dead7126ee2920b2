// Builds the models of the data tree in <data>/objdata:
//   MilkyWayEnv.obj  a sphere carrying the all-sky Milky Way panorama, in the galactic frame
//                    of the stars (the scene draws it around the eye with the view's
//                    rotation only)
//   earth.obj, earthNight.obj, earthCloud.obj
//                    unit spheres with the day map, the night lights and the clouds (as
//                    alpha), pole on +y, longitude 0 on -x, 90 deg east on +z
//   compass.obj      equator and meridian rings with hour and declination ticks, a north
//                    pointer on +z, for the overview map
//   arrow.obj        an arrow from z = +0.5 to its tip at z = -0.5 (pointing along -z, the
//                    viewing direction), for the overview map
// with their MTL files and textures (PPM/PGM, power-of-two sizes).
#include <cmath>
#include <cstdio>

#include "common_package/math/src/pow2.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/mesh.h"
#include "tools/datatree/core/raster.h"
#include "tools/datatree/core/sky_frames.h"

namespace {

constexpr int kSphereSlices = 96;
constexpr int kSphereStacks = 48;

void requirePowerOfTwo(const Raster& r, const std::string& path) {
    if (!isPowerOfTwo(r.width) || !isPowerOfTwo(r.height)) {
        throw DataError(path + ": " + std::to_string(r.width) + " x " + std::to_string(r.height) +
                        " is not a power-of-two size");
    }
}

void writeModel(const std::string& dir, const std::string& name, const Mesh& mesh,
                const std::vector<MeshMaterial>& materials, const std::string& comment) {
    writeFileAtomically(dir + "/" + name + ".mtl", formatMtl(materials, comment));
    writeFileAtomically(dir + "/" + name + ".obj", formatObj(mesh, name + ".mtl", comment));
}

// The panorama is equatorial plate carree: s = 0.25 - RA / 360 (RA grows to the left, 0h at
// a quarter of the width), t = (90 - Dec) / 180. Each vertex sits at the galactic direction
// of its right ascension and declination.
void makeMilkyWay(const std::string& root, const std::string& dir) {
    std::string source = root + "/usr/share/stellarium/textures/milkyway.png";
    Raster picture = selectChannels(decodePicture(source, 4), 0, 3);
    requirePowerOfTwo(picture, source);
    writePnmAtomically(dir + "/milkyway.ppm", picture);
    Mesh mesh;
    addGridSphere(
        &mesh, "sky", "milkyway", kSphereSlices, kSphereStacks,
        [](double s, double t) {
            double ra = 90.0 - 360.0 * s, dec = 90.0 - 180.0 * t;
            return toGalactic(equatorialUnit(ra, dec));
        },
        true);
    MeshMaterial m;
    m.name = "milkyway";
    for (int i = 0; i < 4; ++i)
        m.diffuse[i] = m.ambient[i] = 1.0;
    m.textureLine = "modulate milkyway.ppm";
    writeModel(dir, "MilkyWayEnv", mesh, {m},
               "All-sky Milky Way panorama on a sphere in galactic coordinates\n"
               "(x to the galactic centre, z to the north galactic pole), seen from inside.");
}

// Geographic longitude lon and latitude lat (degrees) on the unit globe: pole on +y,
// longitude 0 on -x, longitude 90 east on +z.
Vec3 globePoint(double lonDeg, double latDeg) {
    double a = (lonDeg - 180.0) * kDegree, p = latDeg * kDegree;
    return {std::cos(p) * std::cos(a), std::sin(p), -std::cos(p) * std::sin(a)};
}

void makeGlobe(Mesh* mesh, const std::string& material) {
    // The maps start at longitude -180 on the left, north at the top.
    addGridSphere(
        mesh, "globe", material, kSphereSlices, kSphereStacks,
        [](double s, double t) { return globePoint(-180.0 + 360.0 * s, 90.0 - 180.0 * t); }, false);
}

void makeEarth(const std::string& root, const std::string& dir) {
    const std::string images = root + "/usr/share/xplanet/images/";
    Raster day = decodePicture(images + "earth.jpg", 3);
    requirePowerOfTwo(day, images + "earth.jpg");
    Raster night = decodePicture(images + "night.jpg", 3);
    requirePowerOfTwo(night, images + "night.jpg");
    std::string cloudSource = root + "/usr/share/openuniverse/textures/clouds.jpg";
    Raster clouds = decodePicture(cloudSource, 1);
    requirePowerOfTwo(clouds, cloudSource);
    writePnmAtomically(dir + "/earth.ppm", day);
    writePnmAtomically(dir + "/earthNight.ppm", night);
    // Clouds: white, with the cloud map as opacity.
    Raster white = clouds;
    std::fill(white.pixels.begin(), white.pixels.end(), 255);
    writePnmAtomically(dir + "/earthCloud.pgm", white);
    writePnmAtomically(dir + "/earthCloudAlpha.pgm", clouds);

    const char* comment =
        "The Earth, unit radius: pole on +y, longitude 0 on -x, 90 deg east on +z.";
    {
        Mesh mesh;
        makeGlobe(&mesh, "earth");
        MeshMaterial m;
        m.name = "earth";
        m.diffuse[0] = m.diffuse[1] = m.diffuse[2] = 1.0;
        m.specular[0] = m.specular[1] = m.specular[2] = 0.15;
        m.shininess = 100.0;
        m.textureLine = "modulate earth.ppm";
        writeModel(dir, "earth", mesh, {m}, comment);
    }
    {
        Mesh mesh;
        makeGlobe(&mesh, "lights");
        MeshMaterial m;
        m.name = "lights";
        for (int i = 0; i < 4; ++i)
            m.ambient[i] = m.diffuse[i] = 1.0;
        m.textureLine = "modulate earthNight.ppm";
        writeModel(dir, "earthNight", mesh, {m}, comment);
    }
    {
        Mesh mesh;
        makeGlobe(&mesh, "clouds");
        MeshMaterial m;
        m.name = "clouds";
        for (int i = 0; i < 4; ++i)
            m.diffuse[i] = 1.0;
        m.textureLine = "modulate earthCloud.pgm earthCloudAlpha.pgm";
        writeModel(dir, "earthCloud", mesh, {m}, comment);
    }
}

// A flat band between radii r0 and r1 around the axis, in the plane spanned by e1 and e2,
// drawn from both sides.
void addRing(Mesh* mesh, MeshGroup* g, const Vec3& e1, const Vec3& e2, double r0, double r1,
             int segments, int texcoord) {
    for (int k = 0; k < segments; ++k) {
        double a = 2 * kPi * k / segments, b = 2 * kPi * (k + 1) / segments;
        Vec3 ua = e1 * std::cos(a) + e2 * std::sin(a), ub = e1 * std::cos(b) + e2 * std::sin(b);
        Vec3 p0 = ua * r0, p1 = ua * r1, p2 = ub * r1, p3 = ub * r0;
        addFlatTriangle(mesh, g, p0, p1, p2, texcoord);
        addFlatTriangle(mesh, g, p0, p2, p3, texcoord);
        addFlatTriangle(mesh, g, p0, p2, p1, texcoord);
        addFlatTriangle(mesh, g, p0, p3, p2, texcoord);
    }
}

// A thin quad from radius r0 to r1 along direction u, width w across (towards v), both sides.
void addTick(Mesh* mesh, MeshGroup* g, const Vec3& u, const Vec3& v, double r0, double r1, double w,
             int texcoord) {
    Vec3 a = u * r0 - v * (w / 2), b = u * r1 - v * (w / 2), c = u * r1 + v * (w / 2),
         d = u * r0 + v * (w / 2);
    addFlatTriangle(mesh, g, a, b, c, texcoord);
    addFlatTriangle(mesh, g, a, c, d, texcoord);
    addFlatTriangle(mesh, g, a, c, b, texcoord);
    addFlatTriangle(mesh, g, a, d, c, texcoord);
}

// A cone along +axis from base (radius r) to the tip.
void addCone(Mesh* mesh, MeshGroup* g, const Vec3& base, const Vec3& tip, double r, int segments,
             int texcoord) {
    Vec3 axis = normalized(tip - base);
    Vec3 side =
        normalized(std::fabs(axis.x) < 0.9 ? cross(axis, {1, 0, 0}) : cross(axis, {0, 1, 0}));
    Vec3 up = cross(axis, side);
    for (int k = 0; k < segments; ++k) {
        double a = 2 * kPi * k / segments, b = 2 * kPi * (k + 1) / segments;
        Vec3 pa = base + (side * std::cos(a) + up * std::sin(a)) * r;
        Vec3 pb = base + (side * std::cos(b) + up * std::sin(b)) * r;
        addFlatTriangle(mesh, g, pa, pb, tip, texcoord);
        addFlatTriangle(mesh, g, base, pb, pa, texcoord);
    }
}

// A cylinder along the axis from p0 to p1 (radius r), closed at p0.
void addCylinder(Mesh* mesh, MeshGroup* g, const Vec3& p0, const Vec3& p1, double r, int segments,
                 int texcoord) {
    Vec3 axis = normalized(p1 - p0);
    Vec3 side =
        normalized(std::fabs(axis.x) < 0.9 ? cross(axis, {1, 0, 0}) : cross(axis, {0, 1, 0}));
    Vec3 up = cross(axis, side);
    for (int k = 0; k < segments; ++k) {
        double a = 2 * kPi * k / segments, b = 2 * kPi * (k + 1) / segments;
        Vec3 ra = (side * std::cos(a) + up * std::sin(a)) * r;
        Vec3 rb = (side * std::cos(b) + up * std::sin(b)) * r;
        addFlatTriangle(mesh, g, p0 + ra, p0 + rb, p1 + rb, texcoord);
        addFlatTriangle(mesh, g, p0 + ra, p1 + rb, p1 + ra, texcoord);
        addFlatTriangle(mesh, g, p0, p0 + rb, p0 + ra, texcoord);
    }
}

MeshMaterial plain(const char* name, double r, double g, double b) {
    MeshMaterial m;
    m.name = name;
    m.diffuse[0] = r;
    m.diffuse[1] = g;
    m.diffuse[2] = b;
    m.ambient[0] = r * 0.3;
    m.ambient[1] = g * 0.3;
    m.ambient[2] = b * 0.3;
    return m;
}

void makeCompass(const std::string& dir) {
    Mesh mesh;
    int t = mesh.addTexcoord(0.5, 0.5);  // the models carry coordinates but no texture
    const Vec3 X{1, 0, 0}, Y{0, 1, 0}, Z{0, 0, 1};
    mesh.groups.resize(4);
    MeshGroup& equator = mesh.groups[0];
    MeshGroup& meridian = mesh.groups[1];
    MeshGroup& ticks = mesh.groups[2];
    MeshGroup& pointer = mesh.groups[3];
    equator.name = "equator";
    equator.material = "equator";
    meridian.name = "meridian";
    meridian.material = "meridian";
    ticks.name = "ticks";
    ticks.material = "ticks";
    pointer.name = "pointer";
    pointer.material = "pointer";
    addRing(&mesh, &equator, X, Y, 0.96, 1.0, 96, t);
    addRing(&mesh, &meridian, X, Z, 0.96, 1.0, 96, t);
    for (int h = 0; h < 24; ++h) {  // right ascension, every hour; longer every 6 h
        double a = 2 * kPi * h / 24;
        Vec3 u = X * std::cos(a) + Y * std::sin(a), v = cross(Z, u);
        addTick(&mesh, &ticks, u, v, 1.0, h % 6 == 0 ? 1.14 : 1.07, 0.015, t);
    }
    for (int d = -80; d <= 80; d += 10) {  // declination, every 10 deg on the meridian
        if (d == 0) continue;
        double a = d * kDegree;
        for (double side : {1.0, -1.0}) {
            Vec3 u = X * (side * std::cos(a)) + Z * std::sin(a), v = cross(u, Y);
            addTick(&mesh, &ticks, u, v, 1.0, d % 30 == 0 ? 1.1 : 1.05, 0.015, t);
        }
    }
    addCylinder(&mesh, &pointer, Z * 1.0, Z * 1.2, 0.015, 12, t);
    addCone(&mesh, &pointer, Z * 1.2, Z * 1.35, 0.05, 16, t);
    std::vector<MeshMaterial> materials = {
        plain("equator", 0.3, 0.6, 1.0), plain("meridian", 1.0, 0.6, 0.3),
        plain("ticks", 0.9, 0.9, 0.9), plain("pointer", 1.0, 0.25, 0.25)};
    writeModel(dir, "compass", mesh, materials,
               "Compass of the overview map: the equator (x-y plane) with an hour tick every\n"
               "15 deg from +x, the meridian (x-z plane) with a tick every 10 deg of declination,\n"
               "a pointer to the north pole on +z.");
}

void makeArrow(const std::string& dir) {
    Mesh mesh;
    int t = mesh.addTexcoord(0.5, 0.5);
    mesh.groups.resize(1);
    MeshGroup& g = mesh.groups[0];
    g.name = "arrow";
    g.material = "arrow";
    const Vec3 Z{0, 0, 1};
    addCylinder(&mesh, &g, Z * 0.5, Z * -0.15, 0.05, 16, t);
    addCone(&mesh, &g, Z * -0.15, Z * -0.5, 0.14, 16, t);
    writeModel(dir, "arrow", mesh, {plain("arrow", 1.0, 0.6, 0.2)},
               "Arrow of the overview map: from z = +0.5 to its tip at z = -0.5 (along -z).");
}

}  // namespace

int main(int argc, char** argv) {
    const char* program = "datatree_models";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        std::string root = argv[1];
        std::string dir = std::string(argv[2]) + "/objdata";
        makeMilkyWay(root, dir);
        makeEarth(root, dir);
        makeCompass(dir);
        makeArrow(dir);
        return kExitOk;
    });
}
