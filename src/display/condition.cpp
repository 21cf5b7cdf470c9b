#include "display/condition.h"

namespace zet::ZETShow {

void Condition::notifyOne() {
    const std::lock_guard leaf(_leaf);
    _wakeUp.notify_one();
}

void Condition::notifyAll() {
    const std::lock_guard leaf(_leaf);
    _wakeUp.notify_all();
}

}  // namespace zet::ZETShow
