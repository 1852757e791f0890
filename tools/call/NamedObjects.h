// The models of a topology and the translator between them, and whatever else is constructed by name.
//
// Arguments are words, as documents have them: a JSON Pointer for an object ("/host/leaf-1/port/eth-1", ""
// for the status), "null" for none, the enumerator's name or number, the text of any other value. The type of
// an argument tells in which model's document a pointer leads.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Vel/GenericIf.h"
#include "tools/call/ModelDocument.h"

namespace TopologyTools {

// Words for arguments of a constructor, by the arguments' names.
using ConstructorWords = std::map<std::string, std::string>;

class NamedObjects {
public:
    // Puts the topology into its status.
    using Fill = std::function<void(Vel::GenericIf const & input)>;

    // Constructs the translator with what `words` say of its arguments; by default it translates between the
    // two models here. It is made before `fill` (`attachedBefore`), and follows its changes, or after it, and
    // meets a model that is full. Throws what the constructor does.
    NamedObjects(ConstructorWords const & words, Fill const & fill, bool attachedBefore);

    static Vel::VelType const & translatorType();

    ModelDocument const & input() const { return input_; }
    ModelDocument const & output() const { return output_; }

    // The object of that type that is here already: a status or the translator; null when there is none.
    Vel::GenericIf present(Vel::VelType const & type) const;
    // Constructs one. An argument that `words` do not tell is, of objects, the one of its type at, or above,
    // a place that `words` or `places` name, and without such places one that the status itself refers to
    // (the local host); a text is the program's name. Throws Vel::RangeException.
    Vel::GenericIf construct(Vel::VelType const & type, ConstructorWords const & words,
                             std::vector<std::string> const & places) const;

    // What a word stands for. Throws Vel::RangeException, which names the argument and `where`.
    Vel::GenericIf argument(std::string_view where, Vel::VelArg const & arg, std::string const & word) const;

private:
    ModelDocument const & documentOf(Vel::VelType const & type) const;
    Vel::GenericIf parsed(Vel::VelType const & type, std::string const & word) const;
    Vel::GenericIf byDefault(std::string_view where, Vel::VelArg const & arg,
                             std::vector<std::string> const & places) const;

    ModelDocument const input_;
    ModelDocument const output_;
    Vel::GenericIf translator_;
};

}  // namespace TopologyTools
