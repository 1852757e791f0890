#include "platform/Vel/Entity.h"

namespace Vel {

NotifieeList * Entity::notifieeList() const { return &notifiees_; }

}  // namespace Vel
