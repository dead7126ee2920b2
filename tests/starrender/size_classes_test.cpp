// The one-word size class star drawing takes for every star must be the class worked out in
// full, for every magnitude a star can have, with the settings a scene uses.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

#include "starrender/brightness_model.h"

namespace {

std::uint32_t packed(const StarSizeClass& c) {
    return static_cast<std::uint32_t>((c.visible << 16) | (c.bucket << 8) | c.coverage);
}

}  // namespace

TEST(SizeClasses, OneWordClassesAreTheFullClassesAtEveryMagnitude) {
    struct Settings {
        float starScale;
        double radiansPerPixel, texScale;
        int largeLimit;
    };
    const Settings settings[] = {
        {1.0f, 1e-3, 1.0, 16 * 1024 * 16},   {0.0f, 1e-3, 1.0, 16 * 1024 * 16},
        {0.6f, 3e-4, 0.5, 16 * 1024 * 16},   {1.0f, 2e-5, 1.0, 64 * 1024 * 64},
        {-0.5f, 5e-3, 2.0, 4 * 1024 * 4},    {2.5f, 1e-4, 0.2, 1 * 1024 * 1},
        {0.3f, 7.3e-4, 1.0, 31 * 1024 * 31},
    };
    std::mt19937 random(5);
    std::uniform_real_distribution<float> anyMagnitude(-4.0f, 12.0f);
    for (const Settings& s : settings) {
        const StarSizeClassifier classifier(s.starScale, s.radiansPerPixel, s.texScale,
                                            s.largeLimit);
        int visible = 0, differentClasses = 0;
        std::uint32_t last = 0;
        auto check = [&](float m) {
            const std::uint32_t want = m <= 10.0f ? packed(classifier.classify(m)) : 0u;
            const std::uint32_t got = classifier.classifyPacked(m);
            ASSERT_EQ(got, want) << "m = " << m << " starScale " << s.starScale;
            visible += static_cast<int>(got >> 16);
            differentClasses += static_cast<int>(got != last);
            last = got;
        };
        // Every float from -3 to 11 in steps of about 1/8192 magnitude, then at random.
        for (float m = -3.0f; m < 11.0f; m += 1.0f / 8192.0f)
            check(m);
        for (int n = 0; n < 200000; ++n)
            check(anyMagnitude(random));
        EXPECT_GT(visible, 1000);
        EXPECT_GT(differentClasses, 100);
    }
}
