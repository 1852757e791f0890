#include "tests/support/SmallStack.h"

#include <stdexcept>

#include <pthread.h>

namespace TestSupport {

namespace {

void * run(void * body) {
    (*static_cast<std::function<void()> const *>(body))();
    return nullptr;
}

void check(int error) {
    if (error != 0) throw std::runtime_error("cannot run a thread with a small stack");
}

}  // namespace

void onASmallStack(std::function<void()> const & body) {
    pthread_attr_t attributes;
    check(pthread_attr_init(&attributes));
    check(pthread_attr_setstacksize(&attributes, kSmallStack));
    pthread_t thread;
    check(pthread_create(&thread, &attributes, &run, const_cast<std::function<void()> *>(&body)));
    check(pthread_join(thread, nullptr));
    check(pthread_attr_destroy(&attributes));
}

}  // namespace TestSupport
