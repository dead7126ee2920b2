#pragma once
// The point-size batching of star drawing (internal to starrender).

#include <cstdint>
#include <cstring>

#include "catalogue/star_list.h"
#include "starrender/star_draw_sink.h"

// Points of one size are drawn together. A star of the open batch's size is drawn at once;
// others wait in their bucket; a full bucket is drawn in place and its size becomes the
// open batch. Only points that can touch the viewport are batched: one that cannot would
// only be clipped, so it takes no place in a bucket either. The open batch's points go to
// the sink a run at a time.
//
// Stars come in no order of size, so which way a point goes is worked out without a branch:
// it is written to the open run or to its bucket, and the one it went to is counted. A bucket
// has one entry more than its capacity: the point that finds it full is written there first
// and drawn last when the bucket is drawn in place, which is the order of drawing the bucket
// and then the point.
class PointBatcher {
  public:
    static constexpr int kFirstBucket = 2;  // the batch open at the start: 1-pixel points

    PointBatcher(StarBucketEntry* const* buckets, std::int32_t* counts, int capacity,
                 StarDrawSink& sink)
        : buckets_(buckets), counts_(counts), sink_(sink) {
        for (int b = 0; b < kNumPointBuckets; ++b) {
            // A missing bucket holds nothing: every point of its size is drawn in place.
            capacity_[b] = buckets[b] != nullptr ? capacity : 0;
            open_[b] = buckets[b] != nullptr ? buckets[b] : spare_;
        }
        sink_.beginPoints(kFirstBucket * 0.5f);
    }

    void add(int b, const double vertex[3], const float rgba[4]) {
        const int toRun = b == current_;
        StarBucketEntry& e = toRun ? run_[runLength_] : open_[b][counts_[b]];
        std::memcpy(e.pos, vertex, sizeof e.pos);
        std::memcpy(e.rgba, rgba, sizeof e.rgba);
        runLength_ += toRun;
        counts_[b] += 1 - toRun;
        if (counts_[b] > capacity_[b]) switchTo(b);
        if (runLength_ == kRunSize) handOnRun();
    }

    void finish() {
        handOnRun();
        for (int b = 0; b < kNumPointBuckets; ++b) {
            if (counts_[b] == 0) continue;
            sink_.endPoints();
            sink_.beginPoints(b * 0.5f);
            drain(b);
        }
        sink_.endPoints();
    }

  private:
    static constexpr int kRunSize = 256;

    void handOnRun() {
        if (runLength_ > 0) sink_.points(run_, runLength_);
        runLength_ = 0;
    }

    // A bucket found full: drawn in place (with the point just put in it, if that one is
    // drawn), and its size becomes the open batch.
    __attribute__((noinline)) void switchTo(int b) {
        handOnRun();
        sink_.endPoints();
        sink_.beginPoints(b * 0.5f);
        drain(b);
        current_ = b;
    }

    void drain(int b) {
        if (counts_[b] > 0) sink_.points(open_[b], counts_[b]);
        counts_[b] = 0;
    }

    StarBucketEntry* const* buckets_;
    std::int32_t* counts_;  // points waiting in each bucket
    std::int32_t capacity_[kNumPointBuckets];
    StarBucketEntry* open_[kNumPointBuckets];  // where each bucket's points are written
    StarDrawSink& sink_;
    int current_ = kFirstBucket;
    StarBucketEntry run_[kRunSize];  // points of the open batch not yet handed on
    int runLength_ = 0;
    StarBucketEntry spare_[1];  // the one point of a size without a bucket
};
