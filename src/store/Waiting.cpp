#include "store/Waiting.h"

namespace orv::store {

namespace {

Waiter* currentWaiter = nullptr;
int waitingsTold = 0;

}  // namespace

Waiter* Waiter::current() {
  return currentWaiter;
}

void Waiter::setCurrent(Waiter* waiter) {
  currentWaiter = waiter;
}

Waiting::~Waiting() {
  if (!isTold_) return;
  --waitingsTold;
  if (currentWaiter != nullptr) currentWaiter->done();
}

bool Waiting::goesOn(const std::function<std::string()>& holder) {
  if (currentWaiter == nullptr) return true;
  if (!isTold_) ++waitingsTold;
  isTold_ = true;
  return currentWaiter->wait(holder());
}

bool Waiting::isUnderWay() {
  return waitingsTold > 0;
}

}  // namespace orv::store
