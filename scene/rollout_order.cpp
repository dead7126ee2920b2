#include "scene/rollout_order.h"

#include <algorithm>
#include <cctype>

RolloutOrder::RolloutOrder(std::vector<RolloutEntry> rollouts) : rollouts_(std::move(rollouts)) {
    for (int i = 0; i < size(); ++i)
        order_.push_back(i);
}

bool RolloutOrder::selectByKey(char key) {
    if (key == '-') {
        closeAll();
        return true;
    }
    const char letter = static_cast<char>(std::tolower(static_cast<unsigned char>(key)));
    for (int i = 0; i < size(); ++i) {
        if (rollouts_[i].letter != letter) continue;
        if (rollouts_[i].open) {
            rollouts_[i].open = false;
        } else {
            auto at = std::find(order_.begin(), order_.end(), i);
            std::rotate(order_.begin(), at, at + 1);
            rollouts_[i].open = true;
        }
        return true;
    }
    return false;
}

void RolloutOrder::closeAll() {
    for (RolloutEntry& r : rollouts_)
        r.open = false;
}

void RolloutOrder::rotate() {
    if (order_.size() > 1) std::rotate(order_.begin(), order_.begin() + 1, order_.end());
}

std::string RolloutOrder::describe() const {
    std::string s;
    for (int i : order_) {
        const char c = rollouts_[i].letter;
        s += rollouts_[i].open ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
    }
    return s;
}
