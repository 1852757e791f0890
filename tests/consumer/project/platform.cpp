#include "platform/Vel/Ptr.h"

#include "platform/Vel/VelType.h"

#include <cstdio>
#include <utility>

namespace {

class Lamp final : public Vel::PtrInterface {
public:
    explicit Lamp(bool & lit) : lit_(lit) { lit_ = true; }
    ~Lamp() override { lit_ = false; }

private:
    bool & lit_;
};

}  // namespace

int main() {
    bool lit = false;
    Vel::Ptr<Lamp> lamp = new Lamp(lit);
    Vel::Ptr<Lamp const> const second = std::exchange(lamp, nullptr);
    bool const kept = lit && second->references() == 1;
    lamp = nullptr;
    std::printf("platform: %s\n",
                kept && lit ? "a counted reference keeps its object" : "the object was lost");
    // Both models are there for who only knows their names.
    bool const named =
        Vel::typeNode("NetworkTopology::MlagV2") && Vel::typeNode("NetworkTopologyV3::MlagPort");
    std::printf("platform: %s\n", named ? "the models' types are registered" : "types are missing");
    return kept && lit && named ? 0 : 1;
}
