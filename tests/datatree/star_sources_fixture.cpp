#include "tests/datatree/star_sources_fixture.h"

std::string zoneCatalogue(const std::vector<ZoneRecord>& records, int announceExtra) {
    std::string b;
    // Magic, type, major and minor version, level, mag_min (millimag), mag_range, mag_steps.
    for (unsigned v : {0x835F040Au, 0u, 0u, 8u, 0u, unsigned(-2000), 12800u, 256u})
        putU32le(b, v);
    for (int z = 0; z < 20; ++z)
        putU32le(b, z == 0 ? unsigned(records.size() + announceExtra) : 0);
    for (const ZoneRecord& r : records) {
        for (unsigned v : {unsigned(r.hip), 0u, 0u})
            putU32le(b, v);
        b += char(r.bvIndex);
        b += char(r.magIndex);
        b += char(r.spectralIndex & 0xFF);
        b += char(r.spectralIndex >> 8);
        putU32le(b, 0);
        putU32le(b, 0);
        putU32le(b, unsigned(r.parallaxCentiMas));
    }
    return b;
}

std::string writeStarSources(const ScratchDir& dir) {
    const std::string s = "usr/share/stellarium/stars/default/";
    // V = (-2000 + mag * 50) / 1000; B-V = (index + 0.5) / 32 - 0.5
    dir.write(s + "stars_0_0v0_8.cat",
              zoneCatalogue({{32349, 16, 11, 1, 37921}, {91262, 16, 40, 2, 13023}}));
    dir.write(s + "stars_1_0v0_8.cat", zoneCatalogue({{12, 30, 150, 3, 0}, {13, 40, 160, 3, 200}}));
    dir.write(s + "stars_2_0v0_8.cat", zoneCatalogue({{11, 30, 180, 3, 500}}));
    dir.write(s + "stars_hip_sp_0v0_4.cat", "\nA1V+DA\nA0Va\nK0III\n");
    dir.write(s + "cross-id.dat",
              "# HIP\t\tSAO\tHD\tHR\n32349\t\t151881\t48915\t2491\n91262\t\t67174\t172167\t7001\n"
              "11\t\t1\t\t\n12\t\t2\t300\t\n13\t\t3\t400\t\n");
    dir.write(s + "hip_plx_err.dat", "# HIP PlxErr\n32349\t1.58\n91262\t0.36\n13\t1.0\n");
    dir.write(
        s + "hip_pm.dat",
        "# Proper motion data\n32349\t-546.01\t-1223.07\n91262\t201.02\t287.46\n13\t1.0\t-2.0\n");
    dir.write(s + "name.fab",
              "32349|\xCE\xB1_CMa\n32349|9_CMa\n91262|\xCE\xB1_Lyr\n13|\xCE\xB2_Cet\n");
    dir.write("usr/share/stellarium/skycultures/western/star_names.fab",
              "# names\n32349|_(\"Sirius\") 1,2\n");
    dir.write("package/data/stars.14.json",
              "{\"type\":\"FeatureCollection\",\"features\":["
              "{\"type\":\"Feature\",\"id\":32349,\"properties\":{\"mag\":-1.44,\"bv\":\"0.009\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[101.2872,-16.7161]}},"
              "{\"type\":\"Feature\",\"id\":91262,\"properties\":{\"mag\":0.03,\"bv\":\"-0.001\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[-80.7653,38.7837]}},"
              "{\"type\":\"Feature\",\"id\":11,\"properties\":{\"mag\":8.0,\"bv\":\"\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[10.0,10.0]}},"
              "{\"type\":\"Feature\",\"id\":12,\"properties\":{\"mag\":8.0,\"bv\":\"0.5\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[20.0,10.0]}},"
              "{\"type\":\"Feature\",\"id\":13,\"properties\":{\"mag\":6.0,\"bv\":\"1.000\"},"
              "\"geometry\":{\"type\":\"Point\",\"coordinates\":[30.0,-10.0]}}]}");
    dir.write("package/data/starnames.json",
              "{\"91262\":{\"name\":\"Vega\",\"hd\":\"HD\xE2\x80\x89"
              "172167\",\"c\":\"Lyr\"},"
              "\"13\":{\"name\":\"\",\"hd\":\"HD 400\",\"c\":\"Cet\"}}");
    dir.write("usr/share/aa/star.cat",
              "2000 06 45  8.871 -16 42 57.99  -3.847 -120.53  -7.6 0.3751  -1.46 alCMa(Sirius)    "
              "   1591\n"
              "2000 18 36 56.332  38 47  1.17   1.726   28.61 -14.0 0.1230   0.03 alLyr(Vega)      "
              "   3238\n"
              "------\n");
    return dir.path();
}
