// Random models of any class that documents can show, made through the generic interface alone.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/document/Shape.h"

namespace TopologyTools {

class RandomModel {
public:
    RandomModel(std::string_view rootType, unsigned seed);

    Vel::GenericIf const & root() const { return root_; }
    // Takes out some of the objects that references may lead to, wherever they stand. References to them
    // stay.
    void removeSome();

private:
    struct Member {
        Vel::GenericIf object;
        ObjectShape const * shape;
        Vel::GenericIf owner;
        MemberShape const * collection;
        Vel::GenericIf key;
        std::string path;
    };

    bool chance(unsigned percent) { return random_() % 100 < percent; }
    std::string const & name();
    Vel::GenericIf value(Vel::VelType const & type);
    // A random object of that class or one derived from it; null when there is none.
    Vel::GenericIf object(Vel::VelType const & type);
    Vel::GenericIf key(MemberShape const & collection);
    void fill(Vel::GenericIf const & object, ObjectShape const & shape, std::string const & path,
              bool keyedByName);
    void make(Vel::GenericIf const & owner, MemberShape const & collection, std::string const & path);
    void setAll(Vel::GenericIf const & object, ObjectShape const & shape);

    std::mt19937 random_;
    DocumentShape shape_;
    Vel::GenericIf root_;
    std::vector<Member> members_;
};

}  // namespace TopologyTools
