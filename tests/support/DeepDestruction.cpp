#include "tests/support/DeepDestruction.h"

#include <utility>

namespace TestSupport {

namespace {

class Nested final : public Vel::PtrInterface {
public:
    explicit Nested(Vel::Ptr<Vel::PtrInterface> inner) : inner_(std::move(inner)) {}

private:
    Vel::Ptr<Vel::PtrInterface> inner_;
};

class Innermost final : public Vel::PtrInterface {
public:
    Innermost(Vel::Ptr<Vel::PtrInterface> object, std::function<void()> const & look)
        : object_(std::move(object)), look_(look) {}
    ~Innermost() override {
        object_ = nullptr;
        look_();
    }

private:
    Vel::Ptr<Vel::PtrInterface> object_;
    std::function<void()> const & look_;
};

}  // namespace

void releaseDeep(unsigned depth, Vel::Ptr<Vel::PtrInterface> object, std::function<void()> const & look) {
    Vel::Ptr<Vel::PtrInterface> outermost = new Innermost(std::move(object), look);
    for (unsigned i = 0; i < depth; ++i) outermost = new Nested(std::move(outermost));
}

}  // namespace TestSupport
