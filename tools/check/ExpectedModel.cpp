#include "tools/check/ExpectedModel.h"

#include "tools/json/JsonPointer.h"

namespace TopologyTools {

std::string ExpectedObject::path() const {
    return parent_ ? joinJsonPointer(joinJsonPointer(parent_->path(), collection_), key_) : std::string();
}

bool ExpectedObject::isThere() const { return !hasLeft_ && (!parent_ || parent_->isThere()); }

Line ExpectedObject::leftLine() const { return hasLeft_ ? left_ : parent_->leftLine(); }

ExpectedPtr ExpectedObject::member(std::string_view collection, std::string_view key) const {
    auto const found = members.find(collection);
    if (found == members.end()) return nullptr;
    auto const member = found->second.find(key);
    return member == found->second.end() ? nullptr : member->second;
}

void ExpectedObject::memberDel(std::string_view collection, std::string_view key, Line line) {
    auto & named = members[collection];
    auto const found = named.find(key);
    if (found == named.end()) return;
    ExpectedPtr const member = std::move(found->second);
    named.erase(found);
    member->hasLeft_ = true;
    member->left_ = line;
    member->clear();
}

void ExpectedObject::clear() {
    for (auto & [collection, named] : members) {
        for (auto & [key, member] : named) member->clear();
    }
    attributes.clear();
    members.clear();
    entries.clear();
    handled.clear();
    missing.clear();
    anchor = nullptr;
}

nlohmann::json shownReference(ExpectedPtr const & target) {
    return target && target->isThere() ? nlohmann::json(target->path()) : nlohmann::json(nullptr);
}

}  // namespace TopologyTools
