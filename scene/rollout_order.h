#pragma once
// The control panel's rollouts: their display order, which are open, and the selection by
// shortcut letter ("m" followed by a letter) and the header's "-" and "m" buttons.

#include <string>
#include <vector>

struct RolloutEntry {
    std::string title;  // "[O]rrery"
    char letter;        // its shortcut, lower case: 'o'
    bool open = false;
};

class RolloutOrder {
  public:
    explicit RolloutOrder(std::vector<RolloutEntry> rollouts);

    int size() const { return static_cast<int>(rollouts_.size()); }
    // Rollout indices in display order (first shown first).
    const std::vector<int>& order() const { return order_; }
    const RolloutEntry& rollout(int index) const { return rollouts_[index]; }
    bool isOpen(int index) const { return rollouts_[index].open; }
    void setOpen(int index, bool open) { rollouts_[index].open = open; }

    // The key that follows "m": "-" closes every rollout; any other key (upper-case letters
    // folded to lower case) selects the rollout with that shortcut: a closed one moves to the
    // front of the order (those before it move back one place) and opens, an open one
    // closes. Returns false when the key matches no rollout.
    bool selectByKey(char key);
    void closeAll();
    // The first rollout goes to the end of the order.
    void rotate();

    // Order and open state as one line: the letters in order, upper case when open
    // ("Oacsptimvew").
    std::string describe() const;

  private:
    std::vector<RolloutEntry> rollouts_;
    std::vector<int> order_;
};
