#include "framework/jitter_accumulation.h"

#include <algorithm>
#include <new>

#include "image/readback.h"

bool JitterAccumulator::prepare(int width, int height) {
    count_ = 0;
    if (width < 0 || height < 0) return false;
    const std::size_t n = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3;
    if (n != sum_.size() || width != width_) {
        try {
            std::vector<std::uint32_t>().swap(sum_);
            std::vector<unsigned char>().swap(image_);
            sum_.resize(n);
            image_.resize(n);
        } catch (const std::bad_alloc&) {
            std::vector<std::uint32_t>().swap(sum_);
            std::vector<unsigned char>().swap(image_);
            width_ = height_ = 0;
            return false;
        }
    }
    width_ = width;
    height_ = height;
    return true;
}

void JitterAccumulator::addPass() {
    if (count_ == 0) {
        std::copy(image_.begin(), image_.end(), sum_.begin());
    } else {
        for (std::size_t i = 0; i < sum_.size(); ++i)
            sum_[i] += image_[i];
    }
    ++count_;
}

void JitterAccumulator::average() {
    if (count_ == 0) return;
    for (std::size_t i = 0; i < sum_.size(); ++i) {
        const double mean = static_cast<double>(sum_[i]) / count_ + 0.5;
        image_[i] = static_cast<unsigned char>(std::min(std::max(mean, 0.0), 255.0));
    }
    upsidedownImage(image_.data(), width_, height_);  // rows top first
}
